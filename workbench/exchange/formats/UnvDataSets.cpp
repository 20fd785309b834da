#include "workbench/exchange/formats/UnvDataSets.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>

namespace qd::workbench {

namespace {

constexpr std::string_view kMark = "-1";

std::string Beginning(const std::string& line) {
  constexpr std::size_t kLook = 20;
  return line.substr(0, kLook);
}

/// The number of entries, which is the last of at least eight numbers; none when the line is no head of a group.
std::optional<std::uint64_t> EntriesOf(const std::string& head) {
  constexpr std::size_t kLeast = 8;
  std::istringstream words(head);
  std::size_t count = 0;
  std::uint64_t last = 0;
  for (std::string word; words >> word; ++count) {
    const char* end = word.data() + word.size();
    const auto [at, fault] = std::from_chars(word.data(), end, last);
    if (fault != std::errc() || at != end) return std::nullopt;
  }
  return count < kLeast ? std::nullopt : std::optional(last);
}

/// Each entry begins with what it is and its number. False when the data set ends before there are so many.
bool ReadEntries(FileScan& in, std::uint64_t count, int numbersPerEntry, UnvGroup& group) {
  constexpr std::int64_t kElement = 8;
  for (std::uint64_t entry = 0; entry < count; ++entry) {
    const std::int64_t kind = in.Integer();
    if (kind == -1) {
      group.isShort = true;
      return false;
    }
    const std::int64_t number = in.Integer();
    if (number < 0) in.Fail("IDS_WB_IMPORT_INP_NUMBER", std::to_string(number));
    for (int i = 2; i < numbersPerEntry; ++i) in.Integer();
    if (kind == kElement) {
      group.elements.push_back(static_cast<std::uint64_t>(number));
    } else {
      ++group.others;
    }
  }
  return true;
}

void ReadGroups(FileScan& in, int numbersPerEntry, std::vector<UnvGroup>& groups) {
  std::string line;
  for (bool goesOn = true; goesOn;) {
    if (!in.Rest(line)) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    if (line == kMark) return;
    if (line.empty()) continue;
    const std::optional<std::uint64_t> entries = EntriesOf(line);
    if (!entries) in.Fail("IDS_WB_IMPORT_OUTLINE", Beginning(line));
    UnvGroup& group = groups.emplace_back();
    in.Rest(group.name);
    goesOn = ReadEntries(in, *entries, numbersPerEntry, group);
    if (*entries > 0 && in.Rest(line) && !line.empty()) in.Fail("IDS_WB_IMPORT_OUTLINE", Beginning(line));
  }
}

}  // namespace

void EachUnvDataSet(FileScan& in, const std::function<bool(const std::string&)>& read) {
  for (std::string line; in.Rest(line);) {
    if (line.empty()) continue;
    if (line != kMark) in.Fail("IDS_WB_IMPORT_OUTLINE", Beginning(line));
    if (!in.Rest(line)) return;
    if (line.empty() || line.find_first_not_of("0123456789b ") != std::string::npos) {
      in.Fail("IDS_WB_IMPORT_OUTLINE", Beginning(line));
    }
    if (!read(line)) in.SkipPast(kMark);
  }
}

bool ReadUnvGroups(FileScan& in, const std::string& number, std::vector<UnvGroup>& groups) {
  // Newer kinds have four numbers for an entry, older ones two.
  static constexpr struct {
    std::string_view number;
    int numbersPerEntry;
  } kKinds[] = {{"2435", 4}, {"2452", 4}, {"2467", 4}, {"2477", 4}, {"2429", 2}, {"2430", 2}, {"2432", 2}};
  const auto* kind =
      std::find_if(std::begin(kKinds), std::end(kKinds), [&](const auto& one) { return one.number == number; });
  if (kind == std::end(kKinds)) return false;
  ReadGroups(in, kind->numbersPerEntry, groups);
  return true;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/UnvGroups.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace qd::workbench {

namespace {

std::vector<std::uint64_t> NumbersOf(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::uint64_t> numbers;
  for (std::uint64_t number = 0; in >> number;) numbers.push_back(number);
  return numbers;
}

std::string TextOf(std::string line) {
  line.erase(0, std::min(line.find_first_not_of(" \t"), line.size()));
  line.erase(line.find_last_not_of(" \t\r") + 1);
  return line;
}

/// The groups of one data set: a head with the number of entries at its end, a name, and the entries, which begin
/// with what they are: 8 stands for an element.
void ReadGroups(std::istream& in, std::size_t numbersPerEntry, std::vector<NamedGroup>& groups) {
  constexpr std::uint64_t kElement = 8;
  constexpr std::size_t kHead = 8;
  for (std::string line; std::getline(in, line) && TextOf(line) != "-1";) {
    const std::vector<std::uint64_t> head = NumbersOf(line);
    if (head.size() < kHead || !std::getline(in, line)) return;
    NamedGroup group;
    group.name = TextOf(line);
    std::vector<std::uint64_t> numbers;
    while (numbers.size() < head.back() * numbersPerEntry && std::getline(in, line)) {
      const std::vector<std::uint64_t> more = NumbersOf(line);
      if (more.empty()) return;
      numbers.insert(numbers.end(), more.begin(), more.end());
    }
    for (std::size_t i = 0; i + 1 < numbers.size(); i += numbersPerEntry) {
      if (numbers[i] == kElement) group.elements.push_back(numbers[i + 1]);
    }
    if (!group.elements.empty()) groups.push_back(std::move(group));
  }
}

}  // namespace

std::vector<NamedGroup> ReadUnvGroups(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::vector<NamedGroup> groups;
  for (std::string line; std::getline(in, line);) {
    if (TextOf(line) != "-1" || !std::getline(in, line)) continue;
    const std::string number = TextOf(line);
    // Newer kinds have four numbers for an entry, older ones two.
    if (number == "2435" || number == "2452" || number == "2467" || number == "2477") {
      ReadGroups(in, 4, groups);
    } else if (number == "2429" || number == "2430" || number == "2432") {
      ReadGroups(in, 2, groups);
    } else {
      while (std::getline(in, line) && TextOf(line) != "-1") continue;
    }
  }
  return groups;
}

}  // namespace qd::workbench

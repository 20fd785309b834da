#include <algorithm>
#include <array>
#include <charconv>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/LastLine.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

/// Column 73 of an 80-column card names its section.
bool IsCard(std::string_view line, char section) {
  constexpr std::size_t kColumn = 72;
  return line.size() > kColumn && line[kColumn] == section;
}

/// The cards section by section, and where the directory says that parameters stand.
class Outline {
 public:
  explicit Outline(const std::filesystem::path& path) : m_in(path) {}

  void Check() {
    for (std::string line; m_in.RawRest(line);) {
      if (Trimmed(line).empty()) continue;
      const std::size_t section = line.size() > kColumn ? kSections.find(line[kColumn]) : std::string::npos;
      // Those before are over; the first one is there, and the last one has one card.
      if (section == std::string::npos || section < m_section || m_counts[kLast] > 0) Fail(line);
      m_section = section;
      ++m_counts[section];
      if (section == kDirectory) Directory(line);
      if (section == kLast) Totals(line);
    }
    if (m_counts[kLast] == 0 || m_counts[kDirectory] % 2 != 0) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    if (m_furthest > m_counts[kParameters]) Refuse(m_furthestLine, "D");
  }

 private:
  static constexpr std::string_view kSections = "SGDPT";
  static constexpr std::size_t kDirectory = 2;
  static constexpr std::size_t kParameters = 3;
  static constexpr std::size_t kLast = 4;
  static constexpr std::size_t kColumn = 72;
  static constexpr std::size_t kField = 8;

  [[noreturn]] static void Refuse(std::size_t line, const std::string& what) {
    throw ImportError{"IDS_WB_IMPORT_OUTLINE", std::to_string(line) + ": " + what};
  }
  [[noreturn]] void Fail(const std::string& line) const { Refuse(m_in.Line(), line.substr(0, kField)); }

  /// A field of the directory; empty ones are zero.
  std::uint64_t Field(const std::string& line, std::size_t place) const {
    const std::string_view text = Trimmed(std::string_view(line).substr(place * kField, kField));
    if (text.empty()) return 0;
    std::uint64_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || end != text.data() + text.size()) Fail(line);
    return number;
  }
  /// Two cards for an entity: the first says where its parameters begin, the second how many cards they take.
  void Directory(const std::string& line) {
    if (m_counts[kDirectory] % 2 == 1) {
      m_kind = Field(line, 0);
      m_first = Field(line, 1);
      return;
    }
    if (Field(line, 0) != m_kind) Fail(line);
    if (m_kind == 0) return;  // an entity that is none
    const std::uint64_t last = m_first + std::max<std::uint64_t>(Field(line, 3), 1) - 1;
    if (m_first == 0) Fail(line);
    if (last <= m_furthest) return;
    m_furthest = last;
    m_furthestLine = m_in.Line();
  }
  /// The last card counts the others: a piece from the middle may be gone.
  void Totals(const std::string& line) const {
    for (std::size_t section = 0; section < kLast; ++section) {
      const std::string_view field = std::string_view(line).substr(section * kField, kField);
      std::uint64_t count = 0;
      const std::string_view digits = Trimmed(field.substr(1));
      std::from_chars(digits.data(), digits.data() + digits.size(), count);
      if (field[0] == kSections[section] && count > m_counts[section]) {
        throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
      }
    }
  }

  FileScan m_in;
  std::size_t m_section = 0;
  std::array<std::uint64_t, 5> m_counts{};
  std::uint64_t m_kind = 0;
  std::uint64_t m_first = 0;
  std::uint64_t m_furthest = 0;  // card of parameters that the directory names
  std::size_t m_furthestLine = 0;
};

class Iges final : public Format {
 public:
  std::string_view Name() const override { return "IGES"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".iges", ".igs"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Iges; }
  Carries Carry() const override { return {.shapes = true, .names = true, .colours = true, .assembly = true}; }

 protected:
  bool Begins(const FileEnds& ends) const override {
    return IsCard(ends.head.substr(0, ends.head.find_first_of("\r\n")), 'S');
  }
  bool IsFinished(const FileEnds& ends) const override { return IsCard(LastLine(ends.tail), 'T'); }
  std::vector<ImportNote> CheckBody(const std::filesystem::path& path) const override {
    Outline(path).Check();
    return {};
  }
};

}  // namespace

const Format& IgesFormat() {
  static const Iges kFormat;
  return kFormat;
}

}  // namespace qd::workbench

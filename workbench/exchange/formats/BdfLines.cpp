#include "workbench/exchange/formats/BdfLines.h"

#include <algorithm>
#include <sstream>

#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kColumns = 8;  // of a field
constexpr std::size_t kFields = 8;   // of a line, without its labels
constexpr std::size_t kKept = 64;    // more fields than any entry has that is read

bool IsBegin(std::string_view text) {
  return Trimmed(text).starts_with("BEGIN") && text.find("BULK") != std::string_view::npos;
}

/// Tabs go to the next column that begins a field.
std::string WithoutTabs(const std::string& text) {
  std::string plain;
  for (const char letter : text) {
    if (letter != '\t') {
      plain += letter;
    } else {
      plain.append(kColumns - plain.size() % kColumns, ' ');
    }
  }
  return plain;
}

std::vector<std::string> Split(std::string_view text) {
  std::vector<std::string> fields;
  while (true) {
    const std::size_t comma = text.find(',');
    fields.emplace_back(Trimmed(text.substr(0, comma)));
    if (comma == std::string_view::npos) return fields;
    text.remove_prefix(comma + 1);
  }
}

/// Some programs write the places of nodes with blanks between the numbers, whatever the columns.
void SplitPlace(std::string_view columns, std::vector<std::string>& fields) {
  constexpr std::size_t kPlace = 2;  // fields before it
  const auto isCut = [](const std::string& field) { return field.find(' ') != std::string::npos; };
  const auto first = fields.begin() + kPlace;
  if (std::none_of(first, first + 3, isCut)) return;
  std::istringstream in{std::string(columns.substr(kColumns * (1 + kPlace)))};
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  if (words.size() == 3) std::move(words.begin(), words.end(), first);
}

bool IsMark(std::string_view label) {
  return label.starts_with('+') || label.starts_with('*');
}

std::string WithoutMark(std::string_view label) {
  return std::string(Trimmed(IsMark(label) ? label.substr(1) : label));
}

}  // namespace

void BdfCard::Fail(const char* key, std::string_view what) const {
  throw ImportError{key, std::to_string(line) + ": " + std::string(what)};
}

BdfLines::BdfLines(const std::filesystem::path& path, const std::function<void(double)>& progress)
    : m_in(path, progress) {
  std::size_t before = 0;
  FileScan look(path);
  for (std::string text; !m_begun && Text(look, text);) {
    m_begun = IsBegin(text);
    before = look.Line();
    if (Trimmed(text).starts_with("ENDDATA")) break;
  }
  std::string line;
  while (m_begun && before-- > 0) m_in.RawRest(line);
}

bool BdfLines::Text(FileScan& in, std::string& text) {
  while (in.RawRest(text)) {
    text.erase(std::min(text.find('$'), text.size()));
    if (Trimmed(text).empty()) continue;
    text = UpperCase(text);
    return true;
  }
  return false;
}

bool BdfLines::Read(Line& line) {
  std::string text;
  if (m_ended || !Text(m_in, text)) {
    if (m_begun && !m_ended) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    return false;
  }
  if (IsBegin(text)) m_in.Fail("IDS_WB_IMPORT_OUTLINE", Trimmed(text).substr(0, 20));  // a second model
  m_ended = Trimmed(text).starts_with("ENDDATA");
  if (m_ended) return false;
  const bool wasWide = line.isWide;
  line = {};
  const auto setLabel = [&line, wasWide](const std::string& label) {
    line.label = label;
    line.isWide = label.empty() ? wasWide : label.find('*') != std::string::npos;
  };
  if (text.find(',') != std::string::npos) {
    std::vector<std::string> all = Split(text);
    setLabel(all.front());
    const std::size_t room = line.isWide ? kFields / 2 : kFields;
    all.erase(all.begin());
    // Some programs write all fields of an entry in one line.
    const bool isLong =
        all.size() > room + 1 && std::any_of(all.begin() + static_cast<std::ptrdiff_t>(room) + 1, all.end(),
                                             [](const std::string& field) { return !field.empty(); });
    if (isLong ? IsMark(all.back()) : all.size() > room) {
      line.next = isLong ? all.back() : all[room];
      all.resize(isLong ? all.size() - 1 : room);
    }
    if (all.size() < room) all.resize(room);
    line.fields = std::move(all);
  } else {
    const std::string columns = WithoutTabs(text);
    const auto part = [&columns](std::size_t at, std::size_t width) {
      return std::string(at < columns.size() ? Trimmed(std::string_view(columns).substr(at, width)) : "");
    };
    setLabel(part(0, kColumns));
    const std::size_t width = line.isWide ? 2 * kColumns : kColumns;
    constexpr std::size_t kEnd = kColumns * (1 + kFields);
    for (std::size_t at = kColumns; at < kEnd; at += width) line.fields.push_back(part(at, width));
    line.next = part(kEnd, kColumns);
    if (line.label == "GRID") SplitPlace(columns, line.fields);
  }
  line.goesOn = line.label.empty() || IsMark(line.label);
  if (!line.goesOn) {
    line.label.erase(std::min(line.label.find_first_of("* "), line.label.size()));
  }
  // Fields that are to be taken from the entry before.
  if (line.label.starts_with('=')) m_in.Fail("IDS_WB_IMPORT_OUTLINE", Trimmed(text).substr(0, 20));
  return true;
}

bool BdfLines::Next(BdfCard& card) {
  if (!m_hasLine) {
    if (!Read(m_line)) return false;
    m_place = m_in.Line();
    if (m_line.goesOn) m_in.Fail("IDS_WB_IMPORT_OUTLINE", m_line.label);
  }
  card = {m_line.label, m_place, std::move(m_line.fields)};
  std::string expected = WithoutMark(m_line.next);
  while ((m_hasLine = Read(m_line)) && m_line.goesOn) {
    // A line that stands elsewhere than behind the one that it goes on.
    const std::string label = WithoutMark(m_line.label);
    if (!label.empty() && label != expected) m_in.Fail("IDS_WB_IMPORT_OUTLINE", m_line.label);
    expected = WithoutMark(m_line.next);
    for (std::string& field : m_line.fields) {
      if (card.fields.size() < kKept) card.fields.push_back(std::move(field));
    }
  }
  m_place = m_in.Line();
  return true;
}

}  // namespace qd::workbench

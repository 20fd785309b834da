#include "workbench/exchange/formats/BdfCheck.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/exchange/formats/InpLines.h"
#include "workbench/exchange/pipe/NoteCounts.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

/// Elements that are read, with the least and the largest number of their nodes, which stand behind two fields.
struct Known {
  std::size_t least;
  std::size_t most;
};
constexpr std::size_t kBeforeNodes = 2;
const std::map<std::string, Known>& KnownElements() {
  static const std::map<std::string, Known> kKnown{
      {"CROD", {2, 2}},    {"CBAR", {2, 2}},    {"CBEAM", {2, 2}},   {"CTRIA3", {3, 3}},  {"CTRIAR", {3, 3}},
      {"CTRIA6", {3, 6}},  {"CQUAD4", {4, 4}},  {"CQUADR", {4, 4}},  {"CQUAD8", {4, 8}},  {"CQUAD", {4, 9}},
      {"CTETRA", {4, 10}}, {"CPYRAM", {5, 13}}, {"CPYRA5", {5, 13}}, {"CPENTA", {6, 15}}, {"CHEXA", {8, 20}}};
  return kKnown;
}

/// Elements without a shape, and entries that are no elements though their names begin alike.
bool IsPassedOver(const std::string& name, bool& isElement) {
  for (const char* element : {"CELAS", "CBUSH", "CDAMP", "CMASS", "CGAP", "CONROD", "CONM", "CVISC", "CFAST",
                              "CWELD", "CTUBE", "CBEND", "CSHEAR", "CRAC", "CTRIAX", "CQUADX"}) {
    if (name.starts_with(element)) return isElement = true;
  }
  for (const char* other : {"CORD", "CREEP", "CSET", "CBARAO", "CONV", "CHBDY", "CYJOIN", "CYAX", "CYSYM",
                            "CSUPER", "CLOAD", "CSPR", "CASE", "CEND", "CAERO", "CSLOT", "CFLUID", "CONCTL"}) {
    if (name.starts_with(other)) return true;
  }
  return false;
}

/// The fields of a line, without those that only lead to the next one.
std::vector<std::string> FieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  if (line.find(',') != std::string::npos) {
    std::vector<std::string_view> parts;
    InpLines::Fields(line, parts);
    fields.assign(parts.begin(), parts.end());
  } else {
    constexpr std::size_t kName = 8;
    const bool wide = line.substr(0, kName).find('*') != std::string::npos;
    fields.emplace_back(Trimmed(line.substr(0, std::min(kName, line.size()))));
    const std::size_t width = wide ? 2 * kName : kName;
    constexpr std::size_t kEnd = 72;
    for (std::size_t at = kName; at < std::min(line.size(), kEnd); at += width) {
      fields.emplace_back(Trimmed(line.substr(at, width)));
    }
  }
  std::erase_if(fields,
                [&fields](const std::string& field) { return &field != &fields[0] && field.starts_with('+'); });
  return fields;
}

/// One entry, which may go on over several lines.
struct Entry {
  std::string name;
  std::size_t line = 0;
  std::vector<std::string> fields;
};

/// What the library makes of the entries, and what it leaves out without a word.
class Bulk {
 public:
  /// Throws an ImportError for an element that is unknown or lacks nodes, and for a node in a local system, whose
  /// place the library would take for one in the basic system.
  void Add(const Entry& entry) {
    if (entry.name.empty()) return;
    const auto known = KnownElements().find(entry.name);
    if (known != KnownElements().end()) {
      AddElement(entry, known->second);
    } else if (entry.name == "GRID") {
      AddNumber(entry, 0, m_nodes);
      if (IsLocal(entry)) throw ImportError{kLocal, PlaceOf(entry)};
      m_usesDefault = m_usesDefault || SystemOf(entry).empty();
    } else {
      if (entry.name == "GRDSET" && IsLocal(entry)) m_default = PlaceOf(entry);
      bool isElement = false;
      if (entry.name.starts_with('C') && !IsPassedOver(entry.name, isElement)) {
        throw ImportError{"IDS_WB_IMPORT_INP_TYPE", PlaceOf(entry)};
      }
      m_notes.Add(isElement ? "IDS_WB_NOTE_LEFT_OUT" : "IDS_WB_NOTE_SECTIONS", entry.name);
    }
  }

  /// After the last entry. Throws an ImportError when nodes rely on a default system that is a local one.
  std::vector<ImportNote> Notes() {
    if (m_usesDefault && !m_default.empty()) throw ImportError{kLocal, m_default};
    std::sort(m_nodes.begin(), m_nodes.end());
    m_nodes.erase(std::unique(m_nodes.begin(), m_nodes.end()), m_nodes.end());
    std::sort(m_used.begin(), m_used.end());
    std::vector<std::uint64_t> loose;
    std::set_difference(m_nodes.begin(), m_nodes.end(), m_used.begin(), m_used.end(), std::back_inserter(loose));
    for (const std::uint64_t node : loose) m_notes.Add("IDS_WB_NOTE_LOOSE_NODES", std::to_string(node));
    return m_notes.Notes();
  }

 private:
  static constexpr const char* kLocal = "IDS_WB_IMPORT_BDF_SYSTEM";
  /// The system that a node's place is given in; GRDSET has its default in the same field.
  static std::string_view SystemOf(const Entry& entry) {
    return entry.fields.size() > 1 ? std::string_view(entry.fields[1]) : std::string_view();
  }
  static bool IsLocal(const Entry& entry) {
    return SystemOf(entry).find_first_not_of('0') != std::string_view::npos;
  }
  static std::string PlaceOf(const Entry& entry) { return std::to_string(entry.line) + ": " + entry.name; }
  static void AddNumber(const Entry& entry, std::size_t place, std::vector<std::uint64_t>& numbers) {
    if (place >= entry.fields.size()) return;
    const std::string& field = entry.fields[place];
    std::uint64_t number = 0;
    const auto [end, fault] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (fault == std::errc() && end == field.data() + field.size()) numbers.push_back(number);
  }
  void AddElement(const Entry& entry, const Known& known) {
    const auto first =
        entry.fields.begin() + static_cast<std::ptrdiff_t>(std::min(kBeforeNodes, entry.fields.size()));
    const auto given =
        std::count_if(first, entry.fields.end(), [](const std::string& field) { return !field.empty(); });
    if (static_cast<std::size_t>(given) < known.least)
      throw ImportError{"IDS_WB_IMPORT_INP_COUNT", PlaceOf(entry)};
    for (std::size_t i = 0; i < known.most; ++i) AddNumber(entry, kBeforeNodes + i, m_used);
  }

  std::vector<std::uint64_t> m_nodes;
  std::vector<std::uint64_t> m_used;  // by elements
  bool m_usesDefault = false;         // some node names no system
  std::string m_default;              // where a local one is made the default
  NoteCounts m_notes;
};

}  // namespace

std::vector<ImportNote> CheckBdfFile(const std::filesystem::path& path) {
  FileScan in(path);
  Bulk bulk;
  Entry entry;
  bool begun = false;  // bulk data; a file may consist of nothing else
  bool ended = false;
  for (std::string line; !ended && in.RawRest(line);) {
    line.erase(std::min(line.find('$'), line.size()));
    if (Trimmed(line).empty()) continue;
    const std::string upper = UpperCase(line);
    if (upper.find("BEGIN") != std::string::npos && upper.find("BULK") != std::string::npos) {
      begun = true;
      entry = {};
      bulk = {};  // what came before says how to solve
      continue;
    }
    ended = Trimmed(upper).starts_with("ENDDATA");
    std::vector<std::string> fields = FieldsOf(upper);
    std::string& name = fields.front();
    std::erase(name, '*');
    const bool goesOn = name.empty() || name.starts_with('+');
    if (!goesOn) {
      bulk.Add(entry);
      entry = {name, in.Line(), {}};
    }
    entry.fields.insert(entry.fields.end(), fields.begin() + 1, fields.end());
  }
  if (!entry.name.starts_with("ENDDATA")) bulk.Add(entry);
  if (begun && !ended) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  return bulk.Notes();
}

}  // namespace qd::workbench

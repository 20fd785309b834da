#include "workbench/exchange/formats/BdfCheck.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include "workbench/exchange/formats/InpLines.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

/// Elements that are read, with the least number of their nodes and the number of fields before these.
struct Known {
  std::size_t nodes;
  std::size_t before;
};
const std::map<std::string, Known>& KnownElements() {
  static const std::map<std::string, Known> kKnown{
      {"CROD", {2, 2}},   {"CBAR", {2, 2}},   {"CBEAM", {2, 2}},  {"CTRIA3", {3, 2}}, {"CTRIAR", {3, 2}},
      {"CTRIA6", {3, 2}}, {"CQUAD4", {4, 2}}, {"CQUADR", {4, 2}}, {"CQUAD8", {4, 2}}, {"CQUAD", {4, 2}},
      {"CTETRA", {4, 2}}, {"CPYRAM", {5, 2}}, {"CPYRA5", {5, 2}}, {"CPENTA", {6, 2}}, {"CHEXA", {8, 2}}};
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

void CheckEntry(const Entry& entry, std::set<std::string>& leftOut) {
  if (!entry.name.starts_with('C')) return;
  const std::string place = std::to_string(entry.line) + ": " + entry.name;
  const auto known = KnownElements().find(entry.name);
  if (known == KnownElements().end()) {
    bool isElement = false;
    if (!IsPassedOver(entry.name, isElement)) throw ImportError{"IDS_WB_IMPORT_INP_TYPE", place};
    if (isElement) leftOut.insert(entry.name);
    return;
  }
  const auto first =
      entry.fields.begin() + static_cast<std::ptrdiff_t>(std::min(known->second.before, entry.fields.size()));
  const auto given =
      std::count_if(first, entry.fields.end(), [](const std::string& field) { return !field.empty(); });
  if (static_cast<std::size_t>(given) < known->second.nodes) throw ImportError{"IDS_WB_IMPORT_INP_COUNT", place};
}

}  // namespace

std::vector<ImportNote> CheckBdfFile(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::set<std::string> leftOut;
  Entry entry;
  bool begun = false;  // bulk data; a file may consist of nothing else
  bool ended = false;
  std::size_t number = 0;
  for (std::string line; !ended && std::getline(in, line);) {
    ++number;
    line.erase(std::min(line.find('$'), line.size()));
    if (Trimmed(line).empty()) continue;
    const std::string upper = UpperCase(line);
    if (upper.find("BEGIN") != std::string::npos && upper.find("BULK") != std::string::npos) {
      begun = true;
      entry = {};
      continue;
    }
    ended = Trimmed(upper).starts_with("ENDDATA");
    std::vector<std::string> fields = FieldsOf(upper);
    std::string& name = fields.front();
    std::erase(name, '*');
    const bool goesOn = name.empty() || name.starts_with('+');
    if (!goesOn) {
      CheckEntry(entry, leftOut);
      entry = {name, number, {}};
    }
    entry.fields.insert(entry.fields.end(), fields.begin() + 1, fields.end());
  }
  CheckEntry(entry, leftOut);
  if (begun && !ended) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  std::vector<ImportNote> notes;
  notes.reserve(leftOut.size());
  for (const std::string& name : leftOut) notes.push_back({"IDS_WB_NOTE_LEFT_OUT", name});
  return notes;
}

}  // namespace qd::workbench

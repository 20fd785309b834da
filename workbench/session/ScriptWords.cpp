#include "workbench/session/ScriptWords.h"

#include <utility>

#include "workbench/session/PythonText.h"

namespace qd::workbench {

namespace {

MeantLine* s_innermost = nullptr;

}  // namespace

const char* ScriptKindOf(std::uint16_t type) {
  switch (type) {
    case kDataGeom:
      return "part";
    case kDataMset:
      return "mesh_set";
    case kDataGset:
      return "group";
    case kDataMaterial:
      return "material";
    case kDataCord:
      return "coordinate_system";
    default:
      return nullptr;
  }
}

std::string ScriptRecord(iterator itr) {
  return std::string("doc.at(\"") + ScriptKindOf(TypeOf(itr)) + "\", " + std::to_string(NumberOf(itr)) + ")";
}

std::string ScriptRecords(const std::vector<iterator>& records) {
  std::string text;
  for (std::size_t i = 0; i < records.size();) {
    const std::uint16_t type = TypeOf(records[i]);
    std::vector<int> numbers;
    for (; i < records.size() && TypeOf(records[i]) == type; ++i) {
      numbers.push_back(static_cast<int>(NumberOf(records[i])));
    }
    text += text.empty() ? "[" : " + [";
    if (numbers.size() == 1) {
      text += "doc.at(\"" + std::string(ScriptKindOf(type)) + "\", " + std::to_string(numbers.front()) + ")]";
    } else {
      text += "doc.at(\"" + std::string(ScriptKindOf(type)) + "\", n) for n in " + PythonNumbers(numbers) + "]";
    }
  }
  return text.empty() ? "[]" : text;
}

std::string ScriptPoint(const std::array<double, 3>& point) {
  return "(" + PythonNumber(point[0]) + ", " + PythonNumber(point[1]) + ", " + PythonNumber(point[2]) + ")";
}

std::string ScriptRuns(const NumberRuns& runs) {
  std::string text;
  for (const auto& [first, last] : runs) {
    text += (text.empty() ? "\"" : ", ") + std::to_string(first);
    if (last != first) text += "-" + std::to_string(last);
  }
  return text.empty() ? "\"\"" : text + "\"";
}

MeantLine::MeantLine(const WorkDocument& doc, std::string line)
    : m_doc(doc), m_line(std::move(line)), m_outer(std::exchange(s_innermost, this)) {}

MeantLine::~MeantLine() {
  s_innermost = m_outer;
}

std::string MeantLine::Take(const WorkDocument& doc) {
  if (s_innermost == nullptr || &s_innermost->m_doc != &doc) return {};
  return std::exchange(s_innermost->m_line, {});
}

}  // namespace qd::workbench

#include "workbench/session/ScriptSettings.h"

#include <algorithm>
#include <utility>

#include "workbench/session/PythonText.h"
#include "workbench/session/ScriptWords.h"

namespace qd::workbench {

void ScriptSettings::Add(iterator itr, const char* member, std::string value) {
  const auto key = std::make_tuple(TypeOf(itr), std::string(member), std::move(value));
  const auto [place, isNew] = m_numbers.try_emplace(key);
  if (isNew) m_order.push_back(key);
  place->second.push_back(static_cast<int>(NumberOf(itr)));
}

std::vector<std::string> ScriptSettings::Take() {
  std::vector<std::string> lines;
  for (const Key& key : m_order) {
    std::vector<int>& numbers = m_numbers.at(key);
    std::sort(numbers.begin(), numbers.end());
    const auto& [type, member, value] = key;
    const bool one = numbers.size() == 1;
    std::string line;
    if (!one) line.append("for n in ").append(PythonNumbers(numbers)).append(":\n    ");
    line.append("doc.at(\"").append(ScriptKindOf(type)).append("\", ");
    line.append(one ? std::to_string(numbers.front()) : "n").append(").").append(member).append(" = ");
    lines.push_back(line.append(value));
  }
  return lines;
}

std::string SortedRecords(std::vector<iterator> records) {
  std::sort(records.begin(), records.end());
  records.erase(std::unique(records.begin(), records.end()), records.end());
  return ScriptRecords(records);
}

}  // namespace qd::workbench

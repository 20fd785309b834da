#include "workbench/exchange/formats/InpInstances.h"

#include "workbench/text/Ascii.h"

namespace qd::workbench {

bool InpInstances::Add(InpInstance instance) {
  if (Find(instance.name) != nullptr) return false;
  m_all.push_back(std::move(instance));
  m_lengths.insert(m_all.back().name.size());
  m_of[UpperCase(m_all.back().name)] = &m_all.back();
  return true;
}

const InpInstance* InpInstances::Find(std::string_view name) const {
  if (m_of.empty()) return nullptr;
  const auto found = m_of.find(UpperCase(name));
  return found != m_of.end() ? found->second : nullptr;
}

std::string InpInstances::NameOutside(
    const std::string& name, const std::function<bool(const std::string&)>& isTaken,
    const std::function<bool(const InpInstance&, const std::string&)>& isIn) const {
  std::string unique = name;
  for (int number = 2;; ++number) {
    const auto [instance, rest] = Split(unique);
    const bool isInside = instance != nullptr && isIn(*instance, rest);
    if (!isInside && (unique == name || !isTaken(unique))) return unique;
    unique = name + "-" + std::to_string(number);
  }
}

std::pair<const InpInstance*, std::string> InpInstances::Split(std::string_view given) const {
  if (m_of.empty() || given.find('.') == std::string_view::npos) return {};
  std::string field(given);
  std::erase(field, '"');
  // Names may hold dots themselves, and a field any number of them.
  for (const std::size_t dot : m_lengths) {
    if (dot >= field.size()) break;
    if (field[dot] != '.') continue;
    if (const InpInstance* instance = Find(field.substr(0, dot))) return {instance, field.substr(dot + 1)};
  }
  return {};
}

}  // namespace qd::workbench

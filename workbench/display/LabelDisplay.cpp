#include "workbench/display/LabelDisplay.h"

#include <algorithm>

#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

int LabelDisplay::IsShown(std::int32_t id) const {
  return m_hidden.Contains(static_cast<std::uint32_t>(id)) ? 0 : 1;
}

void LabelDisplay::Put(std::int32_t id, bool show) {
  if ((IsShown(id) != 0) == show) return;
  const auto number = static_cast<std::uint32_t>(id);
  if (show) {
    m_hidden.Erase(number);
  } else {
    m_hidden.Assign(number, 1);
  }
  if (DisplayChange* change = m_log.Recorded()) change->labels.push_back({number, !show, show});
  m_log.Noted().labels.push_back(id);
}

std::vector<std::int32_t> LabelDisplay::Hidden() const {
  std::vector<std::int32_t> hidden;
  m_hidden.ForEach(
      [&hidden](std::uint64_t id, std::uint64_t) { hidden.push_back(static_cast<std::int32_t>(id)); });
  std::sort(hidden.begin(), hidden.end());
  return hidden;
}

int LabelDisplay::GetShowHide(int kind, std::int32_t id) {
  return kind == kLabelCord ? IsShown(id) : 0;
}

void LabelDisplay::SetShowHide(int show, int kind, std::int32_t id) {
  if (kind == kLabelCord) Put(id, show != 0);
}

}  // namespace qd::workbench

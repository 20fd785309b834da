#include "workbench/display/BoxDisplay.h"

#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

namespace {
constexpr int kChecked = 3;
}

int BoxDisplay::GetBox(const RowBox& box) const {
  const auto known = m_states.find(box);
  return known != m_states.end() ? known->second : kChecked;
}

void BoxDisplay::SetBox(const RowBox& box, int state) {
  const int before = GetBox(box);
  if (before == state) return;
  if (state == kChecked) {
    m_states.erase(box);
  } else {
    m_states[box] = state;
  }
  if (DisplayChange* change = m_log.Recorded()) change->boxes.push_back({box, before, state});
  m_log.Noted().boxes.push_back(box);
}

void BoxDisplay::PutStates(const std::map<RowBox, int>& states) {
  const std::map<RowBox, int> now = m_states;
  for (const auto& [box, state] : now) {
    if (!states.contains(box)) SetBox(box, kChecked);
  }
  for (const auto& [box, state] : states) SetBox(box, state);
}

}  // namespace qd::workbench

#include "workbench/display/DisplayLog.h"

#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

DisplayLog::DisplayLog(Display& display) : m_display(display) {}

DisplayLog::~DisplayLog() = default;

DisplayNotice& DisplayLog::Noted() {
  if (!std::exchange(m_anything, true) && m_onFirst) m_onFirst();
  return m_noted;
}

DisplayChange* DisplayLog::Recorded() {
  if (m_unrecorded > 0) return nullptr;
  if (m_recorded == nullptr) m_recorded = std::make_unique<DisplayChange>(m_display);
  return m_recorded.get();
}

std::pair<DisplayNotice, std::unique_ptr<DisplayChange>> DisplayLog::Take() {
  m_anything = false;
  return {std::exchange(m_noted, {}), std::move(m_recorded)};
}

}  // namespace qd::workbench

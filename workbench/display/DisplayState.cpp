#include "workbench/display/DisplayState.h"

#include <utility>

namespace qd::workbench {

void DisplayState::MarkDirty() {
  if (std::exchange(m_dirty, true)) return;
  if (m_onDirty) m_onDirty();
}

bool DisplayState::TakeDirty() {
  return std::exchange(m_dirty, false);
}

const DisplayState::CadItem& DisplayState::GetCadItem(int cadItem) const {
  static const CadItem kAsMade;
  const auto index = static_cast<std::size_t>(cadItem);
  return cadItem >= 0 && index < m_items.size() ? m_items[index] : kAsMade;
}

DisplayState::CadItem& DisplayState::Need(int cadItem) {
  const auto index = static_cast<std::size_t>(cadItem < 0 ? 0 : cadItem);
  if (index >= m_items.size()) m_items.resize(index + 1);
  return m_items[index];
}

void DisplayState::SetShowHide(int cadItem, int show) {
  Need(cadItem).shown = show != 0;
  MarkDirty();
}

void DisplayState::SetMeshMark(int cadItem, int present) {
  Need(cadItem).meshed = present != 0;
  MarkDirty();
}

void DisplayState::ShowHideMset(iterator mset, int show) {
  if (show != 0) {
    m_hiddenMsets.erase(mset);
  } else {
    m_hiddenMsets.insert(mset);
  }
  MarkDirty();
}

}  // namespace qd::workbench

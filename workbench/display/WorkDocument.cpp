#include "workbench/display/WorkDocument.h"

#include <utility>

namespace qd::workbench {

void WorkDocument::SetSelectBuffer(std::vector<iterator> itrs) {
  m_selection = std::move(itrs);
  m_display.MarkDirty();
}

void WorkDocument::ClearSelectBuffer(int notify) {
  if (m_selection.empty()) return;
  m_selection.clear();
  m_display.MarkDirty();
  if (notify != 0 && m_onSelection) m_onSelection();
}

void WorkDocument::AddToSelBuffer(iterator itr) {
  m_selection.push_back(itr);
  m_display.MarkDirty();
}

}  // namespace qd::workbench

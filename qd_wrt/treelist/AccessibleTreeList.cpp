#include "qd_wrt/treelist/AccessibleTreeList.h"

#include "qd_wrt/treelist/CTreeListCtrl.h"
#include "qd_wrt/treelist/RowRecord.h"

namespace qd {

bool AccessibleTreeList::IsLive(HTREEITEM row) const {
  return m_tree.IsLive(row);
}

// Rows that a filter hides are not there.

int AccessibleTreeList::ChildCount(HTREEITEM row) const {
  return m_tree.GetShownChildCount(row);
}

HTREEITEM AccessibleTreeList::Child(HTREEITEM row, int index) const {
  if (index < 0 || index >= ChildCount(row)) return {};
  HTREEITEM child;
  int at = 0;
  const bool fromHint = m_hint.revision == m_tree.Revision() && m_tree.IsLive(m_hint.row) &&
                        m_tree.GetParentItem(m_hint.row) == row && m_hint.index <= index * 2;
  if (fromHint) {
    child = m_hint.row;
    at = m_hint.index;
  } else {
    child = m_tree.GetFirstShownChild(row);
  }
  for (; at < index; ++at) child = m_tree.GetNextShownSibling(child);
  for (; at > index; --at) child = m_tree.GetPrevShownSibling(child);
  m_hint = {child, index, m_tree.Revision()};
  return child;
}

HTREEITEM AccessibleTreeList::Parent(HTREEITEM row) const {
  return m_tree.GetParentItem(row);
}

int AccessibleTreeList::IndexInParent(HTREEITEM row) const {
  int steps = 0;
  const bool hinted = m_hint.revision == m_tree.Revision();
  for (HTREEITEM at = row;; ++steps) {
    if (hinted && at == m_hint.row) {
      steps += m_hint.index;
      break;
    }
    at = m_tree.GetPrevShownSibling(at);
    if (!at) break;
  }
  m_hint = {row, steps, m_tree.Revision()};
  return steps;
}

CString AccessibleTreeList::Name(HTREEITEM row) const {
  CString name = m_tree.GetItemText(row, 0);
  CString key = m_tree.GetItemText(row, 1);
  key.erase(key.find_last_not_of(L' ') + 1);  // padded to a width
  if (!key.empty()) name += L", " + key;
  const CTLItem* record = m_tree.GetRecord(row);
  if (record != nullptr && record->IsBold() && !m_tree.GetBoldMeaning().empty()) {
    name += L", " + m_tree.GetBoldMeaning();
  }
  const std::weak_ptr<void> life = m_tree.Life();
  for (const int column : m_tree.GetColumns().ShownAsked()) {
    const CHeaderBase::Item* caption = m_tree.GetHeader().GetItem(column);
    if (caption == nullptr) continue;
    const CString title = caption->text;
    const CString text = m_tree.GetCell(row, column).text;
    if (life.expired()) return name;
    if (text.empty()) continue;
    name += L", ";
    if (!title.empty()) name.append(title).append(L" ");
    name += text;
  }
  return name;
}

CRect AccessibleTreeList::ScreenPlace(HTREEITEM row) const {
  CRect place;
  if (!m_tree.GetItemRect(row, place, false)) return {};
  const CRect client = m_tree.GetClientRect();
  if (place.bottom <= client.top || place.top >= client.bottom) return {};
  const CPoint origin = m_tree.ClientToScreen({});
  return place.Moved(origin.x, origin.y);
}

HTREEITEM AccessibleTreeList::RowAtScreen(CPoint screen) const {
  const CPoint point = m_tree.ScreenToClient(screen);
  unsigned flags = 0;
  return m_tree.GetClientRect().Contains(point) ? m_tree.HitTest(point, flags) : HTREEITEM{};
}

bool AccessibleTreeList::IsExpandable(HTREEITEM row) const {
  return m_tree.CanOpen(row);
}

bool AccessibleTreeList::IsExpanded(HTREEITEM row) const {
  return m_tree.IsExpanded(row);
}

bool AccessibleTreeList::IsShown(HTREEITEM row) const {
  CRect place;
  return m_tree.GetItemRect(row, place, false);
}

bool AccessibleTreeList::IsSelected(HTREEITEM row) const {
  return m_tree.IsSelected(row);
}

bool AccessibleTreeList::IsFocused(HTREEITEM row) const {
  return m_tree.HasFocus() && m_tree.GetFocusedItem() == row;
}

bool AccessibleTreeList::IsCheckable(HTREEITEM row) const {
  return m_tree.WhichCheck(row) != 0;
}

bool AccessibleTreeList::IsChecked(HTREEITEM row) const {
  return m_tree.WhichCheck(row) == static_cast<int>(kCheckedImage);
}

void AccessibleTreeList::Toggle(HTREEITEM row) const {
  m_tree.Expand(row, ExpandAction::Toggle);
}

void AccessibleTreeList::PressCheck(HTREEITEM row) const {
  if (IsCheckable(row)) m_tree.Post(CTreeListCtrl::kCheckMessage, row.value);
}

void AccessibleTreeList::Select(HTREEITEM row) const {
  m_tree.SelectAlone(row);
}

}  // namespace qd

#include "qd_wrt/treelist/AccessibleTreeList.h"

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {
constexpr int kCheckedImage = 3;
}

bool AccessibleTreeList::IsLive(HTREEITEM row) const {
  return m_tree.IsLive(row);
}

int AccessibleTreeList::ChildCount(HTREEITEM row) const {
  return m_tree.GetChildCount(row);
}

HTREEITEM AccessibleTreeList::Child(HTREEITEM row, int index) const {
  if (index < 0 || index >= ChildCount(row)) return {};
  HTREEITEM child = m_tree.GetChildItem(row);
  int at = 0;
  const bool fromHint = m_hint.revision == m_tree.Revision() && m_tree.IsLive(m_hint.row) &&
                        m_tree.GetParentItem(m_hint.row) == row && m_hint.index <= index * 2;
  if (fromHint) {
    child = m_hint.row;
    at = m_hint.index;
  }
  for (; at < index; ++at) child = m_tree.GetNextSiblingItem(child);
  for (; at > index; --at) child = m_tree.GetPrevSiblingItem(child);
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
    at = m_tree.GetPrevSiblingItem(at);
    if (!at) break;
  }
  m_hint = {row, steps, m_tree.Revision()};
  return steps;
}

CString AccessibleTreeList::Name(HTREEITEM row) const {
  CString name = m_tree.GetItemText(row, 0);
  CString key = m_tree.GetItemText(row, 1);
  key.erase(key.find_last_not_of(L' ') + 1);  // padded to a width
  return key.empty() ? name : name + L", " + key;
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
  return m_tree.ItemHasChildren(row);
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
  return m_tree.WhichCheck(row) == kCheckedImage;
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

// Titles edited in place.

#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

void CQDTreeListCtrl::OnChangeTitle() {
  const HTREEITEM row = GetFirstSelectedItem();
  if (!row) return;
  SetSelectedItem(row);
  ShowEdit(row);
  CQDTreeItem* node = NodeOf(row);
  if (node != nullptr) node->m_editing = IsEditing() != 0;
}

/// The Escape key takes the edit back; a click elsewhere keeps it, as Enter and Tab do.
void CQDTreeListCtrl::OnEditChange(HTREEITEM row, int column, const CString& text, int escape) {
  CQDTreeItem* node = NodeOf(row);
  if (node == nullptr) return;
  node->m_editing = false;
  if (escape != 0 && GetEditBox() != nullptr && GetEditBox()->IsEscapeKey()) return;
  const CString title = text.substr(0, text.find(L'\0'));
  if (title == GetItemText(row, column)) return;
  const Handler handler(*this);
  SetTextOf(row, column, title);
  node->OnEditChange(title.c_str());
}

}  // namespace qd

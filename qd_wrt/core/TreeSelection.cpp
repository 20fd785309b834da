// Selection, check clicks and keys of the works tree.

#include <algorithm>
#include <utility>

#include "host/CGeomPrevShowHideStarter.h"
#include "host/Dialogs.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/ViewUpdate.h"

namespace qd {

int CQDTreeListCtrl::GetSelectedTreeItems(std::vector<CQDTreeItem*>& nodes, int) const {
  nodes.clear();
  for (const HTREEITEM row : GetSelectedItems()) {
    if (CQDTreeItem* node = NodeOf(row)) nodes.push_back(node);
  }
  return static_cast<int>(nodes.size());
}

int CQDTreeListCtrl::GetSelectedTreeItems(HTREEITEM row, std::vector<CQDTreeItem*>& nodes) const {
  nodes.clear();
  if (!IsLive(row)) return 0;
  for (const HTREEITEM below : Rows().SelectedBelow(row)) {
    if (CQDTreeItem* node = NodeOf(below)) nodes.push_back(node);
  }
  return static_cast<int>(nodes.size());
}

void CQDTreeListCtrl::SelectCTItem(CQDTreeItem* node) {
  ClearAllSelected();
  EnsureVisible(node->GetTreeItemHandle());
  SelectItem(node->GetTreeItemHandle());
  OnSelchangAction();
}

void CQDTreeListCtrl::ResetSelection(int) {
  if (GetSelectedRowCount() == 0) return;
  ClearAllSelected();
  if (!m_switchingBoxes) TellSelected();
}

void CQDTreeListCtrl::OnSelchangAction() {
  if (m_selectingRows) return;
  const Handler handler(*this);
  const std::weak_ptr<void> life = Life();  // the host may close the pane when it hears of this
  std::vector<CQDTreeItem*> nodes = NodesToTell();
  ApplyChangedSelection(nodes);
  if (life.expired()) return;
  std::erase_if(nodes, [](const CQDTreeItem* node) { return node->IsDetached(); });
  const bool several = nodes.size() > 1 || (m_onSelectionChanged && GetSelectedCount() > 1);
  if (nodes.size() == 1 && !several) {
    nodes.front()->SetPropertyView();
  } else if (!nodes.empty()) {
    nodes.front()->SetMultiPropertyView();
  }
  if (life.expired()) return;
  if (m_onSelectionChanged) m_onSelectionChanged();
  if (!life.expired() && m_onSelected) m_onSelected(nodes);
}

/// The nodes of what is selected, or only the first where nobody wants more of them.
std::vector<CQDTreeItem*> CQDTreeListCtrl::NodesToTell() const {
  std::vector<CQDTreeItem*> nodes;
  if (!m_onSelectionChanged || m_onSelected) {
    GetSelectedTreeItems(nodes, 0);
  } else if (CQDTreeItem* first = NodeOf(GetFirstSelectedItem())) {
    nodes.push_back(first);
  }
  return nodes;
}

void CQDTreeListCtrl::TellSelected() {
  const std::weak_ptr<void> life = Life();
  if (m_onSelectionChanged) m_onSelectionChanged();
  if (life.expired()) return;
  if (!m_onSelected) return;
  std::vector<CQDTreeItem*> nodes;
  GetSelectedTreeItems(nodes, 0);
  m_onSelected(nodes);
}

void CQDTreeListCtrl::ApplyChangedSelection(std::vector<CQDTreeItem*>& nodes) {
  if (m_doc == nullptr) return;
  const Raised filling(*this, m_fillingBuffer);
  m_doc->ClearSelectBuffer(0);
  for (const CQDTreeItem* node : nodes) {
    // The host may have deleted some when its buffer was emptied.
    const iterator itr = !node->IsDetached() ? node->GetIterator() : 0;
    if (itr != 0) m_doc->AddToSelBuffer(itr);
  }
  if (CQDViewBase* view = m_doc->GetActiveView()) view->Redraw(0);
}

void CQDTreeListCtrl::SetSelection(int kind, const TArray<iterator>& itrs) {
  SelectRows(kind, itrs, true);
  if (m_doc != nullptr) RefreshProperties();
}

void CQDTreeListCtrl::ShowSelection(const TArray<iterator>& itrs, bool inSight) {
  constexpr int kAnyKind = 0;
  SelectRows(kAnyKind, itrs, inSight);
}

void CQDTreeListCtrl::SelectRows(int kind, const TArray<iterator>& itrs, bool inSight) {
  // A filter shows what is picked; of very many rows nothing would be left of it.
  constexpr std::size_t kMostShown = 100;
  const Raised selecting(*this, m_selectingRows);
  ClearAllSelected();
  HTREEITEM first;
  for (const iterator itr : itrs) {
    const CQDTreeItem* node = NodeOfRecord(kind, itr);
    if (node == nullptr || !IsLive(node->GetTreeItemHandle())) continue;
    if (Rows().IsFilteredOut(node->GetTreeItemHandle())) {
      if (itrs.size() > kMostShown) continue;
      ShowFilteredOut(node->GetTreeItemHandle());
    }
    SetRowState(node->GetTreeItemHandle(), kRowSelected, kRowSelected);
    if (!first) first = node->GetTreeItemHandle();
  }
  if (first && inSight) EnsureVisible(first);
}

/// A host that answers the emptying of its buffer with this must not empty the selection that fills it.
void CQDTreeListCtrl::SelectFromBuffer(int kind) {
  if (m_doc != nullptr && !m_fillingBuffer) SetSelection(kind, m_doc->GetSelectBuffer());
}

void CQDTreeListCtrl::OnSwatchClick(HTREEITEM row) {
  const CQDTreeItem* node = NodeOf(row);
  const iterator itr = node != nullptr ? node->GetIterator() : 0;
  if (itr != 0) IQDCmdDialog::DoModeless(m_doc, L"CQDCmdColorDlg", &itr, nullptr);
}

// ---- clicks and keys ------------------------------------------------------------------------------------

std::intptr_t CQDTreeListCtrl::OnReflectedNotice(Notice& notice) {
  const bool drag = notice.code == kNoticeBeginDrag || notice.code == kNoticeBeginRightDrag;
  if (!drag && notice.code != kNoticeClick && notice.code != kNoticeRightClick) {
    return CTreeListCtrl::OnReflectedNotice(notice);
  }
  // A press that becomes a drag has selected too, but sends no click.
  const std::weak_ptr<void> life = Life();
  OnSelchangAction();
  if (!life.expired() && drag) {
    OnBeginDrag(notice.code == kNoticeBeginDrag ? DragButton::Left : DragButton::Right);
  }
  return 0;
}

void CQDTreeListCtrl::OnKeyDown(int key, unsigned flags) {
  const std::weak_ptr<void> life = Life();
  CTreeListCtrl::OnKeyDown(key, flags);
  if (life.expired()) return;
  if (key == kKeyF2) return RenameSelected();
  const bool control = (flags & kMouseControl) != 0;
  if (key == kKeySpace && !control && !IsTypingTitle()) return PressCheckOfSelection();
  if (IsSelectionKey(key, flags)) OnSelchangAction();
}

/// What a click on the box of the caret's row does, but the selection stays for the next key.
void CQDTreeListCtrl::PressCheckOfSelection() {
  const HTREEITEM caret = GetCaret();
  HTREEITEM row = caret && (IsSelected(caret) || !IsAnySelected()) ? caret : GetFirstSelectedItem();
  for (; row && WhichCheck(row) == 0; row = GetNextSelectedItem(row)) {
  }
  if (!row) return;
  const std::vector<HTREEITEM> selected = GetSelectedItems();
  const std::weak_ptr<void> life = Life();
  const bool hadPage = HasPropertyPage();
  OnTvCheckbox(row);
  if (life.expired()) return;
  for (const HTREEITEM again : selected) {
    if (IsLive(again)) SetRowState(again, kRowSelected, kRowSelected);
  }
  TellSelected();
  // Nothing was selected for a moment, and a host may have taken the page away with it.
  if (!life.expired() && hadPage && !HasPropertyPage()) RefreshProperties();
}

void CQDTreeListCtrl::OnPosted(unsigned id, std::uint64_t parameter) {
  if (id != kCheckMessage) return CTreeListCtrl::OnPosted(id, parameter);
  const std::weak_ptr<void> life = Life();
  OnTvCheckbox(HTREEITEM{parameter});
  if (!life.expired()) TellSelected();
}

/// Every selected box takes the opposite of the clicked box's state.
void CQDTreeListCtrl::OnTvCheckbox(HTREEITEM row) {
  CQDTreeItem* clicked = NodeOf(row);
  if (clicked == nullptr) return;
  const Handler handler(*this);
  const std::weak_ptr<void> life = Life();  // a box may close the pane
  EndEditors();
  if (life.expired() || clicked->IsDetached()) return;
  {
    const Raised switching(*this, m_switchingBoxes);  // what is selected is told when all are switched
    const CGeomPrevShowHideStarter batch(m_doc != nullptr ? m_doc->GetCADSession() : nullptr);
    if (!IsSelected(row)) {
      ClearAllSelected();
      SetRowState(row, kRowSelected, kRowSelected);
    }
    const int oldState = WhichCheck(row);
    // Handlers reset the selection in the middle, so the nodes are taken down first.
    std::vector<CQDTreeItem*> nodes;
    GetSelectedTreeItems(nodes, 0);
    const LastRedraws redraws(nodes);
    for (CQDTreeItem* node : nodes) {
      if (node->IsDetached() || !node->HasCheck()) continue;
      redraws.SayTo(*node);
      const int goesOn = node->OnClickCheck(oldState);
      if (life.expired()) return;
      if (goesOn == 0) break;
    }
  }
  ClearAllSelected();
  CQDViewBase* view = m_doc != nullptr ? m_doc->GetActiveView() : nullptr;
  if (view != nullptr) view->Redraw(0);
}

}  // namespace qd

#include "qd_wrt/treelist/EditSession.h"

#include <algorithm>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

constexpr int kEditorId = 1;
constexpr int kListInset = 2;

}  // namespace

HTREEITEM EditSession::GetRow() const {
  if (m_edit != nullptr) return m_edit->GetItem();
  return m_combo != nullptr ? m_combo->GetItem() : HTREEITEM{};
}

void EditSession::OpenEditBox(EditedCell cell, const CRect& place) {
  m_edit = std::make_unique<CTreeListEditBox>(m_tree, std::move(cell));
  m_edit->Create(&m_tree, kEditorId, place);
}

void EditSession::OpenComboBox(EditedCell cell, CRect place) {
  constexpr int kListHeight = 98;
  place.bottom = place.top + kListHeight;
  place.top += kListInset;
  m_combo = std::make_unique<CTreeListComboBox>(m_tree, std::move(cell));
  m_combo->Create(&m_tree, kEditorId, place);
}

void EditSession::MoveTo(CRect place) {
  CWnd* editor = m_edit.get();
  if (m_combo != nullptr) {
    place.top += kListInset;
    if (editor == nullptr) editor = m_combo.get();
  }
  if (editor == nullptr) return;
  const CRect& now = editor->GetPlace();
  editor->MoveWindow(
      {place.left, place.top, place.left + std::max(now.Width(), place.Width()), place.top + now.Height()});
}

void EditSession::EndEditors() {
  const std::weak_ptr<void> life = m_tree.Life();
  if (m_edit != nullptr) m_edit->LoseFocus();
  if (life.expired()) return;
  if (m_combo != nullptr) m_combo->LoseFocus();
  if (!life.expired()) DeleteBoxes();
}

void EditSession::DeleteBoxes() {
  if (m_edit != nullptr) m_edit->Discard();
  if (m_combo != nullptr) m_combo->Discard();
  CloseBox(std::exchange(m_edit, nullptr));
  CloseBox(std::exchange(m_combo, nullptr));
}

/// The object may be in the middle of one of its own handlers, so it is freed by a message of its own.
void EditSession::CloseBox(std::unique_ptr<CWnd> box) {
  if (box == nullptr) return;
  const bool hadFocus = box->HasFocus();
  box->DestroyWindow();
  m_closedBoxes.push_back(std::move(box));
  m_tree.Post(kFreeMessage, 0);
  if (hadFocus) m_tree.SetFocus();
}

}  // namespace qd

// In-place editing of the tree-list control.

#include <algorithm>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

constexpr int kEditorId = 1;
constexpr int kLeastEditorWidth = 40;
constexpr int kListInset = 2;
constexpr int kStripTop = 2;
constexpr int kStripBottom = 4;

}  // namespace

// ---- opening --------------------------------------------------------------------------------------------

void CTreeListCtrl::ShowEdit(HTREEITEM row) {
  EndEditors();
  const CTLItem* asked = GetRecord(row);
  if (asked == nullptr || (!asked->IsEditable() && !asked->HasCombo())) return;
  const HTREEITEM edited = GetSelectedItemField();
  const CTLItem* record = GetRecord(edited);
  if (record == nullptr || m_columnCount == 0 || !record->IsEditable()) return;
  EnsureVisible(edited);
  OpenEdit(edited);
}

void CTreeListCtrl::ShowEditComboBoxes(CPoint point) {
  EndEditors();
  const HTREEITEM edited = GetSelectedItemField();
  const CTLItem* record = GetRecord(edited);
  if (record == nullptr || m_columnCount == 0) return;
  if (!CRect{0, kStripTop, GetColumnWidth(0), kStripBottom}.Contains(point)) return;
  CRect place;
  if (!GetEditorPlace(edited, place)) return;
  if (record->IsEditable()) {
    OpenEdit(edited);
  } else if (record->HasCombo()) {
    constexpr int kListHeight = 98;
    place.bottom = place.top + kListHeight;
    place.top += kListInset;
    m_combo = std::make_unique<CTreeListComboBox>(*this, EditedCell{edited, 0, record->GetItemText()});
    m_combo->Create(this, kEditorId, place);
  }
}

void CTreeListCtrl::OpenEdit(HTREEITEM row) {
  CRect place;
  if (!GetEditorPlace(row, place)) return;
  m_edit = std::make_unique<CTreeListEditBox>(*this, EditedCell{row, 0, GetItemText(row, 0)});
  m_edit->Create(this, kEditorId, place);
}

/// Where the editor of a row's title stands; false for a hidden row.
bool CTreeListCtrl::GetEditorPlace(HTREEITEM row, CRect& place) const {
  if (!GetItemRect(row, place, true)) return false;
  const int clientRight = GetClientRect().right;
  place.right = GetColumnWidth(0) + m_offset;
  place.left = std::clamp(place.left + m_offset, 0, std::max(clientRight - kLeastEditorWidth, 0));
  place.right = std::max(std::min(place.right, std::max(clientRight, 0)), place.left + kLeastEditorWidth);
  return true;
}

// ---- while editing --------------------------------------------------------------------------------------

/// Rows have moved: the edit box goes with its row, or closes silently when the row is gone or hidden.
void CTreeListCtrl::PlaceEditors() {
  const HTREEITEM row = m_edit != nullptr    ? m_edit->GetItem()
                        : m_combo != nullptr ? m_combo->GetItem()
                                             : HTREEITEM{};
  if (!row) return;
  CRect place;
  if (!GetEditorPlace(row, place)) return DeleteBoxes();
  if (m_combo != nullptr) place.top += kListInset;
  CWnd& editor = m_edit != nullptr ? static_cast<CWnd&>(*m_edit) : *m_combo;
  const CRect& now = editor.GetPlace();
  editor.MoveWindow(
      {place.left, place.top, place.left + std::max(now.Width(), place.Width()), place.top + now.Height()});
}

// ---- ending ---------------------------------------------------------------------------------------------

void CTreeListCtrl::EndEditors() {
  const std::weak_ptr<void> life = Life();
  if (m_edit != nullptr) m_edit->LoseFocus();
  if (life.expired()) return;
  if (m_combo != nullptr) m_combo->LoseFocus();
  if (!life.expired()) DeleteBoxes();
}

void CTreeListCtrl::DeleteBoxes() {
  if (m_edit != nullptr) m_edit->Discard();
  if (m_combo != nullptr) m_combo->Discard();
  CloseBox(std::exchange(m_edit, nullptr));
  CloseBox(std::exchange(m_combo, nullptr));
}

/// The object may be in the middle of one of its own handlers, so it is freed by a message of its own.
void CTreeListCtrl::CloseBox(std::unique_ptr<CWnd> box) {
  if (box == nullptr) return;
  const bool hadFocus = box->HasFocus();
  box->DestroyWindow();
  m_closedBoxes.push_back(std::move(box));
  Post(kFreeBoxesMessage, 0);
  if (hadFocus) SetFocus();
}

void CTreeListCtrl::TellEditEnd(int code, int column, const CString& text) {
  EditNotice notice;
  notice.code = code;
  notice.subItem = column;
  notice.text = &text;
  SendEmulated(notice);
}

std::intptr_t CTreeListCtrl::OnReflectedNotice(Notice& notice) {
  std::intptr_t result = 0;
  if (notice.code == kNoticeEndLabelEdit) OnEndlabeledit(static_cast<EditNotice&>(notice), result);
  if (notice.code == kNoticeEndComboEdit) OnEndComboedit(static_cast<EditNotice&>(notice), result);
  return result;
}

void CTreeListCtrl::OnEndlabeledit(const EditNotice& notice, std::intptr_t& result) {
  result = 0;
  if (m_edit == nullptr) return;
  const HTREEITEM row = m_edit->GetItem();
  const std::weak_ptr<void> life = Life();
  const bool escape = m_edit->IsEscape();
  // The box lives while an escaped edit is told, so that its reason can be asked for.
  if (escape) OnEditChange(row, notice.subItem, notice.text != nullptr ? *notice.text : CString(), 1);
  if (life.expired()) return;
  CloseBox(std::exchange(m_edit, nullptr));
  if (!escape && notice.text != nullptr) OnEditChange(row, notice.subItem, *notice.text, 0);
}

void CTreeListCtrl::OnEndComboedit(const EditNotice& notice, std::intptr_t& result) {
  result = 0;
  if (m_combo == nullptr) return;
  const HTREEITEM row = m_combo->GetItem();
  CloseBox(std::exchange(m_combo, nullptr));
  if (notice.text == nullptr) return;
  SetItemText(row, notice.subItem, *notice.text);
  if (IsLive(row)) InvalidateRow(row);
}

void CTreeListCtrl::OnEditChange(HTREEITEM, int, const CString&, int) {}

}  // namespace qd

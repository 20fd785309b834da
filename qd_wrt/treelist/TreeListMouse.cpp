// Mouse handling of the tree-list control: presses on rows, clicks, the tool tip.

#include <cstdlib>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

HTREEITEM CTreeListCtrl::HitTestContent(CPoint point, unsigned& flags) const {
  return HitTest({point.x - m_offset, point.y}, flags);
}

void CTreeListCtrl::OnLButtonDown(unsigned flags, CPoint point) {
  DismissTip();
  EndTyping();
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  m_pressedRow = row;
  m_pressedAt = point;
  if (row && hit == kHitStateIcon) {
    Post(kCheckMessage, row.value);
    return;
  }
  if (!m_multiSelect) {
    if (row) Expand(row, ExpandAction::Toggle);
    return;
  }
  OnButtonDown(Button::Left, flags, point);
}

void CTreeListCtrl::OnRButtonDown(unsigned flags, CPoint point) {
  DismissTip();
  EndTyping();
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  m_selectedItem = row;
  if (m_multiSelect && hit != kHitButton) OnButtonDown(Button::Right, flags, point);
}

void CTreeListCtrl::OnButtonDown(Button button, unsigned flags, CPoint point) {
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  if (row && hit == kHitButton) {
    const bool all = (flags & (kMouseShift | kMouseAlt)) != 0;
    const std::weak_ptr<void> life = Life();
    all ? ExpandBelow(row, ExpandAction::Toggle) : static_cast<void>(Expand(row, ExpandAction::Toggle));
    if (!life.expired()) ResetVertScrollBar();
    return;
  }
  if (!row || (hit & (kHitNowhere | kHitIndent)) != 0) return DoBanding(button, flags, point);
  // Without a caret there is nothing that Shift and Ctrl could refer to.
  if (!GetCaret()) flags &= ~static_cast<unsigned>(kMouseShift | kMouseControl);
  DoPreSelection(row, button, flags);
  DoAction(row, button, flags, point);
}

void CTreeListCtrl::DoPreSelection(HTREEITEM row, Button button, unsigned flags) {
  const bool shift = (flags & kMouseShift) != 0;
  const bool control = (flags & kMouseControl) != 0;
  if (button == Button::Left) {
    if (shift) return ShiftPress(row, flags);
    m_anchor = {};
    if (control) return;  // the row is toggled on release
    if (!IsSelected(row)) SelectAllIgnore(0, row);
    SetItemState(row, kRowSelected | kRowFocused, kRowSelected | kRowFocused);
    return;
  }
  if (shift) return;
  if (control) {
    m_anchor = row;
    return;
  }
  if (!IsSelected(row)) SelectAllIgnore(0, row);
  const HTREEITEM caret = GetCaret();
  const bool caretSelected = IsSelected(caret);
  SetItemState(row, kRowSelected | kRowFocused, kRowSelected | kRowFocused);
  if (caretSelected && !IsSelected(caret)) SetRowState(caret, kRowSelected, kRowSelected);
}

/// Ranges exist among siblings only.
void CTreeListCtrl::ShiftPress(HTREEITEM row, unsigned flags) {
  if (GetParentItem(row) != GetParentItem(GetCaret())) return;
  if (!IsLive(m_anchor) || !Rows().IsVisible(m_anchor)) m_anchor = GetCaret();
  SelectRange(m_anchor, row, (flags & kMouseControl) == 0 ? 1 : 0);
  if (m_anchor != row) SetRowState(m_anchor, kRowSelected, kRowSelected);
}

void CTreeListCtrl::DoAction(HTREEITEM row, Button button, unsigned flags, CPoint point) {
  IToolkit& toolkit = IToolkit::Instance();
  const int dragWidth = toolkit.GetMetric(Metric::DragWidth);
  const int dragHeight = toolkit.GetMetric(Metric::DragHeight);
  bool dragged = false;
  bool clicked = false;
  const std::weak_ptr<void> life = Life();
  const CaptureEnd end = toolkit.RunCapture(*this, [&](const Message& message) {
    if (message.target != this) return CaptureVerdict::Dispatch;
    switch (message.kind) {
      case MessageKind::MouseMove:
        dragged =
            std::abs(message.point.x - point.x) > dragWidth || std::abs(message.point.y - point.y) > dragHeight;
        return dragged ? CaptureVerdict::Stop : CaptureVerdict::Swallow;
      case MessageKind::LeftUp:
      case MessageKind::RightUp:
        clicked = true;
        return CaptureVerdict::StopAndDispatch;
      default:
        return CaptureVerdict::Dispatch;
    }
  });
  // Handlers ran meanwhile: the control or the row may be gone.
  if (life.expired() || end == CaptureEnd::Lost || !IsLive(row)) return;
  if (dragged) {
    DragNotice notice;
    notice.code = button == Button::Left ? kNoticeBeginDrag : kNoticeBeginRightDrag;
    notice.row = row;
    notice.data = GetItemData(row);
    notice.point = point;
    SendEmulated(notice);
  } else if (clicked) {
    Click(row, button, flags);
  }
}

void CTreeListCtrl::Click(HTREEITEM row, Button button, unsigned flags) {
  if (button == Button::Left && (flags & kMouseShift) == 0) {
    const HTREEITEM caret = GetCaret();
    const bool caretSelected = IsSelected(caret);
    if ((flags & kMouseControl) != 0) {
      if (GetParentItem(row) != GetParentItem(caret)) return;
      SetRowState(row, IsSelected(row) ? 0U : kRowSelected, kRowSelected);
    } else {
      SelectAllIgnore(0, row);
      SetRowState(row, kRowSelected, kRowSelected);
    }
    if (caretSelected && caret != row) SetRowState(caret, kRowSelected, kRowSelected);
  }
  // An editor that is open ends here.
  const std::weak_ptr<void> life = Life();
  if (!HasFocus()) SetFocus();
  if (life.expired()) return;
  EndEditors();
  if (life.expired()) return;
  Notice notice;
  notice.code = button == Button::Left ? kNoticeClick : kNoticeRightClick;
  SendEmulated(notice);
}

std::intptr_t CTreeListCtrl::SendEmulated(Notice& notice) {
  const std::weak_ptr<void> life = Life();
  const bool before = std::exchange(m_emulated, true);
  const std::intptr_t answer = Notify(notice);
  if (!life.expired()) m_emulated = before;
  return answer;
}

void CTreeListCtrl::OnLButtonUp(unsigned, CPoint point) {
  unsigned hit = 0;
  m_selectedItem = HitTestContent(point, hit);
}

/// Where a second press is meant. The first one may have brought a row that was cut wholly into sight, and so
/// moved another one under the pointer.
CPoint CTreeListCtrl::OnPressedRow(CPoint point) const {
  const IToolkit& toolkit = IToolkit::Instance();
  const bool again = std::abs(point.x - m_pressedAt.x) <= toolkit.GetMetric(Metric::DragWidth) &&
                     std::abs(point.y - m_pressedAt.y) <= toolkit.GetMetric(Metric::DragHeight);
  CRect line;
  return again && GetItemRect(m_pressedRow, line, false) ? CPoint{point.x, line.top} : point;
}

void CTreeListCtrl::OnLButtonDblClk(unsigned, CPoint point) {
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(OnPressedRow(point), hit);
  if (m_columnCount == 0 || point.x - m_offset < GetColumnWidth(0)) {
    if (row && (hit & (kHitIcon | kHitLabel | kHitRight | kHitButton)) != 0) Expand(row, ExpandAction::Toggle);
    ResetVertScrollBar();
  }
  SetFocus();
  m_selectedItem = row;
  ShowEditComboBoxes(point);
}

// ---- tool tip -------------------------------------------------------------------------------------------

void CTreeListCtrl::OnMouseMove(unsigned, CPoint point) {
  if (m_pane == nullptr) return;
  unsigned hit = 0;
  HTREEITEM row = HitTestContent(point, hit);
  if (row && point.x - m_offset >= GetColumnWidth(0)) row = {};
  if (std::exchange(m_tipRow, row) == row) return;
  const CTLItem* record = GetRecord(row);
  CRect area;
  if (record == nullptr || !GetItemRect(row, area, true)) return m_pane->HideToolTip();
  const CString text(record->View(0));
  const int width = GetColumnWidth(0) - area.left - 2;
  if (FitText({{}, 0, record->IsBold()}, text, width - 8) == text) return m_pane->HideToolTip();
  m_pane->DisplayToolTip(point, area, row == GetCaret(), text);
}

void CTreeListCtrl::OnMouseLeave() {
  HideTip();
}

}  // namespace qd

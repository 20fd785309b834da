// Selection, mouse and keys of the tree-list control.

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

// ---- state access ---------------------------------------------------------------------------------------

unsigned CTreeListCtrl::GetItemState(HTREEITEM row, unsigned mask) const {
  if (!IsLive(row)) return 0;
  const unsigned state = Rows().State(row, mask & ~static_cast<unsigned>(kRowFocused));
  return row == GetCaret() ? state | (mask & kRowFocused) : state;
}

int CTreeListCtrl::SetItemState(HTREEITEM row, unsigned state, unsigned mask) {
  if (!IsLive(row)) return 0;
  if (m_multiSelect && (mask & kRowFocused) != 0) {
    if ((state & kRowFocused) != 0) {
      if (FocusRow(row, state, mask) == 0) return 0;
    } else if (row == GetCaret()) {
      UnfocusCaret(state, mask);
    }
  }
  mask &= ~static_cast<unsigned>(kRowFocused);
  if (mask != 0) SetRowState(row, state, mask);
  return 1;
}

/// Moves the caret to `row` without changing what is selected, but for the bits under `mask`.
int CTreeListCtrl::FocusRow(HTREEITEM row, unsigned& state, unsigned& mask) {
  const HTREEITEM caret = GetCaret();
  const bool caretSelected = caret && Rows().IsSelected(caret);
  const bool wasSelected = Rows().IsSelected(row);
  if (caretSelected && caret != row) {
    ClearCaret();
    SetRowState(caret, kRowSelected, kRowSelected);
  }
  if (SetCaret(row) == 0) return 0;
  if ((mask & kRowSelected) == 0) {
    if (!wasSelected) SetRowState(row, 0, kRowSelected);
  } else if ((state & kRowSelected) != 0 && (caret != row || caretSelected)) {
    state &= ~static_cast<unsigned>(kRowSelected);
    mask &= ~static_cast<unsigned>(kRowSelected);
  }
  return 1;
}

void CTreeListCtrl::UnfocusCaret(unsigned& state, unsigned& mask) {
  const HTREEITEM caret = GetCaret();
  const bool wasSelected = Rows().IsSelected(caret);
  ClearCaret();
  if (!wasSelected || ((mask & kRowSelected) != 0 && (state & kRowSelected) == 0)) return;
  SetRowState(caret, kRowSelected, kRowSelected);
  state &= ~static_cast<unsigned>(kRowSelected);
  mask &= ~static_cast<unsigned>(kRowSelected);
}

int CTreeListCtrl::FocusItem(HTREEITEM row) {
  if (row) return SetItemState(row, kRowFocused, kRowFocused);
  return GetCaret() ? SetItemState(GetCaret(), 0, kRowFocused) : 0;
}

int CTreeListCtrl::SetMultiSelect(int flag) {
  const int before = IsMultiSelect();
  if (flag == 0) {
    const HTREEITEM caret = IsSelected(GetCaret()) ? GetCaret() : HTREEITEM{};
    SelectAllIgnore(0, caret);
    if (caret) SetCaret(caret);
  }
  m_multiSelect = flag != 0;
  return before;
}

// ---- many rows at once ----------------------------------------------------------------------------------

HTREEITEM CTreeListCtrl::GetNextSelectedItem(HTREEITEM row) const {
  if (!IsLive(row)) return {};
  return Rows().NextSelectedVisible(Rows().Position(Rows().NearestVisible(row)) + 1);
}

void CTreeListCtrl::SelectAll(int select) {
  if (VisibleRowCount() == 0) return;
  Rows().SelectVisible(0, VisibleRowCount() - 1, select != 0);
  Invalidate();
}

void CTreeListCtrl::SelectRange(HTREEITEM from, HTREEITEM to, int only) {
  if (!IsLive(from) || !IsLive(to)) return;
  from = Rows().NearestVisible(from);
  std::size_t first = Rows().Position(from);
  std::size_t last = Rows().Position(Rows().NearestVisible(to));
  if (first > last) std::swap(first, last);
  if (only != 0) {
    if (first > 0) Rows().SelectVisible(0, first - 1, false);
    if (last + 1 < VisibleRowCount()) Rows().SelectVisible(last + 1, VisibleRowCount() - 1, false);
  }
  SelectSiblingsInRange(from, first, last);
  Invalidate();
}

/// Selects the siblings of `from` between two visible positions, whole runs of closed siblings at a time.
void CTreeListCtrl::SelectSiblingsInRange(HTREEITEM from, std::size_t first, std::size_t last) {
  const RowTree& rows = Rows();
  HTREEITEM sibling = from;
  if (rows.Position(from) == last) {
    // Walk up to the first sibling inside; an open sibling's branch is stepped over.
    for (HTREEITEM before = rows.PreviousSibling(sibling); before && rows.Position(before) >= first;
         before = rows.PreviousSibling(sibling)) {
      sibling = before;
    }
  }
  std::size_t runStart = rows.Position(sibling);
  std::size_t position = runStart;
  while (sibling && position <= last) {
    const bool open = rows.IsExpanded(sibling) && rows.ChildCount(sibling) != 0;
    sibling = rows.NextSibling(sibling);
    if (!open && sibling && position < last) {
      ++position;
      continue;
    }
    Rows().SelectVisible(runStart, position, true);
    if (!sibling) return;
    runStart = position = open ? rows.Position(sibling) : position + 1;
  }
}

void CTreeListCtrl::SelectAllIgnore(int select, HTREEITEM except) {
  const HTREEITEM top = GetRootItem();
  if (select != 0 || !top || Rows().SelectedCount() == 0) return;
  if (!GetNextSiblingItem(top)) {
    const bool keep = IsSelected(except);
    Rows().ClearSelection();
    if (keep) Rows().SetState(except, kRowSelected, kRowSelected);
    Invalidate();
    return;
  }
  std::vector<HTREEITEM> selected = Rows().SelectedBelow(top);
  if (Rows().IsSelected(top)) selected.push_back(top);
  for (const HTREEITEM row : selected) {
    if (row != except) SetRowState(row, 0, kRowSelected);
  }
}

void CTreeListCtrl::ClearAllSelected() {
  if (Rows().SelectedCount() == 0) return;
  Rows().ClearSelection();
  Invalidate();
}

// ---- mouse ----------------------------------------------------------------------------------------------

HTREEITEM CTreeListCtrl::HitTestContent(CPoint point, unsigned& flags) const {
  return HitTest({point.x - m_offset, point.y}, flags);
}

void CTreeListCtrl::OnLButtonDown(unsigned flags, CPoint point) {
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
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
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  m_selectedItem = row;
  if (m_multiSelect && hit != kHitButton) OnButtonDown(Button::Right, flags, point);
}

void CTreeListCtrl::OnButtonDown(Button button, unsigned flags, CPoint point) {
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  if (row && hit == kHitButton) {
    Expand(row, ExpandAction::Toggle);
    RequestScrollReset();
    return;
  }
  if (!row || (hit & (kHitNowhere | kHitIndent)) != 0) return PressOnEmpty(button, flags);
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
  if (!HasFocus()) SetFocus();
  Notice notice;
  notice.code = button == Button::Left ? kNoticeClick : kNoticeRightClick;
  SendEmulated(notice);
}

/// A press beside the rows clears the selection.
void CTreeListCtrl::PressOnEmpty(Button button, unsigned flags) {
  SetFocus();
  if ((flags & (kMouseShift | kMouseControl)) == 0) ClearAllSelected();
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

void CTreeListCtrl::OnLButtonDblClk(unsigned flags, CPoint point) {
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  if (row && hit == kHitStateIcon) return OnLButtonDown(flags, point);  // two quick presses switch twice
  if (m_columnCount == 0 || point.x - m_offset < GetColumnWidth(0)) {
    if (row && (hit & (kHitIcon | kHitLabel | kHitRight | kHitButton)) != 0) Expand(row, ExpandAction::Toggle);
    RequestScrollReset();
  }
  SetFocus();
  m_selectedItem = row;
}

// ---- keys -----------------------------------------------------------------------------------------------

void CTreeListCtrl::OnKeyDown(int key, unsigned flags) {
  if (key < kKeyPageUp || key > kKeyDown) return;
  const bool shift = m_multiSelect && (flags & kMouseShift) != 0;
  const bool control = m_multiSelect && (flags & kMouseControl) != 0;
  const HTREEITEM before = GetCaret();
  if (m_multiSelect) {
    if (!IsLive(m_anchor) || !Rows().IsVisible(m_anchor)) m_anchor = before;
    if (!shift && !control) {
      m_anchor = {};
      ClearAllSelected();
    }
  }
  if (control && !shift) {
    // The focus walks, the selection stays; a plain move of the caret would select.
    if (!before || (key != kKeyUp && key != kKeyDown)) return;
    const HTREEITEM at = Rows().NearestVisible(before);
    const HTREEITEM next = key == kKeyUp ? Rows().PreviousVisible(at) : Rows().NextVisible(at);
    SetItemState(next ? next : before, kRowFocused, kRowFocused);
    return;
  }
  MoveCaretByKey(key);
  RequestScrollReset();
  m_selectedItem = GetCaret();
  if (shift && m_anchor && GetCaret()) SelectRange(m_anchor, GetCaret(), 1);
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
  m_tipRow = {};
  if (m_pane != nullptr) m_pane->HideToolTip();
}

}  // namespace qd

// What the window reports to the tree-list control, and which part gets it.

#include "qd_wrt/treelist/CTreeListCtrl.h"
#include "qd_wrt/treelist/RowRecord.h"

namespace qd {

// ---- presses --------------------------------------------------------------------------------------------

void CTreeListCtrl::OnLButtonDown(unsigned flags, CPoint point) {
  m_tip.Dismiss();
  m_typing.EndTyping();
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  m_press.Remember(row, point);
  if (row && hit == kHitStateIcon) {
    Post(kCheckMessage, row.value);
    return;
  }
  if (IsMultiSelect() == 0) {
    if (row) Expand(row, ExpandAction::Toggle);
    return;
  }
  OnButtonDown(MouseButton::Left, flags, point);
}

void CTreeListCtrl::OnRButtonDown(unsigned flags, CPoint point) {
  m_tip.Dismiss();
  m_typing.EndTyping();
  unsigned hit = 0;
  const HTREEITEM row = HitTestContent(point, hit);
  m_selectedItem = row;
  if (IsMultiSelect() != 0 && hit != kHitButton) OnButtonDown(MouseButton::Right, flags, point);
}

void CTreeListCtrl::OnButtonDown(MouseButton button, unsigned flags, CPoint point) {
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
  m_rules.Press(row, button, flags);
  DoAction(row, button, flags, point);
}

void CTreeListCtrl::DoAction(HTREEITEM row, MouseButton button, unsigned flags, CPoint point) {
  const std::weak_ptr<void> life = Life();
  const MousePress::End end = MousePress::Watch(*this, point);
  // Handlers ran meanwhile: the control or the row may be gone.
  if (life.expired() || end == MousePress::End::Lost || !IsLive(row) || Rows().IsFilteredOut(row)) return;
  if (end == MousePress::End::Dragged) {
    DragNotice notice;
    notice.code = button == MouseButton::Left ? kNoticeBeginDrag : kNoticeBeginRightDrag;
    notice.row = row;
    notice.data = GetItemData(row);
    notice.point = point;
    return SendEmulated(notice);
  }
  const bool plain = button == MouseButton::Left && (flags & (kMouseShift | kMouseControl | kMouseAlt)) == 0;
  const bool swatch = plain && IsOnSwatch(row, point);
  Click(row, button, flags);
  if (swatch && !life.expired() && IsLive(row)) OnSwatchClick(row);
}

bool CTreeListCtrl::IsOnSwatch(HTREEITEM row, CPoint point) const {
  const CTLItem* record = GetRecord(row);
  CRect line;
  const TreeListGeometry cells = Cells();
  return record != nullptr && ShowsSwatch(*record) && cells.FindLine(row, line) &&
         cells.SwatchOf(line).Contains({point.x - GetHorizontalOffset(), point.y});
}

void CTreeListCtrl::Click(HTREEITEM row, MouseButton button, unsigned flags) {
  if (!m_rules.Click(row, button, flags)) return;
  // An editor that is open ends here.
  const std::weak_ptr<void> life = Life();
  if (!HasFocus()) SetFocus();
  if (life.expired()) return;
  EndEditors();
  if (life.expired()) return;
  Notice notice;
  notice.code = button == MouseButton::Left ? kNoticeClick : kNoticeRightClick;
  SendEmulated(notice);
}

void CTreeListCtrl::DoBanding(MouseButton button, unsigned flags, CPoint point) {
  const std::weak_ptr<void> life = Life();
  const std::optional<Message> last = m_band.DoBanding(flags, point);
  if (!last.has_value()) return;
  Notice notice;
  notice.code = button == MouseButton::Left ? kNoticeClick : kNoticeRightClick;
  SendEmulated(notice);
  if (life.expired() || last->target == nullptr) return;
  m_keepsKeys = true;  // the key that ended the band is nobody else's
  Dispatch(*last);
  if (!life.expired()) m_keepsKeys = false;
}

void CTreeListCtrl::OnLButtonUp(unsigned, CPoint point) {
  unsigned hit = 0;
  m_selectedItem = HitTestContent(point, hit);
}

void CTreeListCtrl::OnLButtonDblClk(unsigned, CPoint point) {
  unsigned hit = 0;
  const TreeListGeometry cells = Cells();
  const HTREEITEM row = cells.RowAt(m_press.PlaceOfSecond(point, cells), hit);
  if (m_columns.Count() == 0 || cells.IsInFirstColumn(point)) {
    if (row && (hit & (kHitIcon | kHitLabel | kHitRight | kHitButton)) != 0) Expand(row, ExpandAction::Toggle);
    ResetVertScrollBar();
  }
  SetFocus();
  m_selectedItem = row;
  ShowEditComboBoxes(point);
}

void CTreeListCtrl::SendEmulated(Notice& notice) {
  /// Who hears of it may take the control down, or throw.
  struct Emulated {
    explicit Emulated(CTreeListCtrl& control)
        : tree(control), life(control.Life()), before(std::exchange(control.m_emulated, true)) {}
    ~Emulated() {
      if (!life.expired()) tree.m_emulated = before;
    }
    Emulated(const Emulated&) = delete;
    Emulated& operator=(const Emulated&) = delete;
    CTreeListCtrl& tree;
    std::weak_ptr<void> life;
    bool before;
  };
  const Emulated emulated(*this);
  Notify(notice);
}

void CTreeListCtrl::TellSelection() {
  Notice notice;
  notice.code = kNoticeClick;
  SendEmulated(notice);
}

// ---- pointer, scrolling, focus --------------------------------------------------------------------------

void CTreeListCtrl::OnMouseMove(unsigned, CPoint point) {
  m_tip.PointAt(point, Rows(), Cells(), GetCaret());
}

void CTreeListCtrl::OnMouseLeave() {
  m_tip.Hide();
}

void CTreeListCtrl::OnScroll(int position) {
  EndEditors();
  CTreeCtrl::OnScroll(position);
}

void CTreeListCtrl::OnMouseWheel(int lines) {
  EndEditors();
  CTreeCtrl::OnMouseWheel(lines);
}

void CTreeListCtrl::OnMouseWheelAcross(int steps) {
  m_pane.ScrollColumns(steps);
}

void CTreeListCtrl::OnLayout() {
  PlaceEditors();
  ResetVertScrollBar();
}

void CTreeListCtrl::OnViewMoved() {
  PlaceEditors();
  m_tip.Hide();
}

void CTreeListCtrl::OnSetFocus() {
  if (GetCaret()) InvalidateRow(GetCaret());
}

void CTreeListCtrl::OnKillFocus() {
  if (GetCaret()) InvalidateRow(GetCaret());
}

// ---- keys -----------------------------------------------------------------------------------------------

void CTreeListCtrl::OnKeyDown(int key, unsigned flags) {
  m_typing.OnKey(key);
  m_tip.Dismiss();
  if (key >= kKeyPageUp && key <= kKeyDown) return OnMoveKey(key, flags);
  const std::weak_ptr<void> life = Life();
  OnKeyBesideMoves(key, flags);
  if (!life.expired() && !m_keepsKeys) PassKeyUp(key, flags);
}

void CTreeListCtrl::OnMoveKey(int key, unsigned flags) {
  const HTREEITEM before = GetCaret();
  const SelectionRules::Walk walk = m_rules.BeforeMove(flags);
  if (walk == SelectionRules::Walk::FocusOnly) {
    // The focus walks, the selection stays; a plain move of the caret would select.
    ResetVertScrollBar();
    m_selectedItem = before;
    if (!before || key == kKeyLeft || key == kKeyRight) return;
    if (const HTREEITEM target = TargetOfKey(key)) m_rules.WalkTo(target);
    return;
  }
  const std::weak_ptr<void> life = Life();
  MoveCaretByKey(key);
  if (life.expired()) return;
  ResetVertScrollBar();
  m_selectedItem = GetCaret();
  if (walk == SelectionRules::Walk::Range) m_rules.SelectToCaret();
}

/// Keys that do not move the caret.
void CTreeListCtrl::OnKeyBesideMoves(int key, unsigned flags) {
  const std::weak_ptr<void> life = Life();
  if (ExpandByKey(key) && life.expired()) return;
  if (key == kKeyC && HoldsControl(flags) && Rows().VisibleSelectedCount() != 0) {
    IToolkit::Instance().SetClipboardText(GetSelectedText());
  }
  if (IsMultiSelect() == 0) return;
  ResetVertScrollBar();
  m_selectedItem = GetCaret();
  if (IsSelectionKey(key, flags)) m_rules.ChangeByKey(key);
}

void CTreeListCtrl::OnChar(int character) {
  SelectAlone(m_typing.OnChar(character));
}

void CTreeListCtrl::OnTimer(unsigned id) {
  if (TypeAhead::IsTimer(id)) return SelectAlone(m_typing.OnTimer(id));
  if (id == RowFinder::kTimer) return m_finder.OnTimer();
  CTreeCtrl::OnTimer(id);
}

void CTreeListCtrl::OnPosted(unsigned id, std::uint64_t parameter) {
  if (id == EditSession::kFreeMessage) return m_editors.FreeClosed();
  if (id == RowFinder::kMessage) return m_finder.OnPosted();
  CTreeCtrl::OnPosted(id, parameter);
}

CPoint CTreeListCtrl::KeyboardMenuPlace() {
  m_tip.Dismiss();
  const HTREEITEM row = IsSelected(GetCaret()) ? GetCaret() : GetFirstSelectedItem();
  if (!row) return {};
  const std::weak_ptr<void> life = Life();
  EnsureVisible(row);
  return life.expired() ? CPoint{} : Cells().MenuPlaceOf(row);
}

}  // namespace qd

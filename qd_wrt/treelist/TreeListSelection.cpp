// Selection of the tree-list control.

#include <algorithm>
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
  const bool given = (mask & kRowSelected) != 0;
  if (given && (state & kRowSelected) == 0) return;
  if (wasSelected) SetRowState(caret, kRowSelected, kRowSelected);
  // Whoever takes the focus from a row does not select it with the same call.
  if (!given) return;
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

void CTreeListCtrl::GetSelectedList(std::list<HTREEITEM>& rows) const {
  const std::vector<HTREEITEM> selected = Rows().Selected(true);
  rows.assign(selected.begin(), selected.end());
}

void CTreeListCtrl::SelectAll(int select) {
  if (VisibleRowCount() == 0) return;
  Rows().SelectVisible(0, VisibleRowCount() - 1, select != 0);
  Invalidate();
}

void CTreeListCtrl::SelectRange(HTREEITEM from, HTREEITEM to, int only) {
  if (!IsLive(from) || !IsLive(to)) return;
  from = Rows().NearestVisible(from);
  to = Rows().NearestVisible(to);
  std::size_t first = Rows().Position(from);
  std::size_t last = Rows().Position(to);
  const bool down = first <= last;
  if (!down) std::swap(first, last);
  if (only != 0) {
    if (first > 0) Rows().SelectVisible(0, first - 1, false);
    if (last + 1 < VisibleRowCount()) Rows().SelectVisible(last + 1, VisibleRowCount() - 1, false);
  }
  const HTREEITEM end = SiblingTowards(from, to, down);
  Rows().SelectSiblings(down ? from : end, down ? end : from, true);
  Invalidate();
}

/// The farthest sibling of `from` that stands between it and `to`, a visible row below or above it.
HTREEITEM CTreeListCtrl::SiblingTowards(HTREEITEM from, HTREEITEM to, bool down) const {
  const RowTree& rows = Rows();
  const HTREEITEM parent = rows.Parent(from);
  if (parent && !rows.IsBelow(to, parent)) return down ? rows.LastChild(parent) : rows.FirstChild(parent);
  HTREEITEM sibling = to;
  while (rows.Level(sibling) > rows.Level(from)) sibling = rows.Parent(sibling);
  // A branch that `to` stands in begins above `to`.
  return down || sibling == to ? sibling : rows.NextSibling(sibling);
}

void CTreeListCtrl::InvertSelection() {
  if (VisibleRowCount() == 0) return;
  Rows().InvertVisible(0, VisibleRowCount() - 1);
  Invalidate();
}

int CTreeListCtrl::SelectChildren(HTREEITEM parent, int select, int recurse) {
  if (!IsLive(parent)) return 0;
  const std::size_t before = Rows().SelectedCount();
  if (recurse != 0) {
    Rows().SelectBelow(parent, select != 0);
  } else if (ItemHasChildren(parent)) {
    Rows().SelectSiblings(Rows().FirstChild(parent), Rows().LastChild(parent), select != 0);
  }
  if (Rows().SelectedCount() != before) Invalidate();
  if (!GetCaret()) return 0;
  const bool met = recurse != 0 ? Rows().ShowsBelow(GetCaret(), parent) : GetParentItem(GetCaret()) == parent;
  return met ? 1 : 0;
}

int CTreeListCtrl::OnItemExpanding(HTREEITEM row, ExpandAction action) {
  const bool collapses =
      action == ExpandAction::Collapse || (action == ExpandAction::Toggle && IsLive(row) && IsExpanded(row));
  if (!m_multiSelect || !collapses) return 0;
  if (SelectChildren(row, 0, 1) != 0 && !IsSelected(row)) ClearCaret();
  return 0;
}

void CTreeListCtrl::OnSetFocus() {
  if (GetCaret()) InvalidateRow(GetCaret());
}

void CTreeListCtrl::OnKillFocus() {
  if (GetCaret()) InvalidateRow(GetCaret());
}

void CTreeListCtrl::InvalidateSelectedRows() {
  HTREEITEM row = GetFirstVisibleItem();
  for (int i = GetVisibleCount(); i > 0 && row; --i, row = Rows().NextVisible(row)) {
    if (Rows().IsSelected(row)) InvalidateRow(row);
  }
}

void CTreeListCtrl::SelectAllIgnore(int select, HTREEITEM except) {
  const HTREEITEM top = GetRootItem();
  if (select != 0 || !top || Rows().SelectedCount() == 0) return;
  InvalidateSelectedRows();
  const bool keep = IsSelected(except);
  Rows().ClearBranch(top);
  if (keep) Rows().SetState(except, kRowSelected, kRowSelected);
}

void CTreeListCtrl::SelectAlone(HTREEITEM row) {
  if (!IsLive(row)) return;
  ClearAllSelected();
  SetItemState(row, kRowSelected | kRowFocused, kRowSelected | kRowFocused);
  m_anchor = {};
  m_selectedItem = row;
  Notice notice;
  notice.code = kNoticeClick;
  SendEmulated(notice);
}

void CTreeListCtrl::ClearAllSelected() {
  if (Rows().SelectedCount() == 0) return;
  Rows().ClearSelection();
  Invalidate();
}

}  // namespace qd

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

void CTreeListCtrl::InvertSelection() {
  if (VisibleRowCount() == 0) return;
  Rows().InvertVisible(0, VisibleRowCount() - 1);
  Invalidate();
}

int CTreeListCtrl::SelectChildren(HTREEITEM parent, int select, int recurse) {
  if (!IsLive(parent)) return 0;
  // Whether a walk over the children, and below the expanded ones with `recurse`, comes by a row.
  const auto visits = [&](HTREEITEM row) {
    if (!recurse) return GetParentItem(row) == parent;
    for (HTREEITEM above = GetParentItem(row); above; above = GetParentItem(above)) {
      if (above == parent) return true;
      if (!IsExpanded(above)) return false;
    }
    return false;
  };
  if (select == 0) {
    for (const HTREEITEM row : Rows().SelectedBelow(parent)) {
      if (visits(row)) SetRowState(row, 0, kRowSelected);
    }
  } else {
    std::vector<HTREEITEM> branches{parent};
    while (!branches.empty()) {
      const HTREEITEM branch = branches.back();
      branches.pop_back();
      for (HTREEITEM child = GetChildItem(branch); child; child = GetNextSiblingItem(child)) {
        SetRowState(child, kRowSelected, kRowSelected);
        if (recurse != 0 && IsExpanded(child)) branches.push_back(child);
      }
    }
  }
  return GetCaret() && visits(GetCaret()) ? 1 : 0;
}

int CTreeListCtrl::OnItemExpanding(HTREEITEM row, ExpandAction action) {
  const bool collapses =
      action == ExpandAction::Collapse || (action == ExpandAction::Toggle && IsLive(row) && IsExpanded(row));
  if (!m_multiSelect || !collapses) return 0;
  if (SelectChildren(row, 0, 1) != 0 && !IsSelected(row)) ClearCaret();
  return 0;
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

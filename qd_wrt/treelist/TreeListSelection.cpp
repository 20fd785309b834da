#include "qd_wrt/treelist/TreeListSelection.h"

#include <utility>

namespace qd {

// ---- state access ---------------------------------------------------------------------------------------

unsigned TreeListSelection::GetItemState(HTREEITEM row, unsigned mask) const {
  if (!Rows().Contains(row)) return 0;
  const unsigned state = Rows().State(row, mask & ~static_cast<unsigned>(kRowFocused));
  return row == GetCaret() ? state | (mask & kRowFocused) : state;
}

int TreeListSelection::SetItemState(HTREEITEM row, unsigned state, unsigned mask) {
  if (!Rows().Contains(row)) return 0;
  if ((state & mask & kRowSelected) != 0) ShowFilteredOut(row);
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
int TreeListSelection::FocusRow(HTREEITEM row, unsigned& state, unsigned& mask) {
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

void TreeListSelection::UnfocusCaret(unsigned& state, unsigned& mask) {
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

void TreeListSelection::SetMultiSelect(bool on) {
  if (!on) {
    const HTREEITEM caret = IsSelected(GetCaret()) ? GetCaret() : HTREEITEM{};
    SelectAllIgnore(0, caret);
    if (caret) SetCaret(caret);
  }
  m_multiSelect = on;
}

// ---- many rows at once ----------------------------------------------------------------------------------

HTREEITEM TreeListSelection::GetNextSelectedItem(HTREEITEM row) const {
  if (!Rows().Contains(row)) return {};
  const HTREEITEM shown = Rows().NearestVisible(row);
  return shown ? Rows().NextSelectedVisible(Rows().Position(shown) + 1) : HTREEITEM{};
}

void TreeListSelection::SelectAll(bool select) {
  if (Rows().VisibleCount() == 0) return;
  Rows().SelectVisible(0, Rows().VisibleCount() - 1, select);
  Tree().Invalidate();
}

void TreeListSelection::SelectRange(HTREEITEM from, HTREEITEM to, bool only) {
  if (!Rows().Contains(from) || !Rows().Contains(to)) return;
  from = Rows().NearestVisible(from);
  to = Rows().NearestVisible(to);
  if (!from || !to) return;
  std::size_t first = Rows().Position(from);
  std::size_t last = Rows().Position(to);
  const bool down = first <= last;
  if (!down) std::swap(first, last);
  if (only) {
    if (first > 0) Rows().SelectVisible(0, first - 1, false);
    if (last + 1 < Rows().VisibleCount()) Rows().SelectVisible(last + 1, Rows().VisibleCount() - 1, false);
  }
  const HTREEITEM end = SiblingTowards(from, to, down);
  Rows().SelectSiblings(down ? from : end, down ? end : from, true);
  Tree().Invalidate();
}

/// The farthest sibling of `from` that stands between it and `to`, a visible row below or above it.
HTREEITEM TreeListSelection::SiblingTowards(HTREEITEM from, HTREEITEM to, bool down) const {
  const RowTree& rows = Rows();
  const HTREEITEM parent = rows.Parent(from);
  if (parent && !rows.IsBelow(to, parent)) return down ? rows.LastChild(parent) : rows.FirstChild(parent);
  HTREEITEM sibling = to;
  while (rows.Level(sibling) > rows.Level(from)) sibling = rows.Parent(sibling);
  // A branch that `to` stands in begins above `to`.
  return down || sibling == to ? sibling : rows.NextSibling(sibling);
}

void TreeListSelection::InvertSelection() {
  if (Rows().VisibleCount() == 0) return;
  Rows().InvertVisible(0, Rows().VisibleCount() - 1);
  Tree().Invalidate();
}

int TreeListSelection::SelectChildren(HTREEITEM parent, bool select, bool recurse) {
  if (!Rows().Contains(parent)) return 0;
  const std::size_t before = Rows().SelectedCount();
  if (recurse) {
    Rows().SelectBelow(parent, select);
  } else if (Rows().FirstChild(parent)) {
    Rows().SelectSiblings(Rows().FirstChild(parent), Rows().LastChild(parent), select);
  }
  if (Rows().SelectedCount() != before) Tree().Invalidate();
  if (!GetCaret()) return 0;
  const bool met = recurse ? Rows().ShowsBelow(GetCaret(), parent) : Rows().Parent(GetCaret()) == parent;
  return met ? 1 : 0;
}

void TreeListSelection::LeaveBranch(HTREEITEM row) {
  if (SelectChildren(row, false, true) != 0 && !IsSelected(row)) ClearCaret();
}

void TreeListSelection::InvalidateOnScreen() {
  for (const RowLine& at : Tree().GetGeometry().LinesOnScreen()) {
    if (Rows().IsSelected(at.row)) InvalidateRow(at.row);
  }
}

void TreeListSelection::SelectAllIgnore(int select, HTREEITEM except) {
  const HTREEITEM top = Rows().First();
  if (select != 0 || !top || Rows().SelectedCount() == 0) return;
  InvalidateOnScreen();
  const bool keep = IsSelected(except);
  m_oneTree ? Rows().ClearSelection() : Rows().ClearBranch(top);
  if (keep) Rows().SetState(except, kRowSelected, kRowSelected);
}

void TreeListSelection::ClearAllSelected() {
  if (Rows().SelectedCount() == 0) return;
  Rows().ClearSelection();
  Tree().Invalidate();
}

}  // namespace qd

#include "qd_wrt/treelist/SelectionRules.h"

namespace qd {

// ---- mouse ----------------------------------------------------------------------------------------------

void SelectionRules::Press(HTREEITEM row, MouseButton button, unsigned flags) {
  const bool shift = (flags & kMouseShift) != 0;
  const bool control = (flags & kMouseControl) != 0;
  if (button == MouseButton::Left) {
    if (shift) return ShiftPress(row, flags);
    m_anchor = {};
    if (control) return;  // the row is toggled on release
    if (!m_selection.IsSelected(row)) m_selection.SelectAllIgnore(0, row);
    m_selection.SetItemState(row, kRowSelected | kRowFocused, kRowSelected | kRowFocused);
    return;
  }
  if (shift) return;
  if (control) {
    m_anchor = row;
    return;
  }
  if (!m_selection.IsSelected(row)) m_selection.SelectAllIgnore(0, row);
  const HTREEITEM caret = GetCaret();
  const bool caretSelected = m_selection.IsSelected(caret);
  m_selection.SetItemState(row, kRowSelected | kRowFocused, kRowSelected | kRowFocused);
  if (caretSelected && !m_selection.IsSelected(caret)) m_selection.Select(caret, true);
}

/// Ranges exist among siblings only.
void SelectionRules::ShiftPress(HTREEITEM row, unsigned flags) {
  if (Rows().Parent(row) != Rows().Parent(GetCaret())) return;
  AnchorAtLeast(GetCaret());
  m_selection.SelectRange(m_anchor, row, (flags & kMouseControl) == 0);
  if (m_anchor != row) m_selection.Select(m_anchor, true);
}

/// A range that began nowhere, or where nobody sees it, begins at this row.
void SelectionRules::AnchorAtLeast(HTREEITEM row) {
  if (!Rows().Contains(m_anchor) || !Rows().IsVisible(m_anchor)) m_anchor = row;
}

bool SelectionRules::Click(HTREEITEM row, MouseButton button, unsigned flags) {
  if (button != MouseButton::Left || (flags & kMouseShift) != 0) return true;
  const HTREEITEM caret = GetCaret();
  const bool caretSelected = m_selection.IsSelected(caret);
  if ((flags & kMouseControl) != 0) {
    if (Rows().Parent(row) != Rows().Parent(caret)) return false;
    m_selection.Select(row, !m_selection.IsSelected(row));
  } else {
    m_selection.SelectAllIgnore(0, row);
    m_selection.Select(row, true);
  }
  if (caretSelected && caret != row) m_selection.Select(caret, true);
  return true;
}

// ---- keys -----------------------------------------------------------------------------------------------

bool SelectionRules::IsSelectionKey(int key, unsigned flags) {
  const bool control = HoldsControl(flags);
  return (key >= kKeyPageUp && key <= kKeyDown) || (control && (key == kKeyA || key == kKeyI || key == kKeySpace));
}

SelectionRules::Walk SelectionRules::BeforeMove(unsigned flags) {
  if (!m_selection.IsMultiSelect()) return Walk::Alone;
  const bool shift = (flags & kMouseShift) != 0;
  const bool control = HoldsControl(flags);
  AnchorAtLeast(GetCaret());
  if (!shift && !control) {
    m_anchor = {};
    m_selection.ClearAllSelected();
  }
  if (shift) return Walk::Range;
  return control ? Walk::FocusOnly : Walk::Alone;
}

void SelectionRules::SelectToCaret() {
  if (m_anchor && GetCaret()) m_selection.SelectRange(m_anchor, GetCaret(), true);
}

void SelectionRules::ChangeByKey(int key) {
  if (key == kKeyA || key == kKeyI) {
    key == kKeyA ? m_selection.SelectAll(true) : m_selection.InvertSelection();
    // Nobody who filters means the rows that only stand above matches: much that is hidden may be in them.
    if (Rows().IsFiltered()) Rows().KeepFoundSelected();
    return;
  }
  if (!GetCaret()) return;
  m_anchor = GetCaret();  // ranges begin with what was chosen last
  m_selection.Select(m_anchor, !m_selection.IsSelected(m_anchor));
}

}  // namespace qd

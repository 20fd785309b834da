#pragma once

#include "platform/Export.h"
#include "platform/tree/TreePart.h"

namespace qd {

/// Which rows of a tree list are selected, any number of them, beside the caret, which is one row. Repaints what
/// it changes and tells nobody. What the functions mean stands in CTreeListCtrl, which gives them out.
class QD_EXPORT TreeListSelection : private TreePart {
 public:
  explicit TreeListSelection(CTreeCtrl& tree) : TreePart(tree) {}  ///< the tree owns it

  /// @{
  /// Whether several rows can be selected.
  bool IsMultiSelect() const { return m_multiSelect; }
  void SetMultiSelect(bool on);
  /// @}

  /// Whether the row still stands and is selected.
  bool IsSelected(HTREEITEM row) const { return Rows().Contains(row) && Rows().IsSelected(row); }
  /// @{
  /// See CTreeListCtrl.
  unsigned GetItemState(HTREEITEM row, unsigned mask) const;
  int SetItemState(HTREEITEM row, unsigned state, unsigned mask);
  /// Selects a row or not, and leaves the caret.
  void Select(HTREEITEM row, bool on) { SetRowState(row, on ? kRowSelected : 0U, kRowSelected); }

  HTREEITEM GetNextSelectedItem(HTREEITEM row) const;
  void SelectAll(bool select);
  void InvertSelection();
  void SelectRange(HTREEITEM from, HTREEITEM to, bool only);
  int SelectChildren(HTREEITEM parent, bool select, bool recurse);
  void SelectAllIgnore(int select, HTREEITEM except);
  /// Whether what stands on the top level is one tree, whose root shows no row, or each a tree of its own.
  void SetOneTree(bool one) { m_oneTree = one; }
  void ClearAllSelected();
  /// @}
  /// A branch is about to close: takes the selection out of it, and the caret with it unless its row is selected.
  void LeaveBranch(HTREEITEM row);
  /// Repaints the selected rows on screen.
  void InvalidateOnScreen();

 private:
  int FocusRow(HTREEITEM row, unsigned& state, unsigned& mask);
  void UnfocusCaret(unsigned& state, unsigned& mask);
  HTREEITEM SiblingTowards(HTREEITEM from, HTREEITEM to, bool down) const;

  bool m_multiSelect = true;
  bool m_oneTree = false;
};

}  // namespace qd

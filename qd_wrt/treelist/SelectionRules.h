#pragma once

#include "platform/Export.h"
#include "platform/tree/TreePart.h"
#include "qd_wrt/treelist/TreeListSelection.h"

namespace qd {

/// Which button was pressed.
enum class MouseButton { Left, Right };

/// What presses, clicks and keys make of the selection of a tree list with multiple selection: which rows Shift
/// and Ctrl add to it, and where ranges begin.
class QD_EXPORT SelectionRules : private TreePart {
 public:
  /// The tree owns it.
  SelectionRules(CTreeCtrl& tree, TreeListSelection& selection) : TreePart(tree), m_selection(selection) {}

  // `flags` are MouseFlags.
  /// A button went down on a row.
  void Press(HTREEITEM row, MouseButton button, unsigned flags);
  /// It came up there again. Returns false for a click that means nothing.
  bool Click(HTREEITEM row, MouseButton button, unsigned flags);

  /// Whether the key moves the caret or changes the selection.
  static bool IsSelectionKey(int key, unsigned flags);
  /// What a key does to the selection before it moves the caret.
  enum class Walk {
    Alone,     ///< the caret takes the selection along
    Range,     ///< the rows up to the new caret are to be selected: SelectToCaret
    FocusOnly  ///< only the caret moves: WalkTo
  };
  Walk BeforeMove(unsigned flags);  ///< to be asked before the caret moves
  void SelectToCaret();             ///< see Walk::Range
  void WalkTo(HTREEITEM row) { m_selection.SetItemState(row, kRowFocused, kRowFocused); }  ///< see Walk::FocusOnly
  /// Selects all rows, turns the selection round, or switches the caret's row, as the key says.
  void ChangeByKey(int key);

  /// Ranges begin anew, with the caret.
  void ForgetAnchor() { m_anchor = {}; }

 private:
  void ShiftPress(HTREEITEM row, unsigned flags);
  void AnchorAtLeast(HTREEITEM row);

  TreeListSelection& m_selection;
  HTREEITEM m_anchor;  // where a range began; none: at the caret
};

}  // namespace qd

#pragma once

#include "platform/Types.h"
#include "platform/tree/RowTree.h"

namespace qd {

/// What a tree-list control asks of the pane that holds it.
class ITreeListPane {
 public:
  /// Rows or columns have changed: lay out the header, the tree and the scroll bars before the next paint.
  virtual void ResetScrollBar() = 0;
  /// Shows `text`, the whole text of column 0, below the row; `caret` tells whether the row is the caret.
  virtual void DisplayToolTip(CPoint point, const CRect& row, bool caret, const CString& text) = 0;
  virtual void HideToolTip() = 0;
  /// Scrolls the columns by steps of the horizontal scroll bar, to the right for a positive number.
  virtual void ScrollColumns(int steps) = 0;

 protected:
  ~ITreeListPane() = default;
};

}  // namespace qd

#pragma once

#include "platform/RowHandle.h"
#include "platform/Types.h"

namespace qd {

/// What a tree-list control asks of the pane that holds it.
class ITreeListPane {
 public:
  /// Rows or columns have changed: lay out the header, the tree and the scroll bars before the next paint.
  virtual void ResetScrollBar() = 0;
  /// Shows `text`, the whole text of column 0, below the row; `caret` tells whether the row is the caret.
  virtual void DisplayToolTip(CPoint point, const CRect& row, bool caret, const CString& text) = 0;
  virtual void HideToolTip() = 0;  ///< takes the tip away
  /// Scrolls the columns by steps of the horizontal scroll bar, to the right for a positive number.
  virtual void ScrollColumns(int steps) = 0;

 protected:
  ~ITreeListPane() = default;
};

/// The pane that holds a tree-list control, if there is one; what is asked of none is not done.
class PaneLink {
 public:
  void Set(ITreeListPane* pane) { m_pane = pane; }  ///< null for nobody; not owned
  bool IsSet() const { return m_pane != nullptr; }  ///< whether there is a pane
  /// @{
  /// See ITreeListPane; nothing without a pane.
  void ResetScrollBar() const {
    if (m_pane != nullptr) m_pane->ResetScrollBar();
  }
  void DisplayToolTip(CPoint point, const CRect& row, bool caret, const CString& text) const {
    if (m_pane != nullptr) m_pane->DisplayToolTip(point, row, caret, text);
  }
  void HideToolTip() const {
    if (m_pane != nullptr) m_pane->HideToolTip();
  }
  void ScrollColumns(int steps) const {
    if (m_pane != nullptr) m_pane->ScrollColumns(steps);
  }
  /// @}

 private:
  ITreeListPane* m_pane = nullptr;  // not owned
};

}  // namespace qd

#pragma once

#include "platform/Export.h"
#include "platform/tree/RowTree.h"
#include "qd_wrt/treelist/ITreeListPane.h"
#include "qd_wrt/treelist/TreeListGeometry.h"

namespace qd {

/// Has the pane show the whole title of the row below the pointer when it is cut.
class QD_EXPORT TitleTip {
 public:
  explicit TitleTip(const PaneLink& pane) : m_pane(pane) {}  ///< the pane must outlive this

  /// The pointer is here now, in client coordinates. `caret` is shown otherwise than other rows.
  void PointAt(CPoint client, const RowTree& rows, const TreeListGeometry& geometry, HTREEITEM caret);
  /// The row below the pointer.
  HTREEITEM Row() const { return m_row; }
  /// The tip is in the way of what is done now. It comes again when the pointer has been elsewhere.
  void Dismiss() { m_pane.HideToolTip(); }
  /// What the tip is about may be different now: it comes again when the pointer moves.
  void Hide();

 private:
  const PaneLink& m_pane;
  HTREEITEM m_row;
};

}  // namespace qd

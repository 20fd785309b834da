#pragma once

#include "platform/CWnd.h"
#include "platform/Export.h"
#include "platform/tree/RowGeometry.h"

namespace qd {

/// A press of a button on a row, and what it becomes.
class QD_EXPORT MousePress {
 public:
  /// What it became; Lost: the mouse was taken away.
  enum class End { Dragged, Clicked, Lost };

  /// Holds the mouse for `window` until the pointer has gone farther than a shaky hand from `point`, or the button
  /// is up. Handlers run meanwhile: window and rows may be gone.
  static End Watch(CWnd& window, CPoint point);

  /// The left button went down here.
  void Remember(HTREEITEM row, CPoint point);
  /// Where a second press is meant. The first one may have brought a row that was cut wholly into sight, and so
  /// moved another one under the pointer.
  CPoint PlaceOfSecond(CPoint point, const RowGeometry& geometry) const;

 private:
  HTREEITEM m_row;
  CPoint m_at;
};

}  // namespace qd

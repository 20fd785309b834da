#pragma once

#include <cstddef>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// What decides where the header, the tree and the horizontal scroll bar of a pane stand.
struct PaneMeasures {
  int width = 0;
  int height = 0;
  int headerHeight = 0;
  int columnsWidth = 0;
  std::size_t rows = 0;  ///< visible rows of the tree
  int rowHeight = 1;
  int verticalBar = 0;    ///< width of the tree's own scroll bar
  int horizontalBar = 0;  ///< height of the horizontal scroll bar
};

struct PaneLayout {
  CRect header;
  CRect tree;  ///< with the place of its own scroll bar
  CRect bar;
  bool showBar = false;
  int visibleWidth = 0;   ///< of the columns
  int largestOffset = 0;  ///< how far the columns can be scrolled

  bool operator==(const PaneLayout&) const = default;
};

/// Lays a pane out. Each scroll bar takes room from the other, so both are decided together.
QD_EXPORT PaneLayout LayOutPane(const PaneMeasures& measures);

}  // namespace qd

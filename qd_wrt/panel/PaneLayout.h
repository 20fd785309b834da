#pragma once

#include <cstddef>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// What decides where the find bar, the header, the tree and the horizontal scroll bar of a pane stand.
struct PaneMeasures {
  /// @{
  /// Of the pane.
  int width = 0;
  int height = 0;
  /// @}
  int headerHeight = 0;   ///< of the captions
  int columnsWidth = 0;   ///< of all columns
  std::size_t rows = 0;   ///< visible rows of the tree
  int rowHeight = 1;      ///< of a line
  int verticalBar = 0;    ///< width of the tree's own scroll bar
  int horizontalBar = 0;  ///< height of the horizontal scroll bar
  int findHeight = 0;     ///< of the find bar above the header
};

/// Where the parts stand, in the pane's coordinates.
struct PaneLayout {
  /// @{
  /// Empty for what has no place.
  CRect find;
  CRect header;
  /// @}
  CRect tree;             ///< with the place of its own scroll bar
  CRect bar;              ///< the horizontal scroll bar
  bool showBar = false;   ///< whether it is needed
  int visibleWidth = 0;   ///< of the columns
  int largestOffset = 0;  ///< how far the columns can be scrolled

  bool operator==(const PaneLayout&) const = default;  ///< member by member
};

/// Lays a pane out. Each scroll bar takes room from the other, so both are decided together.
QD_EXPORT PaneLayout LayOutPane(const PaneMeasures& measures);

}  // namespace qd

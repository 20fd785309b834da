#include "qd_wrt/panel/PaneLayout.h"

#include <algorithm>

namespace qd {

PaneLayout LayOutPane(const PaneMeasures& measures) {
  PaneLayout layout;
  const int headerBottom = measures.findHeight + measures.headerHeight;
  const int belowHeader = std::max(measures.height - headerBottom, 0);
  const std::size_t content = measures.rows * static_cast<std::size_t>(measures.rowHeight);
  bool vertical = false;
  // The second round lets the one bar answer to the other; a third would change nothing, bars only come.
  for (int round = 0; round < 2; ++round) {
    const int treeHeight = belowHeader - (layout.showBar ? measures.horizontalBar : 0);
    // One row always counts as seen: a tree that is lower has no bar for it.
    vertical = vertical || content > static_cast<std::size_t>(std::max(treeHeight, measures.rowHeight));
    layout.visibleWidth = std::max(measures.width - (vertical ? measures.verticalBar : 0), 0);
    layout.showBar = measures.columnsWidth > layout.visibleWidth;
  }
  const int barHeight = layout.showBar ? std::min(measures.horizontalBar, belowHeader) : 0;
  const int treeBottom = headerBottom + belowHeader - barHeight;
  // Without bars the header stands out beyond the pane: the columns may grow into it.
  const bool roomy = !vertical && !layout.showBar && layout.visibleWidth > 0;
  const int headerWidth =
      roomy ? (measures.columnsWidth / layout.visibleWidth + 1) * layout.visibleWidth : measures.width;
  layout.find = {0, 0, measures.width, measures.findHeight};
  layout.header = {0, measures.findHeight, headerWidth, headerBottom};
  layout.tree = {0, headerBottom, measures.width, treeBottom};
  layout.bar = {0, treeBottom, layout.visibleWidth, treeBottom + barHeight};
  layout.largestOffset = std::max(measures.columnsWidth - layout.visibleWidth, 0);
  return layout;
}

}  // namespace qd

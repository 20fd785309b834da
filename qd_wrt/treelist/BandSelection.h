#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/Export.h"
#include "platform/tree/RowTree.h"

namespace qd {

/// What a rubber band makes of the selection: rows inside it are selected, rows outside are what they were when it
/// began. With Ctrl, rows inside that were selected then are cleared instead.
///
/// The start rows are the marked rows of the tree. A move of the band costs O(log n), however many rows it passes
/// and whatever is selected elsewhere.
class QD_EXPORT BandSelection {
 public:
  /// Visible positions from `first` up to `end`, which is not one of them.
  struct Range {
    std::size_t first = 0;                          ///< the first position
    std::size_t end = 0;                            ///< the one behind the last
    bool operator==(const Range&) const = default;  ///< member by member
  };

  /// `keeps`: what is selected in `rows` now counts as selected at the start, else nothing does. `clearsStart`:
  /// start rows inside are cleared.
  BandSelection(RowTree& rows, bool keeps, bool clearsStart);
  /// The band meets these ranges now, in order and apart from each other. `revision` tells whether rows have moved
  /// to other positions since the last call.
  void Update(RowTree& rows, std::uint64_t revision, std::vector<Range> met);

 private:
  void Leave(RowTree& rows, Range range) const;
  void Enter(RowTree& rows, Range range) const;

  RowTree::Selecting m_outside;
  RowTree::Selecting m_inside;
  std::vector<Range> m_met;
  std::uint64_t m_revision = 0;
  bool m_began = false;
};

}  // namespace qd

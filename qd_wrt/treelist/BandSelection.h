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
/// A move of the band costs the rows between its old and its new edge only, in runs, whatever is selected
/// elsewhere.
class QD_EXPORT BandSelection {
 public:
  /// Visible positions from `first` up to `end`, which is not one of them.
  struct Range {
    std::size_t first = 0;
    std::size_t end = 0;
    bool operator==(const Range&) const = default;
  };

  /// `start`: the rows that were selected when the band began; rows that go meanwhile are left out.
  BandSelection(std::vector<HTREEITEM> start, bool clearsStart);
  /// The band meets these ranges now, in order and apart from each other. `revision` tells whether rows have moved
  /// to other positions since the last call.
  void Update(RowTree& rows, std::uint64_t revision, std::vector<Range> met);

 private:
  void Restart(RowTree& rows);
  void Leave(RowTree& rows, Range range) const;
  void Enter(RowTree& rows, Range range) const;
  void SelectStart(RowTree& rows, Range range, bool on) const;

  std::vector<HTREEITEM> m_start;
  bool m_clearsStart;
  std::vector<Range> m_startRuns;  // where the start rows stand
  std::vector<Range> m_met;
  std::uint64_t m_revision = 0;
  bool m_began = false;
};

}  // namespace qd

#pragma once

#include <cstdint>
#include <vector>

#include "platform/tree/RowBits.h"

namespace qd {

/// What a search has found in a tree, and what a filter shows for it: the rows found and all that stand above
/// them. Rows go by their numbers (RowTree::Number).
///
/// A new outcome is put together beside the tree, in as many steps as it likes (RowTree::AddFound), and then given
/// to the tree as a whole; there it follows each row that comes, goes, matches or does not match any more.
struct RowSearch {
  /// The query is that of the search on show: what is pinned, open and closed there stays so.
  bool goesOn = false;
  bool filters = false;  ///< rows that are not shown are hidden; else those found are only marked
  RowBits found;         ///< what matches
  RowBits pinned;        ///< shown though not found
  RowBits shown;         ///< found, pinned, or above such a row
  std::vector<std::uint32_t> shownChildren;  ///< by row: how many of its children are shown
  RowBits opened;                            ///< rows with such children, until the tree has opened them

  // What is to come back when the search ends.
  RowBits openBefore;  ///< the branches that were open
  RowBits fresh;       ///< rows that were not there then

  /// Bytes, for measurements.
  std::size_t MemoryUsed() const {
    return found.MemoryUsed() + pinned.MemoryUsed() + shown.MemoryUsed() + opened.MemoryUsed() +
           openBefore.MemoryUsed() + fresh.MemoryUsed() + shownChildren.capacity() * sizeof(std::uint32_t);
  }
};

}  // namespace qd

#pragma once

#include <cstdint>
#include <vector>

#include "platform/tree/RowTree.h"
#include "qd_wrt/treelist/RowOrder.h"
#include "qd_wrt/treelist/TreeColumn.h"

namespace qd {

/// The children of a row, or the top-level rows for none, in the order of a column, stable; empty when they stand
/// in it already. Rows without a record have empty texts and no key.
std::vector<HTREEITEM> SortedChildren(const RowTree& rows, HTREEITEM parent, const SortParameters& by);

/// The places of cells in the order of what they show, stable: by their numbers, or by texts as names where they
/// have none; -1 turns the order round. Cells without a number stand behind those that have one in either
/// direction.
std::vector<std::uint32_t> OrderOfCells(const std::vector<TreeCell>& cells, int direction);

}  // namespace qd

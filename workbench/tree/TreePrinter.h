#pragma once

#include <functional>
#include <string>

#include "platform/tree/RowTree.h"

namespace qd {
class CQDTreeListCtrl;
}

namespace qd::workbench {

/// Calls with each row of a tree, top to bottom, those in collapsed branches too, and how deep it stands, from 0.
/// The tree must not change meanwhile.
void ForEachRow(const CQDTreeListCtrl& tree, const std::function<void(HTREEITEM row, int level)>& call);

/// A works tree as UTF-8 text, one line a row, two blanks a level: check box, title, ID and colour, as far as the
/// row shows them. Control characters and backslashes in titles are escaped, so a row is one line whatever its
/// title holds. All rows are printed, also those in collapsed branches.
std::string PrintTree(const CQDTreeListCtrl& tree);

}  // namespace qd::workbench

#pragma once

#include <string>

namespace qd {
class CQDTreeListCtrl;
}

namespace qd::workbench {

/// A works tree as UTF-8 text, one line a row, two blanks a level: check box, title, ID and colour, as far as the
/// row shows them. Control characters and backslashes in titles are escaped, so a row is one line whatever its
/// title holds. All rows are printed, also those in collapsed branches.
std::string PrintTree(const CQDTreeListCtrl& tree);

}  // namespace qd::workbench

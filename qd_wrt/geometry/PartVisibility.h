#pragma once

#include <vector>

#include "platform/Export.h"

namespace qd {

class CQDTreeGeomRoot;
class CQDTreeItem;

/// The rows to which a command that shows or hides parts may be given. What it does differs on purpose: the root
/// of the model tree has no commands on some parts, and rows of the geometry-set tree switch their own boxes with
/// what is below them, while parts of the model tree are switched by their root.
enum class VisibilityRow : unsigned { GeometryRoot = 1, SetRoot = 2, Part = 4, RowOfSets = 8 };

/// Runs a command that shows, hides or inverts parts; false when it is none of these, or none for such a row.
/// `root` switches the parts; null for a row of sets, which takes the selection as it is. `acting`: the parts that
/// the command is for.
QD_EXPORT bool RunVisibility(unsigned command, VisibilityRow kind, CQDTreeItem& row, CQDTreeGeomRoot* root,
                             const std::vector<CQDTreeItem*>& acting);

}  // namespace qd

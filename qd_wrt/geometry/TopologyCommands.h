#pragma once

#include <vector>

namespace qd {

class CQDTreeItem;
class CQDTreeItemTopo;

/// The root of the geometry-set tree that a node stands in.
CQDTreeItemTopo& TopologyRootOf(CQDTreeItem& node);

/// Runs a command given to a node below the root of the geometry-set tree, on all selected nodes: sets, groups and
/// parts alike.
void RunTopologyCommand(CQDTreeItem& node, unsigned command);

/// Shows, hides, shows only, hides only or reverses the selected nodes. False when the command is another one.
bool RunTopologyVisibility(CQDTreeItem& node, unsigned command);

}  // namespace qd

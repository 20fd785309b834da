#pragma once

namespace qd {

class CQDTreeItem;
class CQDTreeItemGset;

/// The geometry set that a node stands in or is; null for one that a host has put elsewhere.
CQDTreeItemGset* SetOf(CQDTreeItem& node);

/// Runs a command given to a node below the root of the geometry-set tree, on all selected nodes: sets, groups and
/// parts alike.
void RunTopologyCommand(CQDTreeItem& node, unsigned command);

}  // namespace qd

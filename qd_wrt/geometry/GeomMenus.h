#pragma once

#include <vector>

#include "host/Records.h"
#include "qd_wrt/core/MenuTable.h"

namespace qd {

/// The context menus of the geometry trees, by product variant. `hidden`: a selected node is unchecked, which cuts
/// most menus short.
std::vector<MenuEntry> GeometryRootMenu();
std::vector<MenuEntry> PartMenu(bool hidden);
std::vector<MenuEntry> TopologyRootMenu();
/// `single`: exactly one node is selected.
std::vector<MenuEntry> GeometrySetMenu(bool hidden, bool single);
std::vector<MenuEntry> TopologyGroupMenu(TopologyKind kind, bool hidden);
std::vector<MenuEntry> TopologyEntityMenu(TopologyKind kind, bool hidden);

/// Number of the first command of the list of materials.
unsigned MaterialCommandBase();

}  // namespace qd

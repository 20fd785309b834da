#pragma once

#include <vector>

#include "host/Records.h"
#include "platform/Export.h"
#include "qd_wrt/core/MenuTable.h"

namespace qd {

/// @{
/// The context menus of the geometry trees, by product variant. `hidden`: a selected node is unchecked, which cuts
/// most menus short.
QD_EXPORT std::vector<MenuEntry> GeometryRootMenu();
QD_EXPORT std::vector<MenuEntry> PartMenu(bool hidden);
QD_EXPORT std::vector<MenuEntry> TopologyRootMenu();
QD_EXPORT std::vector<MenuEntry> GeometrySetMenuKSL(bool hidden);
/// @}
/// `single`: exactly one node is selected.
QD_EXPORT std::vector<MenuEntry> GeometrySetMenuMPQRVT(bool hidden, bool single);
/// @{
/// Of a group and of a part in it, by kind of topology.
QD_EXPORT std::vector<MenuEntry> TopologyGroupMenu(TopologyKind kind, bool hidden);
QD_EXPORT std::vector<MenuEntry> TopologyEntityMenu(TopologyKind kind, bool hidden);
/// @}

/// Number of the first command of the list of materials.
QD_EXPORT unsigned MaterialCommandBase();

}  // namespace qd

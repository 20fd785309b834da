#pragma once

#include <cstdint>
#include <vector>

#include "qd_wrt/core/MenuTable.h"

namespace qd {

/// The menus of the mesh branch, for the product variant that runs.
std::vector<MenuEntry> MeshRootMenu();
/// `single`: one row is selected; `mayRename`: and its set's name is not fixed.
std::vector<MenuEntry> MeshSetMenu(bool single, bool mayRename);

/// What a command shows beside the elements: one of the bits of MeshAddOn, 0 for other commands.
std::uint32_t AddOnOf(unsigned command);
/// @{
/// The render mode and the transparency that a command sets.
unsigned MeshRenderModeOf(unsigned command);
unsigned char MeshTransparencyOf(unsigned command);
/// @}

}  // namespace qd

#include "qd_wrt/mesh/MeshMenus.h"

#include <algorithm>
#include <array>

#include "host/Display.h"
#include "host/ProductVariant.h"
#include "qd_wrt/core/CommandNumbers.h"

namespace qd {

namespace {

constexpr MenuEntry Submenu(std::string_view key, std::span<const MenuEntry> entries) {
  return {.key = key, .submenu = entries};
}
constexpr MenuEntry Check(unsigned command, std::string_view key) {
  return {.command = command, .key = key, .checkable = true};
}
bool IsNotKSL() {
  return IsKSL() == 0;
}
constexpr MenuEntry NotKSL(MenuEntry entry) {
  entry.when = IsNotKSL;
  return entry;
}

constexpr std::array<MenuEntry, 1> kSeparator{};

// ---- submenus -------------------------------------------------------------------------------------------

constexpr std::array<MenuEntry, 6> kGenerators{{{kCommandMeshNode, "IDS_MENU_WRT_MESH_ADD_NODE"},
                                                {kCommandMeshElement, "IDS_MENU_WRT_MESH_ADD_ELEM"},
                                                {kCommandMeshAuto2D, "IDS_MENU_WRT_MESH_ADD_2D_AUTO"},
                                                {kCommandMeshMap2D, "IDS_MENU_WRT_MESH_ADD_2D_MAP"},
                                                {kCommandMeshAuto3D, "IDS_MENU_WRT_MESH_ADD_3D_AUTO"},
                                                {kCommandMeshMap3D, "IDS_MENU_WRT_MESH_ADD_3D_MAP"}}};
constexpr std::array<MenuEntry, 5> kDisplayModes{
    {{kCommandMeshWireframe, "IDS_QD_WRT_MESH_WIREFRAME"},
     {kCommandMeshShading, "IDS_QD_WRT_MESH_SHADING"},
     {kCommandMeshFeatureEdges, "IDS_QD_WRT_MESH_FEATURE_EDGE"},
     {kCommandMeshFeatureShading, "IDS_QD_WRT_MESH_FEATURE_EDGESHADING"},
     {kCommandMeshFreeFaces, "IDS_QD_WRT_MESH_FREE_FACE_WIREFRAME"}}};
constexpr std::array<MenuEntry, 9> kRootAddOns{
    {Check(kCommandAllNodes, "IDS_QD_WRT_MESH_DISP_NODE"),
     {},
     Check(kCommandAllNodeIds, "IDS_QD_WRT_MESH_DISP_NODE_ID"),
     Check(kCommandAllElementIds, "IDS_QD_WRT_MESH_DISP_ELEM_ID"),
     {},
     NotKSL(Check(kCommandAllNodalSystems, "IDS_QD_WRT_MESH_DISP_NODAL_CSYS")),
     NotKSL(Check(kCommandAllElementSystems, "IDS_QD_WRT_MESH_DISP_ELEM_CSYS")),
     NotKSL(Check(kCommandAllMaterialSystems, "IDS_QD_WRT_MESH_DISP_MATL_CSYS")),
     NotKSL({})}};
constexpr std::array<MenuEntry, 1> kRootClear{{{kCommandClearAllAddOns, "IDS_QD_WRT_MESH_DISP_HIDE_ALL"}}};
constexpr std::array<MenuEntry, 10> kSetAddOns{{Check(kCommandNodes, "IDS_QD_WRT_MESH_DISP_NODE"),
                                                {},
                                                Check(kCommandNodeIds, "IDS_QD_WRT_MESH_DISP_NODE_ID"),
                                                Check(kCommandElementIds, "IDS_QD_WRT_MESH_DISP_ELEM_ID"),
                                                {},
                                                Check(kCommandNodalSystems, "IDS_QD_WRT_MESH_DISP_NODAL_CSYS"),
                                                Check(kCommandElementSystems, "IDS_QD_WRT_MESH_DISP_ELEM_CSYS"),
                                                Check(kCommandMaterialSystems, "IDS_QD_WRT_MESH_DISP_MATL_CSYS"),
                                                {},
                                                {kCommandClearAddOns, "IDS_QD_WRT_MESH_DISP_HIDE_ALL"}}};
constexpr std::array<MenuEntry, 11> kTransparencies = TransparencyEntries(kCommandMeshTransparent);
constexpr std::array<MenuEntry, 2> kSorts{
    {{kCommandSortByCreation, "IDS_QD_WRT_by_Creation"}, {kCommandSortByName, "IDS_QD_WRT_by_Name"}}};

// ---- runs of entries ------------------------------------------------------------------------------------

constexpr std::array<MenuEntry, 3> kAllSets{{{kCommandShowAllMeshes, "IDS_QD_WRT_SHOW_ALL"},
                                             {kCommandHideAllMeshes, "IDS_QD_WRT_HIDE_ALL"},
                                             {kCommandReverseAll, "IDS_QD_WRT_REVERSE_SHOW_HIDE"}}};
constexpr std::array<MenuEntry, 6> kMaking{{{},
                                            Submenu("IDS_MENU_WRT_MESH_ADD", kGenerators),
                                            {},
                                            {kCommandNewSet, "IDS_QD_WRT_NEW_MESH_SET"},
                                            {kCommandDeleteAllMeshSets, "IDS_QD_WRT_DELETE_ALL_MESH_SET"},
                                            {kCommandDeleteEmptyMeshSets, "IDS_QD_WRT_DELETE_EMPTY_MESH_SET"}}};
constexpr std::array<MenuEntry, 5> kVisibility{{{kCommandShowMesh, "IDS_QD_WRT_GEOM_SHOW"},
                                                {kCommandHideMesh, "IDS_QD_WRT_GEOM_HIDE"},
                                                {kCommandShowMeshOnly, "IDS_QD_WRT_SHOW_ONLY"},
                                                {kCommandHideMeshOnly, "IDS_QD_WRT_HIDE_ONLY"},
                                                {kCommandReverseAll, "IDS_QD_WRT_REVERSE_SHOW_HIDE"}}};
constexpr std::array<MenuEntry, 2> kIncludeExclude{
    {{kCommandMeshIncludeExclude, "IDS_QD_WRT_MESH_INCLUDE_EXCLUDE"}, {}}};
constexpr std::array<MenuEntry, 1> kModes{{Submenu("IDS_QD_WRT_DISPLAY_MODE", kDisplayModes)}};
constexpr std::array<MenuEntry, 2> kSetDisplay{
    {Submenu("IDS_QD_WRT_DISPLAY", kSetAddOns), Submenu("IDS_QD_WRT_TRANSPARENT", kTransparencies)}};
constexpr std::array<MenuEntry, 1> kTransparency{{Submenu("IDS_QD_WRT_TRANSPARENT", kTransparencies)}};
constexpr std::array<MenuEntry, 1> kSort{{Submenu("IDS_QD_WRT_Sort", kSorts)}};
constexpr std::array<MenuEntry, 1> kShrink{
    {{.command = kCommandShrink, .key = "IDS_QD_WRT_MESH_SHRINK", .opensDialog = true}}};
constexpr std::array<MenuEntry, 1> kDelete{{{kCommandDeleteMesh, "IDS_QD_WRT_DELETE"}}};
constexpr std::array<MenuEntry, 1> kMerge{{{kCommandMergeMeshSets, "IDS_QD_WRT_MESH_MERGE"}}};
constexpr std::array<MenuEntry, 1> kRename{
    {{.command = kCommandRename, .key = "IDS_QD_WRT_RENAME", .suffix = " (F2)"}}};

}  // namespace

std::vector<MenuEntry> MeshRootMenu() {
  static const std::vector<MenuEntry> kAddOns = JoinMenus({kRootAddOns, kRootClear});
  const std::array<MenuEntry, 1> display{Submenu("IDS_QD_WRT_DISPLAY", kAddOns)};
  const std::span<const MenuEntry> making =
      IsKSL() == 0 ? std::span<const MenuEntry>(kMaking) : std::span<const MenuEntry>();
  return JoinMenus({kAllSets, making, kSeparator, kModes, display, kTransparency, kSeparator, kSort});
}

std::vector<MenuEntry> MeshSetMenu(bool single, bool mayRename) {
  const std::span<const MenuEntry> none;
  if (IsKSL() != 0) return JoinMenus({kVisibility, kSeparator, kModes, kSetDisplay, kShrink});
  return JoinMenus({kVisibility, kSeparator, single ? kIncludeExclude : none, kModes, kSetDisplay, kShrink,
                    kSeparator, kDelete, single ? none : kMerge, single && mayRename ? kRename : none});
}

std::uint32_t AddOnOf(unsigned command) {
  struct Pair {
    unsigned set;
    unsigned all;
    std::uint32_t bit;
  };
  constexpr Pair kBits[] = {{kCommandNodes, kCommandAllNodes, kAddOnNodes},
                            {kCommandNodeIds, kCommandAllNodeIds, kAddOnNodeIds},
                            {kCommandElementIds, kCommandAllElementIds, kAddOnElementIds},
                            {kCommandNodalSystems, kCommandAllNodalSystems, kAddOnNodalSystems},
                            {kCommandElementSystems, kCommandAllElementSystems, kAddOnElementSystems},
                            {kCommandMaterialSystems, kCommandAllMaterialSystems, kAddOnMaterialSystems}};
  const auto* found = std::find_if(std::begin(kBits), std::end(kBits), [command](const Pair& pair) {
    return pair.set == command || pair.all == command;
  });
  return found != std::end(kBits) ? found->bit : 0;
}

unsigned MeshRenderModeOf(unsigned command) {
  constexpr unsigned kRenderModes[] = {0, 1, 5, 2, 3, 4};
  return kRenderModes[command - kCommandMeshSmooth];
}

unsigned char MeshTransparencyOf(unsigned command) {
  constexpr unsigned kOpaque = 255;
  constexpr unsigned kSteps = 10;
  return static_cast<unsigned char>((command - kCommandMeshTransparent) * kOpaque / kSteps);
}

}  // namespace qd

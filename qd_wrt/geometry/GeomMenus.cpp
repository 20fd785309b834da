#include "qd_wrt/geometry/GeomMenus.h"

#include <array>

#include "host/ProductVariant.h"
#include "platform/RegisteredMessage.h"
#include "qd_wrt/core/CommandNumbers.h"

namespace qd {

namespace {

constexpr MenuEntry Dialog(unsigned command, std::string_view key) {
  return {.command = command, .key = key, .opensDialog = true};
}
constexpr MenuEntry Submenu(std::string_view key, std::span<const MenuEntry> entries) {
  return {.key = key, .submenu = entries};
}

constexpr std::array<MenuEntry, 1> kSeparator{};

// ---- submenus -------------------------------------------------------------------------------------------

constexpr std::array<MenuEntry, 4> kDisplayModes{{{kCommandEdgeShading, "IDS_QD_WRT_EDGE_SHADING"},
                                                  {kCommandShading, "IDS_QD_WRT_SHADING"},
                                                  {kCommandWireframe, "IDS_QD_WRT_WIREFRAME"},
                                                  {kCommandBoundingBox, "IDS_QD_WRT_BOUNDING_BOX"}}};
constexpr std::array<MenuEntry, 11> kTransparencies = TransparencyEntries(kCommandTransparent);
constexpr std::array<MenuEntry, 2> kDisplay{
    {Submenu("IDS_QD_WRT_DISPLAY_MODE", kDisplayModes), Submenu("IDS_QD_WRT_TRANSPARENT", kTransparencies)}};
constexpr std::array<MenuEntry, 2> kMaterials{
    {{.list = true}, Dialog(kCommandMaterialDialog, "IDS_QD_WRT_ISO_MATERIAL_APPLY")}};
constexpr std::array<MenuEntry, 1> kMeshing{{Dialog(kCommandGenerateMesh, "IDS_QD_WRT_MESH_TETRA_GENERATE")}};
constexpr std::array<MenuEntry, 1> kCreateMesh{{Submenu("IDS_QD_WRT_MODEL_CREATE_MESH", kMeshing)}};
constexpr std::array<MenuEntry, 2> kMaterialAndMesh{
    {Submenu("IDS_QD_WRT_MATERIAL_APPLY", kMaterials), Submenu("IDS_QD_WRT_MODEL_CREATE_MESH", kMeshing)}};
constexpr std::array<MenuEntry, 6> kTransforms{{Dialog(kCommandTranslate, "IDS_QD_WRT_TRANSFORM_TRANSLATE"),
                                                Dialog(kCommandRotate, "IDS_QD_WRT_TRANSFORM_ROTATE"),
                                                Dialog(kCommandMirror, "IDS_QD_WRT_TRANSFORM_MIRROR"),
                                                Dialog(kCommandScale, "IDS_QD_WRT_TRANSFORM_SCALE"),
                                                Dialog(kCommandSweep, "IDS_QD_WRT_TRANSFORM_SWEEP_TRANSLATE"),
                                                Dialog(kCommandAttach, "IDS_QD_WRT_TRANSFORM_ATTACH")}};
constexpr std::array<MenuEntry, 2> kSorts{
    {{kCommandSortByCreation, "IDS_QD_WRT_by_Creation"}, {kCommandSortByName, "IDS_QD_WRT_by_Name"}}};
constexpr std::array<MenuEntry, 1> kSort{{Submenu("IDS_QD_WRT_Sort", kSorts)}};
constexpr std::array<MenuEntry, 2> kBodies{
    {{kCommandRigid, "IDS_QD_DB_BODY_RIGID"}, {kCommandFlexible, "IDS_QD_DB_BODY_FLEXIBLE"}}};
constexpr std::array<MenuEntry, 1> kBodySubmenu{{Submenu("IDS_QD_DB_DEFORMABLE_BODY", kBodies)}};

// ---- runs of entries that several menus share -----------------------------------------------------------

constexpr std::array<MenuEntry, 3> kAllParts{{{kCommandShowAll, "IDS_QD_WRT_SHOW_ALL", 0},
                                              {kCommandHideAll, "IDS_QD_WRT_HIDE_ALL", 1},
                                              {kCommandReverseAll, "IDS_QD_WRT_REVERSE_SHOW_HIDE"}}};
constexpr std::array<MenuEntry, 5> kVisibility{{{kCommandShow, "IDS_QD_WRT_GEOM_SHOW", 0},
                                                {kCommandHide, "IDS_QD_WRT_GEOM_HIDE", 1},
                                                {kCommandShowOnly, "IDS_QD_WRT_SHOW_ONLY"},
                                                {kCommandHideOnly, "IDS_QD_WRT_HIDE_ONLY"},
                                                {kCommandReverse, "IDS_QD_WRT_REVERSE_SHOW_HIDE"}}};
constexpr std::array<MenuEntry, 2> kMeshVisibility{
    {{kCommandShowMesh, "IDS_QD_WRT_SHOW_MESH"}, {kCommandHideMesh, "IDS_QD_WRT_HIDE_MESH"}}};
constexpr std::array<MenuEntry, 1> kImport{{Dialog(kCommandImport, "IDS_QD_CMD_OPTION_SUB_Import")}};
constexpr std::array<MenuEntry, 1> kSimplify{{Dialog(kCommandSimplify, "IDS_QD_WRT_MODEL_SIMPLY")}};
constexpr std::array<MenuEntry, 1> kTransform{{Submenu("IDS_QD_WRT_TRANSFORM", kTransforms)}};
constexpr std::array<MenuEntry, 1> kDelete{{{kCommandDelete, "IDS_QD_WRT_PART_DELETE"}}};
constexpr std::array<MenuEntry, 1> kDeleteMesh{{{kCommandDeleteMesh, "IDS_QD_WRT_MESH_DELETE"}}};
constexpr std::array<MenuEntry, 1> kNewSet{{{kCommandNewSet, "IDS_QD_WRT_GEOMSET_NEW"}}};
constexpr std::array<MenuEntry, 1> kIncludeExclude{{Dialog(kCommandIncludeExclude, "IDS_QD_WRT_INCLUDE_EXCLUDE")}};
constexpr std::array<MenuEntry, 1> kCurrentSet{{{kCommandCurrentSet, "IDS_QD_WRT_GEOMSET_CURRENT"}}};
constexpr std::array<MenuEntry, 2> kColourAndContacts{
    {{kCommandRandomColour, "IDS_QD_WRT_RANDOM_COLOR"},
     {kCommandContacts, "IDS_QD_WRT_Display_Contact_of_Selected_Part"}}};
constexpr std::array<MenuEntry, 1> kMaterialDialog{
    {Dialog(kCommandMaterialDialog, "IDS_QD_WRT_ISO_MATERIAL_APPLY")}};

void Append(std::vector<MenuEntry>& menu, std::initializer_list<std::span<const MenuEntry>> tables) {
  const std::vector<MenuEntry> more = JoinMenus(tables);
  menu.insert(menu.end(), more.begin(), more.end());
}

}  // namespace

unsigned MaterialCommandBase() {
  // Registered so that no other message of the process has the number.
  static const unsigned base = RegisterMessage("WM_MATERIAL_CUSTOMIZED");
  return base;
}

// ---- the model tree -------------------------------------------------------------------------------------

std::vector<MenuEntry> GeometryRootMenu() {
  return JoinMenus({kAllParts, kSeparator, kMeshVisibility, kSeparator, kImport, kSimplify, kSeparator,
                    kMaterialAndMesh, kSeparator, kDisplay, kSeparator, kDelete, kDeleteMesh});
}

std::vector<MenuEntry> PartMenu(bool hidden) {
  std::vector<MenuEntry> menu = JoinMenus({kVisibility, kSeparator, kMeshVisibility, kSeparator});
  if (!hidden) {
    Append(menu, {kSimplify, kMaterialAndMesh, kSeparator, kDisplay, kColourAndContacts, kSeparator});
  }
  Append(menu, {kDelete, kDeleteMesh});
  if (!hidden) Append(menu, {kSeparator, kBodySubmenu});
  return menu;
}

// ---- the geometry-set tree ------------------------------------------------------------------------------

std::vector<MenuEntry> TopologyRootMenu() {
  std::vector<MenuEntry> menu = JoinMenus({kAllParts});
  if (IsKSL() == 0) Append(menu, {kSeparator, kNewSet, kSeparator, kImport, kSimplify, kTransform});
  Append(menu, {kSeparator, kDisplay});
  return menu;
}

std::vector<MenuEntry> GeometrySetMenuKSL(bool hidden) {
  std::vector<MenuEntry> menu = JoinMenus({kVisibility});
  if (!hidden) Append(menu, {kSeparator, kDisplay});
  return menu;
}

std::vector<MenuEntry> GeometrySetMenuMPQRVT(bool hidden, bool single) {
  std::vector<MenuEntry> menu = JoinMenus({kVisibility, kSeparator, kNewSet, kIncludeExclude});
  if (single) Append(menu, {kCurrentSet});
  Append(menu, {kSeparator});
  if (hidden) {
    Append(menu, {kDelete});
  } else {
    Append(menu, {kImport, kSimplify, kTransform, kSeparator, kDisplay});
  }
  return menu;
}

std::vector<MenuEntry> TopologyGroupMenu(TopologyKind kind, bool hidden) {
  std::vector<MenuEntry> menu = JoinMenus({kVisibility, kSeparator, kSort});
  if (hidden) return menu;
  const bool full = IsRVT() != 0 || IsZDH() != 0;
  if (full) {
    Append(menu, {kSeparator, kNewSet, kDelete, kImport, kSimplify, kTransform});
  } else if (IsKSL() == 0) {
    Append(menu, {kSeparator, kNewSet, kIncludeExclude, kDelete, kImport, kSimplify, kTransform});
  }
  if (full && kind == TopologyKind::Solid) Append(menu, {kCreateMesh});
  Append(menu, {kSeparator, kDisplay});
  if (full && kind == TopologyKind::Solid) Append(menu, {kSeparator, kBodies, kMaterialDialog});
  return menu;
}

std::vector<MenuEntry> TopologyEntityMenu(TopologyKind kind, bool hidden) {
  std::vector<MenuEntry> menu = JoinMenus({kVisibility});
  if (hidden) return menu;
  const bool full = IsRVT() != 0 || IsZDH() != 0;
  if (IsKSL() == 0) Append(menu, {kSeparator, kDelete, kSimplify, kTransform});
  if (full && kind == TopologyKind::Solid) Append(menu, {kCreateMesh});
  Append(menu, {kSeparator, kDisplay});
  if (full && kind == TopologyKind::Solid) Append(menu, {kSeparator, kBodies, kMaterialDialog});
  return menu;
}

}  // namespace qd

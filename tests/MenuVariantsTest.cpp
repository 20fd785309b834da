// Every context menu in every product variant: entries, their order, their commands.

#include <map>

#include "qd_wrt/geometry/GeomMenus.h"
#include "support/Geometry.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::test {
namespace {

// ---- runs of entries that several menus share --------------------------------------------------------------

std::string Digits(unsigned first) {
  std::string entries;
  for (unsigned digit = 1; digit <= 9; ++digit) {
    entries += std::to_string(first + digit) + " " + std::to_string(digit) + "|";
  }
  return entries;
}
std::string Transparency(unsigned first) {
  return "IDS_QD_WRT_TRANSPARENT{" + std::to_string(first) + " IDS_QD_WRT_PART_TRANSPARENT|" + Digits(first) +
         std::to_string(first + 10) + " IDS_QD_WRT_PART_OPAQUE}";
}

const std::string kAll = "41007 IDS_QD_WRT_SHOW_ALL|41008 IDS_QD_WRT_HIDE_ALL|41011 IDS_QD_WRT_REVERSE_SHOW_HIDE";
const std::string kVisibility =
    "41100 IDS_QD_WRT_GEOM_SHOW|41101 IDS_QD_WRT_GEOM_HIDE|41009 IDS_QD_WRT_SHOW_ONLY|"
    "41010 IDS_QD_WRT_HIDE_ONLY|41017 IDS_QD_WRT_REVERSE_SHOW_HIDE";
const std::string kMeshes = "41200 IDS_QD_WRT_SHOW_MESH|41201 IDS_QD_WRT_HIDE_MESH";
const std::string kSimplify = "41134 IDS_QD_WRT_MODEL_SIMPLY...";
const std::string kImport = "41006 IDS_QD_CMD_OPTION_SUB_Import...|" + kSimplify;
std::string Material() {
  return "IDS_QD_WRT_MATERIAL_APPLY{" + std::to_string(MaterialCommandBase()) +
         " Steel & iron|-|41133 IDS_QD_WRT_ISO_MATERIAL_APPLY...}";
}
const std::string kCreateMesh = "IDS_QD_WRT_MODEL_CREATE_MESH{41240 IDS_QD_WRT_MESH_TETRA_GENERATE...}";
const std::string kDisplay =
    "IDS_QD_WRT_DISPLAY_MODE{41105 IDS_QD_WRT_EDGE_SHADING|41106 IDS_QD_WRT_SHADING|41107 IDS_QD_WRT_WIREFRAME|"
    "41108 IDS_QD_WRT_BOUNDING_BOX}|" +
    Transparency(41109);
const std::string kDelete = "41002 IDS_QD_WRT_PART_DELETE";
const std::string kDeleteBoth = kDelete + "|41245 IDS_QD_WRT_MESH_DELETE";
const std::string kTransform =
    "IDS_QD_WRT_TRANSFORM{41121 IDS_QD_WRT_TRANSFORM_TRANSLATE...|41122 IDS_QD_WRT_TRANSFORM_ROTATE...|"
    "41123 IDS_QD_WRT_TRANSFORM_MIRROR...|41124 IDS_QD_WRT_TRANSFORM_SCALE...|"
    "41152 IDS_QD_WRT_TRANSFORM_SWEEP_TRANSLATE...|41126 IDS_QD_WRT_TRANSFORM_ATTACH...}";
const std::string kSort = "IDS_QD_WRT_Sort{41037 IDS_QD_WRT_by_Creation|41038 IDS_QD_WRT_by_Name}";
const std::string kNewSet = "41000 IDS_QD_WRT_GEOMSET_NEW";
const std::string kBodies = "41548 IDS_QD_DB_BODY_RIGID|41549 IDS_QD_DB_BODY_FLEXIBLE";

const std::string kMeshModes =
    "IDS_QD_WRT_DISPLAY_MODE{41211 IDS_QD_WRT_MESH_WIREFRAME|41209 IDS_QD_WRT_MESH_SHADING|"
    "41213 IDS_QD_WRT_MESH_FEATURE_EDGE|41210 IDS_QD_WRT_MESH_FEATURE_EDGESHADING|"
    "41212 IDS_QD_WRT_MESH_FREE_FACE_WIREFRAME}";
const std::string kRootSystems =
    "41290 IDS_QD_WRT_MESH_DISP_NODAL_CSYS|41291 IDS_QD_WRT_MESH_DISP_ELEM_CSYS|"
    "41292 IDS_QD_WRT_MESH_DISP_MATL_CSYS|-|";
std::string RootDisplay(const std::string& systems) {
  return "IDS_QD_WRT_DISPLAY{41286 IDS_QD_WRT_MESH_DISP_NODE|-|41288 IDS_QD_WRT_MESH_DISP_NODE_ID|"
         "41289 IDS_QD_WRT_MESH_DISP_ELEM_ID|-|" +
         systems + "41293 IDS_QD_WRT_MESH_DISP_HIDE_ALL}";
}
const std::string kMeshMaking =
    "-|IDS_MENU_WRT_MESH_ADD{41605 IDS_MENU_WRT_MESH_ADD_NODE|41606 IDS_MENU_WRT_MESH_ADD_ELEM|"
    "41607 IDS_MENU_WRT_MESH_ADD_2D_AUTO|41608 IDS_MENU_WRT_MESH_ADD_2D_MAP|41609 IDS_MENU_WRT_MESH_ADD_3D_AUTO|"
    "41610 IDS_MENU_WRT_MESH_ADD_3D_MAP}|-|41000 IDS_QD_WRT_NEW_MESH_SET|"
    "41241 IDS_QD_WRT_DELETE_ALL_MESH_SET|41242 IDS_QD_WRT_DELETE_EMPTY_MESH_SET|";
const std::string kMeshAll =
    "41202 IDS_QD_WRT_SHOW_ALL|41203 IDS_QD_WRT_HIDE_ALL|41011 IDS_QD_WRT_REVERSE_SHOW_HIDE|";
const std::string kSetVisibility =
    "41200 IDS_QD_WRT_GEOM_SHOW|41201 IDS_QD_WRT_GEOM_HIDE|41206 IDS_QD_WRT_SHOW_ONLY|41207 IDS_QD_WRT_HIDE_ONLY|"
    "41011 IDS_QD_WRT_REVERSE_SHOW_HIDE|-|";
const std::string kSetLooks =
    kMeshModes +
    "|IDS_QD_WRT_DISPLAY{41214 IDS_QD_WRT_MESH_DISP_NODE|-|41216 IDS_QD_WRT_MESH_DISP_NODE_ID|"
    "41217 IDS_QD_WRT_MESH_DISP_ELEM_ID|-|41218 IDS_QD_WRT_MESH_DISP_NODAL_CSYS|"
    "41219 IDS_QD_WRT_MESH_DISP_ELEM_CSYS|41220 IDS_QD_WRT_MESH_DISP_MATL_CSYS|-|"
    "41204 IDS_QD_WRT_MESH_DISP_HIDE_ALL}|" +
    Transparency(41221) + "|41238 IDS_QD_WRT_MESH_SHRINK...";
const std::string kSetInclude = "41243 IDS_QD_WRT_MESH_INCLUDE_EXCLUDE|-|";
const std::string kSetDelete = "|-|41245 IDS_QD_WRT_DELETE";

// ---- the tables ---------------------------------------------------------------------------------------------

enum TreeOf { kModel, kSets };
using Menus = std::map<ProductVariant, std::string>;

/// The same menu in every variant.
Menus Same(const std::string& menu) {
  return {{ProductVariant::Standard, menu},
          {ProductVariant::KSL, menu},
          {ProductVariant::RVT, menu},
          {ProductVariant::ZDH, menu}};
}
/// One menu, and a shorter one in the KSL variant.
Menus Shorter(const std::string& menu, const std::string& inKSL) {
  Menus menus = Same(menu);
  menus[ProductVariant::KSL] = inKSL;
  return menus;
}

struct MenuCase {
  const char* name;
  TreeOf tree;
  CString selected;  ///< divided by "|"
  Menus menus;
  const char* hidden = nullptr;  ///< a row that is hidden before
};

const CString kCords = L"IDS_QD_WRT_Coordinate_System";
const CString kGeometry = L"IDS_DB_DATA_NAME_GEOM";
const CString kMesh = L"IDS_QD_WRT_MESH";
const CString kSolids = L"IDS_QD_WRT_GEOMSET_SOLID [2]";
const CString kSurfaces = L"IDS_QD_WRT_GEOMSET_SURFACE [1]";

std::vector<MenuCase> MenuCases() {
  const std::string partHead = kVisibility + "|-|" + kMeshes + "|-|";
  const std::string partFull =
      partHead + kSimplify + "|" + Material() + "|" + kCreateMesh + "|-|" + kDisplay +
      "|41120 IDS_QD_WRT_RANDOM_COLOR|41300 IDS_QD_WRT_Display_Contact_of_Selected_Part|-|" + kDeleteBoth +
      "|-|IDS_QD_DB_DEFORMABLE_BODY{";
  const std::string setHead = kVisibility + "|-|" + kNewSet + "|41131 IDS_QD_WRT_INCLUDE_EXCLUDE...|";
  const std::string current = "41003 IDS_QD_WRT_GEOMSET_CURRENT|";
  const std::string groupWork = kDelete + "|" + kImport + "|" + kTransform;
  const std::string groupTail = "|-|" + kNewSet + "|41131 IDS_QD_WRT_INCLUDE_EXCLUDE...|" + groupWork;
  const std::string longTail = "|-|" + kNewSet + "|" + groupWork;
  const std::string looks = "|-|" + kDisplay;
  const std::string rootTail = "|" + Transparency(41221) + "|-|" + kSort;
  return {
      {"document", kModel, L"model.step", Same("41007 IDS_QD_WRT_SHOW_ALL|41008 IDS_QD_WRT_HIDE_ALL")},
      {"coordinates", kModel, kCords, Same("41000 IDS_QD_WRT_ADD")},
      {"default_system", kModel, L"IDS_WB_GLOBAL_CORD", Same("")},
      {"system", kModel, L"S", Same("41003 IDS_QD_WRT_EDIT|41002 IDS_QD_WRT_DELETE|-|41005 IDS_QD_WRT_RENAME")},
      {"systems", kModel, L"IDS_WB_GLOBAL_CORD|S", Same("41002 IDS_QD_WRT_DELETE")},

      {"geometry", kModel, kGeometry,
       Same(kAll + "|-|" + kMeshes + "|-|" + kImport + "|-|" + Material() + "|" + kCreateMesh + "|-|" + kDisplay +
            "|-|" + kDeleteBoth)},
      {"part", kModel, L"a1", Same(partFull + "41548 IDS_QD_DB_BODY_RIGID|[x] 41549 IDS_QD_DB_BODY_FLEXIBLE}")},
      {"parts", kModel, L"a1|b1", Same(partFull + kBodies + "}")},
      {"rigid_part", kModel, L"b1",
       Same(partFull + "[x] 41548 IDS_QD_DB_BODY_RIGID|41549 IDS_QD_DB_BODY_FLEXIBLE}")},
      {"hidden_part", kModel, L"a1|b1", Same(partHead + kDeleteBoth), "b1"},

      {"sets", kSets, kGeometry,
       Shorter(kAll + "|-|" + kNewSet + "|-|" + kImport + "|" + kTransform + looks, kAll + looks)},
      {"set", kSets, L"A",
       Shorter(setHead + current + "-|" + kImport + "|" + kTransform + looks, kVisibility + looks)},
      {"two_sets", kSets, L"A|B",
       Shorter(setHead + "-|" + kImport + "|" + kTransform + looks, kVisibility + looks)},
      {"hidden_set", kSets, L"A", Shorter(setHead + current + "-|" + kDelete, kVisibility), "A"},
      {"solids",
       kSets,
       kSolids,
       {{ProductVariant::Standard, kVisibility + "|-|" + kSort + groupTail + looks},
        {ProductVariant::KSL, kVisibility + "|-|" + kSort + looks},
        {ProductVariant::RVT, kVisibility + "|-|" + kSort + longTail + "|" + kCreateMesh + looks + "|-|" +
                                  kBodies + "|41133 IDS_QD_WRT_ISO_MATERIAL_APPLY..."},
        {ProductVariant::ZDH, kVisibility + "|-|" + kSort + longTail + "|" + kCreateMesh + looks + "|-|" +
                                  kBodies + "|41133 IDS_QD_WRT_ISO_MATERIAL_APPLY..."}}},
      {"surfaces",
       kSets,
       kSurfaces,
       {{ProductVariant::Standard, kVisibility + "|-|" + kSort + groupTail + looks},
        {ProductVariant::KSL, kVisibility + "|-|" + kSort + looks},
        {ProductVariant::RVT, kVisibility + "|-|" + kSort + longTail + looks},
        {ProductVariant::ZDH, kVisibility + "|-|" + kSort + longTail + looks}}},
      {"hidden_solids", kSets, kSolids, Same(kVisibility + "|-|" + kSort), "A"},

      {"mesh", kModel, kMesh,
       Shorter(kMeshAll + kMeshMaking + "-|" + kMeshModes + "|" + RootDisplay(kRootSystems) + rootTail,
               kMeshAll + "-|" + kMeshModes + "|" + RootDisplay("") + rootTail)},
      {"mesh_set", kModel, L"M",
       Shorter(kSetVisibility + kSetInclude + kSetLooks + kSetDelete + "|41005 IDS_QD_WRT_RENAME (F2)",
               kSetVisibility + kSetLooks)},
      {"default_mesh_set", kModel, L"E",
       Shorter(kSetVisibility + kSetInclude + kSetLooks + kSetDelete, kSetVisibility + kSetLooks)},
      {"mesh_sets", kModel, L"M|N",
       Shorter(kSetVisibility + kSetLooks + kSetDelete + "|41244 IDS_QD_WRT_MESH_MERGE",
               kSetVisibility + kSetLooks)}};
}

/// Geometry sets A (solids a1 and a2, surface a3) and B (solid b1), mesh sets M, N and the default one E, a system
/// S.
class MenuVariants : public GeometryTest, public ::testing::WithParamInterface<MenuCase> {
 protected:
  MenuVariants() {
    const iterator a = AddSet(L"A");
    const iterator b = AddSet(L"B");
    AddPartTo(a, L"a1");
    AddPartTo(a, L"a2");
    AddPartTo(a, L"a3", TopologyKind::Surface);
    const iterator rigid = AddPartTo(b, L"b1");
    ChangePart(rigid, [](tagTGeom& part) { part.flexible = false; });
    AddMaterial(L"Steel & iron");
    Act([this] {
      tagTCord system;
      system.SetName(L"S");
      Data().GetCordPool().Add(system);
      for (const wchar_t* name : {L"M", L"N"}) {
        tagTMset set;
        set.name = name;
        Data().GetMsetPool().Add(set);
      }
      const iterator spare = Data().GetMsetPool().NeedDefaultMset();
      tagTMset renamed = *Data().GetMsetPool().GetAtNU(spare);
      renamed.name = L"E";
      Data().GetMsetPool().Modify(spare, renamed);
    });
    Show(GetParam().tree == kModel ? workbench::kModelTree : workbench::kGeometrySetTree);
    Open();
  }
};

TEST_P(MenuVariants, OfferWhatTheVariantHas) {
  Tree().SetMoreEntries({});  // what the host adds is not the module's
  if (GetParam().hidden != nullptr) {
    Node(CString(GetParam().hidden, GetParam().hidden + std::string(GetParam().hidden).size()))
        ->OnClickCheck(kChecked);
  }
  for (const auto& [variant, menu] : GetParam().menus) {
    SetProductVariant(variant);
    m_bar.OnChangeProgram();
    SelectRows(GetParam().selected);
    const std::size_t shown = m_toolkit.ShownMenus().size();
    Menu();
    ASSERT_EQ(m_toolkit.ShownMenus().size(), shown + 1);
    EXPECT_EQ(m_toolkit.LastMenuWithCommands(), menu) << "variant " << static_cast<int>(variant);
  }
}
INSTANTIATE_TEST_SUITE_P(All, MenuVariants, ::testing::ValuesIn(MenuCases()),
                         [](const auto& menu) { return std::string(menu.param.name); });

}  // namespace
}  // namespace qd::test

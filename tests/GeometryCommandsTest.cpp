// Menus and commands of the geometry branch over the real model.

#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/geometry/GeomMenus.h"
#include "support/Geometry.h"

namespace qd::test {
namespace {

using namespace workbench;

const CString kRoot = L"IDS_DB_DATA_NAME_GEOM";

/// Parts a, b and c, the last one hidden; a has a mesh.
class GeometryCommands : public GeometryTest {
 protected:
  GeometryCommands() {
    const auto parts = AddParts({L"a", L"b", L"c"});
    a = parts[0];
    b = parts[1];
    c = parts[2];
    mesh = AddMesh(a);
    Open();
    Tree().Expand(Row(kRoot), ExpandAction::Expand);
    m_toolkit.Pump();
    Node(L"c")->OnClickCheck(kChecked);
    Settle();
    Heard();
    m_doc.SetModelInfoChangedFlag(0);
  }
  std::string Shown() {
    std::string shown;
    for (const auto& [name, part] : {std::pair("a", a), std::pair("b", b), std::pair("c", c)}) {
      const bool box = Node(CString(1, static_cast<wchar_t>(*name)))->GetCheckStatus() == kChecked;
      EXPECT_EQ(box, IsShown(part)) << name;
      if (IsShown(part)) shown += name;
    }
    return shown;
  }
  std::vector<unsigned> Modes() {
    std::vector<unsigned> modes;
    for (const iterator part : {a, b, c}) modes.push_back(m_doc.GetDisplay().GetRenderMode(Part(part).cadItem));
    return modes;
  }

  iterator a, b, c, mesh;
};

// ---- menus ----------------------------------------------------------------------------------------------

TEST_F(GeometryCommands, MenusListTheMaterialsAndTheKindOfBody) {
  AddMaterial(L"Steel & iron");
  Select({kRoot});
  EXPECT_NE(Menu().find("IDS_QD_WRT_MATERIAL_APPLY{Steel & iron|-|IDS_QD_WRT_ISO_MATERIAL_APPLY...}"),
            std::string::npos);
  const auto kinds = [this](const std::vector<CString>& selected) {
    Select(selected);
    const std::string menu = Menu();
    return menu.substr(menu.find("BODY{"));
  };
  EXPECT_EQ(kinds({L"b"}), "BODY{IDS_QD_DB_BODY_RIGID|[x] IDS_QD_DB_BODY_FLEXIBLE}");
  Command(kCommandRigid);
  EXPECT_EQ(kinds({L"b"}), "BODY{[x] IDS_QD_DB_BODY_RIGID|IDS_QD_DB_BODY_FLEXIBLE}");
  EXPECT_EQ(kinds({L"a", L"b"}), "BODY{IDS_QD_DB_BODY_RIGID|IDS_QD_DB_BODY_FLEXIBLE}");
}

// ---- visibility -----------------------------------------------------------------------------------------

struct VisibilityCase {
  const char* name;
  std::vector<CString> selected;
  unsigned command;
  std::string shown;
};
class Visibility : public GeometryCommands, public ::testing::WithParamInterface<VisibilityCase> {};
TEST_P(Visibility, ChangesBoxesAndPartsWithOneRedraw) {
  Select(GetParam().selected);
  Command(GetParam().command);
  EXPECT_EQ(Shown(), GetParam().shown);
  EXPECT_EQ(Redraws(), 1);
  EXPECT_TRUE(m_doc.IsModelInfoChanged());
  // Back to what was before, whatever the command did on the way.
  Select({kRoot});
  Command(kCommandPrevious);
  EXPECT_EQ(Shown(), "ab");
}
INSTANTIATE_TEST_SUITE_P(Commands, Visibility,
                         ::testing::Values(VisibilityCase{"show_all", {kRoot}, kCommandShowAll, "abc"},
                                           VisibilityCase{"hide_all", {kRoot}, kCommandHideAll, ""},
                                           VisibilityCase{"reverse_all", {kRoot}, kCommandReverseAll, "c"},
                                           VisibilityCase{"show", {L"b", L"c"}, kCommandShow, "abc"},
                                           VisibilityCase{"hide", {L"b", L"c"}, kCommandHide, "a"},
                                           VisibilityCase{"show_only", {L"c"}, kCommandShowOnly, "c"},
                                           VisibilityCase{"hide_only", {L"a"}, kCommandHideOnly, "bc"},
                                           VisibilityCase{"reverse", {L"b", L"c"}, kCommandReverse, "ac"}),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_F(GeometryCommands, MeshesFollowTheShownPartsOfTheList) {
  Select({kRoot});
  Command(kCommandHideMesh);
  EXPECT_FALSE(m_doc.GetDisplay().IsMsetShown(mesh));
  Command(kCommandShowMesh);
  EXPECT_TRUE(m_doc.GetDisplay().IsMsetShown(mesh));
  Node(L"a")->OnClickCheck(kChecked);  // a hidden part takes its mesh along
  EXPECT_FALSE(m_doc.GetDisplay().IsMsetShown(mesh));
  Command(kCommandShowMesh);
  EXPECT_FALSE(m_doc.GetDisplay().IsMsetShown(mesh));
  Command(kCommandShowMeshUnits);
  EXPECT_TRUE(m_doc.GetDisplay().IsMsetShown(mesh));
}

// ---- drawing --------------------------------------------------------------------------------------------

TEST_F(GeometryCommands, RenderModesGoToPartsAndMeshesAndChangeTheIcons) {
  const struct {
    unsigned command;
    unsigned cad;
    unsigned mesh;
    int icon;
  } cases[] = {{kCommandEdgeShading, 1, 1, 25},
               {kCommandShading, 0, 0, 26},
               {kCommandWireframe, 2, 3, 27},
               {kCommandBoundingBox, 3, 6, 28}};
  for (const auto& mode : cases) {
    Select({L"a"});
    Command(mode.command);
    EXPECT_EQ(Modes(), (std::vector<unsigned>{mode.cad, 1, 1}));
    EXPECT_EQ(m_doc.GetDisplay().GetMeshLook(1).mode, mode.mesh);
    EXPECT_EQ(Tree().GetItemImage(Row(L"a")), mode.icon);
  }
  Select({L"a"});
  Tree().OnMenuEventGeomRoot(kCommandFirstShortcut + 2);  // the host's shortcut acts on all parts
  EXPECT_EQ(Modes(), (std::vector<unsigned>{2, 2, 2}));
  EXPECT_EQ(Tree().GetItemImage(Row(L"c")), 23);
}

// ---- the model ------------------------------------------------------------------------------------------

TEST_F(GeometryCommands, DeletingPartsAndMeshesIsOneActEach) {
  const auto before = Data().Snapshot();
  Select({L"a", L"b"});
  Command(kCommandDeleteMesh);
  EXPECT_EQ(Data().GetDataType(mesh), 0);
  Data().Undo();
  Select({L"a", L"b"});
  Command(kCommandDelete);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [-c]]");
  Data().Undo();
  Select({kRoot});
  Command(kCommandDelete);
  EXPECT_EQ(State(), "model.step [*IDS_DB_DATA_NAME_GEOM]");
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
}

TEST_F(GeometryCommands, MaterialsOfTheMenuAndOfDropsReachTheParts) {
  const iterator steel = AddMaterial(L"Steel");
  const iterator brass = AddMaterial(L"Brass");
  m_toolkit.AnswerMenu(MaterialCommandBase() + 1);
  Select({kRoot});
  Menu();
  EXPECT_EQ(Part(c).material, brass);
  m_toolkit.AnswerMenu(MaterialCommandBase());
  Select({L"b"});
  Menu();
  EXPECT_EQ(Part(b).material, steel);
  EXPECT_EQ(Part(a).material, brass);
  Command(MaterialCommandBase());  // the list is used up
  EXPECT_EQ(Part(a).material, brass);
  Tree().GetQDRootItem()->ChangeGeomTitle(&m_doc, 1);
  EXPECT_EQ(State(),
            "model.step [IDS_DB_DATA_NAME_GEOM [a (Brass) *b (Steel) -c (Brass)] IDS_WB_MATERIALS [Steel Brass]]");
  Tree().GetQDRootItem()->ChangeGeomTitle(&m_doc, 0);
}

TEST_F(GeometryCommands, TitlesAreReadAgainWhenThoseOfMaterialsChange) {
  const iterator steel = AddMaterial(L"Steel");
  ChangePart(a, [steel](tagTGeom& part) { part.material = steel; });
  CQDTreeItem* root = Node(kRoot);
  Node(L"a")->ChangeTitle(L"old a");
  Node(L"b")->ChangeTitle(L"old b");
  root->PushUpdateInfo({kDataMaterialTitle, kChangeAdded, 0});
  root->Update();
  EXPECT_NE(State().find("[old a old b -c]"), std::string::npos);
  root->PushUpdateInfo({kDataMaterialTitle, kChangeModified, 0});
  root->Update();
  EXPECT_NE(State().find("[a old b -c]"), std::string::npos);  // b has no material
  Node(L"old b")->ChangeTitle(L"b");
}

TEST_F(GeometryCommands, ADroppedMaterialGoesToThePartOrToAll) {
  const iterator steel = AddMaterial(L"Steel");
  const auto before = Data().Snapshot();
  Drag({L"a"}, L"b");             // no material
  Drag({L"Steel", L"a"}, kRoot);  // not alone
  EXPECT_EQ(Data().Snapshot(), before);
  Drag({L"Steel"}, L"b");
  EXPECT_EQ(Part(b).material, steel);
  EXPECT_EQ(Part(a).material, 0U);
  Drag({L"Steel"}, kRoot);
  EXPECT_EQ(Part(c).material, steel);
  Data().GetMaterialPool().TR_Del({steel});
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a b -c]]");
}

TEST_F(GeometryCommands, AnEmptyBranchHasNothingToTellTheHost) {
  Data().GetGeomPool().TR_Del({a, b, c});
  AddMaterial(L"Steel");
  for (const unsigned command : {kCommandRandomColour, kCommandDelete, kCommandDeleteMesh, kCommandRigid}) {
    Select({kRoot});
    Heard();
    Command(command);
    EXPECT_EQ(Heard(), "") << command;
  }
  m_toolkit.AnswerMenu(MaterialCommandBase());
  Menu();
  Drag({L"Steel"}, kRoot);
  Command(kCommandShowMesh);
  EXPECT_EQ(Heard(), "doc.SetModelInfoChangedFlag(1)\n");
}

struct NameCase {
  const wchar_t* typed;
  CString stored;
  std::string told;
};
class PartNames : public GeometryCommands, public ::testing::WithParamInterface<NameCase> {};
TEST_P(PartNames, AreStoredRefusedOrCut) {
  Node(L"b")->OnEditChange(GetParam().typed);
  EXPECT_EQ(Part(b).name, GetParam().stored);
  EXPECT_EQ(Tree().GetItemText(Tree().FindGeomNode(b)->GetTreeItemHandle(), 0), GetParam().stored);
  EXPECT_EQ(Warnings(), GetParam().told);
}
INSTANTIATE_TEST_SUITE_P(
    Texts, PartNames,
    ::testing::Values(NameCase{L"new", L"new", ""}, NameCase{L"b", L"b", ""},
                      NameCase{L"a", L"a", ""},  // parts may share a name
                      NameCase{L"", L"b", "IDS_QD_DB_NAME_EMPTY"},
                      NameCase{L"1234567890123456789012345678901234567890123456789012345678901234",
                               CString(L"123456789012345678901234567890123456789012345678901234567890123"), ""}));

}  // namespace
}  // namespace qd::test

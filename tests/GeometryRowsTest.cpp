// The geometry branch over the real model: what the fixture's look at the rows does not see, as the order of rows
// that come and go, titles, and what is done with records that do not stand.

#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/geometry/CQDTreeItemPart.h"
#include "qd_wrt/geometry/GeomMenus.h"
#include "support/Geometry.h"

namespace qd::test {
namespace {

using namespace workbench;

const CString kRoot = L"IDS_DB_DATA_NAME_GEOM";

class GeometryRows : public GeometryTest {
 protected:
  std::vector<iterator> OpenWith(const std::vector<CString>& names) {
    auto parts = AddParts(names);
    Open();
    Tree().Expand(Row(kRoot), ExpandAction::Expand);
    m_toolkit.Pump();
    Heard();
    return parts;
  }
};

TEST_F(GeometryRows, FollowTheDatabaseThroughUndoAndRedo) {
  Open();
  const auto parts = AddParts({L"a", L"b", L"c"});
  ChangePart(parts[1], [](tagTGeom& part) { part.name = L"B"; });
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a B c]]");
  EXPECT_EQ(Data().GetGeomPool().TR_Del({parts[0], parts[2]}), 1);
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [B a c]]");  // rows come back as the last ones
  EXPECT_EQ(Data().Redo(), 1);
  EXPECT_EQ(Tree().GetRowCount(), 6);
}

TEST_F(GeometryRows, ChildOperationsOnUnknownRecordsChangeNothing) {
  const auto parts = OpenWith({L"a"});
  auto& branch = *static_cast<CQDTreeItemGeom*>(Node(kRoot));
  EXPECT_EQ(branch.DeleteChildItem(12345), 0);
  EXPECT_EQ(branch.ModifyChildItem(12345), 0);
  EXPECT_EQ(branch.MakeChildItem(12345), 0);
  EXPECT_EQ(branch.MakeChildItem(parts[0]), 1);  // stands already: no second row
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a]]");
  EXPECT_EQ(CQDTreeItemGeom::GetGeomImage(4, 0), 21);  // no mode that there is
  EXPECT_EQ(CQDTreeItemGeom::GetGeomImage(99, 1), 21);
}

TEST_F(GeometryRows, ThePartKnowsItsMeshAsLongAsThereIsOne) {
  const auto parts = OpenWith({L"a", L"b"});
  const iterator mset = AddMesh(parts[0]);
  EXPECT_TRUE(m_doc.GetDisplay().Parts().IsMeshed(1));
  Data().GetMsetPool().TR_Del({mset});  // the record is gone, its part is still found
  EXPECT_FALSE(m_doc.GetDisplay().Parts().IsMeshed(1));
}

TEST_F(GeometryRows, AMeshOfNoPartHasAllIconsReadAgain) {
  const auto parts = OpenWith({L"a", L"b"});
  for (const wchar_t* title : {L"a", L"b"}) Node(title)->ChangeImage(20);
  AddMesh(0);  // behind it the fixture compares the icons with those of a fresh tree
}

TEST_F(GeometryRows, TitlesNameTheMaterialWhenAsked) {
  const auto parts = OpenWith({L"Bolt", L"Nut"});
  const iterator steel = AddMaterial(L"Steel");
  DragByMouse({L"Steel"}, L"Bolt");
  Select({kRoot});
  EXPECT_EQ(Menu(), Menu());  // with the materials, left without a choice
  Tree().ResetSelection(1);
  m_bar.ChangeGeomTitle(&m_doc, 1);
  m_materialsInTitles = true;
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [Bolt (Steel) Nut] IDS_WB_MATERIALS [Steel]]");
  Act([&] {
    tagTMaterial iron = *Data().GetMaterialPool().GetAtNU(steel);
    iron.name = L"Iron";
    Data().GetMaterialPool().Change(steel, iron);
  });
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [Bolt (Iron) Nut] IDS_WB_MATERIALS [Iron]]");
  auto* root = dynamic_cast<CQDTreeItemGeom*>(Node(kRoot));
  root->SetTitleMode(1);  // for parts to come
  Act([&] {
    tagTGeom pin;
    pin.name = L"Pin";
    pin.material = steel;
    pin.cadItem = Data().GetGeomPool().NextNumber();
    Data().GetGeomPool().Add(pin);
  });
  root->SetTitleMode(0);
  Node(L"Bolt (Iron)")->OnEditChange(L"Screw (Iron)");
  EXPECT_EQ(Part(parts[0]).name, L"Screw");
  Data().GetMaterialPool().TR_Del({steel});
  Settle();
  int title = -1;
  int colour = -1;
  m_bar.ChangeGeomColor(&m_doc, 2);
  m_bar.GetGeomTitleAndColor(&m_doc, title, colour);
  EXPECT_EQ(title, 0);  // the mode is passed on, not kept
  EXPECT_EQ(colour, 2);
}

TEST_F(GeometryRows, TitlesAreReadAgainWhenThoseOfMaterialsChange) {
  const auto parts = OpenWith({L"a", L"b"});
  const iterator steel = AddMaterial(L"Steel");
  ChangePart(parts[0], [steel](tagTGeom& part) { part.material = steel; });
  CQDTreeItem* root = Node(kRoot);
  Node(L"a")->ChangeTitle(L"old a");
  Node(L"b")->ChangeTitle(L"old b");
  root->PushUpdateInfo({kDataMaterialTitle, kChangeAdded, 0});
  root->Update();
  EXPECT_NE(State().find("[old a old b]"), std::string::npos);
  root->PushUpdateInfo({kDataMaterialTitle, kChangeModified, 0});  // no record
  root->Update();
  EXPECT_NE(State().find("[old a old b]"), std::string::npos);
  root->PushUpdateInfo({kDataMaterialTitle, kChangeModified, steel});
  root->PushUpdateInfo({kDataMaterialTitle, kChangeAdded, 0});
  root->Update();
  EXPECT_NE(State().find("[a old b]"), std::string::npos);  // b has no material
  Node(L"old b")->ChangeTitle(L"b");
}

TEST_F(GeometryRows, RootMenuShowsAndHidesAllWithOneRedrawABranch) {
  OpenWith({L"a", L"b"});
  m_toolkit.AnswerMenu(41008);
  m_toolkit.RightClick(Tree(), PointOf(L"model.step"));
  Settle();
  EXPECT_EQ(State(), "*model.step [IDS_DB_DATA_NAME_GEOM [-a -b]]");
  Heard();
  m_bar.OnMenuEvent(&m_doc, 41007);
  EXPECT_EQ(State(), "*model.step [IDS_DB_DATA_NAME_GEOM [a b]]");
  EXPECT_EQ(Redraws(), 2);  // of parts and of coordinate systems; there are no meshes
}

TEST_F(GeometryRows, AnEmptyBranchHasNothingToTellTheHost) {
  OpenWith({});
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

/// A group that comes back with its parts stands open or closed as it did, and so does its set.
TEST_F(GeometryRows, GroupsThatComeBackAreAsOpenAsTheyWere) {
  const iterator set = AddSet(L"S");
  const iterator solid = AddPartTo(set, L"a");
  const iterator face = AddPartTo(set, L"b", TopologyKind::Surface);
  Show(workbench::kGeometrySetTree);
  Open();
  const auto isOpen = [this](const CString& title) {
    CQDTreeItem* group = Node(title)->GetParent();
    return std::to_string(Tree().IsExpanded(group->GetTreeItemHandle())) +
           std::to_string(Tree().IsExpanded(group->GetParent()->GetTreeItemHandle()));
  };
  Node(L"S")->Expand(1);
  Node(L"a")->GetParent()->Expand(1);
  Act([&] { Data().GetGeomPool().TR_Del({solid, face}); });
  Undo();
  EXPECT_EQ(isOpen(L"a"), "11");
  EXPECT_EQ(isOpen(L"b"), "01");
  AddSet(L"T");  // the last one stays
  Act([&] { EXPECT_EQ(Data().GetGsetPool().TR_Del({set}), 1); });
  ASSERT_EQ(Tree().FindNode(set), nullptr);
  Undo();
  EXPECT_EQ(isOpen(L"a"), "11") << "so does the set, and what gathers its parts";
  EXPECT_EQ(isOpen(L"b"), "01");
  Node(L"S")->Expand(0);
  Node(L"a")->GetParent()->Expand(0);
  Act([&] { Data().GetGeomPool().TR_Del({solid, face}); });
  Undo();
  EXPECT_EQ(isOpen(L"a"), "00");
}

}  // namespace
}  // namespace qd::test

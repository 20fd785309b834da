// The geometry branch over the real model: rows, icons, titles, colours, change notices, check boxes.

#include "support/Model.h"

#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/geometry/CQDTreeItemPart.h"

namespace qd::test {
namespace {

using namespace workbench;

class GeometryRows : public ModelTest {
 protected:
  CQDTreeItemGeom& Branch() { return *static_cast<CQDTreeItemGeom*>(Node(L"IDS_DB_DATA_NAME_GEOM")); }
  iterator MeshFor(iterator geom) {
    tagTMset record;
    record.geom = geom;
    iterator mset = 0;
    Act([&] { mset = Data().GetMsetPool().Add(record); });
    return mset;
  }
  iterator Material(const CString& name) {
    tagTMaterial record;
    record.name = name;
    iterator material = 0;
    Act([&] { material = Data().GetMaterialPool().Add(record); });
    return material;
  }
  void OpenBranch() {
    Open();
    Tree().Expand(Row(L"IDS_DB_DATA_NAME_GEOM"), ExpandAction::Expand);
    m_toolkit.Pump();
    Heard();
  }
};

TEST_F(GeometryRows, ShowNumberColourAndNameOfEachPart) {
  AddParts({L"Bolt", L"Nut\twith tab"});
  ChangePart(Data().GetGeomPool().GetItrList()[1], [](tagTGeom& part) { part.colour = Rgb(255, 0, 128); });
  OpenBranch();
  EXPECT_EQ(Print(),
            "model.step\n"
            "  IDS_QD_WRT_Coordinate_System\n"
            "    [x] IDS_WB_GLOBAL_CORD\n"
            "  IDS_DB_DATA_NAME_GEOM\n"
            "    [x] Bolt  id=1  #010203\n"
            "    [x] Nut\\u0009with tab  id=2  #FF0080\n"
            "  [x] IDS_QD_WRT_MESH\n");
  EXPECT_EQ(Tree().GetItemText(Row(L"Bolt"), 1), L"1  ");  // padded when the row is made
}

TEST_F(GeometryRows, FollowTheDatabaseThroughUndoAndRedo) {
  OpenBranch();
  const auto parts = AddParts({L"a", L"b", L"c"});
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a b c]]");
  ChangePart(parts[1], [](tagTGeom& part) {
    part.name = L"B";
    part.colour = Rgb(9, 9, 9);
  });
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a B c]]");
  EXPECT_EQ(Tree().GetRecord(Row(L"B"))->GetColor(), Rgb(9, 9, 9));
  EXPECT_EQ(Data().GetGeomPool().TR_Del({parts[0], parts[2]}), 1);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [B]]");
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [B a c]]");  // rows come back as the last ones
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [b a c]]");
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM]");
  while (Data().Redo() != 0) continue;
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [B]]");
  EXPECT_EQ(Tree().GetRowCount(), 6);
}

TEST_F(GeometryRows, ChildOperationsOnUnknownRecordsChangeNothing) {
  const auto parts = AddParts({L"a"});
  OpenBranch();
  EXPECT_EQ(Branch().DeleteChildItem(12345), 0);
  EXPECT_EQ(Branch().ModifyChildItem(12345), 0);
  EXPECT_EQ(Branch().MakeChildItem(12345), 0);
  EXPECT_EQ(Branch().MakeChildItem(parts[0]), 1);  // stands already: no second row
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a]]");
}

struct IconCase {
  unsigned mode;
  int plain;
  int meshed;
};
class GeometryIcons : public ::testing::TestWithParam<IconCase> {};

TEST_P(GeometryIcons, FollowRenderModeAndMesh) {
  EXPECT_EQ(GetGeomImage(GetParam().mode, 0), GetParam().plain);
  EXPECT_EQ(GetGeomImage(GetParam().mode, 1), GetParam().meshed);
}
INSTANTIATE_TEST_SUITE_P(Modes, GeometryIcons,
                         ::testing::Values(IconCase{0, 22, 26}, IconCase{1, 21, 25}, IconCase{2, 23, 27},
                                           IconCase{3, 24, 28}, IconCase{4, 21, 21}, IconCase{99, 21, 21}));

TEST_F(GeometryRows, IconShowsTheMeshAsLongAsThereIsOne) {
  const auto parts = AddParts({L"a", L"b"});
  OpenBranch();
  EXPECT_EQ(Tree().GetItemImage(Row(L"a")), 21);
  const iterator mset = MeshFor(parts[0]);
  EXPECT_EQ(Tree().GetItemImage(Row(L"a")), 25);
  EXPECT_EQ(Tree().GetItemImage(Row(L"b")), 21);
  EXPECT_TRUE(m_doc.GetDisplay().GetCadItem(1).meshed);
  Data().GetMsetPool().TR_Del({mset});  // the record is gone, its part is still found
  EXPECT_EQ(Tree().GetItemImage(Row(L"a")), 21);
  EXPECT_FALSE(m_doc.GetDisplay().GetCadItem(1).meshed);
}

TEST_F(GeometryRows, TitlesNameTheMaterialWhenAsked) {
  const auto parts = AddParts({L"Bolt", L"Nut"});
  const iterator steel = Material(L"Steel");
  ChangePart(parts[0], [&](tagTGeom& part) { part.material = steel; });
  OpenBranch();
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [Bolt Nut] IDS_WB_MATERIALS [Steel]]");
  m_bar.ChangeGeomTitle(&m_doc, 1);
  m_materialsInTitles = true;
  EXPECT_EQ(State(),
            "model.step [IDS_DB_DATA_NAME_GEOM [Bolt (Steel) Nut] IDS_WB_MATERIALS [Steel]]");  // no material: the
                                                                                                // name alone
  Act([&] {
    Data().GetMaterialPool().Change(steel, [] {
      tagTMaterial m;
      m.name = L"Iron";
      return m;
    }());
  });
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [Bolt (Iron) Nut] IDS_WB_MATERIALS [Iron]]");
  Data().GetMaterialPool().TR_Del({steel});
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [Bolt Nut]]");
  int title = -1;
  int colour = -1;
  m_bar.ChangeGeomColor(&m_doc, 2);
  m_bar.GetGeomTitleAndColor(&m_doc, title, colour);
  EXPECT_EQ(title, 0);  // the mode is passed on, not kept
  EXPECT_EQ(colour, 2);
}

TEST_F(GeometryRows, CheckBoxesShowAndHideParts) {
  const auto parts = AddParts({L"a", L"b", L"c"});
  OpenBranch();
  ClickCheck(L"b");
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a -b c]]");
  EXPECT_FALSE(m_doc.GetDisplay().GetCadItem(2).shown);
  EXPECT_TRUE(m_doc.GetDisplay().GetCadItem(1).shown);
  EXPECT_EQ(Redraws(), 1);
  // A rebuilt tree shows what is hidden.
  Open();
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a -b c]]");
}

TEST_F(GeometryRows, EverySelectedBoxTakesTheOppositeOfTheClickedOne) {
  AddParts({L"a", L"b", L"c", L"d"});
  OpenBranch();
  ClickCheck(L"b");
  Click(L"a");
  Click(L"b", kMouseControl);
  Click(L"c", kMouseControl);
  ClickCheck(L"a");  // a was shown: all three are hidden now, b stays
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [-a -b -c d]]");  // and nothing is selected
  Click(L"d");
  ClickCheck(L"c");  // not selected: acts alone
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [-a -b c d]]");
}

TEST_F(GeometryRows, MeshOfAPartIsShownAndHiddenWithIt) {
  const auto parts = AddParts({L"a"});
  const iterator mset = MeshFor(parts[0]);
  OpenBranch();
  ClickCheck(L"a");
  EXPECT_FALSE(m_doc.GetDisplay().IsMsetShown(mset));
  ClickCheck(L"a");
  EXPECT_TRUE(m_doc.GetDisplay().IsMsetShown(mset));
}

TEST_F(GeometryRows, RootMenuShowsAndHidesAllWithOneRedrawABranch) {
  AddParts({L"a", L"b"});
  OpenBranch();
  m_toolkit.AnswerMenu(41008);
  m_toolkit.RightClick(Tree(), PointOf(L"model.step"));
  m_toolkit.Pump();
  ASSERT_EQ(m_toolkit.ShownMenus(), std::vector<std::string>{"IDS_QD_WRT_SHOW_ALL|IDS_QD_WRT_HIDE_ALL"});
  EXPECT_EQ(State(), "*model.step [IDS_DB_DATA_NAME_GEOM [-a -b]]");
  Heard();
  m_bar.OnMenuEvent(&m_doc, 41007);
  EXPECT_EQ(State(), "*model.step [IDS_DB_DATA_NAME_GEOM [a b]]");
  EXPECT_EQ(Redraws(), 2);  // of parts and of coordinate systems; there are no meshes
}

TEST_F(GeometryRows, HostRequestsShowAndHideParts) {
  const auto parts = AddParts({L"a", L"b", L"c"});
  OpenBranch();
  TArray<iterator> some{parts[0], 999, parts[2]};
  m_bar.SetShowHideItem(&m_doc, 0, some, 0, 0);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [-a b -c]]");
  m_bar.ShowHideGeom(&m_doc, some, 1);
  EXPECT_EQ(State(), "model.step [IDS_DB_DATA_NAME_GEOM [a b c]]");
}

TEST_F(GeometryRows, HostileNamesStayWholeAndOnOneRow) {
  const CString odd = std::wstring(5000, L'x') + L"\n[12]&\x202E\xD800";
  AddParts({odd, L"", L"   "});
  OpenBranch();
  EXPECT_EQ(Tree().GetItemText(Row(odd), 0), odd);
  EXPECT_EQ(Tree().RowCount(), 8U);
  EXPECT_NO_FATAL_FAILURE(m_toolkit.Paint(Tree()));
}

}  // namespace
}  // namespace qd::test

// Searching in the works trees of a document: what queries know of its records, and how the rest of the program
// goes on beside a filter.

#include <gtest/gtest.h>

#include "qd_wrt/core/CommandNumbers.h"
#include "support/Mesh.h"
#include "support/Model.h"

namespace qd::test {
namespace {

class FindInDocument : public MeshTest {
 protected:
  CWorksTreeBar& Bar() { return m_bar; }
  std::string Filtered(const CString& query) {
    EXPECT_EQ(Bar().SetFilter(query), 1);
    return Shown();
  }
  /// The titles on show, those of the geometry branch first.
  std::string Shown() {
    for (int i = 0; Bar().IsFilterDone() == 0 && i < 1000; ++i) {
      m_toolkit.Advance(1);
      m_toolkit.Pump();
    }
    Settle();
    std::string shown;
    const CQDTreeListCtrl& tree = Bar().GetTreeCtrl();
    for (HTREEITEM row = tree.GetRootItem(); row; row = NextRow(row)) {
      CRect place;
      if (tree.IsLive(row) && tree.GetItemRect(row, place, false)) {
        shown += (shown.empty() ? "" : " ") + workbench::ToUtf8(tree.GetItemText(row, 0));
      }
    }
    return shown;
  }
};

TEST_F(FindInDocument, QueriesKnowWhatRecordsAre) {
  const iterator steel = AddMaterial(L"steel");
  const iterator rib = AddPartTo(AddSet(L"wing"), L"rib", TopologyKind::Surface);
  Act([&] { AddPart(L"bolt", Rgb(255, 0, 0)); });
  ChangePart(rib, [steel](tagTGeom& record) {
    record.material = steel;
    auto shape = std::make_shared<PartShape>();
    shape->area = 12;
    record.shape = shape;
  });
  Settle();
  const std::string root =
      workbench::ToUtf8(m_bar.GetTreeCtrl().GetItemText(m_bar.GetTreeCtrl().GetRootItem(), 0));
  const std::string geometry = root + " IDS_DB_DATA_NAME_GEOM";
  EXPECT_EQ(Filtered(L"type:surface"), geometry + " rib");
  EXPECT_EQ(Filtered(L"type:part colour:red"), geometry + " bolt");
  EXPECT_EQ(Filtered(L"material:steel"), geometry + " rib");
  EXPECT_EQ(Filtered(L"set:wing"), geometry + " rib");
  EXPECT_EQ(Filtered(L"area:>10"), geometry + " rib");
  EXPECT_EQ(Filtered(L"type:material"), root + " IDS_WB_MATERIALS steel");
  EXPECT_EQ(Bar().GetMatchCount(), 1);
  // What a row does not show itself is followed too.
  EXPECT_EQ(Filtered(L"material:steel"), geometry + " rib");
  Act([&] {
    tagTMaterial record = *Data().GetMaterialPool().GetAtNU(steel);
    record.name = L"iron";
    ASSERT_EQ(Data().GetMaterialPool().Change(steel, record), 1);
  });
  EXPECT_EQ(Shown(), "");
  Undo();
  EXPECT_EQ(Shown(), geometry + " rib");
}

TEST_F(FindInDocument, ActsAndUndoGoOnBesideAFilter) {
  const std::vector<iterator> parts = AddParts({L"bolt", L"nut", L"bolt 2"});
  const std::string above = [this] {
    const CQDTreeListCtrl& tree = m_bar.GetTreeCtrl();
    return workbench::ToUtf8(tree.GetItemText(tree.GetRootItem(), 0)) + " IDS_DB_DATA_NAME_GEOM";
  }();
  EXPECT_EQ(Filtered(L"bolt"), above + " bolt bolt 2");
  ChangePart(parts[1], [](tagTGeom& record) { record.name = L"bolt 3"; });
  EXPECT_EQ(Shown(), above + " bolt bolt 3 bolt 2");
  Undo();
  EXPECT_EQ(Shown(), above + " bolt bolt 2");
  // A pick in the view shows what the filter hides.
  m_session->Trees().Pick({parts[1]}, workbench::PickMode::Replace);
  EXPECT_EQ(Shown(), above + " bolt nut bolt 2");
  EXPECT_EQ(Bar().GetMatchCount(), 2);
  // Without a choice of rows commands mean all, and say so.
  Filtered(L"bolt");
  SelectRows(L"IDS_DB_DATA_NAME_GEOM");
  Heard();
  Command(kCommandHideAll);
  EXPECT_EQ(Warnings(), "IDS_QD_WRT_FIND_ALL_MEANT");
  EXPECT_EQ(Filtered(L"hidden: type:part"), above + " bolt nut bolt 2");
  Command(kCommandShowAll);
  Settle();
  EXPECT_EQ(Shown(), "");
  Undo();
  EXPECT_EQ(Shown(), above + " bolt nut bolt 2");
  Bar().ClearFilter();
  Settle();
  EXPECT_EQ(Bar().GetMatchCount(), 0);
}

TEST_F(FindInDocument, CommandsSayThatTheyMeanAllWhenTheyDo) {
  AddParts({L"bolt", L"nut"});
  AddMset(L"bolt");
  AddMset(L"nut");
  Act([&] {
    tagTCord system;
    system.SetName(L"bolt");
    Data().GetCordPool().Add(system);
  });
  Filtered(L"bolt");
  const CString meshes = L"IDS_QD_WRT_MESH";
  const CString systems = L"IDS_QD_WRT_Coordinate_System";
  const struct {
    CString row;
    unsigned command;
    bool says;
  } cases[] = {{meshes, kCommandHideAllMeshes, true},
               {meshes, kCommandAllNodes, true},
               {meshes, kCommandSortByName, false},
               {meshes, kCommandNewSet, false},
               {meshes, kCommandMeshWireframe, true},
               {systems, kCommandHideAll, true},
               {systems, kCommandAddCord, false},
               {L"IDS_DB_DATA_NAME_GEOM", kCommandImport, false},
               {L"IDS_DB_DATA_NAME_GEOM", kCommandGenerateMesh, true}};
  for (const auto& [row, command, says] : cases) {
    SelectRows(row);
    Heard();
    Command(command);
    EXPECT_EQ(Warnings().find("IDS_QD_WRT_FIND_ALL_MEANT") != std::string::npos, says) << command;
  }
}

/// What a search has opened was not opened by anybody.
TEST_F(FindInDocument, OpeningsOfASearchAreNobodysOwn) {
  const iterator bolt = AddPartTo(AddSet(L"wing"), L"bolt");
  Show(workbench::kGeometrySetTree);
  CQDTreeListCtrl& sets = Tree();
  const auto group = [&] { return sets.FindNode(bolt)->GetParent()->GetTreeItemHandle(); };
  sets.FindNode(bolt)->GetParent()->Expand(0);
  CWorksTreeBar& bar = m_session->Trees().Bar(workbench::kGeometrySetTree);
  ASSERT_EQ(bar.SetFilter(L"bolt"), 1);
  Settle();
  ASSERT_TRUE(sets.IsExpanded(group()));
  EXPECT_FALSE(sets.WasExpanded(group()));
  // The group goes with its last part and comes back with the next.
  ChangePart(bolt, [](tagTGeom& part) { part.kind = TopologyKind::Curve; });
  ChangePart(bolt, [](tagTGeom& part) { part.kind = TopologyKind::Solid; });
  bar.ClearFilter();
  Settle();
  EXPECT_FALSE(sets.IsExpanded(group()));
  // Branches that are opened for all to see stay open.
  HTREEITEM branch = sets.GetChildItem(sets.GetRootItem());
  sets.Expand(branch, ExpandAction::Collapse);
  ASSERT_EQ(bar.SetFilter(L"bolt"), 1);
  Settle();
  m_session->Trees().OpenBranches();
  EXPECT_TRUE(sets.WasExpanded(branch));
  bar.ClearFilter();
  Settle();
  EXPECT_TRUE(sets.IsExpanded(branch));
}

TEST_F(FindInDocument, AllMatchesAreSelectedForTheDocumentToo) {
  AddParts({L"bolt", L"nut", L"bolt 2"});
  ASSERT_EQ(Bar().SetFind(L"bolt"), 1);
  EXPECT_EQ(Bar().SelectMatches(), 1);
  Settle();
  EXPECT_EQ(m_doc.GetSelectBuffer().size(), 2U);
  EXPECT_EQ(Bar().SetFilter(L"nut"), 1);
  Shown();
  EXPECT_TRUE(m_doc.GetSelectBuffer().empty());  // hidden rows are not selected
  EXPECT_TRUE(m_doc.GetSelection().lost);        // and nobody means all instead
  EXPECT_EQ(Bar().SetFilter(L"/(/"), 0);
  EXPECT_EQ(Bar().FindNext(1), 1);
  EXPECT_EQ(m_doc.GetSelectBuffer().size(), 1U);
}

}  // namespace
}  // namespace qd::test

// Menus and commands of the mesh branch, beside what the host hears of them.

#include "qd_wrt/mesh/CQDMsetOperation.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "support/Mesh.h"

namespace qd::test {
namespace {

using namespace workbench;

/// Sets A (with B and, below that, C) and D; the default set is E.
class MeshCommands : public MeshTest {
 protected:
  MeshCommands() {
    a = AddMset(L"A");
    b = AddMset(L"B", a);
    c = AddMset(L"C", b);
    d = AddMset(L"D");
    Act([&] { e = Pool().NeedDefaultMset(); });
    ChangeMset(e, [](tagTMset& set) { set.name = L"E"; });
    Heard();
  }
  CQDTreeItemMesh& Root() { return dynamic_cast<CQDTreeItemMesh&>(*Node(kMeshRoot)); }
  std::string Menu(const std::vector<CString>& selected) {
    Select(selected);
    Tree().ShowContextMenu({10, 10});
    std::string menu = m_toolkit.ShownMenus().back();
    for (const char* prefix : {"IDS_QD_WRT_MESH_", "IDS_QD_WRT_", "IDS_MENU_WRT_MESH_"}) {
      const std::string text = prefix;
      for (std::size_t at = menu.find(text); at != std::string::npos; at = menu.find(text))
        menu.erase(at, text.size());
    }
    return menu;
  }

  iterator a, b, c, d, e;
};

// ---- menus ----------------------------------------------------------------------------------------------

TEST_F(MeshCommands, MenusTellWhatIsShownBesideTheElements) {
  m_doc.GetDisplay().Meshes().SetAddOnInfo({Mset(b).key}, kAddOnElementIds);
  EXPECT_NE(Menu({L"B"}).find("[x] DISP_ELEM_ID"), std::string::npos);
  EXPECT_EQ(Menu({L"B", L"D"}).find("[x]"), std::string::npos);
  EXPECT_EQ(Menu({kMeshRoot}).find("[x]"), std::string::npos);
  m_doc.GetDisplay().Meshes().SetAddOnInfoAll(kAddOnNodes);
  EXPECT_NE(Menu({kMeshRoot}).find("[x] DISP_NODE|"), std::string::npos);
}

// ---- visibility -----------------------------------------------------------------------------------------

TEST_F(MeshCommands, TheBoxOfTheRootIsWhatWasWrittenToItLast) {
  const auto run = [this](const std::vector<CString>& titles, unsigned command) {
    Select(titles);
    Command(command);
    return Sets();
  };
  EXPECT_EQ(run({kMeshRoot}, 41203), "-A [-B [-C]] -D -E");
  EXPECT_EQ(Root().GetCheckStatus(), kUnchecked);
  EXPECT_EQ(run({L"B"}, 41206), "-A [B [C]] -D -E");
  EXPECT_EQ(Root().GetCheckStatus(), kChecked);
  EXPECT_TRUE(Root().IsViewUpdate());
}

TEST_F(MeshCommands, TheBoxOfTheDocumentAndHostRequestsReachTheMeshes) {
  Tree().OnMenuEventMeshRoot(41203);
  EXPECT_EQ(Sets(), "-A [-B [-C]] -D -E");
  Select({L"model.step"});
  Command(kCommandShowAll);
  EXPECT_EQ(Sets(), "A [B [C]] D E");
}

TEST_F(MeshCommands, SortingIsByKeyOrNameAndWithASelectionBelowThat) {
  const iterator z = AddMset(L"Z", a);
  AddMset(L"M", a);
  AddMset(L"B2", b);
  AddMset(L"B1", b);
  AddMset(L"Y", z);
  AddMset(L"X", z);
  Root().OnMenuEvent(41038);
  EXPECT_EQ(Sets(), "A [B [B1 B2 C] M Z [X Y]] D E");
  Root().OnMenuEvent(41037);
  EXPECT_EQ(Sets(), "A [B [C B2 B1] Z [Y X] M] D E");
  EXPECT_EQ(Node(L"B1")->GetID(), 9);
}

TEST_F(MeshCommands, TheOperationDialogRecordsTheChoice) {
  const std::pair<std::vector<int>, std::pair<int, int>> kCases[] = {
      {{1}, {1, 1}}, {{10414, 1}, {1, 2}}, {{10414, 10413, 1}, {1, 1}}, {{10414, 2}, {2, 2}}, {{}, {2, 1}}};
  for (const auto& [presses, expected] : kCases) {
    CQDMsetOperation dialog(&m_doc);
    m_toolkit.AnswerDialog(presses);
    EXPECT_EQ(dialog.DoModal(), expected.first);
    EXPECT_EQ(dialog.GetOperation(), expected.second);
  }
  EXPECT_EQ(m_toolkit.TakeDialogs().front(),
            "IDS_QD_WRT_MESHSET_OPERATION|IDS_QD_WRT_MESHSET_OPERATION_FR|(x) IDS_QD_WRT_MESH_MERGE|"
            "IDS_QD_WRT_MESH_MOVE|IDS_QD_BASE_OK|IDS_QD_BASE_CANCEL");
}

TEST_F(MeshCommands, SetsAreMadeWithFreeNamesAndEmptyOnesDeleted) {
  Root().OnMenuEvent(41000);
  Root().OnMenuEvent(41000);
  EXPECT_EQ(Sets(), "A [B [C]] D E IDS_QD_WRT_NEW_MESHSET IDS_QD_WRT_NEW_MESHSET 7");
  ChangeMset(b, [](tagTMset& set) { PutMesh(set, nullptr); });
  ChangeMset(c, [](tagTMset& set) {
    auto nodes = std::make_shared<MeshData>(*set.mesh);
    nodes->blocks.clear();
    PutMesh(set, nodes);
  });
  Root().OnMenuEvent(41242);
  EXPECT_EQ(Sets(), "A [C] D E");  // C holds nodes; the default set is empty too
  Root().OnMenuEvent(41241);
  EXPECT_EQ(Sets(), "E");
}

}  // namespace
}  // namespace qd::test

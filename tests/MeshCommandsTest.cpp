// Menus and commands of the mesh branch, names, merging, deleting and dropping, with writes that fail.

#include <functional>

#include "qd_wrt/mesh/CQDMsetOperation.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "support/AllOrNothing.h"
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
  DisplayState::MeshLook Look(iterator set) { return m_doc.GetDisplay().GetMeshLook(Mset(set).key); }
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

 public:
  iterator a, b, c, d, e;
  using MeshTest::Data;
  using MeshTest::Mset;
  using MeshTest::Pool;
};

// ---- menus ----------------------------------------------------------------------------------------------

TEST_F(MeshCommands, MenusTellWhatIsShownBesideTheElements) {
  m_doc.GetDisplay().SetAddOnInfo({Mset(b).key}, kAddOnElementIds);
  EXPECT_NE(Menu({L"B"}).find("[x] DISP_ELEM_ID"), std::string::npos);
  EXPECT_EQ(Menu({L"B", L"D"}).find("[x]"), std::string::npos);
  EXPECT_EQ(Menu({kMeshRoot}).find("[x]"), std::string::npos);
  m_doc.GetDisplay().SetAddOnInfoAll(kAddOnNodes);
  EXPECT_NE(Menu({kMeshRoot}).find("[x] DISP_NODE|"), std::string::npos);
}

// ---- visibility -----------------------------------------------------------------------------------------

TEST_F(MeshCommands, ShowAndHideTheSelectionAllOrOnly) {
  const auto run = [this](const std::vector<CString>& titles, unsigned command) {
    Select(titles);
    Command(command);
    return Sets();
  };
  EXPECT_EQ(run({L"B", L"D"}, 41201), "A [-B [-C]] -D E");
  EXPECT_EQ(run({L"C"}, 41200), "A [-B [C]] -D E");
  Heard();
  EXPECT_EQ(run({kMeshRoot}, 41203), "-A [-B [-C]] -D -E");
  EXPECT_EQ(Root().GetCheckStatus(), kUnchecked);
  EXPECT_EQ(run({L"D"}, 41202), "A [B [C]] D E");
  EXPECT_EQ(run({L"B"}, 41206), "-A [B [C]] -D -E");
  EXPECT_EQ(Root().GetCheckStatus(), kChecked);
  EXPECT_TRUE(Root().IsViewUpdate());
  EXPECT_EQ(run({L"B"}, 41207), "A [-B [-C]] D E");
  EXPECT_EQ(run({L"B", L"D"}, 41011), "A [B [C]] -D E");
  EXPECT_EQ(run({kMeshRoot}, 41011), "-A [-B [-C]] D -E");  // each by itself
  EXPECT_EQ(run({kMeshRoot}, 41206), "-A [-B [-C]] D -E");  // passed on, but no set is selected
  for (const iterator set : {a, b, c, e}) EXPECT_FALSE(IsShown(set));
  EXPECT_TRUE(IsShown(d));
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

// ---- names ----------------------------------------------------------------------------------------------

struct NameCase {
  CString text;
  CString expected;
  bool writes;
};
class MeshNames : public MeshCommands, public ::testing::WithParamInterface<NameCase> {};
TEST_P(MeshNames, AreKeptCutOrRefused) {
  const CString longName(70, L'n');
  AddMset(CString(63, L'm'));
  const auto before = Data().Snapshot();
  const CString text = GetParam().text;
  Tree().SetItemText(Row(L"B"), 0, text);  // as the editor leaves it
  Tree().FindMeshNode(b)->OnEditChange(text.c_str());
  EXPECT_EQ(Mset(b).name, GetParam().expected);
  EXPECT_EQ(Tree().GetItemText(Tree().FindMeshNode(b)->GetTreeItemHandle(), 0), GetParam().expected);
  EXPECT_EQ(Data().Snapshot() != before, GetParam().writes);
  EXPECT_EQ(Warnings(), "");
}
INSTANTIATE_TEST_SUITE_P(Texts, MeshNames,
                         ::testing::Values(NameCase{L"B", L"B", false}, NameCase{L"D", L"B", false},
                                           NameCase{L"", L"B", false}, NameCase{L"b", L"b", true},
                                           NameCase{CString(70, L'n'), CString(63, L'n'), true},
                                           NameCase{CString(64, L'm'), L"B", false},
                                           NameCase{L"x\x202E\n[3]", L"x\x202E\n[3]", true}));

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

// ---- acts on the model ----------------------------------------------------------------------------------

TEST_F(MeshCommands, DeletingAsksForNestedSetsUnlessTheChoiceIsMade) {
  const auto before = Data().Snapshot();
  const auto run = [&](const std::vector<CString>& titles, std::vector<MessageAnswer> answers) {
    for (const MessageAnswer answer : answers) m_toolkit.AnswerMessage(answer);
    Select(titles);
    Command(kCommandDeleteMesh);
    const std::string sets = Sets() + " " + std::to_string(m_toolkit.TakeMessages().size());
    if (Data().Snapshot() != before) Data().Undo();
    Open();
    return sets;
  };
  EXPECT_EQ(run({L"A"}, {MessageAnswer::Yes}), "D E 1");
  EXPECT_EQ(run({L"A"}, {MessageAnswer::No}), "D E B [C] 1");
  EXPECT_EQ(run({L"A"}, {MessageAnswer::Cancel}), "*A [B [C]] D E 1");
  EXPECT_EQ(run({L"A", L"C"}, {}), "D E B 0");
  EXPECT_EQ(run({L"C", L"D"}, {}), "A [B] E 0");
  EXPECT_EQ(run({L"D", L"E"}, {}), "A [B [C]] *D *E 0");  // the default set stays, and so all do
}

TEST_F(MeshCommands, MergingGoesIntoTheTopmostSelectedSet) {
  const auto elements = Elements();
  Select({L"D"});
  Command(kCommandMergeMeshSets);
  EXPECT_TRUE(m_toolkit.TakeMessages().empty());  // one set alone
  Select({L"A", L"C", L"D"});
  m_toolkit.AnswerMessage(MessageAnswer::No);
  Node(L"C")->OnMenuEvent(kCommandMergeMeshSets);
  EXPECT_EQ(Sets(), "*A [B [*C]] *D E");
  m_toolkit.AnswerMessage(MessageAnswer::Yes);
  Node(L"C")->OnMenuEvent(kCommandMergeMeshSets);
  EXPECT_EQ(Sets(), "A [B] E");
  EXPECT_EQ(m_toolkit.TakeMessages().size(), 2U);  // asked once each time, at the set that takes the others in
  EXPECT_EQ(Mset(a).elementCount, 6U);
  EXPECT_EQ(Elements(), elements);
  Data().Undo();
  EXPECT_EQ(Sets(), "A [B [C]] E D");
}

TEST_F(MeshCommands, DropsMergeOrMoveAndNeverOntoWhatIsNested) {
  const auto drop = [this](const std::vector<CString>& titles, const CString& target, std::vector<int> presses) {
    if (!presses.empty()) m_toolkit.AnswerDialog(std::move(presses));
    Select(titles);
    Drag(titles, target);
    return Sets();
  };
  const std::string asMade = "A [B [C]] D E";
  const auto before = Data().Snapshot();
  EXPECT_EQ(drop({L"D"}, L"B", {2}), "A [B [C]] *D E");
  EXPECT_EQ(drop({L"D"}, L"B", {10414, 2}), "A [B [C]] *D E");
  EXPECT_EQ(Data().Snapshot(), before);
  m_toolkit.TakeDialogs();
  for (const auto& titles : {std::vector<CString>{L"A"}, {L"B"}, {L"D", L"C"}}) {
    drop(titles, L"C", {});
    EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>{L"IDS_QD_WRT_MESHSET_OPERATION_ERR"});
  }
  EXPECT_TRUE(m_toolkit.TakeDialogs().empty());
  EXPECT_EQ(Data().Snapshot(), before);
  EXPECT_EQ(drop({L"B", L"E"}, L"D", {10414, 1}), "A D [B [C] E]");
  EXPECT_EQ(drop({L"C"}, L"A", {1}), "A D [B E]");
  EXPECT_EQ(Mset(a).elementCount, 4U);
  // Onto the root: to the top, but for the default set, without a question.
  EXPECT_EQ(drop({L"B", L"E"}, kMeshRoot, {}), "A D [*E] *B");
  EXPECT_EQ(drop({L"B", L"IDS_DB_DATA_NAME_GEOM"}, kMeshRoot, {}), "A D [E] *B");
}

struct MeshAct {
  const char* name;
  std::function<void(MeshCommands&)> act;
};
class EveryMeshAct : public MeshCommands, public ::testing::WithParamInterface<MeshAct> {};
TEST_P(EveryMeshAct, IsAllOrNothing) {
  const auto before = Data().Snapshot();
  const std::string rows = Print();
  const int writes = ExpectAllOrNothing(
      Data(), [this] { return Print(); },
      [this] {
        m_toolkit.AnswerMessage(MessageAnswer::Yes);
        GetParam().act(*this);
        Settle();
        m_toolkit.ForgetAnswers();
        m_toolkit.TakeMessages();
      });
  EXPECT_GT(writes, 0);
  EXPECT_NE(Data().Snapshot(), before);
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(Data().Snapshot(), before);
  Open();
  EXPECT_EQ(Print(), rows);
}
const MeshAct kActs[] = {
    MeshAct{"new", [](MeshCommands& test) { test.Node(kMeshRoot)->OnMenuEvent(41000); }},
    MeshAct{"delete_all", [](MeshCommands& test) { test.Node(kMeshRoot)->OnMenuEvent(41241); }},
    MeshAct{"random_colours", [](MeshCommands& test) { test.Node(kMeshRoot)->OnMenuEvent(41237); }},
    MeshAct{"rename", [](MeshCommands& test) { test.Node(L"B")->OnEditChange(L"other"); }},
    MeshAct{"delete",
            [](MeshCommands& test) {
              test.Select({L"B", L"D"});
              test.Command(41002);
            }},
    MeshAct{"merge",
            [](MeshCommands& test) {
              test.Select({L"B", L"D"});
              test.Command(41244);
            }},
    MeshAct{"move",
            [](MeshCommands& test) {
              test.m_toolkit.AnswerDialog({10414, 1});
              test.Drag({L"B", L"D"}, L"E");
            }},
    MeshAct{"merge_by_drop",
            [](MeshCommands& test) {
              test.m_toolkit.AnswerDialog({1});
              test.Drag({L"B", L"D"}, L"E");
            }},
    MeshAct{"to_the_top", [](MeshCommands& test) {
              test.Select({L"B", L"C"});
              test.Drag({L"B", L"C"}, kMeshRoot);
            }}};
INSTANTIATE_TEST_SUITE_P(Acts, EveryMeshAct, ::testing::ValuesIn(kActs),
                         [](const auto& act) { return act.param.name; });

TEST_F(MeshCommands, SetsAreMadeWithFreeNamesAndEmptyOnesDeleted) {
  Root().OnMenuEvent(41000);
  Root().OnMenuEvent(41000);
  EXPECT_EQ(Sets(), "A [B [C]] D E IDS_QD_WRT_NEW_MESHSET IDS_QD_WRT_NEW_MESHSET 7");
  ChangeMset(b, [](tagTMset& set) { PutMesh(set, nullptr); });
  Root().OnMenuEvent(41242);
  EXPECT_EQ(Sets(), "A [C] D E");  // the default set is empty too
  Root().OnMenuEvent(41241);
  EXPECT_EQ(Sets(), "E");
}

}  // namespace
}  // namespace qd::test

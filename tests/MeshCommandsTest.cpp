// Menus and commands of the mesh branch, names, merging, deleting and dropping, with writes that fail.

#include <functional>

#include "host/LongWork.h"
#include "qd_wrt/mesh/CQDMsetOperation.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "qd_wrt/properties/CPropertySetMesh.h"
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

// ---- how meshes are drawn -------------------------------------------------------------------------------

struct LookCase {
  unsigned command;
  std::function<int(const DisplayState::MeshLook&)> value;
  int expected;
};
std::vector<LookCase> LookCases() {
  const auto mode = [](const DisplayState::MeshLook& look) { return int(look.mode); };
  const auto opacity = [](const DisplayState::MeshLook& look) { return int(look.opacity); };
  std::vector<LookCase> cases;
  const int modes[] = {0, 1, 5, 2, 3, 4};
  for (unsigned i = 0; i < 6; ++i) cases.push_back({41208 + i, mode, modes[i]});
  const int values[] = {0, 25, 51, 76, 102, 127, 153, 178, 204, 229, 255};
  for (unsigned i = 0; i < 11; ++i) cases.push_back({41221 + i, opacity, values[i]});
  return cases;
}

TEST_F(MeshCommands, ModesAndTransparenciesGoToTheSelectionOrToAll) {
  const DisplayState::MeshLook asMade;
  for (const LookCase& look : LookCases()) {
    const bool isMode = look.command < 41214;
    // From a set: the selection. From the root: the selected ones below it. As a shortcut: all.
    Command(0);
    Select({L"B", L"D"});
    Command(look.command);
    EXPECT_EQ(look.value(Look(b)), look.expected) << look.command;
    EXPECT_EQ(look.value(Look(d)), look.expected) << look.command;
    EXPECT_EQ(look.value(Look(a)), look.value(asMade)) << look.command;
    EXPECT_FALSE(Tree().IsAnySelected());
    const unsigned shortcut = isMode ? look.command + 50 : look.command + 43;
    Select({L"B"});
    Root().OnMenuEvent(shortcut);
    for (const iterator set : {a, b, c, d, e}) EXPECT_EQ(look.value(Look(set)), look.expected) << shortcut;
    m_doc.GetDisplay().SetRenderMode(std::vector<std::uint32_t>{Mset(a).key}, asMade.mode);
    m_doc.GetDisplay().SetTransparency(std::vector<std::uint32_t>{Mset(a).key}, asMade.opacity);
  }
  Select({L"C"});
  Root().OnMenuEvent(41211);
  EXPECT_EQ(Look(c).mode, 2);
  EXPECT_EQ(Look(d).mode, 4);
}

TEST_F(MeshCommands, AddOnsAreToggledForTheSelectionAndForAll) {
  struct Bit {
    unsigned set;
    unsigned all;
    std::uint32_t bit;
  };
  for (const Bit& bit : {Bit{41214, 41286, 1},
                         {41216, 41288, 2},
                         {41217, 41289, 4},
                         {41218, 41290, 8},
                         {41219, 41291, 16},
                         {41220, 41292, 32}}) {
    Select({L"B", L"D"});
    Command(bit.set);
    EXPECT_EQ(Look(b).addOns, bit.bit);
    EXPECT_EQ(Look(a).addOns, 0U);
    Select({L"A", L"B"});
    Command(bit.set);  // not all have it, so all get it
    EXPECT_EQ(Look(a).addOns & Look(b).addOns & Look(d).addOns, bit.bit);
    Select({L"A", L"B", L"D"});
    Command(bit.set);
    EXPECT_EQ(Look(a).addOns | Look(b).addOns | Look(d).addOns, 0U);
    Root().OnMenuEvent(bit.all);
    EXPECT_EQ(Look(c).addOns, bit.bit);
    EXPECT_EQ(Look(AddMset(L"new")).addOns, bit.bit);
    Select({L"C"});
    Command(bit.set);
    EXPECT_EQ(Look(c).addOns, 0U);
    Root().OnMenuEvent(bit.all);  // one lacks it, so all get it
    EXPECT_EQ(Look(c).addOns, bit.bit);
    Root().OnMenuEvent(bit.all);
    EXPECT_EQ(Look(c).addOns, 0U);
  }
  Root().OnMenuEvent(41286);
  Root().OnMenuEvent(41292);
  Select({L"B"});
  Command(41204);
  EXPECT_EQ(Look(b).addOns, 0U);
  EXPECT_EQ(Look(a).addOns, 33U);
  Root().OnMenuEvent(41293);
  EXPECT_EQ(Look(a).addOns, 0U);
  Root().ShowHideNode({Node(L"A"), &Root()}, 1);
  EXPECT_EQ(Look(a).addOns, 1U);
  Heard();
  Root().ShowHideNode({Node(L"A")}, 5);  // is shown already
  EXPECT_EQ(Redraws(), 0);
  Root().ShowHideNode({Node(L"A")}, 0);
  EXPECT_EQ(Look(a).addOns, 0U);
}

TEST_F(MeshCommands, ColourModesAreThoseOfAllMeshesAndShrinkingIsTheSelections) {
  for (unsigned mode = 0; mode < 5; ++mode) {
    Select({L"B"});
    Root().OnMenuEvent(41232 + mode);
    EXPECT_EQ(m_doc.GetDisplay().GetMeshColorMode(), mode);
  }
  Select({L"B", L"D"});
  Command(41238);
  EXPECT_TRUE(Look(b).shrink && Look(d).shrink);
  EXPECT_FALSE(Look(a).shrink);
  Select({L"B"});
  Command(41238);
  EXPECT_FALSE(Look(b).shrink);
}

TEST_F(MeshCommands, OnlySomeCommandsCountAsChangesOfTheModelsDisplay) {
  std::vector<unsigned> marking;
  for (unsigned command = 41000; command < 41260; ++command) {
    if (command == 41005) continue;  // opens the editor
    Select({L"D"});
    m_doc.SetModelInfoChangedFlag(0);
    CQDTreeItem* node = Node(L"D");
    if (node == nullptr) continue;
    node->OnMenuEvent(command);
    if (m_doc.IsModelInfoChanged()) marking.push_back(command);
    if (Data().GetDataType(d) == 0) Data().Undo();
  }
  std::vector<unsigned> expected{41009, 41010, 41017, 41200, 41201, 41204, 41208};
  for (unsigned command = 41210; command <= 41214; ++command) expected.push_back(command);
  for (unsigned command = 41216; command <= 41231; ++command) expected.push_back(command);
  expected.push_back(41238);
  EXPECT_EQ(marking, expected);
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
  EXPECT_EQ(m_app.TakeLog(), "");
}
INSTANTIATE_TEST_SUITE_P(Texts, MeshNames,
                         ::testing::Values(NameCase{L"B", L"B", false}, NameCase{L"D", L"B", false},
                                           NameCase{L"", L"B", false}, NameCase{L"b", L"b", true},
                                           NameCase{CString(70, L'n'), CString(63, L'n'), true},
                                           NameCase{CString(64, L'm'), L"B", false},
                                           NameCase{L"x\x202E\n[3]", L"x\x202E\n[3]", true}));

// ---- dialogs --------------------------------------------------------------------------------------------

TEST_F(MeshCommands, DialogsAreOpenedByNameWithTheLastCommand) {
  const std::pair<unsigned, const char*> kDialogs[] = {{41605, "CQDMeshNodeDlg"},  {41606, "CQDMeshElemDlg"},
                                                       {41607, "CQDMeshGen2DDlg"}, {41608, "CQDMeshGen2DDlg"},
                                                       {41609, "CQDMeshGen3DDlg"}, {41610, "CQDMeshGen3DDlg"}};
  for (const auto& [command, dialog] : kDialogs) {
    Root().OnMenuEvent(command);
    EXPECT_EQ(m_app.TakeLog(), dialog + (" " + std::to_string(command) + " "));
  }
  Menu({kMeshRoot});
  EXPECT_EQ(IQueryMenuID2Idx::Instance().GetIndex(41608), 2);
  EXPECT_EQ(IQueryMenuID2Idx::Instance().GetIndex(41610), 1);
  for (unsigned command = 41250; command <= 41254; ++command) {
    Select({L"B"});
    Command(command);
    EXPECT_EQ(m_app.TakeLog(), "CQDMeshTransformDlg " + std::to_string(command) + " ");
  }
  Select({L"D"});
  Root().OnMenuEvent(41243);
  EXPECT_EQ(m_app.TakeLog(), "CQDMeshIncludeExcludeDlg 4 41243 ");
}

TEST_F(MeshCommands, MeshingAgainTakesTheModeOfTheRecord) {
  Select({L"B"});
  Command(41775);
  EXPECT_EQ(m_app.TakeLog(), "");  // nothing is known of how it was made
  const auto parts = AddParts({L"one", L"two"});
  for (const int method : {0, 1, 2, 3, 4}) {
    Act([&] {
      tagTMGInfo generation;
      generation.method = method;
      generation.targets = parts;
      const iterator itr = Data().GetMGInfoPool().Add(generation);
      tagTMset record = Mset(b);
      record.mgInfo = MGInfoPool::KeyOf(itr);
      ASSERT_EQ(Pool().Modify(b, record), 1);
    });
    Select({L"B"});
    Command(41775);
    EXPECT_EQ(m_app.TakeLog(),
              method > 3 ? "" : "CQDMeshGen3DDlg " + std::to_string(method + 1) + " of 2 targets 2 again ");
  }
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
  struct Dialog final : IQDCurrentDialog {
    void Update(int) override { ++updates; }
    int updates = 0;
  } dialog;
  m_doc.SetCurrentDialog(&dialog);
  Root().OnMenuEvent(41242);
  EXPECT_EQ(Sets(), "A [C] D E");  // the default set is empty too
  Root().OnMenuEvent(41241);
  EXPECT_EQ(Sets(), "E");
  EXPECT_EQ(dialog.updates, 2);
}

// ---- the property page ----------------------------------------------------------------------------------

class MeshPage : public MeshCommands {
 protected:
  std::string Rows() {
    m_properties.GetPropertySet()->ShowProperty();
    std::string text;
    for (const auto& row : m_properties.GetPropertySet()->GetRows()) {
      std::string name = ToUtf8(row->name);
      const std::string prefix = "IDS_QD_WRT_";
      if (name.starts_with(prefix)) name.erase(0, prefix.size());
      text += name + (row->kind == CBCGPProp::Kind::Title ? "" : "=" + ToUtf8(row->value)) +
              (row->readOnly ? "" : "*") + "|";
    }
    return text;
  }
  CBCGPProp& RowOf(const CString& name) {
    for (const auto& row : m_properties.GetPropertySet()->GetRows()) {
      if (row->name == name && row->kind != CBCGPProp::Kind::Title) return *row;
    }
    throw std::logic_error("no such row");
  }
};
const std::string kMassRows = "MESH_MASS*|MESH_MASS=|MASSX=|MASSY=|MASSZ=|";

TEST_F(MeshPage, ShowsASetOrTheSumsOfSeveral) {
  Click(kMeshRoot);
  Tree().SelectCTItem(Node(L"D"));
  EXPECT_EQ(Rows(),
            "IDS_DB_DATA_NAME_MESH*|ID=4|NAME=D*|Color=*|MESH_ELEM_COUNT=2|MESH_NODE_COUNT=4|" + kMassRows);
  Tree().SelectCTItem(Node(L"E"));
  EXPECT_NE(Rows().find("NAME=E|"), std::string::npos);
  Select({L"A", L"B", L"D"});
  Tree().OnSelchangAction();
  EXPECT_EQ(Rows(), "IDS_DB_DATA_NAME_MESH*|COUNT=3|MESH_ELEM_COUNT=6|MESH_NODE_COUNT=12|");
}

TEST_F(MeshPage, NamesPropertyMaterialAndMass) {
  Act([&] {
    tagTMaterial steel;
    steel.name = L"Steel";
    steel.density = 3;
    tagTProperty plate;
    plate.name = L"Plate";
    plate.kind = tagTProperty::Kind::Shell;
    plate.size = 2;
    plate.material = Data().GetMaterialPool().Add(steel);
    const iterator property = Data().GetPropertyPool().Add(plate);
    tagTMset record = Mset(d);
    record.property = property;
    ASSERT_EQ(Pool().Modify(d, record), 1);
  });
  Tree().SelectCTItem(Node(L"D"));
  EXPECT_NE(Rows().find("MESH_PROPERTY=1 : Plate|MESH_MATERIAL=1 : Steel|"), std::string::npos);
  IPropertySet& page = *m_properties.GetPropertySet();
  page.CalProp(&RowOf(L"IDS_QD_WRT_NAME"));
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MESH_MASS").value, L"");
  page.CalProp(&RowOf(L"IDS_QD_WRT_MASSY"));
  // Two triangles of one half each, two thick, three dense.
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MESH_MASS").value, L"    6 t");
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MASSX").value, L"  0.5 mm");
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MASSZ").value, L"    0 mm");
}

TEST_F(MeshPage, AStoppedComputationLeavesTheMassEmpty) {
  struct Stopper final : ILongWork {
    int Run(const CString&, const std::function<int(const ProgressCall&)>& work) override {
      return work([](double) { return false; });
    }
  } stopper;
  ChangeMset(d, [](tagTMset& set) { PutMesh(set, Strip(70'000, 9)); });
  Tree().SelectCTItem(Node(L"D"));
  m_properties.GetPropertySet()->ShowProperty();
  m_properties.GetPropertySet()->CalProp(&RowOf(L"IDS_QD_WRT_MASSX"));
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MESH_MASS").value, L"");
}

TEST_F(MeshPage, WritesNameAndColourInOneAct) {
  Tree().SelectCTItem(Node(L"B"));
  const auto apply = [this](const CString& name, COLORREF colour) {
    m_properties.GetPropertySet()->ShowProperty();
    RowOf(L"IDS_QD_WRT_NAME").value = name;
    RowOf(L"IDS_QD_WRT_Color").colour = colour;
    const auto before = Data().Snapshot();
    m_properties.GetPropertySet()->ApplyProperty();
    return Data().Snapshot() != before;
  };
  const COLORREF colour = Mset(b).colour;
  EXPECT_FALSE(apply(L"B", colour));
  EXPECT_FALSE(apply(L"D", colour));
  EXPECT_FALSE(apply(L"", colour));
  EXPECT_TRUE(apply(L"D", Rgb(7, 7, 7)));  // the name is ignored, the colour is not
  EXPECT_EQ(Mset(b).name, L"B");
  EXPECT_EQ(Mset(b).colour, Rgb(7, 7, 7));
  EXPECT_TRUE(apply(CString(80, L'q'), Rgb(8, 8, 8)));
  EXPECT_EQ(Mset(b).name, CString(63, L'q'));
  Data().Undo();
  EXPECT_EQ(Mset(b).colour, Rgb(7, 7, 7));
  Data().SetWriteGuard([](iterator) { return false; });
  EXPECT_FALSE(apply(L"other", 1));
  Data().SetWriteGuard(nullptr);
  CPropertySetMesh page(&m_doc, b, kDataMset);
  page.ShowProperty();
  ASSERT_EQ(Pool().TR_Del({b}), 1);
  const auto gone = Data().Snapshot();
  page.ApplyProperty();
  EXPECT_EQ(Data().Snapshot(), gone);
  page.ShowProperty();
  EXPECT_TRUE(page.GetRows().empty());
}

struct GenerationCase {
  int kind;
  int method;
  const char* rows;
};
class MeshGenerationPage : public MeshPage, public ::testing::WithParamInterface<GenerationCase> {};
TEST_P(MeshGenerationPage, ShowsTheRecordedParametersInTheOrderOfThePage) {
  Act([&] {
    tagTMGInfo generation;
    generation.kind = GetParam().kind;
    generation.method = GetParam().method;
    generation.options = {{"IDS_QDMESH_MERGE_TOLERANCE", 0.25},
                          {"IDS_HWB_MESH_HIGH_ORDER", true},
                          {"IDS_HWB_MESH_ELEM_SIZE", 1},
                          {"IDS_HWB_MESH_3D_MESHER", 0},
                          {"IDS_QD_MESH_LAYERED_NUM_LAYERS", 3},
                          {"IDS_QDMESH_INNER_ELEM_TYPE", 1},
                          {"IDS_SOMETHING_ELSE", 1.0}};
    tagTMset record = Mset(d);
    record.mgInfo = MGInfoPool::KeyOf(Data().GetMGInfoPool().Add(generation));
    ASSERT_EQ(Pool().Modify(d, record), 1);
  });
  Tree().SelectCTItem(Node(L"D"));
  const std::string rows = Rows();
  const std::size_t from = rows.find("MASSZ=|") + 7;
  EXPECT_EQ(rows.substr(from), GetParam().rows);
}
INSTANTIATE_TEST_SUITE_P(
    Methods, MeshGenerationPage,
    ::testing::Values(
        GenerationCase{0, 0,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_AUTO_SOLID|IDS_HWB_MESH_3D_MESHER="
                       "IDS_HWB_MESH_3D_MESHER1|IDS_HWB_MESH_ELEM_SIZE=IDS_HWB_MESH_ELEM_SIZE_USER|"
                       "IDS_QDMESH_MERGE_TOLERANCE=0.25|IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|"},
        GenerationCase{2, 1,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_MAP_SOLID|IDS_HWB_MESH_ELEM_SIZE="
                       "IDS_HWB_MESH_ELEM_SIZE_USER|IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|"
                       "IDS_QDMESH_MERGE_TOLERANCE=0.25|"},
        GenerationCase{0, 2,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_GENERATE_2D_TO_3D|"
                       "IDS_QDMESH_MERGE_TOLERANCE=0.25|IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|"},
        GenerationCase{0, 3,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_AUTO_SOLID_LAYERED|"
                       "IDS_QD_MESH_LAYERED_NUM_LAYERS=3|IDS_QDMESH_INNER_ELEM_TYPE=IDS_QDMESH_INNER_HEXA|"
                       "IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|IDS_QDMESH_MERGE_TOLERANCE=0.25|"},
        GenerationCase{0, 9, "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=|"}, GenerationCase{1, 0, ""},
        GenerationCase{3, 0, ""}));

}  // namespace
}  // namespace qd::test

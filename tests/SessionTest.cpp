// What stands behind a window of a document: both trees in step, the window's own commands, what of the display
// can be undone, and the page of kept decks.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qd_wrt/properties/PartEdits.h"
#include "support/EnglishTexts.h"
#include "support/Mesh.h"
#include "workbench/session/DocumentPage.h"
#include "workbench/session/FollowedWork.h"

namespace qd::test {
namespace {

using namespace workbench;

class SessionTest : public MeshTest {
 protected:
  SessionTest() {
    m_first = AddSet(L"first");
    m_second = AddSet(L"second");
    m_a = AddPartTo(m_first, L"a");
    m_b = AddPartTo(m_first, L"b");
    m_c = AddPartTo(m_second, L"c");
    m_outer = AddMset(L"outer", 0, 2, m_a);
    m_inner = AddMset(L"inner", m_outer);
    Open();
    // What is selected in a closed branch is asked for only once it is open.
    for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) {
      bar->GetTreeCtrl().GetQDRootItem()->ForEachBelow([](CQDTreeItem* node) { node->Expand(1); });
    }
  }
  bool IsPartShown(iterator part) {
    return m_doc.GetDisplay().Parts().GetShowHide(Data().GetGeomPool().GetAtNU(part)->cadItem) != 0;
  }
  /// The parts and mesh sets that are shown.
  std::string Shown() {
    std::string shown;
    for (const auto& [name, part] : {std::pair("a", m_a), std::pair("b", m_b), std::pair("c", m_c)}) {
      if (IsPartShown(part)) shown += name;
    }
    if (IsShown(m_outer)) shown += " outer";
    if (IsShown(m_inner)) shown += " inner";
    return shown;
  }
  std::vector<iterator> SelectedIn(CWorksTreeBar& bar) {
    std::vector<iterator> records;
    for (const HTREEITEM row : bar.GetTreeCtrl().GetSelectedItems()) {
      records.push_back(bar.GetTreeCtrl().NodeOf(row)->GetIterator());
    }
    return records;
  }
  void Run(void (Session::*act)()) {
    (m_session.get()->*act)();
    Settle();
  }

  iterator m_first = 0, m_second = 0, m_a = 0, m_b = 0, m_c = 0, m_outer = 0, m_inner = 0;
};
using Records = std::vector<iterator>;

TEST_F(SessionTest, APickSelectsInBothTreesAndTheBuffer) {
  const auto pick = [this](iterator itr, bool add) {
    m_session->Trees().Pick(itr, add);
    Settle();
    EXPECT_EQ(SelectedIn(m_setBar).size(), SelectedIn(m_bar).size());
    EXPECT_EQ(SelectedIn(m_bar).size(), m_doc.GetSelectBuffer().size());
    return m_doc.GetSelectBuffer();
  };
  EXPECT_EQ(pick(m_b, false), Records{m_b});
  EXPECT_EQ(pick(m_c, true), (Records{m_b, m_c}));
  EXPECT_EQ(SelectedIn(m_bar), (Records{m_b, m_c}));
  EXPECT_EQ(SelectedIn(m_setBar), (Records{m_b, m_c}));
  EXPECT_EQ(pick(m_b, true), Records{m_c}) << "once more takes it out";
  EXPECT_EQ(pick(0, true), Records{m_c}) << "beside everything, while more is picked";
  EXPECT_EQ(pick(m_a, false), Records{m_a});
  EXPECT_EQ(pick(m_a, false), Records{m_a});
  EXPECT_EQ(pick(0, false), Records{});
}

/// Rows that stand for no record mean what lies below them; only with nothing selected an act takes all.
TEST_F(SessionTest, ARowWithoutARecordMeansWhatIsBelowIt) {
  const auto parts = [this](bool elseAll = true) {
    const FollowedWork worked(m_doc, {.elseAll = elseAll}, [] {});
    return worked.Names() + (worked.IsAll() ? L" (all)" : L"");
  };
  const auto sets = [this] {
    const FollowedWork worked(m_doc, {.type = kDataMset, .elseAll = true}, [] {});
    return worked.Names() + (worked.IsAll() ? L" (all)" : L"");
  };
  EXPECT_EQ(parts(), L"a, b, c (all)");
  EXPECT_EQ(sets(), L"outer, inner (all)");
  Click(L"IDS_QD_WRT_MESH");
  EXPECT_EQ(sets(), L"outer, inner");
  EXPECT_EQ(parts(), L"");
  Click(L"IDS_QD_WRT_Coordinate_System");
  EXPECT_EQ(parts(), L"");
  EXPECT_EQ(sets(), L"");
  Click(L"IDS_DB_DATA_NAME_GEOM");
  EXPECT_EQ(parts(false), L"a, b, c");
  EXPECT_EQ(sets(), L"outer") << "the mesh of a part that is meant";
  Show(kGeometrySetTree);
  HTREEITEM group = Tree().GetChildItem(Row(L"first"));
  Tree().SetSelection(0, {});
  Tree().SelectCTItem(Tree().NodeOf(group));
  Settle();
  EXPECT_GT(m_doc.GetSelection().others, 0);
  EXPECT_EQ(parts(), L"a, b");
  Click(L"first");
  EXPECT_EQ(parts(), L"a, b");
  EXPECT_EQ(sets(), L"outer");
  Click(L"second");
  EXPECT_EQ(sets(), L"");
}

/// Nothing of such a name could be seen in any row.
TEST_F(SessionTest, ANameOfBlanksIsRefusedWithASentence) {
  iterator system = 0;
  Act([&] {
    tagTCord record;
    record.SetName(L"axes");
    system = Data().GetCordPool().Add(record);
  });
  const auto before = Data().Snapshot();
  Heard();
  for (const auto& [tree, title] : {std::pair(kModelTree, L"a"),
                                    {kModelTree, L"outer"},
                                    {kModelTree, L"axes"},
                                    {kGeometrySetTree, L"first"},
                                    {kGeometrySetTree, L"c"}}) {
    for (const CString& blanks : {CString(L" "), CString(L"\t\x00A0\x3000\x200B")}) {
      Show(tree);
      ASSERT_NE(Node(title), nullptr) << title;
      Node(title)->OnEditChange(blanks.c_str());
      EXPECT_THAT(Heard(), ::testing::HasSubstr("warning(IDS_WB_ACT_REFUSED)")) << title;
      Settle();
      EXPECT_NE(Node(title), nullptr) << title;
    }
  }
  EXPECT_EQ(RenamePart(&Data(), m_a, L"  "), 0) << "as a page does";
  EXPECT_EQ(Data().Snapshot(), before);
  EXPECT_EQ(RenamePart(&Data(), m_a, L" x "), 1);
  Settle();
}

/// Whoever clicks a row in one tree sees it in the other one too.
TEST_F(SessionTest, AClickInOneTreeSelectsInBoth) {
  Click(L"b");
  EXPECT_EQ(m_doc.GetSelectBuffer(), Records{m_b});
  EXPECT_EQ(SelectedIn(m_setBar), Records{m_b});
  EXPECT_EQ(&m_session->Trees().SelectedTree(), &m_bar.GetTreeCtrl());
  // What one of them cannot show all of it shows nothing of.
  Key(kKeyA, kMouseControl);
  EXPECT_EQ(SelectedIn(m_setBar), Records{});
  EXPECT_GT(m_doc.GetSelection().others, 0);
  Show(kGeometrySetTree);
  Click(L"first");
  EXPECT_EQ(SelectedIn(m_bar), Records{});
  EXPECT_EQ(m_doc.GetSelection(), (Selection{{m_first}, 0, kGeometrySetTree}));
  // A click on a box leaves nothing selected, anywhere.
  Click(L"c");
  EXPECT_EQ(SelectedIn(m_bar), Records{m_c});
  ClickCheck(L"c");
  EXPECT_EQ(SelectedIn(m_bar), Records{});
  EXPECT_TRUE(m_doc.GetSelection().IsEmpty());
  Show(kModelTree);
  Click(L"a");
  ClickCheck(L"IDS_WB_GLOBAL_CORD");
  EXPECT_TRUE(m_doc.GetSelection().IsEmpty()) << "also that of a row which changes no part";
  Show(kGeometrySetTree);
  // By key the selection stays for the next one.
  Click(L"a");
  Key(kKeySpace);
  EXPECT_EQ(m_doc.GetSelection(), (Selection{{m_a}, 0, kGeometrySetTree}));
  EXPECT_EQ(SelectedIn(m_bar), Records{m_a});
}

/// Boxes of sets, groups and roots are what was written to them last; undo takes that back, too.
TEST_F(SessionTest, BoxesOfSetsComeBackWithUndoAndInATreeMadeAnew) {
  Show(kGeometrySetTree);
  const auto boxes = [this] {
    std::string states;
    Tree().GetQDRootItem()->ForEachBelow([&](CQDTreeItem* node) {
      if (node->GetRowBox()) states += node->GetCheckStatus() == kChecked ? "x" : "-";
    });
    return states;
  };
  const std::string all = boxes();
  EXPECT_EQ(all, "xxxxx") << "the root, two sets and a group in each";
  ClickCheck(L"first");
  const std::string hidden = boxes();
  EXPECT_EQ(hidden, "x--xx");
  ClickCheck(L"IDS_DB_DATA_NAME_GEOM");
  EXPECT_EQ(boxes(), "-----");
  Open();
  EXPECT_EQ(boxes(), "-----");
  Undo();
  EXPECT_EQ(boxes(), hidden);
  Undo();
  EXPECT_EQ(boxes(), all);
  Redo();
  EXPECT_EQ(boxes(), hidden);
  Open();
  EXPECT_EQ(boxes(), hidden);
  Show(kModelTree);
  Select({L"IDS_QD_WRT_MESH"});
  Command(kCommandHideAllMeshes);
  EXPECT_EQ(Node(L"IDS_QD_WRT_MESH")->GetCheckStatus(), kUnchecked);
  Undo();
  EXPECT_EQ(Node(L"IDS_QD_WRT_MESH")->GetCheckStatus(), kChecked);
}

/// Boxes that show only what was isolated are what they were before, when that is left.
TEST_F(SessionTest, LeavingAnIsolationBringsTheBoxesOfSetsBack) {
  Show(kGeometrySetTree);
  ClickCheck(L"first");
  const auto before = m_doc.GetDisplay().Boxes().States();
  Select({L"first"});
  Command(kCommandShowOnly);
  EXPECT_NE(m_doc.GetDisplay().Boxes().States(), before);
  Run(&Session::LeaveIsolation);
  EXPECT_EQ(m_doc.GetDisplay().Boxes().States(), before);
}

/// All of them are drawn without, whatever was switched by key before.
TEST_F(SessionTest, HidingAllMeshesRedrawsAlsoAfterTheKeys) {
  Click(L"outer");
  Key(kKeyA, kMouseControl);
  Key(kKeySpace);
  Key(kKeySpace);
  Select({kMeshRoot});
  Heard();
  Command(kCommandHideAllMeshes);
  EXPECT_EQ(Redraws(), 2) << "once a level, as by the box";
}

/// A command of a root acts on what is selected below it, not on that part of the selection that is no part.
TEST_F(SessionTest, ACommandOfARootActsOnTheSelectedPartsBelowIt) {
  Show(kGeometrySetTree);
  Select({L"IDS_DB_DATA_NAME_GEOM", L"first"});
  Command(kCommandWireframe);
  std::string drawn;
  for (const auto& [name, part] : {std::pair("a", m_a), std::pair("b", m_b), std::pair("c", m_c)}) {
    if (m_doc.GetDisplay().Parts().GetLook(Data().GetGeomPool().GetAtNU(part)->cadItem).mode == 2) drawn += name;
  }
  EXPECT_EQ(drawn, "ab");
}

/// Showing or hiding draws at once, also for a row whose last switch was to be silent.
TEST_F(SessionTest, ShowingBySetDrawsWhateverTheRowWasToldBefore) {
  Show(kGeometrySetTree);
  Select({L"first"});
  Node(L"first")->SetViewUpdate(0);
  Heard();
  Command(kCommandHide);
  EXPECT_EQ(Redraws(), 1);
}

/// Show Only of what stands alone already is no act, and nothing that could be left.
TEST_F(SessionTest, ShowingOnlyWhatStandsAloneIsNoAct) {
  Select({L"b", L"c"});
  Command(kCommandHide);
  const std::uint64_t acts = Data().ActNumber();
  Select({L"a"});
  Command(kCommandShowOnly);
  EXPECT_EQ(Shown(), "a outer inner");
  EXPECT_EQ(Data().ActNumber(), acts);
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
}

/// A part keeps being selected when its row is made anew in another set, wherever it was selected.
TEST_F(SessionTest, TheSelectionOutlivesTheRows) {
  const auto move = [this](iterator part, iterator set) {
    ChangePart(part, [set](tagTGeom& record) { record.gset = set; });
  };
  m_session->Trees().Pick(m_a, false);
  move(m_a, m_second);
  EXPECT_EQ(SelectedIn(m_setBar), Records{m_a});
  EXPECT_EQ(SelectedIn(m_bar), Records{m_a});
  Show(kGeometrySetTree);
  Click(L"c");
  move(m_c, m_first);
  EXPECT_EQ(SelectedIn(m_setBar), Records{m_c});
  EXPECT_EQ(m_doc.GetSelection(), (Selection{{m_c}, 0, kGeometrySetTree}));
  // A group that is gone is not selected any more, what was selected beside it is.
  Click(L"b");
  Key(kKeyA, kMouseControl);
  const int others = m_doc.GetSelection().others;
  move(m_a, m_first);
  EXPECT_LT(m_doc.GetSelection().others, others);
  EXPECT_EQ(SelectedIn(m_setBar).size(), m_doc.GetSelection().records.size());
  // A document that is replaced has nothing selected.
  Open();
  EXPECT_TRUE(m_doc.GetSelection().IsEmpty());
}

/// The root of the parts, and its page, tell what undo has made of the colours.
TEST_F(SessionTest, TheRootOfPartsFollowsTheColourMode) {
  const auto mode = [this] {
    int title = 0;
    int colour = 0;
    m_bar.GetGeomTitleAndColor(&m_doc, title, colour);
    return colour;
  };
  m_doc.GetDisplay().Parts().SetAllColorModelType(1);
  Settle();
  EXPECT_EQ(mode(), 1);
  Undo();
  EXPECT_EQ(mode(), 0);
}

/// Undo takes back what was hidden a moment ago, also before anybody had the time to hear of it.
TEST_F(SessionTest, UndoReachesWhatHasNotBeenToldYet) {
  AddPartTo(m_first, L"later");
  m_doc.GetDisplay().Parts().SetShowHide(Data().GetGeomPool().GetAtNU(m_b)->cadItem, 0);
  EXPECT_EQ(Data().Undo(), 1);
  Settle();
  EXPECT_TRUE(IsPartShown(m_b));
  EXPECT_EQ(Data().UndoTitle(), L"act");
}

TEST_F(SessionTest, WhatIsGoneIsNotSelectedAnyMore) {
  m_session->Trees().Pick(m_a, false);
  m_session->Trees().Pick(m_c, true);
  Data().Delete({m_a});
  Settle();
  EXPECT_EQ(m_doc.GetSelectBuffer(), Records{m_c});
  Undo();
  EXPECT_EQ(m_doc.GetSelectBuffer(), Records{m_c});
}

/// What only stands selected in a closed branch is deselected too, and everybody hears of it.
TEST_F(SessionTest, AResetReachesRowsInClosedBranches) {
  Click(L"inner");
  Node(kMeshRoot)->Expand(0);
  ASSERT_FALSE(m_doc.GetSelection().IsEmpty());
  Tree().ResetSelection(1);
  EXPECT_TRUE(m_doc.GetSelection().IsEmpty());
  EXPECT_EQ(Tree().GetSelectedRowCount(), 0U);
  // A node that selects a row itself leaves no moment in which nothing is selected.
  int empty = 0;
  const Subscription heard = m_doc.OnSelection([&empty](const Selection& now) { empty += now.IsEmpty() ? 1 : 0; });
  Node(kMeshRoot)->Expand(1);
  Click(L"outer");
  Node(L"outer")->Select(Row(L"inner"));
  EXPECT_EQ(empty, 0);
}

/// The row of the set that new parts go to is bold, whatever makes it the current one; the fixture looks at it.
TEST_F(SessionTest, TheSpaceKeyLeavesThePageOfWhatIsSelected) {
  // What both windows do: nobody edits what is not selected any more.
  const Subscription onSelection = m_doc.OnSelection([this](const Selection& selection) {
    if (selection.IsEmpty()) m_properties.SetPropertySet(nullptr);
  });
  Click(L"a");
  for (const bool shown : {false, true}) {
    Key(kKeySpace);
    EXPECT_EQ(IsPartShown(m_a), shown);
    EXPECT_EQ(m_doc.GetSelectBuffer(), Records{m_a});
    const IPropertySet* page = m_properties.GetPropertySet();
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->GetIterator(), m_a);
  }
  ClickCheck(L"a");  // a click ends the selection
  EXPECT_EQ(m_properties.GetPropertySet(), nullptr);
}

TEST_F(SessionTest, TheCurrentSetIsMarked) {
  Show(kGeometrySetTree);
  const auto marked = [this] {
    std::string sets;
    for (const wchar_t* set : {L"first", L"second"}) {
      if (const HTREEITEM row = Row(set); row && Tree().GetRecord(row)->IsBold()) sets += ToUtf8(set);
    }
    return sets;
  };
  EXPECT_EQ(marked(), "first");
  Select({L"second"});
  Command(kCommandCurrentSet);
  Settle();
  EXPECT_EQ(marked(), "second");
  Act([this] { Data().GetGsetPool().TR_Del({m_second}); });
  EXPECT_EQ(marked(), "first");
  Undo();
  EXPECT_EQ(marked(), "second");
  Open();
  EXPECT_EQ(marked(), "second");
}

/// A tree that is made anew shows what undo brought back in its old place, and so does a document.
TEST_F(SessionTest, UndoBringsRecordsBackToTheirPlaces) {
  AddMset(L"second of a", m_outer);
  AddMaterial(L"Steel");
  AddMaterial(L"Tin");
  const auto fresh = [this] {
    Open();
    Show(kModelTree);
    const std::string model = Print();
    Show(kGeometrySetTree);
    return model + Print();
  };
  const std::string before = fresh();
  Data().Delete({m_a, m_inner, Data().GetMaterialPool().GetItrList().front()});
  Settle();
  EXPECT_NE(fresh(), before);
  Undo();
  EXPECT_EQ(fresh(), before);
  Act([this] { Data().GetGsetPool().TR_Del({m_first}); });
  Undo();
  EXPECT_EQ(fresh(), before);
}

TEST_F(SessionTest, ALoadedDocumentHasOpenBranchesAndItsName) {
  m_session->TakeUp(L"other.qdw");
  Settle();
  for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) {
    const CQDTreeListCtrl& tree = bar->GetTreeCtrl();
    EXPECT_EQ(tree.GetItemText(tree.GetRootItem(), 0), L"other.qdw");
    for (const CQDTreeItem* branch : tree.GetQDRootItem()->Children()) {
      EXPECT_EQ(tree.IsExpanded(branch->GetTreeItemHandle()), branch->GetChildCount() != 0);
    }
  }
  m_session->Rename(L"third.qdw");
  Settle();
  EXPECT_EQ(m_doc.GetPathName(), L"third.qdw");
  EXPECT_FALSE(m_session->IsEmpty());
}

TEST_F(SessionTest, ANewLanguageReachesEveryRow) {
  AddMaterial(L"Steel");
  {
    const EnglishTexts texts;
    m_session->Manager().OnChangeLanguage();
    Settle();  // which looks at the rows
    EXPECT_NE(Print().find("\n  Materials\n"), std::string::npos) << Print();
  }
  m_session->Manager().OnChangeLanguage();
  Settle();
}

TEST_F(SessionTest, TheFirstFileFindsAnEmptyDocument) {
  Data().Delete({m_inner, m_outer});
  EXPECT_FALSE(m_session->IsEmpty());
  Data().Delete({m_a, m_b, m_c});
  Settle();
  EXPECT_TRUE(m_session->IsEmpty());
  AddMset(L"alone");
  EXPECT_FALSE(m_session->IsEmpty());
}

/// Whatever is selected, in whichever tree.
TEST_F(SessionTest, DeletesWhatIsSelectedAndAsksForNestedMeshSets) {
  EXPECT_FALSE(m_session->CanDelete());
  m_session->Trees().Pick(m_a, false);
  m_session->Trees().Pick(m_outer, true);
  m_toolkit.AnswerMessage(MessageAnswer::No);
  Run(&Session::Delete);
  EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>{L"IDS_QD_WRT_DELETE_SUB_MESHSET"});
  EXPECT_EQ(Data().GetDataType(m_a) + Data().GetDataType(m_outer), 0) << "both kinds in one act";
  EXPECT_NE(Data().GetDataType(m_inner), 0) << "a nested set was not chosen";
  Undo();
  // A part that was selected in the other tree before is not meant any more.
  Click(L"a");
  Show(kGeometrySetTree);
  Click(L"second");
  EXPECT_EQ(SelectedIn(m_bar), Records{}) << "the model tree has no row for a set";
  Run(&Session::Delete);
  EXPECT_EQ(Data().GetDataType(m_second), 0);
  EXPECT_NE(Data().GetDataType(m_a), 0);
  EXPECT_NE(Data().GetDataType(m_outer), 0);
  Undo();
  Show(kModelTree);
  Click(L"a");
  Key(kKeyA, kMouseControl);
  m_toolkit.AnswerMessage(MessageAnswer::Yes);  // the row of the nested set was made anew in a closed one
  Run(&Session::Delete);
  EXPECT_EQ(m_toolkit.TakeMessages().size(), 1U);
  EXPECT_EQ(Data().GetGeomPool().Count() + Data().GetMsetPool().Count(), 0U);
  EXPECT_EQ(Data().GetCordPool().Count(), 1U) << "the global system stays";
  Undo();
  Click(L"IDS_DB_DATA_NAME_GEOM");
  EXPECT_FALSE(m_session->CanDelete()) << "a root stands for nothing that could go";
  Run(&Session::Delete);
  EXPECT_EQ(Data().GetMsetPool().Count(), 2U);
  const std::pair<MessageAnswer, Records> cases[] = {
      {MessageAnswer::Cancel, {m_outer, m_inner}}, {MessageAnswer::No, {m_inner}}, {MessageAnswer::Yes, {}}};
  for (const auto& [answer, left] : cases) {
    Click(L"outer");
    m_toolkit.AnswerMessage(answer);
    Run(&Session::Delete);
    EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>{L"IDS_QD_WRT_DELETE_SUB_MESHSET"});
    EXPECT_EQ(Data().GetMsetPool().GetItrList(), left);
    if (answer != MessageAnswer::Cancel) Undo();
  }
}

TEST_F(SessionTest, ShowsAndHidesEverythingAsOneActEach) {
  Run(&Session::HideAll);
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Data().UndoTitle(), L"IDS_WB_ACT_VISIBILITY");
  EXPECT_EQ(m_displayActs, 1);
  Run(&Session::ShowAll);
  EXPECT_EQ(Shown(), "abc outer inner");
  Undo();
  EXPECT_EQ(Shown(), "");
  Undo();
  EXPECT_EQ(Shown(), "abc outer inner");
  EXPECT_EQ(m_displayActs, 2);
}

TEST_F(SessionTest, MeshingAgainTakesWhatIsMeantAndNothingElse) {
  const auto said = [this] {
    Heard();
    m_session->MeshAgain();
    const std::string heard = Heard();
    Settle();
    return heard;
  };
  using ::testing::HasSubstr;
  Click(L"inner");
  EXPECT_THAT(said(), HasSubstr("IDS_WB_MESH_BY_HAND"));
  Act([&] {
    const iterator generation = Data().GetMGInfoPool().Add(tagMGInfo());
    tagTMset record = Mset(m_outer);
    record.mgInfo = MGInfoPool::KeyOf(generation);
    ASSERT_EQ(Pool().Modify(m_outer, record), 1);
  });
  EXPECT_THAT(said(), HasSubstr("IDS_WB_MESH_BY_HAND"));
  for (const CString& row : {CString(L"outer"), CString(L"a"), CString(L"IDS_QD_WRT_MESH")}) {
    Click(row);
    EXPECT_THAT(said(), HasSubstr("DoModeless(CQDMeshGen3DDlg")) << workbench::ToUtf8(row);
  }
  for (const CString& row : {CString(L"b"), CString(L"IDS_QD_WRT_Coordinate_System")}) {
    Click(row);
    EXPECT_THAT(said(), HasSubstr("IDS_WB_WHY_NO_MESH_SET")) << workbench::ToUtf8(row);
  }
  Tree().ResetSelection(1);
  EXPECT_THAT(said(), HasSubstr("IDS_WB_WHY_NO_MESH_SET"));
  Undo();
}

TEST_F(SessionTest, ColourModesOfMeshesAreUndone) {
  m_session->SendToMeshes(kCommandLastMeshColourMode);
  Settle();
  EXPECT_EQ(m_doc.GetDisplay().Meshes().GetMeshColorMode(), 4U);
  Undo();
  EXPECT_EQ(m_doc.GetDisplay().Meshes().GetMeshColorMode(), 0U);
}

TEST_F(SessionTest, ShowingOnlyOneSetCanBeLeftAlthoughHiddenOnesWereDeleted) {
  const iterator gone = AddMset(L"gone");
  Settle();
  m_doc.GetDisplay().Meshes().ShowHideMset(gone, 0);
  Settle();
  Data().Delete({gone});
  Settle();
  Select({L"inner"});
  Command(kCommandShowMeshOnly);
  EXPECT_EQ(Shown(), "abc inner");
  EXPECT_NE(m_doc.GetDisplay().Isolation(), nullptr);
  Undo();
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
  m_session->SendToMeshes(kCommandHideAllMeshes);
  Settle();
  EXPECT_EQ(Shown(), "abc");
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr) << "hiding all is no showing of some";
}

TEST_F(SessionTest, HidingIsAnActOfItsOwnUnlessItComesWithAnother) {
  AddPartTo(m_first, L"later");
  ClickCheck(L"b");
  EXPECT_EQ(Data().UndoTitle(), L"IDS_WB_ACT_VISIBILITY");
  Undo();
  EXPECT_EQ(Data().UndoTitle(), L"act");
  EXPECT_EQ(Shown(), "abc outer inner");
  // Both in one go, as a command does that deletes and hides.
  m_doc.GetDisplay().Meshes().ShowHideMset(m_inner, 0);
  AddPartTo(m_first, L"together");
  EXPECT_EQ(Data().UndoTitle(), L"act");
  Undo();
  EXPECT_TRUE(IsShown(m_inner));
}

struct Isolating {
  const char* name;
  const wchar_t* row;
  unsigned command;
  const char* shown;
};
class Isolation : public SessionTest, public ::testing::WithParamInterface<Isolating> {};
TEST_P(Isolation, IsLeftWithWhatWasShownBefore) {
  ClickCheck(L"c");
  const std::string before = Shown();
  Select({GetParam().row});
  Command(GetParam().command);
  EXPECT_EQ(Shown(), GetParam().shown);
  ASSERT_NE(m_doc.GetDisplay().Isolation(), nullptr);
  // Another one inside it, and something else hidden: the former visibility stays the first one.
  Select({L"b"});
  Command(kCommandShowOnly);
  m_doc.GetDisplay().Meshes().ShowHideMset(m_outer, IsShown(m_outer) ? 0 : 1);
  Settle();
  Run(&Session::LeaveIsolation);
  EXPECT_EQ(Shown(), before);
  EXPECT_TRUE(m_doc.GetDisplay().Boxes().States().empty()) << "boxes of sets and groups come back, too";
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
  // Taken back to inside of it and to before it, and done again.
  Undo();
  EXPECT_NE(m_doc.GetDisplay().Isolation(), nullptr);
  for (int acts = 3; acts > 0; --acts) Undo();
  EXPECT_EQ(Shown(), before);
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
  Redo();
  EXPECT_EQ(Shown(), GetParam().shown);
  Run(&Session::LeaveIsolation);
  EXPECT_EQ(Shown(), before);
  // What is hidden afterwards isolates nothing.
  ClickCheck(L"a");
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
}
INSTANTIATE_TEST_SUITE_P(Commands, Isolation,
                         ::testing::Values(Isolating{"part", L"a", kCommandShowOnly, "a outer inner"},
                                           Isolating{"mesh_set", L"inner", kCommandShowMeshOnly, "ab inner"}),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_F(SessionTest, TheDocumentGoesOnWithoutItsTrees) {
  m_session.reset();
  m_checked = false;
  Data().Delete({m_a});
  m_doc.GetDisplay().Meshes().ShowHideMset(m_inner, 0);
  m_toolkit.Pump();
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(m_bar.GetTreeCtrl().RowCount(), 0U);
}

// ---- the page of kept decks -------------------------------------------------------------------------------

TEST(Keywords, AreCountedAsSolversReadThem) {
  const auto counts = CountKeywords(
      "** a comment\n*Step\nno card\n *NOT ONE\n*STEP, NLGEOM=YES\r\n*End Step  \n*step\n*\n**\n*NODE,NSET=A");
  EXPECT_EQ(counts, (std::map<std::string, std::size_t>{{"*STEP", 3}, {"*END STEP", 1}, {"*", 1}, {"*NODE", 1}}));
  EXPECT_TRUE(CountKeywords("").empty());
}

class DeckPage : public SessionTest {
 protected:
  iterator AddDeck(int kinds) {
    std::string text = "** comment\n";
    for (int kind = 0; kind < kinds; ++kind) text += "*CARD " + std::to_string(kind) + ", A=1\n1, 2\n";
    iterator itr = 0;
    Act([&] {
      tagTDeck deck;
      deck.name = L"beam.inp";
      deck.text = std::make_shared<const std::string>(text + "*CARD 0\n");
      itr = Data().GetDeckPool().Add(deck);
    });
    return itr;
  }
};

TEST_F(DeckPage, StandsWhileThereIsADeckAndRemovesIt) {
  EXPECT_EQ(DocumentPage::For(m_doc), nullptr);
  const iterator deck = AddDeck(2);
  EXPECT_TRUE(Concerns(m_notices.back(), kDataDeck));
  const auto page = DocumentPage::For(m_doc);
  ASSERT_NE(page, nullptr);
  page->ShowProperty();
  EXPECT_FALSE(page->HasApplyButton());
  std::vector<CString> texts;
  for (const auto& row : page->GetRows()) texts.push_back(row->name + L"=" + row->value);
  EXPECT_EQ(texts, (std::vector<CString>{L"beam.inp=", L"IDS_WB_DECK_KEPT=IDS_QD_WRT_YES", L"IDS_WB_DECK_CARDS=3",
                                         L"IDS_WB_DECK_KEYWORDS=", L"*CARD 0=2", L"*CARD 1=1"}));
  CBCGPProp row = *page->GetRows()[1];
  page->OnPropertyChanged(&row, row.data);
  EXPECT_NE(Data().GetDataType(deck), 0) << "yes keeps it";
  row.value = L"IDS_QD_WRT_NO";
  page->OnPropertyChanged(&row, row.data);
  Settle();
  EXPECT_EQ(Data().GetDataType(deck), 0);
  EXPECT_TRUE(Concerns(m_notices.back(), kDataDeck));
  EXPECT_EQ(Data().UndoTitle(), L"IDS_WB_TRANS_REMOVE_DECK");
  EXPECT_EQ(DocumentPage::For(m_doc), nullptr);
  Undo();
  EXPECT_NE(DocumentPage::For(m_doc), nullptr);
  AddPartTo(m_first, L"other");
  EXPECT_FALSE(Concerns(m_notices.back(), kDataDeck));
}

TEST_F(DeckPage, ListsSoManyKindsAndCountsTheRest) {
  for (const auto& [kinds, rows, last] :
       {std::tuple(199, 199U, L"1"), std::tuple(200, 200U, L"1"), std::tuple(203, 201U, L"3")}) {
    const iterator deck = AddDeck(kinds);
    const auto page = DocumentPage::For(m_doc);
    page->ShowProperty();
    EXPECT_EQ(page->GetRows().size(), 4U + rows) << kinds;
    EXPECT_EQ(page->GetRows().back()->value, last) << kinds;
    EXPECT_EQ(page->GetRows().back()->name == L"…", kinds > 200);
    Act([&] { Data().GetDeckPool().TR_Del({deck}); });
  }
}

}  // namespace
}  // namespace qd::test

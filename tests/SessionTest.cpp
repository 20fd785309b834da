// What stands behind a window of a document: both trees in step with what is selected, shown and stored.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/Act.h"
#include "qd_wrt/properties/PartEdits.h"
#include "support/EnglishTexts.h"
#include "support/SessionModel.h"
#include "workbench/session/FollowedWork.h"

namespace qd::test {
namespace {

using namespace workbench;
using Records = std::vector<iterator>;

using Records = std::vector<iterator>;

TEST_F(SessionTest, APickSelectsInBothTreesAndTheBuffer) {
  const auto pick = [this](iterator itr, bool add) {
    m_session->Trees().Pick(itr != 0 ? Records{itr} : Records{},
                            add ? workbench::PickMode::Toggle : workbench::PickMode::Replace);
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
    for (const CString& blanks :
         {CString(L" "), CString(L"\t\x00A0\x3000\x200B"), CString(L"\x2800\U000E0020\U0001D173")}) {
      Show(tree);
      ASSERT_NE(Node(title), nullptr) << title;
      Node(title)->OnEditChange(blanks.c_str());
      EXPECT_THAT(Heard(), ::testing::HasSubstr("warning(IDS_WB_ACT_REFUSED)")) << title;
      Settle();
      EXPECT_NE(Node(title), nullptr) << title;
    }
  }
  EXPECT_EQ(RenamePart(&Data(), m_a, L"  "), 0) << "as a page does";
  EXPECT_EQ(RunAct(&Data(), L"new", [this] { return AddPart(L"\x3000") != 0 ? 1 : 0; }), 0) << "nor a new one";
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
  m_session->Trees().Pick({m_a}, workbench::PickMode::Replace);
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
  m_session->Trees().Pick({m_a}, workbench::PickMode::Replace);
  m_session->Trees().Pick({m_c}, workbench::PickMode::Toggle);
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

}  // namespace
}  // namespace qd::test

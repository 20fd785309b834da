// Searching in the tree list: what shows, what is marked, what follows changes, and what comes back at the end.

#include <gtest/gtest.h>

#include <random>

#include "platform/Types.h"
#include "support/TreeList.h"

namespace qd::test {
namespace {

using Mode = RowFinder::Mode;

class RowFinderTest : public TreeList {
 protected:
  RowFinder& Finder() { return m_tree.GetFinder(); }
  void Filter(const CString& query) {
    ASSERT_EQ(Finder().Search(Mode::Filter, query), 1);
    Finish();
  }
  void Find(const CString& query) {
    ASSERT_EQ(Finder().Search(Mode::Find, query), 1);
    Finish();
  }
  void Finish() {
    for (int i = 0; !Finder().IsDone() && i < 10'000; ++i) {
      m_toolkit.Advance(1);
      m_toolkit.Pump();
    }
    ASSERT_TRUE(Finder().IsDone());
    m_toolkit.Pump();
  }
  /// What is on screen from the first row on, rows that match with a star.
  std::string Shown() {
    std::string shown;
    CRect place;
    for (HTREEITEM row = m_tree.GetFirstVisibleItem(); row;) {
      if (!shown.empty()) shown += ' ';
      shown += workbench::ToUtf8(m_tree.GetItemText(row, 0));
      EXPECT_TRUE(m_tree.GetItemRect(row, place, false));
      unsigned flags = 0;
      row = m_tree.HitTest({0, place.bottom + 1}, flags);
    }
    return shown;
  }
};

TEST_F(RowFinderTest, AFilterShowsMatchesWithWhatStandsAboveThemAndTheEndBringsAllBack) {
  AddFamilies();
  for (int i = 0; i < 30; ++i) Add(L"row " + std::to_wstring(i));
  Add(L"deep", Add(L"mid", m_rows[L"c"]));
  m_tree.Expand(m_rows[L"b"], ExpandAction::Collapse);
  Click(L"a3");
  m_tree.SetItemState(m_rows[L"row 1"], kRowSelected, kRowSelected);
  m_tree.ScrollTo(3);
  const std::string before = Shown();
  const std::string caret = Caret();
  ASSERT_EQ(Selected(), "a3 row 1");
  TakeLog();

  Filter(L"a3 | deep | b");
  EXPECT_EQ(Shown(), "a a3 b b1 b2 c mid deep");
  EXPECT_EQ(Finder().GetMatchCount(), 5U);
  EXPECT_EQ(Selected(), "a3");  // what is hidden is not selected
  EXPECT_EQ(TakeLog(), "click ");

  Filter(L"b2");
  EXPECT_EQ(Shown(), "b b2");
  Filter(L"nothing is called so");
  EXPECT_EQ(Shown(), "");
  Key(kKeyDown);
  Key(kKeyEnd);
  Filter(L"a");
  EXPECT_EQ(Shown(), "a a1 a2 a3");

  Finder().Clear();
  m_toolkit.Pump();
  EXPECT_EQ(Shown(), before);
  EXPECT_EQ(Caret(), caret);
  EXPECT_EQ(Finder().GetMatchCount(), 0U);
}

TEST_F(RowFinderTest, KeysAndButtonsWorkOnWhatShows) {
  AddFamilies();
  Filter(L"a2 | b1 | b2");
  EXPECT_EQ(Shown(), "a a2 b b1 b2");
  Key(kKeyHome);
  Key(kKeyRight);
  EXPECT_EQ(Caret(), "a2");
  Key(kKeyEnd, kMouseShift);
  EXPECT_EQ(Selected(), "a2 b2");
  Key(kKeyA, kMouseControl);
  EXPECT_EQ(Selected(), "a2 b1 b2");  // not what only stands above them
  m_tree.SelectAlone(m_rows[L"b1"]);
  Key(kKeyI, kMouseControl);
  EXPECT_EQ(Selected(), "a2 b2");
  Click(L"b");
  Key(kKeyLeft);
  EXPECT_EQ(Shown(), "a a2 b");
  Key(kKeyMultiply);
  EXPECT_EQ(Shown(), "a a2 b b1 b2");
  // A row without children that show has no button, and nothing to open.
  Filter(L"b");
  Click(L"b");
  Filter(L"/^b$/");
  EXPECT_EQ(Shown(), "b");
  Key(kKeyRight);
  EXPECT_EQ(Caret(), "b");
  m_tree.SelectRange(m_rows[L"a1"], m_rows[L"b"], 1);
  m_toolkit.Type(m_tree, L"b");
  m_toolkit.Pump();
  EXPECT_EQ(Caret(), "b");
}

TEST_F(RowFinderTest, RowsEnterAndLeaveWithWhatBecomesOfThem) {
  AddFamilies();
  Filter(L"x | id:7 | colour:red | hidden:");
  EXPECT_EQ(Shown(), "");
  const auto shows = [&](const std::string& rows) {
    m_toolkit.Pump();
    EXPECT_EQ(Shown(), rows);
  };
  m_tree.SetItemText(m_rows[L"a2"], 0, L"x2");
  shows("a x2");
  Add(L"x4", m_rows[L"b"]);
  shows("a x2 b x4");
  m_tree.SetItemText(m_rows[L"c"], 1, L"7");
  shows("a x2 b x4 c");
  m_tree.SetItemColor(m_rows[L"a1"], Rgb(255, 0, 0), 0);
  shows("a a1 x2 b x4 c");
  m_tree.SetChecked(m_rows[L"b1"], 2);
  shows("a a1 x2 b b1 x4 c");
  m_tree.SetChecked(m_rows[L"b1"], 3);
  m_tree.SetItemText(m_rows[L"c"], 1, L"8");
  m_tree.SetItemText(m_rows[L"a2"], 0, L"a2");
  shows("a a1 b x4");
  EXPECT_EQ(Finder().GetMatchCount(), 2U);
  m_tree.DeleteItem(m_rows[L"x4"]);
  shows("a a1");
  // Asked at once it knows at once.
  Add(L"xx");
  Finder().FollowChanges();
  EXPECT_EQ(Finder().GetMatchCount(), 2U);
  m_tree.DeleteAllItems();
  Finish();
  shows("");
  Add(L"x again");
  shows("x again");
  Finder().Clear();
  shows("x again");
}

TEST_F(RowFinderTest, AncestorsAreAskedToo) {
  AddFamilies();
  Add(L"leaf", Add(L"mid", m_rows[L"a1"]));
  Filter(L"in:a -mid");
  EXPECT_EQ(Shown(), "a a1 mid leaf a2 a3");
  m_tree.SetItemText(m_rows[L"a"], 0, L"other");
  Finish();
  EXPECT_EQ(Shown(), "other a1 mid leaf");
  m_tree.SetItemText(m_rows[L"b"], 0, L"a too");
  Finish();
  EXPECT_EQ(Shown(), "other a1 mid leaf a too b1 b2");
}

TEST_F(RowFinderTest, WhatAFilterHidesIsShownWhenItIsPicked) {
  AddFamilies();
  Filter(L"b1");
  m_tree.EnsureVisible(m_rows[L"a2"]);
  m_toolkit.Pump();
  EXPECT_EQ(Shown(), "a a2 b b1");
  EXPECT_EQ(Finder().GetMatchCount(), 1U);
  Filter(L"b");
  EXPECT_EQ(Shown(), "b b1 b2");
}

TEST_F(RowFinderTest, PicksAndClosedBranchesOutliveASearchThatBeginsAgain) {
  AddFamilies();
  Filter(L"in:a | in:b");
  m_tree.Expand(m_rows[L"a"], ExpandAction::Collapse);
  m_tree.EnsureVisible(m_rows[L"c"]);
  m_toolkit.Pump();
  EXPECT_EQ(Shown(), "a b b1 b2 c");
  m_tree.SetItemText(m_rows[L"b"], 0, L"none");
  Finish();
  EXPECT_EQ(Shown(), "a c");
}

TEST_F(RowFinderTest, TheNextRowTakesThePlaceOfOneThatLeaves) {
  for (int i = 0; i < 60; ++i) Add(L"row " + std::to_wstring(i));
  Filter(L"row");
  m_tree.SelectAlone(m_rows[L"row 30"]);
  m_toolkit.Pump();
  const HTREEITEM top = m_tree.GetFirstVisibleItem();
  const CString behind = m_tree.GetItemText(m_tree.GetNextSiblingItem(top), 0);
  m_tree.SetItemText(m_rows[L"row 30"], 0, L"other");
  m_tree.SetItemText(top, 0, L"other");
  m_toolkit.Pump();
  EXPECT_EQ(Caret(), "row 31");
  EXPECT_EQ(m_tree.GetItemText(m_tree.GetFirstVisibleItem(), 0), behind);
  EXPECT_EQ(Selected(), "");
}

TEST_F(RowFinderTest, WhatWasSelectedCountsAsWhenTheQueryWasGiven) {
  AddFamilies();
  for (const wchar_t* row : {L"a2", L"b1"}) m_tree.SetItemState(m_rows[row], kRowSelected, kRowSelected);
  Filter(L"selected:");
  EXPECT_EQ(Shown(), "a a2 b b1");
  Click(L"b1");
  m_tree.SetChecked(m_rows[L"a2"], 3);
  m_toolkit.Pump();
  EXPECT_EQ(Shown(), "a a2 b b1");
  // What is typed on the way hides what is selected.
  m_tree.GetFinder().Clear();
  m_tree.ClearAllSelected();
  m_tree.SetItemState(m_rows[L"a3"], kRowSelected, kRowSelected);
  Filter(L"sel");
  EXPECT_EQ(Selected(), "");
  Filter(L"selected:");
  EXPECT_EQ(Shown(), "a a3");
  m_tree.GetFinder().Clear();
  for (const wchar_t* row : {L"a2", L"b1"}) m_tree.SetItemState(m_rows[row], kRowSelected, kRowSelected);
  m_tree.SetItemState(m_rows[L"a3"], 0, kRowSelected);
  Filter(L"selected:");
  m_tree.SetItemState(m_rows[L"c"], kRowSelected, kRowSelected);  // a program shows what it selects
  m_toolkit.Pump();
  EXPECT_EQ(Shown(), "a a2 b b1 c");
}

TEST_F(RowFinderTest, AllThatWasSelectedComesBackAndNothingElse) {
  for (int i = 0; i < 300; ++i) Add(L"row " + std::to_wstring(i));
  m_tree.SelectAll(1);
  Filter(L"/^row 7$/");
  ASSERT_EQ(Selected(), "row 7");
  m_tree.DeleteItem(m_rows[L"row 9"]);
  Finder().Clear();
  EXPECT_EQ(m_tree.GetSelectedRowCount(), 299U);
  EXPECT_TRUE(m_tree.IsSelected(m_rows[L"row 299"]));
  // What is selected since stands for itself, also when it is given up.
  Filter(L"nothing");
  Filter(L"/^row 7.$/");
  ASSERT_EQ(Finder().SelectMatches(), 1);
  m_tree.ClearAllSelected();
  Finder().Clear();
  EXPECT_EQ(Selected(), "");
  // Of rows that are gone, others may have the numbers.
  m_tree.SelectAll(1);
  Filter(L"nothing");
  m_tree.DeleteAllItems();
  m_rows.clear();
  AddFamilies();
  Finder().Clear();
  EXPECT_EQ(Selected(), "");
}

TEST_F(RowFinderTest, FindingGoesFromMatchToMatchAndBack) {
  AddFamilies();
  m_tree.Expand(m_rows[L"b"], ExpandAction::Collapse);
  Find(L"2 | c");
  EXPECT_EQ(Shown(), "a a1 a2 a3 b c");
  EXPECT_EQ(Finder().GetMatchCount(), 3U);
  std::string walked;
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(Finder().FindNext(true), 1);
    walked += Caret() + std::to_string(Finder().GetMatchOfCaret()) + " ";
  }
  EXPECT_EQ(walked, "a21 b22 c3 a21 ");
  EXPECT_EQ(Shown(), "a a1 a2 a3 b b1 b2 c");
  Finder().FindNext(false);
  EXPECT_EQ(Selected(), "c");
  Click(L"a3");
  EXPECT_EQ(Finder().GetMatchOfCaret(), 0U);
  Finder().FindNext(false);
  EXPECT_EQ(Caret(), "a2");
  m_tree.Expand(m_rows[L"b"], ExpandAction::Collapse);
  EXPECT_EQ(Finder().SelectMatches(), 1);
  EXPECT_EQ(Selected(), "a2 b2 c");
  Find(L"nothing");
  EXPECT_EQ(Finder().FindNext(true), 0);
  EXPECT_EQ(Finder().SelectMatches(), 0);
  EXPECT_EQ(Selected(), "a2 b2 c");
}

TEST_F(RowFinderTest, AWrongQueryChangesNothingAndABlankOneEndsTheSearch) {
  AddFamilies();
  Filter(L"b2");
  EXPECT_EQ(Finder().Search(Mode::Find, L"/(/"), 0);
  EXPECT_NE(Finder().GetFault().key, nullptr);
  Finish();
  EXPECT_EQ(Shown(), "b b2");
  EXPECT_EQ(Finder().GetQuery(), L"b2");
  EXPECT_EQ(Finder().Search(Mode::Filter, L"  "), 1);
  EXPECT_EQ(Finder().GetFault().key, nullptr);
  EXPECT_FALSE(Finder().IsOn());
  m_toolkit.Pump();
  EXPECT_EQ(Shown(), "a a1 a2 a3 b b1 b2 c");
}

/// While a search goes on rows come, go and are renamed; in the end it is as if it had begun then.
TEST_F(RowFinderTest, ASearchThatGoesOnFollowsChanges) {
  std::mt19937 random(7);
  const auto name = [&] { return L"row " + std::to_wstring(random() % 1000); };
  const HTREEITEM top = Add(L"top");
  std::vector<HTREEITEM> rows;
  rows.reserve(200'000);
  for (int i = 0; i < 200'000; ++i) rows.push_back(m_tree.InsertItem(name(), 0, 0, top, kInsertLast));
  m_toolkit.Pump();
  ASSERT_EQ(Finder().Search(Mode::Filter, L"7 -type:part"), 1);
  ASSERT_FALSE(Finder().IsDone());
  int slices = 0;
  for (; !Finder().IsDone() && slices < 10'000; ++slices) {
    m_toolkit.Advance(1);
    m_toolkit.Pump();
    for (int change = 0; change < 100; ++change) {
      const std::size_t at = random() % rows.size();
      if (change % 3 == 0) {
        m_tree.DeleteItem(rows[at]);
        rows[at] = m_tree.InsertItem(name(), 0, 0, top, kInsertFirst);
      } else if (change % 3 == 1) {
        m_tree.DeleteItem(rows[at]);
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(at));
      } else {
        m_tree.SetItemText(rows[at], 0, name());
      }
    }
  }
  m_toolkit.Pump();
  EXPECT_GT(slices, 0);
  std::size_t expected = 0;
  for (const HTREEITEM row : rows) {
    const bool matches = m_tree.GetItemText(row, 0).find(L'7') != CString::npos;
    expected += matches ? 1 : 0;
    CRect place;
    ASSERT_EQ(m_tree.GetItemRect(row, place, false), matches);
  }
  EXPECT_EQ(Finder().GetMatchCount(), expected);
  EXPECT_EQ(static_cast<std::size_t>(m_tree.GetShownChildCount(top)), expected);
  // What is asked for meanwhile is done in the end.
  ASSERT_EQ(Finder().Search(Mode::Find, L"/7.*7/"), 1);
  ASSERT_FALSE(Finder().IsDone());
  Finder().SelectMatches();
  Finish();
  EXPECT_EQ(static_cast<std::size_t>(m_tree.GetSelectedCount()), Finder().GetMatchCount());
  // Narrowing finds what a search from the start finds.
  Filter(L"77 -type:part");
  const std::size_t narrowed = Finder().GetMatchCount();
  Filter(L"x");
  Filter(L"77 -type:part");
  EXPECT_EQ(Finder().GetMatchCount(), narrowed);
  EXPECT_GT(narrowed, 0U);
}

TEST_F(RowFinderTest, WhoFollowsTheSearchHearsOnceAMessage) {
  AddFamilies();
  int heard = 0;
  Finder().SetOnChanged([&] { ++heard; });
  Filter(L"a");
  EXPECT_EQ(std::exchange(heard, 0), 1);
  for (const wchar_t* title : {L"a1", L"a2", L"a3"}) m_tree.SetItemText(m_rows[title], 0, L"b");
  m_toolkit.Pump();
  EXPECT_EQ(std::exchange(heard, 0), 1);
  EXPECT_EQ(Finder().Search(Mode::Filter, L"/(/"), 0);
  m_toolkit.Pump();
  EXPECT_EQ(std::exchange(heard, 0), 1);
}

}  // namespace
}  // namespace qd::test

// The general tree-list control: selection by mouse and keys, scrolling.

#include "support/TreeList.h"

namespace qd::test {
namespace {

// ---- selection with the mouse ---------------------------------------------------------------------------

TEST_F(TreeList, AClickSelectsAloneAndControlToggles) {
  AddFamilies();
  Click(L"a1");
  EXPECT_EQ(Selected() + "/" + Caret(), "a1/a1");
  Click(L"a3", kMouseControl);
  EXPECT_EQ(Selected(), "a1 a3");
  Click(L"a1", kMouseControl);
  EXPECT_EQ(Selected(), "a3");
  EXPECT_EQ(TakeLog(), "click click click ");
  Click(L"b1", kMouseControl);  // another parent than the caret's: nothing, and no click is sent
  EXPECT_EQ(Selected(), "a3");
  EXPECT_EQ(TakeLog(), "");
  Click(L"b2");
  EXPECT_EQ(Selected() + "/" + Caret(), "b2/b2");
}

TEST_F(TreeList, ShiftSelectsARangeOfSiblings) {
  AddFamilies();
  Click(L"a");
  Click(L"c", kMouseShift);
  EXPECT_EQ(Selected(), "a b c");  // rows of other parents inside the range are left out
  Click(L"b", kMouseShift);
  EXPECT_EQ(Selected(), "a b");
  TakeLog();
  Click(L"a2", kMouseShift);  // another parent: nothing changes, a click is sent
  EXPECT_EQ(Selected(), "a b");
  EXPECT_EQ(TakeLog(), "click ");
  Click(L"a1");
  Click(L"a3", kMouseShift | kMouseControl);
  EXPECT_EQ(Selected(), "a1 a2 a3 b");  // a plain press clears the first top-level branch only
}

TEST_F(TreeList, ShiftRangesUpwardsAndWithoutOnlyKeepTheRest) {
  AddFamilies();
  Click(L"c");
  Click(L"a", kMouseShift);
  EXPECT_EQ(Selected(), "a b c");
  m_tree.SelectAll(0);
  m_tree.SetItemState(m_rows[L"b1"], kRowSelected, kRowSelected);
  m_tree.SelectRange(m_rows[L"a3"], m_rows[L"a2"], 0);
  EXPECT_EQ(Selected(), "a2 a3 b1");
  m_tree.SelectRange(m_rows[L"a1"], m_rows[L"a1"], 1);
  EXPECT_EQ(Selected(), "a1");
}

TEST_F(TreeList, WithoutACaretModifiersMeanNothing) {
  AddFamilies();
  Click(L"a2", kMouseShift);
  EXPECT_EQ(Selected() + "/" + Caret(), "a2/a2");
}

TEST_F(TreeList, PressingBesideTheRowsClearsUnlessAModifierIsHeld) {
  AddFamilies();
  Click(L"a1");
  TakeLog();
  m_toolkit.Click(m_tree, {40, 190}, kMouseControl);
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "a1");
  m_toolkit.Click(m_tree, {40, 190});
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "");
  EXPECT_EQ(TakeLog(), "click click ");
}

TEST_F(TreeList, TheRightButtonSelectsARowThatWasNot) {
  AddFamilies();
  Click(L"a1");
  Click(L"a2", kMouseControl);
  m_toolkit.RightClick(m_tree, At(L"a2"));
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "a1 a2");  // inside the selection: it stays for the menu
  m_toolkit.RightClick(m_tree, At(L"c"));
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "c");
  EXPECT_EQ(TakeLog(), "click click rclick rclick ");
}

TEST_F(TreeList, ADragBeginsBeyondTheSystemDistanceAndKeepsTheSelection) {
  AddFamilies();
  Click(L"a1");
  Click(L"a2", kMouseControl);
  TakeLog();
  const CPoint from = At(L"a2");
  m_toolkit.Enqueue({.kind = MessageKind::LeftDown, .target = &m_tree, .point = from});
  m_toolkit.Enqueue({.kind = MessageKind::MouseMove, .target = &m_tree, .point = {from.x + 4, from.y}});
  m_toolkit.Enqueue({.kind = MessageKind::MouseMove, .target = &m_tree, .point = {from.x + 5, from.y}});
  m_toolkit.Enqueue({.kind = MessageKind::LeftUp, .target = &m_tree, .point = from});
  m_toolkit.Pump();
  EXPECT_EQ(TakeLog(), "drag ");
  EXPECT_EQ(Selected(), "a1 a2");
}

TEST_F(TreeList, LosingTheCaptureOrThePressedRowSendsNothing) {
  AddFamilies();
  m_toolkit.Enqueue({.kind = MessageKind::LeftDown, .target = &m_tree, .point = At(L"a2")});
  m_toolkit.Enqueue({.kind = MessageKind::CaptureLost, .target = &m_tree});
  m_toolkit.Pump();
  EXPECT_EQ(TakeLog(), "");
  Click(L"a1");
  m_parent.onNotice = [this](Notice&) { m_tree.DeleteItem(m_rows[L"a1"]); };
  Click(L"a3");
  EXPECT_EQ(Selected(), "a3");
}

TEST_F(TreeList, PressingTheCheckImagePostsItsRowAndSelectsNothing) {
  AddFamilies();
  m_tree.SetChecked(m_rows[L"a1"], 3);
  CRect area;
  m_tree.GetItemRect(m_rows[L"a1"], area, true);
  unsigned flags = 0;
  EXPECT_EQ(m_tree.HitTest({area.left - 30, area.top + 3}, flags), m_rows[L"a1"]);
  EXPECT_EQ(flags, static_cast<unsigned>(kHitStateIcon));
  m_toolkit.Click(m_tree, {area.left - 30, area.top + 3});
  m_toolkit.Pump();
  EXPECT_EQ(Selected() + TakeLog(), "");
}

TEST_F(TreeList, ButtonsAndDoubleClicksOpenAndClose) {
  AddFamilies();
  CRect area;
  m_tree.GetItemRect(m_rows[L"a"], area, true);
  m_toolkit.Click(m_tree, {area.left - 28, area.top + 5});  // the expand button
  m_toolkit.Pump();
  EXPECT_FALSE(m_tree.IsExpanded(m_rows[L"a"]));
  EXPECT_EQ(Selected(), "");
  m_toolkit.DoubleClick(m_tree, At(L"a"));
  m_toolkit.Pump();
  EXPECT_TRUE(m_tree.IsExpanded(m_rows[L"a"]));
  m_toolkit.DoubleClick(m_tree, {200, area.top + 3});  // right of column 0
  m_toolkit.Pump();
  EXPECT_TRUE(m_tree.IsExpanded(m_rows[L"a"]));
}

TEST_F(TreeList, HiddenRowsStaySelectedButAreNotCounted) {
  AddFamilies();
  Click(L"a2");
  m_tree.Expand(m_rows[L"a"], ExpandAction::Collapse);
  EXPECT_EQ(m_tree.GetSelectedCount(), 0);
  EXPECT_FALSE(m_tree.GetFirstSelectedItem());
  EXPECT_EQ(Caret(), "a");
  EXPECT_FALSE(m_tree.IsSelected(m_rows[L"a"]));
  m_tree.Expand(m_rows[L"a"], ExpandAction::Expand);
  EXPECT_EQ(Selected(), "a2");
  m_tree.Expand(m_rows[L"a"], ExpandAction::Collapse);
  m_tree.SelectAllIgnore(0, {});  // the first branch, hidden rows too
  m_tree.Expand(m_rows[L"a"], ExpandAction::Expand);
  EXPECT_EQ(Selected(), "");
}

TEST_F(TreeList, SelectAllIgnoreClearsTheFirstBranchOnlyAndSelectsNothing) {
  AddFamilies();
  m_tree.SelectAll(1);
  EXPECT_EQ(m_tree.GetSelectedCount(), 8);
  m_tree.SelectAllIgnore(1, {});
  m_tree.SelectAllIgnore(0, m_rows[L"a2"]);
  EXPECT_EQ(Selected(), "a2 b b1 b2 c");
  EXPECT_EQ(m_tree.GetNextSelectedItem(m_rows[L"a2"]), m_rows[L"b"]);
}

TEST_F(TreeList, FocusMovesWithoutSelecting) {
  AddFamilies();
  Click(L"a1");
  m_tree.FocusItem(m_rows[L"a3"]);
  EXPECT_EQ(Selected() + "/" + Caret(), "a1/a3");
  EXPECT_EQ(m_tree.GetItemState(m_rows[L"a3"], kRowFocused | kRowSelected), static_cast<unsigned>(kRowFocused));
  m_tree.FocusItem({});
  EXPECT_EQ(Selected() + "/" + Caret(), "a1/none");
  m_tree.SetItemState(m_rows[L"b"], kRowFocused | kRowSelected, kRowFocused | kRowSelected);
  EXPECT_EQ(Selected() + "/" + Caret(), "a1 b/b");
  EXPECT_EQ(m_tree.SetMultiSelect(0), 1);
  EXPECT_EQ(m_tree.SetMultiSelect(1), 0);
}

// ---- keys -----------------------------------------------------------------------------------------------

TEST_F(TreeList, KeysMoveTheCaretAndItsSelection) {
  AddFamilies();
  Key(kKeyDown);  // no caret yet: the first row
  EXPECT_EQ(Selected() + "/" + Caret(), "a/a");
  Key(kKeyUp);  // cannot move: stays selected
  EXPECT_EQ(Selected() + "/" + Caret(), "a/a");
  Key(kKeyDown);
  Key(kKeyDown);
  EXPECT_EQ(Selected() + "/" + Caret(), "a2/a2");
  Key(kKeyDown, kMouseShift);
  EXPECT_EQ(Selected() + "/" + Caret(), "a2 a3/a3");
  Key(kKeyUp, kMouseShift);
  EXPECT_EQ(Selected(), "a2");
  Key(kKeyDown, kMouseControl);
  EXPECT_EQ(Selected() + "/" + Caret(), "a2/a3");
  Key(kKeyEnd);
  EXPECT_EQ(Selected(), "c");
  Key(kKeyHome);
  EXPECT_EQ(Selected(), "a");
  Key(kKeyLeft);
  EXPECT_FALSE(m_tree.IsExpanded(m_rows[L"a"]));
  Key(kKeyRight);
  Key(kKeyRight);
  EXPECT_EQ(Selected(), "a1");
  Key(kKeyLeft);
  EXPECT_EQ(Selected(), "a");
}

TEST_F(TreeList, KeysOnAnEmptyTreeDoNothing) {
  for (int key = kKeyPageUp; key <= kKeyDown; ++key) {
    Key(key);
    Key(key, kMouseShift);
    Key(key, kMouseControl);
  }
  m_toolkit.Click(m_tree, {10, 10});
  m_toolkit.DoubleClick(m_tree, {10, 10});
  m_toolkit.Pump();
  EXPECT_EQ(Caret(), "none");
}

// ---- scrolling ------------------------------------------------------------------------------------------

TEST_F(TreeList, TheFirstRowOnScreenStaysWhileOthersComeAndGo) {
  for (int i = 0; i < 100; ++i) Add(std::to_wstring(i));
  m_toolkit.Pump();
  m_tree.ScrollTo(50);
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"50"]);
  for (int i = 0; i < 20; ++i) m_tree.DeleteItem(m_rows[std::to_wstring(i)]);
  m_tree.InsertItem(L"new", 0, 0, {}, kInsertFirst);
  m_toolkit.Pump();
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"50"]);
  m_tree.DeleteItem(m_rows[L"50"]);
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"51"]);
  m_tree.ScrollTo(100000);
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"90"]);  // 10 rows fit
  for (int i = 60; i < 100; ++i) m_tree.DeleteItem(m_rows[std::to_wstring(i)]);
  m_toolkit.Pump();
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"49"]);
  m_tree.EnsureVisible(m_rows[L"20"]);
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"20"]);
}

TEST_F(TreeList, EnsureVisibleOpensTheAncestorsOnly) {
  AddFamilies();
  for (const wchar_t* branch : {L"a", L"b"}) m_tree.Expand(m_rows[branch], ExpandAction::Collapse);
  m_tree.EnsureVisible(m_rows[L"b2"]);
  EXPECT_TRUE(m_tree.IsExpanded(m_rows[L"b"]));
  EXPECT_FALSE(m_tree.IsExpanded(m_rows[L"a"]));
}

TEST_F(TreeList, TheWheelScrollsAndTheCaretSurvivesDeletion) {
  for (int i = 0; i < 40; ++i) Add(std::to_wstring(i));
  m_toolkit.Pump();
  m_toolkit.Enqueue({.kind = MessageKind::Wheel, .target = &m_tree, .amount = -3});
  m_toolkit.Pump();
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"3"]);
  Click(L"5");
  m_tree.DeleteItem(m_rows[L"5"]);
  EXPECT_EQ(Selected() + "/" + Caret(), "/6");
  m_tree.SelectItem(m_rows[L"39"]);
  m_tree.DeleteItem(m_rows[L"39"]);
  EXPECT_EQ(Caret(), "38");
}

}  // namespace
}  // namespace qd::test

// The general tree-list control: rows and columns, sorting, selection by mouse and keys, painting, scrolling.

#include <gtest/gtest.h>

#include <map>

#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

/// A control in a parent that writes down its notices.
class Parent final : public CWnd {
 public:
  std::string log;
  std::function<void(Notice&)> onNotice;

 protected:
  std::intptr_t OnNotify(Notice& notice) override {
    if (notice.code == CTreeListCtrl::kNoticeBeginDrag) log += "drag ";
    if (notice.code == CTreeListCtrl::kNoticeBeginRightDrag) log += "rdrag ";
    if (notice.code == kNoticeClick) log += "click ";
    if (notice.code == kNoticeRightClick) log += "rclick ";
    if (notice.code == kNoticeClick) {
      EXPECT_TRUE(static_cast<CTreeListCtrl*>(notice.from)->IsEmulatedNotify());
    }
    if (onNotice) onNotice(notice);
    return 0;
  }
};

class TreeList : public ::testing::Test {
 protected:
  TreeList() {
    m_parent.Create(nullptr, 0, {0, 0, 400, 400});
    m_tree.GetHeader().Create(&m_parent, 1, {0, 0, 300, 20});
    m_tree.Create(&m_parent, 2, {0, 20, 300, 220});
    m_tree.InsertColumn(0, L"Name", 0, 180, 0);
    m_tree.InsertColumn(1, L"Key", 1, 60, 0);
    m_tree.InsertColumn(2, L"Colour", 2, -1, 0);
    m_tree.SetImageList(&m_images, &m_images);
    m_toolkit.Pump();
  }
  HTREEITEM Add(const CString& text, HTREEITEM parent = {}) {
    const HTREEITEM row = m_tree.InsertItem(text, 0, 0, parent, kInsertLast);
    m_rows[text] = row;
    return row;
  }
  /// a [a1 a2 a3], b [b1 b2], c; a and b open.
  void AddFamilies() {
    for (const wchar_t* child : {L"a1", L"a2", L"a3"})
      Add(child, m_rows.contains(L"a") ? m_rows[L"a"] : Add(L"a"));
    for (const wchar_t* child : {L"b1", L"b2"}) Add(child, m_rows.contains(L"b") ? m_rows[L"b"] : Add(L"b"));
    Add(L"c");
    for (const wchar_t* branch : {L"a", L"b"}) m_tree.Expand(m_rows[branch], ExpandAction::Expand);
    m_toolkit.Pump();
  }
  std::string Titles(const std::vector<HTREEITEM>& rows) {
    std::string titles;
    for (const HTREEITEM row : rows)
      titles += (titles.empty() ? "" : " ") + workbench::ToUtf8(m_tree.GetItemText(row, 0));
    return titles;
  }
  std::string Selected() { return Titles(m_tree.GetSelectedItems()); }
  std::string Caret() {
    return m_tree.GetFocusedItem() ? workbench::ToUtf8(m_tree.GetItemText(m_tree.GetFocusedItem(), 0)) : "none";
  }
  std::string Children(HTREEITEM parent) {
    std::vector<HTREEITEM> rows;
    for (HTREEITEM row = m_tree.GetChildItem(parent); row; row = m_tree.GetNextSiblingItem(row))
      rows.push_back(row);
    return Titles(rows);
  }
  CPoint At(const CString& text) {
    CRect area;
    EXPECT_TRUE(m_tree.GetItemRect(m_rows[text], area, true));
    return {area.left + 3, area.top + 3};
  }
  void Click(const CString& text, unsigned flags = 0) {
    m_toolkit.Click(m_tree, At(text), flags);
    m_toolkit.Pump();
  }
  void Key(int key, unsigned flags = 0) {
    m_toolkit.Key(m_tree, key, flags);
    m_toolkit.Pump();
  }
  std::string TakeLog() { return std::exchange(m_parent.log, {}); }

  HeadlessToolkit m_toolkit;
  Parent m_parent;
  CImageList m_images;
  CTreeListCtrl m_tree;
  std::map<CString, HTREEITEM> m_rows;
};

// ---- records --------------------------------------------------------------------------------------------

TEST(RowRecord, ColumnTextsShareOneString) {
  CTLItem item;
  item.SetSubstring(0, L"a");
  EXPECT_EQ(item.GetItemString(), L"a");
  item.SetSubstring(3, L"x");
  EXPECT_EQ(item.GetItemString(), CString(L"a\0\0\0x", 5));
  EXPECT_EQ(item.GetSubstring(3), L"x");
  EXPECT_EQ(item.GetSubstring(4), L"");
  item.SetSubstring(1, L"two\n[1]");
  item.SetSubstring(0, L"");
  EXPECT_EQ(item.GetSubstring(1), L"two\n[1]");
  item.SetSubstring(-1, L"no");
  EXPECT_EQ(item.GetSubstring(-1), L"");

  CTLItem pair;
  pair.SetSubstring(0, L"x");
  pair.SetSubstring(1, L"y");
  pair.SetSubstring(0, L"a");
  EXPECT_EQ(pair.GetItemString(), CString(L"a\0y", 3));
}

TEST(RowRecord, WritingColumnOneDropsAnEmptyColumnZero) {
  CTLItem item;
  item.SetSubstring(1, L"");
  ASSERT_EQ(item.GetItemString(), CString(1, L'\0'));
  item.SetSubstring(1, L"b");
  EXPECT_EQ(item.GetItemString(), L"b");
}

TEST(RowRecord, EditAndComboExcludeEachOther) {
  CTLItem item;
  item.SetEditable(1);
  item.SetCombo(1);
  EXPECT_TRUE(item.HasCombo() && !item.IsEditable());
  item.SetCombo(0);
  EXPECT_TRUE(!item.HasCombo() && !item.IsEditable());
  item.SetColor(0xFF123456);
  EXPECT_EQ(item.GetColor(), 0x123456U);
}

// ---- order ----------------------------------------------------------------------------------------------

struct NumberCase {
  const wchar_t* text;
  std::int32_t number;
};
class Numbers : public ::testing::TestWithParam<NumberCase> {};
TEST_P(Numbers, AreReadFromTheFront) {
  EXPECT_EQ(DecimalPrefix(GetParam().text), GetParam().number);
}
INSTANTIATE_TEST_SUITE_P(Texts, Numbers,
                         ::testing::Values(NumberCase{L"", 0}, NumberCase{L" \t12x", 12}, NumberCase{L"-7", -7},
                                           NumberCase{L"+8", 8}, NumberCase{L"x9", 0}, NumberCase{L"- 9", 0},
                                           NumberCase{L"\x0661", 0}, NumberCase{L"2147483647", 2147483647},
                                           NumberCase{L"99999999999999999999", 2147483647},
                                           NumberCase{L"-99999999999999999999", -2147483647 - 1}));

struct BracketCase {
  const wchar_t* text;
  std::int32_t number;
};
class Brackets : public ::testing::TestWithParam<BracketCase> {};
TEST_P(Brackets, TheLastPairCounts) {
  EXPECT_EQ(BracketNumber(GetParam().text), GetParam().number);
}
INSTANTIATE_TEST_SUITE_P(Texts, Brackets,
                         ::testing::Values(BracketCase{L"Set [12]", 12}, BracketCase{L"a[1]b[7]", 7},
                                           BracketCase{L"]3[", 0}, BracketCase{L"[5", 0}, BracketCase{L"none", 0},
                                           BracketCase{L"[[4]", 4}));

struct NameCase {
  const wchar_t* first;
  const wchar_t* second;
  int sign;
};
class NameOrder : public ::testing::TestWithParam<NameCase> {};
TEST_P(NameOrder, ComparesPrefixNumberAndText) {
  const auto compare = [](const wchar_t* a, const wchar_t* b) {
    const int result = CompareNames(NameKey(a), NameKey(b), 1);
    return (result > 0) - (result < 0);
  };
  EXPECT_EQ(compare(GetParam().first, GetParam().second), GetParam().sign);
  EXPECT_EQ(compare(GetParam().second, GetParam().first), -GetParam().sign);
}
INSTANTIATE_TEST_SUITE_P(Pairs, NameOrder,
                         ::testing::Values(NameCase{L"Part2", L"Part10", -1}, NameCase{L"part2", L"Part10", 1},
                                           NameCase{L"abc", L"ABD", -1}, NameCase{L"ÄPFEL", L"äpfel", 0},
                                           NameCase{L"Ж1", L"ж1", 0}, NameCase{L"a_", L"ab", -1},
                                           NameCase{L"x01", L"x1", -1}, NameCase{L"", L"a", -1},
                                           NameCase{L"a", L"a5", -1}, NameCase{L"7", L"12", -1},
                                           NameCase{L"Part99999999999", L"Part99999999998", 1}));

TEST_F(TreeList, SortByNamePutsNumbersInOrderAndKeepsEqualRows) {
  for (const wchar_t* name : {L"Item10", L"Item9", L"item1"}) Add(name);
  EXPECT_EQ(m_tree.SortItems(0, 1, {}), 1);
  EXPECT_EQ(Children({}), "item1 Item9 Item10");
}

TEST_F(TreeList, SortByKeyUsesTheKeyThenTheBracketNumber) {
  for (const wchar_t* name : {L"Set [12]", L"Set [3]", L"x", L"y"}) Add(name);
  m_tree.SetItemText(m_rows[L"x"], 1, L"-1");  // unsigned: the greatest of all
  m_tree.SetItemText(m_rows[L"y"], 1, L"5  ");
  m_tree.SortItems(0, 0, {});
  EXPECT_EQ(Children({}), "Set [3] Set [12] y x");
  const CTLItem* twelve = m_tree.GetRecord(m_rows[L"Set [12]"]);
  const CTLItem* three = m_tree.GetRecord(m_rows[L"Set [3]"]);
  EXPECT_EQ(CTreeListCtrl::CompareFuncByKey(*twelve, *three, {0, 0}), 1);
  EXPECT_EQ(CTreeListCtrl::CompareFuncByKey(*three, *three, {0, 0}), -1);
}

TEST_F(TreeList, SortMovesWholeBranchesAndOneLevelOnly) {
  AddFamilies();
  m_tree.SetItemText(m_rows[L"a"], 0, L"z");
  m_tree.SetItemText(m_rows[L"a1"], 0, L"z1");
  m_tree.SortItems(0, 1, {});
  EXPECT_EQ(Children({}), "b c z");
  EXPECT_EQ(Children(m_rows[L"a"]), "z1 a2 a3");
}

// ---- rows and columns -----------------------------------------------------------------------------------

TEST_F(TreeList, ColumnsHaveWidthsAndAlignments) {
  EXPECT_EQ(m_tree.GetColumnsNum(), 3);
  EXPECT_EQ(m_tree.GetColumnAlign(0), 0);
  EXPECT_EQ(m_tree.GetColumnAlign(1), 1);
  EXPECT_EQ(m_tree.GetColumnAlign(2), 2);
  EXPECT_EQ(m_tree.GetColumnWidth(2), 6 * HeadlessToolkit::kCharacterWidth + 24);
  EXPECT_EQ(m_tree.GetColumnWidth(7), 0);
  EXPECT_EQ(m_tree.GetColumnsWidth(), 180 + 60 + 66);
}

TEST_F(TreeList, CountsFollowTheirOwnRules) {
  AddFamilies();
  EXPECT_EQ(m_tree.GetItemCount(), 8);
  EXPECT_FALSE(m_tree.CopyItem(m_rows[L"a"], {}, kInsertLast));
  EXPECT_FALSE(m_tree.MoveItem(m_rows[L"a"], {}, kInsertLast));
  EXPECT_EQ(m_tree.GetItemCount(), 8);
  m_tree.SetItemColor(m_rows[L"c"], 0x112233, 0);
  m_tree.SetChecked(m_rows[L"c"], 3);
  const HTREEITEM copy = m_tree.CopyItem(m_rows[L"c"], m_rows[L"b"], kInsertFirst);
  EXPECT_EQ(Children(m_rows[L"b"]), "c b1 b2");
  EXPECT_EQ(m_tree.GetRecord(copy)->GetColor(), 0x112233U);
  EXPECT_EQ(m_tree.WhichCheck(copy), 3);
  EXPECT_EQ(m_tree.GetItemCount(), 8);  // one lower than the rows
  const HTREEITEM moved = m_tree.MoveItem(m_rows[L"b1"], m_rows[L"a"], m_rows[L"a1"]);
  EXPECT_FALSE(m_tree.IsLive(m_rows[L"b1"]));
  EXPECT_TRUE(m_tree.IsLive(moved));
  EXPECT_EQ(Children(m_rows[L"a"]), "a1 b1 a2 a3");
  EXPECT_EQ(m_tree.GetItemCount(), 7);
  EXPECT_EQ(m_tree.DeleteItem(m_rows[L"a"]), 1);  // counts one, takes the branch
  EXPECT_EQ(m_tree.GetItemCount(), 6);
  EXPECT_EQ(m_tree.RowCount(), 4U);
  EXPECT_EQ(m_tree.DeleteItem(m_rows[L"a"]), 0);
  EXPECT_EQ(m_tree.DeleteSubItems(m_rows[L"b"]), 0);
  EXPECT_EQ(m_tree.DeleteSubItems(m_rows[L"b"]), 0);
  EXPECT_EQ(Children({}), "b c");
  EXPECT_EQ(m_tree.GetItemCount(), 4);
  EXPECT_EQ(m_tree.DeleteAllItems(), 1);
  EXPECT_EQ(m_tree.RowCount(), 0U);
  EXPECT_EQ(m_tree.GetItemCount(), 4);
}

TEST_F(TreeList, MovingBehindItselfOrUnderItselfIsSafe) {
  AddFamilies();
  m_rows[L"a2"] = m_tree.MoveItem(m_rows[L"a2"], m_rows[L"a"], m_rows[L"a2"]);
  EXPECT_EQ(Children(m_rows[L"a"]), "a1 a2 a3");
  m_rows[L"a1"] = m_tree.MoveItem(m_rows[L"a1"], m_rows[L"a"], m_rows[L"a1"]);
  EXPECT_EQ(Children(m_rows[L"a"]), "a1 a2 a3");
  EXPECT_FALSE(m_tree.MoveItem(m_rows[L"c"], m_rows[L"c"], kInsertLast));
  EXPECT_EQ(Children({}), "a b c");
}

TEST_F(TreeList, RowsWithoutRecordAnswerNothingAndStayUntilTheirBranchGoes) {
  AddFamilies();
  const HTREEITEM bare =
      m_tree.InsertItem(CTreeListCtrl::kAttributeImage, L"lost", 4, 0, 0, 0, 9, m_rows[L"b"], kInsertFirst, 1, 0);
  EXPECT_EQ(m_tree.GetItemText(bare, 0), L"");
  EXPECT_EQ(m_tree.SetItemColor(bare, 1, 1), 0);
  EXPECT_EQ(m_tree.SetItemBold(bare, 1, 1), 0);
  EXPECT_EQ(m_tree.GetItemData(bare), 0U);
  EXPECT_EQ(m_tree.DeleteItem(bare), 0);
  EXPECT_EQ(m_tree.DeleteSubItems(m_rows[L"b"]), 1);
  EXPECT_EQ(m_tree.GetChildItem(m_rows[L"b"]), bare);
  m_toolkit.Paint(m_tree);
  const HTREEITEM full = m_tree.InsertItem(CTreeListCtrl::kAttributeData | CTreeListCtrl::kAttributeState, L"t", 0,
                                           0, 3U << 12U, kRowStateImage, 42, {}, kInsertLast, 1, 1);
  EXPECT_EQ(m_tree.GetItemData(full), 42U);
  EXPECT_EQ(m_tree.WhichCheck(full), 3);
  EXPECT_TRUE(m_tree.GetRecord(full)->HasCombo() && !m_tree.GetRecord(full)->IsEditable());
  m_tree.SetCombo(full, 0);  // at the control, one off is the other on
  EXPECT_TRUE(m_tree.GetRecord(full)->IsEditable());
}

TEST_F(TreeList, IndexedAccessMeansTheFirstRow) {
  AddFamilies();
  EXPECT_EQ(m_tree.GetTreeItem(5), m_rows[L"a"]);
  EXPECT_EQ(m_tree.GetItemText(2, 0), L"a");
  CString text = L"one\r\ntwo";
  EXPECT_EQ(CTreeListCtrl::GetNextLine(text), L"one");
  EXPECT_EQ(text, L"two");
  EXPECT_EQ(CTreeListCtrl::GetNextLine(text), L"");
  EXPECT_EQ(text, L"two");
}

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

// ---- painting -------------------------------------------------------------------------------------------

TEST_F(TreeList, PaintsTextsBandsAndSwatches) {
  const HTREEITEM plain = Add(L"plain");
  const HTREEITEM chosen = Add(L"chosen");
  m_tree.SetItemText(plain, 1, L"7");
  m_tree.SetItemColor(plain, Rgb(0x10, 0x20, 0x30), 0);
  m_tree.SetItemColor(chosen, Rgb(1, 1, 1), 0);  // without a key no swatch
  m_tree.SetItemBold(chosen, 1, 0);
  m_tree.SetItemState(chosen, kRowSelected, kRowSelected);
  m_tree.SetGridLines(1);
  const auto calls = m_toolkit.Paint(m_tree);
  const auto has = [&calls](const std::string& call) { return std::count(calls.begin(), calls.end(), call); };
  EXPECT_EQ(has("text 40,0,176,20 #000000 left 'plain'"), 1);
  EXPECT_EQ(has("text 180,0,236,20 #000000 right '7'"), 1);
  EXPECT_EQ(has("fill 243,3,303,17 #102030"), 1);
  EXPECT_EQ(has("frame 243,3,303,17 #000000"), 1);
  EXPECT_EQ(has("fill 38,20,306,40 #0078D7"), 1);
  EXPECT_EQ(has("focus 38,20,306,40"), 1);
  EXPECT_EQ(has("text 40,20,176,40 #FFFFFF left bold 'chosen'"), 1);
  EXPECT_EQ(has("fill 243,23,303,37 #010101"), 0);
  EXPECT_EQ(has("hatch 179,0,180,20 #000000"), 1);
  EXPECT_EQ(has("hatch 179,20,180,40 #000000"), 0);  // selected rows show no vertical lines
  EXPECT_EQ(has("hatch 0,19,306,20 #000000"), 1);
}

TEST_F(TreeList, OnlyExposedRowsArePainted) {
  for (int i = 0; i < 1000; ++i) Add(L"row");
  m_toolkit.Pump();
  m_tree.ScrollTo(500);
  const auto calls = m_toolkit.Paint(m_tree);
  EXPECT_EQ(std::count_if(calls.begin(), calls.end(), [](const auto& call) { return call.starts_with("text"); }),
            10);
}

struct FitCase {
  const wchar_t* text;
  int width;
  const wchar_t* shown;
};
class Fitting : public ::testing::TestWithParam<FitCase> {};
TEST_P(Fitting, CutsAtTheEndWhereTheTextDoesNotFit) {
  const HeadlessToolkit toolkit;  // 7 pixels an element
  EXPECT_EQ(FitText({}, GetParam().text, GetParam().width), GetParam().shown);
}
INSTANTIATE_TEST_SUITE_P(Texts, Fitting,
                         ::testing::Values(FitCase{L"abcd", 28, L"abcd"}, FitCase{L"abcd", 27, L"abc..."},
                                           FitCase{L"abcd", 6, L"..."}, FitCase{L"abcd", -5, L"..."},
                                           FitCase{L"", -5, L""}, FitCase{L"a\tb\r\nc", 99, L"a b  c"},
                                           FitCase{L"x\xD83D\xDE00y", 14, L"x..."}));

TEST_F(TreeList, ManyChangesPaintOnce) {
  AddFamilies();
  m_toolkit.TakePaintCount();
  for (int i = 0; i < 5000; ++i) m_tree.SetChecked(m_rows[L"a1"], 1 + i % 2);
  m_toolkit.Pump();
  EXPECT_EQ(m_toolkit.TakePaintCount(), 1);
}

TEST_F(TreeList, AZeroSizeWindowIsHarmless) {
  AddFamilies();
  m_tree.MoveWindow({0, 0, 0, 0});
  m_toolkit.Pump();
  m_toolkit.Paint(m_tree);
  m_tree.EnsureVisible(m_rows[L"c"]);
  Key(kKeyPageDown);
}

// ---- header ---------------------------------------------------------------------------------------------

TEST_F(TreeList, DraggingAnEdgeResizesAColumnAndEscapeTakesItBack) {
  CQDTreeListHeaderCtrl& header = m_tree.GetHeader();
  const auto drag = [&](int to, bool escape) {
    m_toolkit.Enqueue({.kind = MessageKind::LeftDown, .target = &header, .point = {181, 5}});
    m_toolkit.Enqueue({.kind = MessageKind::MouseMove, .target = &header, .point = {to, 5}});
    if (escape) m_toolkit.Enqueue({.kind = MessageKind::KeyDown, .target = &header, .key = kKeyEscape});
    m_toolkit.Enqueue({.kind = MessageKind::LeftUp, .target = &header, .point = {to, 5}});
    m_toolkit.Pump();
  };
  drag(250, true);
  EXPECT_EQ(m_tree.GetColumnWidth(0), 180);
  drag(201, false);
  EXPECT_EQ(m_tree.GetColumnWidth(0), 200);
  header.SetItemSort(0, 1);
  const auto calls = m_toolkit.Paint(header);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "polygon 3 #000000"), 1);
  EXPECT_TRUE(
      std::any_of(calls.begin(), calls.end(), [](const auto& call) { return call.ends_with("'Colour'"); }));
}

}  // namespace
}  // namespace qd::test

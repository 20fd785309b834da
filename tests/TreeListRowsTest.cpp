// The general tree-list control: records, order, rows and columns.

#include <algorithm>
#include <numeric>
#include <random>

#include "platform/tree/StableMerge.h"
#include "qd_wrt/treelist/NameSort.h"
#include "support/TreeList.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

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
  item.SetCombo(1);
  item.SetEditable(1);
  EXPECT_TRUE(!item.HasCombo() && item.IsEditable());
  item.SetColor(0xFF123456);
  EXPECT_EQ(item.GetColor(), 0x123456U);
}

// ---- order ----------------------------------------------------------------------------------------------

TEST(Numbers, AreReadFromTheFrontAndFromTheLastPairOfBrackets) {
  using Cases = std::vector<std::pair<const wchar_t*, std::int32_t>>;
  for (const auto& [text, number] : Cases{{L"", 0},
                                          {L" \t12x", 12},
                                          {L"-7", -7},
                                          {L"+8", 8},
                                          {L"x9", 0},
                                          {L"- 9", 0},
                                          {L"\x0661", 0},
                                          {L"2147483647", 2147483647},
                                          {L"99999999999999999999", 2147483647},
                                          {L"-99999999999999999999", -2147483647 - 1}}) {
    EXPECT_EQ(DecimalPrefix(text), number) << CString(text);
  }
  for (const auto& [text, number] :
       Cases{{L"Set [12]", 12}, {L"a[1]b[7]", 7}, {L"]3[", 0}, {L"[5", 0}, {L"none", 0}, {L"[[4]", 4}}) {
    EXPECT_EQ(BracketNumber(text), number) << CString(text);
  }
}

TEST(NameOrder, ComparesPrefixNumberAndText) {
  const auto compare = [](const wchar_t* a, const wchar_t* b) {
    const int result = CompareNames(NameKey(a), NameKey(b), 1);
    return (result > 0) - (result < 0);
  };
  using Cases = std::vector<std::tuple<const wchar_t*, const wchar_t*, int>>;
  for (const auto& [first, second, sign] : Cases{{L"Part2", L"Part10", -1},
                                                 {L"part2", L"Part10", 1},
                                                 {L"abc", L"ABD", -1},
                                                 {L"ÄPFEL", L"äpfel", 0},
                                                 {L"Ж1", L"ж1", 0},
                                                 {L"a_", L"ab", -1},
                                                 {L"x01", L"x1", -1},
                                                 {L"", L"a", -1},
                                                 {L"a", L"a5", -1},
                                                 {L"7", L"12", -1},
                                                 {L"Part99999999999", L"Part99999999998", 1}}) {
    EXPECT_EQ(compare(first, second), sign) << CString(first);
    EXPECT_EQ(compare(second, first), -sign) << CString(first);
  }
}

/// However many are sorted at once, and by whatever short cut: as a merge that asks about two at a time. Names
/// whose prefixes differ in case only have no one order, so the way counts there.
TEST_F(TreeList, SortByNameStandsAsComparingSays) {
  const std::vector<std::vector<CString>> alphabets{
      {L"a", L"B", L"\u00E9", L"e", L"E\u0301", L"\u00DF", L"ss", L"\u0436", L" "},
      {L"part ", L"part", L"0", L"1", L"72", L" x", L"\u00E9", L"e", L"", L"-"},
      {L"p", L"P", L"1", L"0", L"31", L" "},
      {L"Part 1-one of many ", L"Part 1-one of many", L"a", L"A", L"\u00E4", L"9"},
      {L"b2147483647", L"b2147483648", L"b", L"0", L"99999999999", L"a"},
      {L"same"}};
  std::mt19937 random(8);
  for (const std::vector<CString>& alphabet : alphabets) {
    for (const std::size_t count : {20U, 33U, 300U, 1000U}) {
      m_tree.DeleteAllItems();
      std::vector<CString> names(count);
      std::vector<HTREEITEM> rows;
      for (CString& name : names) {
        for (std::size_t left = 1 + random() % 4; left > 0; --left) name += alphabet[random() % alphabet.size()];
        rows.push_back(Add(name.c_str()));
      }
      const std::vector<NameKey> keys(names.begin(), names.end());
      for (const int direction : {-1, 1}) {
        std::vector<std::uint32_t> places(count);
        std::iota(places.begin(), places.end(), 0U);
        StableMerge(places, [&](std::uint32_t left, std::uint32_t right) {
          return direction * CompareNames(keys[left], keys[right], 1);
        });
        ASSERT_EQ(OrderOfNames(keys, direction), places) << workbench::ToUtf8(alphabet[0]) << ", " << count;
      }
      m_tree.SortItems(0, 1, kTreeRoot);
      HTREEITEM row = m_tree.GetRootItem();
      for (const std::uint32_t place : OrderOfNames(keys, 1)) {
        ASSERT_EQ(row, rows[place]) << workbench::ToUtf8(m_tree.GetItemText(row, 0));
        row = m_tree.GetNextSiblingItem(row);
      }
    }
  }
}

TEST_F(TreeList, SortByKeyUsesTheKeyThenTheBracketNumber) {
  for (const wchar_t* name : {L"Set [12]", L"Set [3]", L"x", L"y", L"same as y"}) Add(name);
  m_tree.SetItemText(m_rows[L"same as y"], 1, L"5");
  m_tree.SetItemText(m_rows[L"x"], 1, L"-1");  // unsigned: the greatest of all
  m_tree.SetItemText(m_rows[L"y"], 1, L"5  ");
  m_tree.SortItems(0, 0, kTreeRoot);
  EXPECT_EQ(Children({}), "Set [3] Set [12] y same as y x");
  m_toolkit.Pump();
  m_toolkit.TakePaintCount();
  m_tree.SortItems(0, 0, {});
  m_toolkit.Pump();
  EXPECT_EQ(Children({}), "Set [3] Set [12] y same as y x");
  EXPECT_EQ(m_toolkit.TakePaintCount(), 0) << "they were in order";
  m_tree.SetItemText(m_rows[L"x"], 0, L"Y");  // the same name
  m_tree.SortItems(0, 1, {});
  m_toolkit.Pump();
  m_toolkit.TakePaintCount();
  m_tree.SortItems(0, 1, {});
  m_toolkit.Pump();
  EXPECT_EQ(m_toolkit.TakePaintCount(), 0) << "they were in order";
  const CTLItem* twelve = m_tree.GetRecord(m_rows[L"Set [12]"]);
  const CTLItem* three = m_tree.GetRecord(m_rows[L"Set [3]"]);
  EXPECT_EQ(CTreeListCtrl::CompareFuncByKey(*twelve, *three, {0, 0}), 1);
  EXPECT_EQ(CTreeListCtrl::CompareFuncByKey(*three, *three, {0, 0}), -1);
}

TEST_F(TreeList, ARowThatIsMovedBehindItselfStaysWhereItIs) {
  for (const wchar_t* name : {L"first", L"second", L"last"}) Add(name);
  for (const wchar_t* name : {L"first", L"second", L"last"}) {
    m_rows[name] = m_tree.MoveItem(m_rows[name], {}, m_rows[name]);
    EXPECT_EQ(Children({}), "first second last") << name;
  }
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
  // A column that comes brings the tree's own background back.
  m_tree.SetBackgroundColor(Rgb(1, 2, 3));
  m_tree.SetBkColor(Rgb(4, 5, 6));
  m_tree.InsertColumn(3, L"Late", 0, 10, 0);
  EXPECT_EQ(m_tree.GetBkColor(), Rgb(1, 2, 3));
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

}  // namespace
}  // namespace qd::test

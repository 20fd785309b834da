// The general tree-list control: painting and its header.

#include "qd_wrt/treelist/CTreeListHeaderCtrl.h"
#include "support/TreeList.h"

namespace qd::test {
namespace {

// ---- painting -------------------------------------------------------------------------------------------

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
                                           FitCase{L"x\xD83D\xDE00y", 14, L"x..."},
                                           FitCase{L"abe\x301z", 21, L"ab..."},
                                           FitCase{L"a\x202E"
                                                   L"b\x2028"
                                                   L"c",
                                                   99,
                                                   L"a\xFFFD"
                                                   L"b c"}));

TEST_F(TreeList, ManyChangesPaintOnce) {
  AddFamilies();
  m_toolkit.TakePaintCount();
  for (int i = 0; i < 5000; ++i) m_tree.SetChecked(m_rows[L"a1"], 1 + i % 2);
  m_toolkit.Pump();
  EXPECT_EQ(m_toolkit.TakePaintCount(), 1);
  // A single one afterwards paints its own line.
  std::vector<int> heights;
  m_toolkit.SetScreen([&](CWnd& window, const CRect& area) {
    if (&window == &m_tree) heights.push_back(area.Height());
  });
  m_tree.SetChecked(m_rows[L"a1"], 1);
  m_toolkit.Pump();
  EXPECT_EQ(heights, std::vector<int>{m_tree.GetItemHeight()});
  m_toolkit.SetScreen(nullptr);
}

TEST_F(TreeList, AZeroSizeWindowIsHarmless) {
  AddFamilies();
  m_tree.MoveWindow({0, 0, 0, 0});
  m_toolkit.Pump();
  m_toolkit.Paint(m_tree);
  m_tree.EnsureVisible(m_rows[L"c"]);
  Key(kKeyPageDown);
}

TEST(TreeListWithoutColumns, TakesInputAndPaintsNoText) {
  HeadlessToolkit toolkit;
  Parent parent;
  CTreeListCtrl tree;
  parent.Create(nullptr, 0, {0, 0, 300, 200});
  tree.Create(&parent, 2, {0, 0, 300, 200});
  const HTREEITEM row = tree.InsertItem(L"row\twith\nbreaks", 1, 0, {}, kInsertLast);
  tree.InsertItem(L"child", 0, 0, row, kInsertLast);
  toolkit.Click(tree, {30, 5});
  toolkit.DoubleClick(tree, {60, 5});
  toolkit.Pump();
  EXPECT_TRUE(tree.IsExpanded(row));
  tree.SetSelectedItem(row);
  tree.ShowEdit(row);
  EXPECT_EQ(tree.IsEditing(), 0);
  toolkit.Pump();
  for (const std::string& call : toolkit.Paint(tree)) EXPECT_FALSE(call.starts_with("text")) << call;
}

// ---- header ---------------------------------------------------------------------------------------------

TEST_F(TreeList, TheHeaderShowsTitlesAndTheSortedColumn) {
  CQDTreeListHeaderCtrl& header = m_tree.GetHeader();
  header.SetItemSort(0, 1);
  const auto calls = m_toolkit.Paint(header);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "polygon 165,14 175,14 170,6 #000000"), 1);
  EXPECT_TRUE(
      std::any_of(calls.begin(), calls.end(), [](const auto& call) { return call.ends_with("'Colour'"); }));
}

TEST(PlainHeader, AutofitSharesTheParentsWidth) {
  HeadlessToolkit toolkit;
  Parent parent;
  parent.Create(nullptr, 0, {0, 0, 301, 100});
  CTreeListHeaderCtrl header;
  header.Create(&parent, 1, {0, 0, 301, 20});
  const auto widths = [&header] {
    std::string text;
    for (int i = 0; i < header.GetItemCount(); ++i) text += std::to_string(header.GetItem(i)->width) + " ";
    return text;
  };
  header.SetAutofit(true);  // no columns yet
  for (const int width : {100, 50, 50}) header.InsertItem(9, {.text = L"c", .width = width});
  header.SetAutofit(false);
  header.Autofit(-1, 0);
  EXPECT_EQ(widths(), "100 50 50 ");
  header.SetAutofit(true);
  EXPECT_EQ(widths(), "150 75 75 ");
  header.Autofit(0, 101);
  EXPECT_EQ(widths(), "150 100 100 ");
  header.SetItemImage(1, 4);
  EXPECT_EQ(header.GetItemImage(1), 4);
  EXPECT_EQ(header.GetItemImage(2), -1);
  toolkit.Paint(header);
}

}  // namespace
}  // namespace qd::test

// The general tree-list control: painting and its header.

#include "qd_wrt/treelist/CTreeListHeaderCtrl.h"
#include "support/TreeList.h"

namespace qd::test {
namespace {

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
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "polygon 185,14 195,14 190,6 #000000"), 1);
  EXPECT_TRUE(
      std::any_of(calls.begin(), calls.end(), [](const auto& call) { return call.ends_with("'Colour'"); }));
}

TEST_F(TreeList, ADoubleClickOnAnEdgeAsksForAFittingWidth) {
  Add(L"a title of some length");
  m_tree.FitColumn(0);
  EXPECT_EQ(m_tree.GetColumnWidth(0), 38 + 22 * HeadlessToolkit::kCharacterWidth + 14);
  CQDTreeListHeaderCtrl& header = m_tree.GetHeader();
  int code = 0;
  m_parent.onNotice = [&code](Notice& notice) { code = notice.code; };
  m_toolkit.Enqueue({.kind = MessageKind::LeftDouble, .target = &header, .point = {m_tree.GetColumnWidth(0), 5}});
  m_toolkit.Pump();
  EXPECT_EQ(code, CHeaderBase::kNoticeEdgeDoubleClick);
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

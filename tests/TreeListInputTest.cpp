// Input on the tree-list control while rows come and go, and without any. All other input is that of the naive
// tree list beside it.

#include "support/TreeList.h"

namespace qd::test {
namespace {

constexpr int kRowHeight = 20;

class Band : public TreeList {
 protected:
  Band() {
    for (int i = 0; i < 30; ++i) Add(std::to_wstring(i));
    m_toolkit.Pump();
    m_toolkit.SetCursorPosition({50, 50});
  }
  /// A point left of the rows' contents at a line of the window.
  static CPoint Line(int line, int x = 5) { return {x, line * kRowHeight + kRowHeight / 2}; }
  void Queue(MessageKind kind, CPoint point, unsigned flags = 0) {
    m_toolkit.Enqueue({.kind = kind, .target = &m_tree, .point = point, .flags = flags});
  }
  void Choose(const std::vector<CString>& titles) {
    m_tree.ClearAllSelected();
    for (const CString& title : titles) m_tree.SetItemState(m_rows[title], kRowSelected, kRowSelected);
  }
};

TEST_F(Band, RowsThatComeAndGoMeanwhileAreTakenAlong) {
  Choose({L"1", L"6"});
  Queue(MessageKind::LeftDown, Line(3), kMouseShift);
  Queue(MessageKind::MouseMove, Line(4), kMouseShift);
  m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_parent, .id = 1});
  m_parent.onPosted = [this] {
    m_tree.DeleteItem(m_rows[L"0"]);
    m_tree.DeleteItem(m_rows[L"4"]);
  };
  Queue(MessageKind::MouseMove, Line(4), kMouseShift);
  Queue(MessageKind::LeftUp, Line(4), kMouseShift);
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "1 5 6");  // 4 is gone; what stands on lines 3 and 4 now, and what was selected before
}

TEST_F(Band, TheControlMayBeDestroyedMeanwhile) {
  Queue(MessageKind::LeftDown, Line(3));
  Queue(MessageKind::MouseMove, Line(5));
  m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_parent, .id = 1});
  m_parent.onPosted = [this] { m_tree.DestroyWindow(); };
  Queue(MessageKind::MouseMove, Line(6));
  m_toolkit.Pump();
  EXPECT_EQ(m_tree.RowCount(), 0U);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(Band, IsPaintedWhileItLasts) {
  m_tree.SetHorizontalOffset(-10);  // the columns move, the band stays at the pointer
  Queue(MessageKind::LeftDown, Line(1));
  Queue(MessageKind::MouseMove, Line(3, 90));
  m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_parent, .id = 1});
  std::vector<std::string> painted;
  m_parent.onPosted = [&] { painted = m_toolkit.Paint(m_tree); };
  Queue(MessageKind::LeftUp, Line(3, 90));
  m_toolkit.Pump();
  const std::string outline = "frame 5,30,91,71 #000000";
  EXPECT_EQ(std::count(painted.begin(), painted.end(), outline), 1);
  painted = m_toolkit.Paint(m_tree);
  EXPECT_EQ(std::count(painted.begin(), painted.end(), outline), 0);
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

TEST_F(TreeList, ADoubleClickIsOfTheRowThatWasPressedFirst) {
  for (const wchar_t* title : {L"0", L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9"}) Add(title);
  for (const wchar_t* title : {L"8", L"9"}) Add(CString(L"below ") + title, m_rows[title]);
  m_tree.MoveWindow({0, 20, 300, 190});  // the ninth row is cut in half
  m_toolkit.Pump();
  const CPoint cut{At(L"8").x, 165};
  m_toolkit.DoubleClick(m_tree, cut);
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "8");
  EXPECT_TRUE(m_tree.IsExpanded(m_rows[L"8"]));
  EXPECT_FALSE(m_tree.IsExpanded(m_rows[L"9"]));
  // Presses apart are no double click of the first one's row.
  m_toolkit.Click(m_tree, At(L"1"));
  m_toolkit.Enqueue({.kind = MessageKind::LeftDouble, .target = &m_tree, .point = At(L"8")});
  m_toolkit.Pump();
  EXPECT_FALSE(m_tree.IsExpanded(m_rows[L"8"]));
}

TEST_F(TreeList, AMenuOfTheKeyboardOpensBelowTheSelectedRow) {
  const auto ask = [this] {
    m_parent.menus.clear();
    m_toolkit.Enqueue({.kind = MessageKind::ContextMenu, .target = &m_tree, .amount = 1});
    m_toolkit.Pump();
    return m_parent.menus.empty() ? CPoint{-1, -1} : m_tree.ScreenToClient(m_parent.menus.front());
  };
  const auto below = [this](const CString& title) {
    CRect text;
    EXPECT_TRUE(m_tree.GetItemRect(m_rows[title], text, true));
    return CPoint{text.left, text.bottom};
  };
  EXPECT_EQ(ask(), CPoint{});
  for (int i = 0; i < 30; ++i) Add(L"row" + std::to_wstring(i));
  m_tree.SelectAlone(m_rows[L"row3"]);
  EXPECT_EQ(ask(), below(L"row3"));
  m_tree.ScrollTo(20);
  const CPoint again = ask();
  EXPECT_EQ(again, below(L"row3"));
  EXPECT_EQ(m_tree.TopPosition(), 3U) << "what the menu is about is in sight";
  m_tree.FocusItem(m_rows[L"row5"]);  // the keys have walked on
  EXPECT_EQ(ask(), below(L"row3"));
  m_tree.SelectAlone(m_rows[L"row29"]);
  EXPECT_EQ(ask().y, m_tree.GetClientRect().bottom - 1);
}

TEST_F(TreeList, TypingFindsTitlesHoweverTheirAccentsAreWritten) {
  for (const wchar_t* title : {L"x", L"E\x301tage", L"etage",
                               L"Stra\xDF"
                               L"e"})
    Add(title);
  const auto typed = [this](const CString& beginning) {
    m_toolkit.Advance(2000);
    m_tree.SelectAlone(m_rows[L"x"]);
    m_toolkit.Type(m_tree, beginning);
    m_toolkit.Pump();
    return m_tree.GetItemText(m_tree.GetFirstSelectedItem(), 0);
  };
  EXPECT_EQ(typed(L"\xE9"), L"E\x301tage");
  EXPECT_EQ(typed(L"et"), L"E\x301tage") << "accents that are not typed do not count";
  EXPECT_EQ(typed(L"strass"),
            L"Stra\xDF"
            L"e");
}

TEST(TreeListTaken, MayBeTakenDownByWhoHearsOfABranch) {
  HeadlessToolkit toolkit;
  for (const int code : {CTreeCtrl::kNoticeItemExpanding, CTreeCtrl::kNoticeItemExpanded}) {
    for (int act = 0; act < 4; ++act) {
      Parent parent;
      parent.Create(nullptr, 0, {0, 0, 300, 200});
      auto tree = std::make_unique<CTreeListCtrl>();
      tree->Create(&parent, 2, {0, 0, 300, 200});
      tree->InsertColumn(0, L"Name", 0, 180, 0);
      const HTREEITEM top = tree->InsertItem(L"top", 0, 0, {}, kInsertLast);
      const HTREEITEM middle = tree->InsertItem(L"middle", 0, 0, top, kInsertLast);
      const HTREEITEM below = tree->InsertItem(L"below", 0, 0, middle, kInsertLast);
      tree->SelectAlone(top);
      toolkit.Pump();
      parent.onNotice = [&](Notice& notice) {
        if (notice.code == code) tree.reset();
      };
      if (act == 0) toolkit.Click(*tree, {9, 9}, kMouseShift);
      if (act == 1) toolkit.Key(*tree, kKeyMultiply);
      if (act == 2) toolkit.Key(*tree, kKeyRight);
      if (act == 3) tree->EnsureVisible(below);
      toolkit.Pump();
      EXPECT_EQ(tree, nullptr) << code << " by act " << act;
    }
  }
}

TEST_F(TreeList, CopiesTheSelectedRowsAsLinesWithTabs) {
  Key(kKeyC, kMouseControl);
  EXPECT_EQ(m_toolkit.ClipboardText(), L"");
  AddFamilies();
  m_tree.SetItemText(m_rows[L"a1"], 1, L"7  ");
  m_tree.SetItemColor(m_rows[L"a1"], Rgb(255, 128, 1), 0);
  m_tree.SetItemColor(m_rows[L"b"], Rgb(255, 128, 1), 0);  // without a key no swatch is shown
  m_tree.SetItemText(m_rows[L"b"], 0, L"two\tcells\r\n");
  for (const wchar_t* title : {L"b", L"a1"}) m_tree.SetItemState(m_rows[title], kRowSelected, kRowSelected);
  Key(kKeyC);
  EXPECT_EQ(m_toolkit.ClipboardText(), L"");
  Key(kKeyC, kMouseControl);
  EXPECT_EQ(m_toolkit.ClipboardText(), L"a1\t7\t#FF8001\ntwo cells\t\t\n");
}

TEST_F(TreeList, InputOnAnEmptyTreeDoesNothing) {
  for (int key = kKeyPageUp; key <= kKeyDown; ++key) {
    for (const unsigned flags : {0U, unsigned{kMouseShift}, unsigned{kMouseControl}}) Key(key, flags);
  }
  m_toolkit.Click(m_tree, {10, 10});
  m_toolkit.DoubleClick(m_tree, {10, 10});
  for (const int y : {100, -100}) {
    m_toolkit.Enqueue({.kind = MessageKind::LeftDown, .target = &m_tree, .point = {5, 50}});
    m_toolkit.Enqueue({.kind = MessageKind::MouseMove, .target = &m_tree, .point = {5, y}});
    m_toolkit.Enqueue({.kind = MessageKind::LeftUp, .target = &m_tree, .point = {5, y}});
  }
  m_toolkit.Pump();
  EXPECT_EQ(Selected() + Caret(), "none");
}

/// Among so many rows that the window would be held up, type-ahead looks at some at a time.
TEST_F(TreeList, ALongSearchForATitleLetsInputPass) {
  const HTREEITEM first = Add(L"first");
  for (int i = 0; i < 150'000; ++i) m_tree.InsertItem(L"p", 0, 0, {}, kInsertLast);
  Add(L"zone");
  const auto pass = [this] {
    m_toolkit.Advance(1);
    m_toolkit.Pump();
  };
  struct Meanwhile {
    const char* what;
    std::function<void()> act;
    const char* caret;
  };
  const std::vector<Meanwhile> cases{
      {"nothing", [] {}, "zone"},
      {"a row comes", [&] { m_tree.InsertItem(L"p", 0, 0, {}, kInsertFirst); }, "zone"},
      {"rows come again and again", [&] { m_tree.InsertItem(L"p", 0, 0, {}, kInsertLast), pass(); }, "zone"},
      {"a key", [&] { m_toolkit.Key(m_tree, kKeyF2, 0); }, "first"},
      {"another row is reached", [&] { m_tree.SelectItem(m_rows[L"other"]); }, "other"},
      {"the row goes", [&] { m_tree.DeleteItem(m_rows[L"zone"]); }, "first"},
      {"all rows go", [&] { m_tree.DeleteAllItems(); }, "none"},
  };
  Add(L"other");
  for (const Meanwhile& meanwhile : cases) {
    SCOPED_TRACE(meanwhile.what);
    m_tree.SelectAlone(first);
    m_toolkit.Advance(1000);  // ends what was typed before
    m_toolkit.Type(m_tree, L"z");
    m_toolkit.Pump();
    EXPECT_EQ(Caret(), "first");
    meanwhile.act();
    for (int i = 0; i < 10; ++i) pass();
    EXPECT_EQ(Caret(), meanwhile.caret);
    EXPECT_FALSE(m_toolkit.TimersOf(m_tree).contains(3)) << "the search goes on";
  }
}

/// A tree in which rows keep coming and going is not searched for ever.
TEST_F(TreeList, ASearchForATitleThatBeginsAnewTooOftenIsGivenUp) {
  Add(L"first");
  for (int i = 0; i < 70'000; ++i) m_tree.InsertItem(L"p", 0, 0, {}, kInsertLast);
  m_toolkit.Type(m_tree, L"z");
  for (int i = 0; i < 50; ++i) {
    m_tree.DeleteItem(m_tree.InsertItem(L"p", 0, 0, {}, kInsertFirst));
    m_toolkit.Advance(1);
    m_toolkit.Pump();
  }
  EXPECT_FALSE(m_toolkit.TimersOf(m_tree).contains(3));
}

}  // namespace
}  // namespace qd::test

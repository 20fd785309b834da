// A works tree in a native window under the system's mouse and keyboard.

#include <windows.h>
// After what it builds on.
#include <commctrl.h>

#include "host/CQDNullDocument.h"
#include "native/Window.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "support/InputRows.h"

namespace qd::test {
namespace {

class TreeInput : public NativeTest {
 protected:
  TreeInput() {
    InputRow::dropped.clear();
    InputRow::renamed.clear();
    m_bar = std::make_unique<CWorksTreeBar>();
    m_bar->Create(nullptr, 0, {0, 0, 400, 500});
    m_toolkit->Embed(*m_bar, m_window.Handle());
    RECT client{};
    GetClientRect(m_window.Handle(), &client);
    MoveWindow(HandleOf(*m_bar), 0, 0, client.right, client.bottom, TRUE);
    m_bar->SetDocument(&m_doc);
    m_bar->CreateTreeItems(1, &m_rows, 1);
    Wait(100);
  }
  CQDTreeListCtrl& Tree() { return m_bar->GetTreeCtrl(); }
  /// A pixel of the screen on a line of the tree: on its title, or at x of the window.
  CPoint Line(int line, int x = 90) {
    return Pixel(Tree(), {x, line * Tree().GetItemHeight() + Tree().GetItemHeight() / 2});
  }
  CPoint Pixel(const CWnd& window, CPoint place) {
    const double scale = GetDpiForWindow(m_window.Handle()) / 96.0;
    POINT point{static_cast<LONG>(place.x * scale), static_cast<LONG>(place.y * scale)};
    ClientToScreen(HandleOf(window), &point);
    return {static_cast<int>(point.x), static_cast<int>(point.y)};
  }
  CString Selected() { return Tree().GetItemText(Tree().GetFirstSelectedItem(), 0); }

  CQDNullDocument m_doc{L"rows"};
  InputRows m_rows;
  std::unique_ptr<CWorksTreeBar> m_bar;
};

TEST_F(TreeInput, TheFindBarTakesItsKeysBeforeTheProgram) {
  SetFocus(HandleOf(Tree()));
  const auto query = [this] { return Tree().GetFinder().GetQuery(); };
  Play(Input().Keys({VK_CONTROL, 'F'}).Type(L"item 3").Wait(100).Picture("find"));
  EXPECT_EQ(query(), L"item 3");
  const HWND field = GetFocus();
  Play(Input().Keys({VK_RETURN}).Keys({VK_F3}));
  EXPECT_EQ(Selected(), L"Item 13");
  EXPECT_EQ(GetFocus(), field);
  Play(Input().Keys({VK_CONTROL, 'F'}).Type(L"-ty").Wait(100).Picture("find_offered").Keys({VK_TAB}));
  Play(Input().Type(L"su").Keys({VK_TAB}));
  EXPECT_EQ(query(), L"-type:surface");
  Play(Input().Type(L" nofield:1").Wait(100).Picture("find_wrong"));
  EXPECT_EQ(query(), L"-type:surface nofield");
  Play(Input().Keys({VK_CONTROL, VK_SHIFT, 'F'}).Keys({VK_TAB}).Keys({VK_TAB}).Wait(100).Picture("find_focus"));
  EXPECT_EQ(Tree().GetFinder().GetMode(), RowFinder::Mode::Filter);  // the query is still wrong
  EXPECT_NE(GetFocus(), field);
  Play(Input().Keys({VK_ESCAPE}).Wait(100));
  EXPECT_EQ(query(), L"");
  EXPECT_EQ(GetFocus(), HandleOf(Tree()));
  m_bar->SetFilter(L"item 3");
  Play(Input().Wait(100).Picture("find_line"));
}

TEST_F(TreeInput, ABandSelectsAndADragDrops) {
  Play(Input().Move(Line(1, 8)).Press().Move(Line(2, 30)).Move(Line(4, 60)).Picture("band").Release());
  EXPECT_EQ(Tree().GetSelectedCount(), 4);
  Play(Input().Move(Line(2)).Press().Move(Line(3)).Move(Line(8)).Picture("drag").Release());
  EXPECT_EQ(InputRow::dropped, "4 on Item 7");
  EXPECT_FALSE(Tree().IsDragging());
  InputRow::dropped.clear();
  SetFocus(m_window.Handle());  // Escape is heard although the tree has no focus
  Play(Input().Move(Line(5)).Press().Move(Line(6)).Move(Line(9)).Keys({VK_ESCAPE}).Release());
  EXPECT_EQ(InputRow::dropped, "");
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(TreeInput, TitlesAreEditedInPlace) {
  Play(Input().Click(Line(3)).Keys({VK_F2}));
  ASSERT_EQ(Tree().IsEditing(), 1);
  Play(Input().Type(L"new.name (%1) \x5EA7\x6A19").Picture("edit").Keys({VK_RETURN}));
  EXPECT_EQ(InputRow::renamed, "new.name (%1) 座標");
  EXPECT_TRUE(Tree().HasFocus());
  Play(Input().Keys({VK_F2}).Type(L"other").Keys({VK_ESCAPE}));
  EXPECT_EQ(Tree().IsEditing(), 0);
  EXPECT_EQ(Selected(), L"new.name (%1) \x5EA7\x6A19");
  Play(Input().Keys({VK_F2}).Type(L"clicked away").Click(Line(6)));
  EXPECT_EQ(InputRow::renamed, "clicked away");
  EXPECT_EQ(Selected(), L"Item 5");
}

TEST_F(TreeInput, ATitleThatTheBoxCannotShowStaysWhatItIs) {
  const HTREEITEM row = Tree().GetChildItem(Tree().GetRootItem());
  const CString hostile = CString(L"a\x1") + L'\n' + std::wstring(3000, L'x') + L"\xD83D\xDE00";
  Tree().SetItemText(row, 0, hostile);
  Play(Input().Click(Line(1)).Keys({VK_F2}).Keys({VK_RETURN}));
  EXPECT_EQ(Tree().IsEditing(), 0);
  EXPECT_EQ(Tree().GetItemText(row, 0), hostile);
}

TEST_F(TreeInput, KeysWalkTypeAndCheck) {
  Play(Input().Click(Line(1)).Keys({VK_SHIFT, VK_DOWN}).Keys({VK_SHIFT, VK_DOWN}));
  EXPECT_EQ(Tree().GetSelectedCount(), 3);
  Play(Input().Keys({VK_SPACE}));
  EXPECT_EQ(Tree().WhichCheck(Tree().GetFirstSelectedItem()), kUnchecked);
  EXPECT_EQ(Tree().GetSelectedCount(), 3);
  Play(Input().Keys({VK_CONTROL, 'A'}));
  EXPECT_EQ(Tree().GetSelectedCount(), 41);
  Play(Input().Type(L"item 3"));
  EXPECT_EQ(Selected(), L"Item 3");
  Play(Input().Keys({VK_END}));
  EXPECT_EQ(Selected(), L"Item 39");
}

TEST_F(TreeInput, TheWheelAndTheBarScroll) {
  const std::size_t rows = Tree().TopPosition();
  Play(Input().Move(Line(5)).Click(Line(5)).Wheel(-2));
  EXPECT_EQ(Tree().TopPosition(), rows + 6);
  Play(Input().Wheel(2));
  EXPECT_EQ(Tree().TopPosition(), rows);
  // A press on the arrow at the lower end of the tree's own bar.
  RECT tree{};
  GetWindowRect(HandleOf(Tree()), &tree);
  Play(Input().Click({static_cast<int>(tree.right) - 8, static_cast<int>(tree.bottom) - 8}));
  EXPECT_EQ(Tree().TopPosition(), rows + 1);
  Play(Input().Keys({VK_CONTROL, VK_END}).Picture("scrolled"));
  EXPECT_GT(Tree().TopPosition(), rows + 1);
}

TEST_F(TreeInput, ColumnsAreDraggedAndScrolled) {
  CTreeListCtrl& tree = Tree();
  const CHeaderBase& header = tree.GetHeader();
  const int width = header.GetItem(0)->width;
  const CPoint edge = Pixel(header, {width - 1, 8});
  Play(Input().Move(edge).Press().Move({edge.x + 100, edge.y}).Move({edge.x + 200, edge.y}).Release());
  const double scale = GetDpiForWindow(m_window.Handle()) / 96.0;
  EXPECT_NEAR(header.GetItem(0)->width, width + 200 / scale, 2);
  // Now the columns are wider than the pane: the bar below scrolls them.
  const HWND bar = FindWindowExW(HandleOf(*m_bar), nullptr, L"ScrollBar", nullptr);
  ASSERT_NE(bar, nullptr);
  RECT place{};
  GetWindowRect(bar, &place);
  Play(Input().Click({static_cast<int>(place.right) - 6, static_cast<int>(place.top + place.bottom) / 2}));
  EXPECT_LT(header.GetOffset(), 0);
}

TEST_F(TreeInput, ALongTitleShowsATip) {
  const HTREEITEM row = Tree().GetChildItem(Tree().GetRootItem());
  Tree().SetItemText(row, 0, std::wstring(200, L'w') + L"&end");
  Play(Input().Move(Line(3)).Move(Line(1)).Wait(1200).Picture("tip"));
  const HWND tip = FindWindowW(TOOLTIPS_CLASSW, nullptr);
  ASSERT_NE(tip, nullptr);
  EXPECT_TRUE(IsWindowVisible(tip));
}

// ---- what must not go wrong -----------------------------------------------------------------------------

/// The program's window is destroyed, and the module's with it, while the user does something.
TEST_F(TreeInput, TheWindowIsDestroyedDuringADrag) {
  Play(Input().Click(Line(2)).Wait(600));
  Play(Input()
           .Press()
           .Move(Line(4))
           .Move(Line(8))
           .Do([this] { PostMessageW(m_window.Handle(), WM_CLOSE, 0, 0); })
           .Wait(100)
           .Release());
  EXPECT_FALSE(IsWindow(m_window.Handle()));
  EXPECT_EQ(InputRow::dropped, "");
  EXPECT_EQ(GetCapture(), nullptr);
  EXPECT_EQ(HandleOf(Tree()), nullptr);
  Tree().Invalidate();
  Tree().SetFocus();
  m_bar->DestroyTreeItems();
  m_bar->DestroyWindow();
}

TEST_F(TreeInput, TheWindowIsDestroyedDuringABand) {
  Play(Input()
           .Move(Line(1, 8))
           .Press()
           .Move(Line(3, 40))
           .Do([this] { PostMessageW(m_window.Handle(), WM_CLOSE, 0, 0); })
           .Wait(100)
           .Release());
  EXPECT_FALSE(IsWindow(m_window.Handle()));
  EXPECT_EQ(GetCapture(), nullptr);
  m_bar.reset();
}

TEST_F(TreeInput, TheWindowIsDestroyedDuringAnEdit) {
  Play(Input().Click(Line(2)).Keys({VK_F2}).Type(L"half"));
  ASSERT_EQ(Tree().IsEditing(), 1);
  DestroyWindow(m_window.Handle());
  Wait(50);
  EXPECT_EQ(InputRow::renamed, "half") << "kept, as when the focus goes elsewhere";
  m_bar.reset();
}

TEST_F(TreeInput, TheOwnerGoesDuringADrag) {
  Play(Input().Click(Line(2)).Wait(600));
  // Posted to the window's thread by way of a timer's procedure.
  static CWorksTreeBar* victim = nullptr;
  victim = m_bar.get();
  SetTimer(nullptr, 0, 400, [](HWND, UINT, UINT_PTR id, DWORD) {
    ::KillTimer(nullptr, id);
    victim->DestroyTreeItems();
    victim->DestroyWindow();
  });
  Play(Input().Press().Move(Line(4)).Move(Line(8)).Wait(600).Release());
  EXPECT_EQ(InputRow::dropped, "");
  EXPECT_FALSE(m_bar->IsCreated());
}

TEST_F(TreeInput, MessagesAfterDestructionAreNobodys) {
  const HWND tree = HandleOf(Tree());
  Tree().Post(1, 2);
  PostMessageW(tree, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 50));
  m_bar->DestroyTreeItems();
  m_bar.reset();
  EXPECT_FALSE(IsWindow(tree));
  EXPECT_EQ(SendMessageW(tree, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 50)), 0);
  EXPECT_EQ(PostMessageW(tree, WM_KEYDOWN, VK_F2, 0), 0);
  Wait(50);
}

}  // namespace
}  // namespace qd::test

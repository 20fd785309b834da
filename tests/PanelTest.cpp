// The panel: where its parts stand, its scroll bar, columns and tip, what it tells the window around it.

#include <random>

#include "host/CMSGFunction.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "qd_wrt/panel/PaneLayout.h"
#include "support/TreeList.h"

namespace qd::test {
namespace {

// ---- the layout alone -----------------------------------------------------------------------------------

struct LayoutCase {
  int columns;
  std::size_t rows;
  int treeBottom;
  bool bar;
  int visible;
};
TEST(Layout, DecidesBothBarsTogether) {
  // Pane 300 by 220, header 20, bars 17 wide and 15 high, rows of 20 pixels.
  for (const LayoutCase& expected : {LayoutCase{300, 10, 220, false, 300},
                                     {283, 11, 220, false, 283},
                                     {301, 9, 205, true, 300},
                                     {290, 11, 205, true, 283},
                                     {320, 10, 205, true, 283}}) {
    const PaneLayout layout = LayOutPane({300, 220, 20, expected.columns, expected.rows, 20, 17, 15});
    EXPECT_EQ(layout.tree.bottom, expected.treeBottom) << expected.columns;
    EXPECT_EQ(layout.showBar, expected.bar) << expected.columns;
    EXPECT_EQ(layout.visibleWidth, expected.visible) << expected.columns;
    EXPECT_EQ(layout.largestOffset, std::max(expected.columns - expected.visible, 0));
    EXPECT_EQ(layout.bar.right, expected.visible);
  }
  EXPECT_EQ(LayOutPane({0, 0, 20, 300, 5, 20, 17, 15}).tree.bottom, 20);  // folded
}

// ---- the panel ------------------------------------------------------------------------------------------

/// A panel in a window that writes down what it is told.
class Panel : public ::testing::Test {
 protected:
  static constexpr int kHeader = HeadlessToolkit::kFontHeight + 8;
  static constexpr int kBar = 17;

  class Outer final : public CWnd {
   public:
    std::string log;
    std::string Take() { return std::exchange(log, {}); }

   protected:
    void OnToldNotice(const Notice& notice) override { log += "told " + std::to_string(notice.code) + " "; }
    std::intptr_t OnNotify(Notice& notice) override {
      log += "notice " + std::to_string(notice.code) + " ";
      return CWnd::OnNotify(notice);
    }
  };

  Panel() {
    m_outer.Create(nullptr, 0, {0, 0, 1000, 800});
    m_pane.Create(&m_outer, 5, {30, 40, 330, 260});
    m_toolkit.Pump();
  }
  CQDTreeListCtrl& Tree() { return m_pane.GetTreeCtrl(); }
  CHeaderBase& Header() { return Tree().GetHeader(); }
  CScrollBar& Bar() { return *static_cast<CScrollBar*>(m_toolkit.FindChild(m_pane, CWorksTreeBar::kScrollBarId)); }
  void Size(int width, int height) {
    m_pane.MoveWindow({30, 40, 30 + width, 40 + height});
    m_toolkit.Pump();
  }
  HTREEITEM Add(const CString& title) {
    const HTREEITEM row = Tree().InsertItem(title, 0, 0, HTREEITEM{}, kInsertLast);
    m_rows.push_back(row);
    return row;
  }
  /// The user drags the right edge of a column.
  void DragEdge(int column, int by) {
    int x = Header().GetOffset() - 1;
    for (int i = 0; i <= column; ++i) x += Tree().GetColumnWidth(i);
    Queue(Header(), MessageKind::LeftDown, {x, 5});
    Queue(Header(), MessageKind::MouseMove, {x + by, 5});
    Queue(Header(), MessageKind::LeftUp, {x + by, 5});
    m_toolkit.Pump();
  }
  void Queue(CWnd& window, MessageKind kind, CPoint point) {
    m_toolkit.Enqueue({.kind = kind, .target = &window, .point = point});
  }
  /// The user moves the knob of the bar.
  void Scroll(int position) {
    m_toolkit.Enqueue({.kind = MessageKind::Scroll, .target = &Bar(), .amount = position});
    m_toolkit.Pump();
  }
  std::vector<int> Widths() {
    return {Tree().GetColumnWidth(0), Tree().GetColumnWidth(1), Tree().GetColumnWidth(2)};
  }
  int Columns() { return Widths()[0] + Widths()[1] + Widths()[2]; }
  /// What must hold of the parts of a panel at any time, found out from what is on the screen.
  void Check() {
    const CRect pane = m_pane.GetClientRect();
    const bool vertical = m_toolkit.ScrollOf(Tree()).maximum > 0;
    const int visible = std::max(pane.right - (vertical ? kBar : 0), 0);
    const bool horizontal = Columns() > visible;
    const int bottom = std::max(pane.bottom - (horizontal ? kBar : 0), kHeader);
    // Where neither bar stands, the header goes on to the next multiple of the pane's width.
    const bool roomy = !vertical && !horizontal && visible > 0;
    const int headerWidth = roomy ? (Columns() / visible + 1) * visible : pane.right;
    EXPECT_EQ(Header().GetPlace(), (CRect{0, 0, headerWidth, kHeader}));
    EXPECT_EQ(Tree().GetPlace(), (CRect{0, kHeader, pane.right, bottom}));
    const int content = static_cast<int>(m_rows.size()) * Tree().GetItemHeight();
    EXPECT_EQ(vertical, content > std::max(bottom - kHeader, Tree().GetItemHeight()));
    EXPECT_EQ(Bar().IsShown(), horizontal);
    const CRect bar{0, bottom, visible, std::max(bottom, pane.bottom)};
    EXPECT_EQ(Bar().GetPlace(), horizontal ? bar : Bar().GetPlace());
    const int most = std::max(Columns() - visible, 0);
    const ScrollState scroll = m_toolkit.ScrollOf(Bar());
    EXPECT_EQ(scroll, (ScrollState{most, visible, -Tree().GetHorizontalOffset(), 20}));
    EXPECT_TRUE(scroll.position >= 0 && scroll.position <= most) << scroll.position;
    EXPECT_EQ(Header().GetOffset(), Tree().GetHorizontalOffset());
    if (m_users) {
      EXPECT_EQ(m_pane.GetColumnWidths(), Widths());
    } else {
      EXPECT_EQ(m_pane.GetColumnWidths(), std::vector<int>());
    }
  }

  HeadlessToolkit m_toolkit;
  Outer m_outer;
  CWorksTreeBar m_pane;
  std::vector<HTREEITEM> m_rows;
  bool m_users = false;  // the user has set a width
};

TEST_F(Panel, ItsTitleColumnTakesWhatTheOthersLeaveUntilTheUserSetsOne) {
  Check();
  for (const int width : {500, 260, 300, 257, 256, 0, 400}) {
    Size(width, 200);
    EXPECT_EQ(Widths(), (std::vector<int>{std::max(width - 120 - kBar, 120), 60, 60})) << width;
    Check();
  }
  DragEdge(1, 15);
  m_users = true;
  EXPECT_EQ(Widths(), (std::vector<int>{263, 75, 60}));
  Check();
  Size(700, 200);
  EXPECT_EQ(Widths(), (std::vector<int>{263, 75, 60}));
  Check();
}

TEST_F(Panel, ItsPartsFitTogetherAfterEveryAct) {
  std::mt19937 random(11);
  const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  for (int step = 0; step < 400 && !HasFailure(); ++step) {
    const int what = below(m_users ? 8 : 6);
    SCOPED_TRACE("step " + std::to_string(step) + " act " + std::to_string(what));
    if (what == 0) Size(below(500), below(300));
    if (what == 1)
      Size(m_pane.GetClientRect().right, kHeader + below(12) * Tree().GetItemHeight() + below(2) * kBar);
    if (what == 2) Add(CString(static_cast<std::size_t>(1 + below(60)), L'x'));
    if (what == 3 && !m_rows.empty()) {
      Tree().DeleteItem(m_rows.back());
      m_rows.pop_back();
    }
    if (what == 4) Scroll(below(m_toolkit.ScrollOf(Bar()).maximum + 30));
    if (what == 5 && step > 100) {
      const std::vector<int> before = Widths();
      DragEdge(below(3), below(160) - 80);
      m_users = m_users || Widths() != before;
    }
    if (what == 6) {
      Queue(Header(), MessageKind::LeftDouble, {Header().GetOffset() + Widths()[0] - 1, 5});
      Queue(Header(), MessageKind::LeftUp, {Header().GetOffset() + Widths()[0] - 1, 5});
    }
    // Exactly as wide as what it shows, or a little off.
    if (what == 7) Size(Columns() - 1 + below(3) + below(2) * kBar, 200);
    m_toolkit.Pump();
    Check();
  }
}

TEST_F(Panel, ItsBarMovesTheColumnsBeforeTheRows) {
  Size(200, 200);
  Add(L"row");
  m_toolkit.Pump();
  Scroll(30);
  EXPECT_EQ(Tree().GetHorizontalOffset(), -30);
  Check();
  Scroll(1000);
  EXPECT_EQ(Tree().GetHorizontalOffset(), -40);
  Bar().ScrollLines(-1);
  EXPECT_EQ(Tree().GetHorizontalOffset(), -20);
  Check();
  Size(230, 200);  // what is scrolled keeps its right edge at that of the panel
  EXPECT_EQ(Tree().GetHorizontalOffset(), -10);
  Check();
}

TEST_F(Panel, AWheelThatTurnsSidewaysMovesTheColumns) {
  DragEdge(0, 300);
  m_users = true;
  m_toolkit.Enqueue({.kind = MessageKind::WheelAcross, .target = &Tree(), .amount = 3});
  m_toolkit.Pump();
  EXPECT_EQ(Tree().GetHorizontalOffset(), -3 * 20);
  m_toolkit.Enqueue({.kind = MessageKind::WheelAcross, .target = &Tree(), .amount = -9});
  m_toolkit.Pump();
  EXPECT_EQ(Tree().GetHorizontalOffset(), 0);
  Check();
}

TEST_F(Panel, ItsBackgroundIsTheSystemsUntilTheHostGivesOne) {
  EXPECT_EQ(Tree().GetBkColor(), m_toolkit.GetColour(SystemColour::Window));
  m_toolkit.SetColour(SystemColour::Window, Rgb(30, 31, 32));
  m_toolkit.Pump();
  EXPECT_EQ(Tree().GetBkColor(), Rgb(30, 31, 32));
  m_pane.SetBkColor(Rgb(1, 2, 3));
  m_toolkit.SetColour(SystemColour::Window, Rgb(40, 41, 42));
  m_toolkit.Pump();
  EXPECT_EQ(Tree().GetBkColor(), Rgb(1, 2, 3));
}

TEST_F(Panel, ADoubleClickOnAnEdgeFitsThatColumn) {
  const HTREEITEM row = Add(CString(5, L'x'));
  Tree().SetItemText(row, 1, CString(12, L'4'));
  m_toolkit.Pump();
  const std::vector<int> before = Widths();
  Queue(Header(), MessageKind::LeftDouble, {before[0] + before[1] - 1, 5});
  m_toolkit.Pump();
  EXPECT_EQ(Widths(), (std::vector<int>{before[0], 12 * HeadlessToolkit::kCharacterWidth + 14, before[2]}));
}

struct Kept {
  std::vector<int> widths;
  bool usable;
};
class KeptWidths : public Panel, public ::testing::WithParamInterface<Kept> {};
TEST_P(KeptWidths, AreTakenWhenTheyAreWidths) {
  const std::vector<int> before = Widths();
  m_pane.SetColumnWidths(GetParam().widths);
  m_users = GetParam().usable;
  EXPECT_EQ(Widths(), GetParam().usable ? GetParam().widths : before);
  Check();
  Size(400, 100);
  Check();
}
constexpr int kLeast = CHeaderBase::kMinimumWidth;
INSTANTIATE_TEST_SUITE_P(Lists, KeptWidths,
                         ::testing::Values(Kept{{200, 50, 40}, true}, Kept{{kLeast, kLeast, kLeast}, true},
                                           Kept{{10000, kLeast, 80}, true}, Kept{{200, 50}, false},
                                           Kept{{200, 50, 40, 30}, false}, Kept{{200, kLeast - 1, 40}, false},
                                           Kept{{200, 50, 10001}, false}, Kept{{}, false}));

TEST_F(Panel, ADraggedColumnEndsTheEditAndPaintsTheRowsAnew) {
  const HTREEITEM row = Tree().InsertItem(L"title", 0, 0, 1, 0, HTREEITEM{}, kInsertLast);
  m_toolkit.Pump();
  Tree().SetSelectedItem(row);
  Tree().ShowEdit(row);
  ASSERT_NE(Tree().IsEditing(), 0);
  int paints = 0;
  m_toolkit.SetScreen([&](CWnd& window, const CRect&) { paints += &window == &Tree() ? 1 : 0; });
  DragEdge(0, 5);
  EXPECT_EQ(Tree().IsEditing(), 0);
  EXPECT_GT(paints, 0);
}

TEST_F(Panel, TheWindowAroundItHearsOfTheTreeButNotOfTheHeadersOwnNews) {
  Add(L"row");
  m_toolkit.Pump();
  m_outer.Take();
  m_toolkit.Click(Tree(), {60, 5});
  m_toolkit.Pump();
  EXPECT_EQ(m_outer.Take(), "told -2 ");
  m_toolkit.RightClick(Tree(), {60, 5});
  m_toolkit.Pump();
  EXPECT_EQ(m_outer.Take(), "told -5 ");
  m_toolkit.Click(Header(), {60, 5});
  DragEdge(0, 5);
  EXPECT_EQ(m_outer.Take(), "");
  Size(200, 200);
  Scroll(10);
  EXPECT_EQ(m_outer.Take(), "");
  Queue(Header(), MessageKind::LeftDouble, {Header().GetOffset() + Widths()[0] - 1, 5});
  m_toolkit.Pump();
  EXPECT_EQ(m_outer.Take(), "told " + std::to_string(CHeaderBase::kNoticeEdgeDoubleClick) + " ");
}

TEST_F(Panel, AsksForTheFocusOfItsTreeAndFillsWhatNoPartCovers) {
  m_pane.SetFocus();
  EXPECT_EQ(m_toolkit.FocusWindow(), &Tree());
  EXPECT_EQ(m_toolkit.Paint(m_pane), std::vector<std::string>{"fill 0,0,300,220 #F0F0F0"});
}

TEST_F(Panel, ItsHeaderSpeaksTheNewLanguage) {
  const struct Table final : CMSGFunction::ITable {
    bool Find(std::string_view key, CString& text) const override {
      text = L"<" + CString(key.begin(), key.end()) + L">";
      return true;
    }
  } table;
  EXPECT_EQ(Header().GetItem(0)->text, L"IDS_QD_WRT_Item");
  m_pane.OnChangeLanguage();
  const CString texts = Header().GetItem(0)->text + Header().GetItem(1)->text + Header().GetItem(2)->text;
  EXPECT_EQ(texts, L"<IDS_QD_WRT_Item><IDS_QD_WRT_ID><IDS_QD_WRT_Color>");
}

// ---- the tip --------------------------------------------------------------------------------------------

class Tip : public Panel {
 protected:
  Tip() {
    Size(260, 100);
    for (const CString& title : {CString(100, L'x'), CString(L"short"), CString(90, L'y')}) Add(title);
    for (int i = 0; i < 20; ++i) Add(L"more");
    m_toolkit.Pump();
  }
  int Line(int row) { return row * Tree().GetItemHeight() + 5; }
  void Point(int x, int y) {
    Queue(Tree(), MessageKind::MouseMove, {x, y});
    m_toolkit.Pump();
  }
  std::string Shown() {
    const HeadlessToolkit::TipLook& tip = m_toolkit.GetTipLook();
    if (tip.text.empty()) return "none";
    const CPoint at = Tree().ScreenToClient(tip.screen);
    char colours[40];
    std::snprintf(colours, sizeof colours, " %06x on %06x", tip.colour, tip.background);
    return workbench::ToUtf8(tip.text.substr(0, 1)) + std::to_string(tip.text.size()) + " at " +
           std::to_string(at.x) + "," + std::to_string(at.y) + colours;
  }
  /// Of a row, below it.
  std::string Of(const char* text, int row, int x, bool caret = false) {
    return text + (" at " + std::to_string(x)) + "," + std::to_string((row + 1) * Tree().GetItemHeight() + 3) +
           (caret ? " ffffff on 5f8080" : " 000000 on dafefa");
  }
};

TEST_F(Tip, ShowsTheWholeTextBelowTheRowWhereItWasCut) {
  Point(60, Line(0));
  EXPECT_EQ(Shown(), Of("x100", 0, 60));
  Point(61, Line(0) + 2);  // it stays where it came
  EXPECT_EQ(Shown(), Of("x100", 0, 60));
  Point(60, Line(1));
  EXPECT_EQ(Shown(), "none");
  Point(50, Line(2));
  EXPECT_EQ(Shown(), Of("y90", 2, 50));
  Point(Widths()[0] - 1, Line(0));
  EXPECT_EQ(Shown(), Of("x100", 0, Widths()[0] - 1));
  Point(Widths()[0], Line(0));  // beside the title
  EXPECT_EQ(Shown(), "none");
  m_toolkit.Click(Tree(), {60, Line(2)});
  Point(60, Line(2));
  EXPECT_EQ(Shown(), Of("y90", 2, 60, true));
}

TEST_F(Tip, GoesWithWhatItIsAbout) {
  const std::pair<const char*, std::function<void()>> ends[] = {
      {"leaving", [&] { Queue(Tree(), MessageKind::MouseLeave, {}); }},
      {"beside the rows", [&] { Point(60, 95); }},
      {"scrolling", [&] { Tree().Dispatch({.kind = MessageKind::Wheel, .target = &Tree(), .amount = -1}); }},
      {"a press on it",
       [&] {
         Queue(*m_toolkit.GetTipLook().owner, MessageKind::LeftDown, {5, 5});
       }},
      {"another row", [&] { Point(60, Line(1)); }},
      {"a deleted row", [&] { Tree().DeleteItem(m_rows[0]); }},
  };
  for (const auto& [name, end] : ends) {
    SCOPED_TRACE(name);
    Tree().EnsureVisible(m_rows[0]);
    Point(60, Line(1));
    Point(60, Line(0));
    EXPECT_EQ(Shown(), Of("x100", 0, 60));
    end();
    m_toolkit.Pump();
    EXPECT_EQ(Shown(), "none");
  }
}

}  // namespace
}  // namespace qd::test

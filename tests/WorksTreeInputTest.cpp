// The works tree under mouse and keys: dragging, editing titles, check boxes and type-ahead by keyboard.

#include <deque>

#include "qd_wrt/panel/CWorksTreeBar.h"
#include "support/InputRows.h"
#include "support/Probes.h"
#include "support/Screen.h"

namespace qd::test {
namespace {

constexpr std::uint16_t kKind = 30;

/// Runs something in the middle of a queue of input.
class Watch final : public CWnd {
 public:
  std::deque<std::function<void()>> looks;
  /// Goes through all of them: each may queue input, which is handled before the next.
  bool inTurn = false;

 protected:
  void OnPosted(unsigned, std::uint64_t) override {
    const auto look = std::move(looks.front());
    looks.pop_front();
    look();
    if (inTurn && !looks.empty()) Post(1, 0);
  }
};

/// root [a b c [c1] d]: a and b may be dragged onto c and what is below it.
class Input : public WorksTree {
 protected:
  Input() {
    OpenProbes([this](ProbeNode& root) {
      a = Add(root, L"a");
      b = Add(root, L"b");
      c = Add(root, L"c");
      c1 = Add(*c, L"c1");
      d = Add(root, L"d");
    });
    for (ProbeNode* node : {a, b}) {
      node->m_leftDrag = node->m_rightDrag = true;
      node->RegsiterDragEnableType(kKind);
    }
    c->SetTreeItemType(kKind);
    ProbeNode::TakeLog();
    m_toolkit.SetScreen(PaintsOn(m_screen, Tree()));
    Tree().Invalidate();
  }
  void Queue(MessageKind kind, CPoint point) {
    m_toolkit.Enqueue({.kind = kind, .target = &Tree(), .point = point});
  }
  /// Presses on one row, moves over the points and releases at the last.
  void Drag(const CString& from, const std::vector<CPoint>& over, bool right = false) {
    Queue(right ? MessageKind::RightDown : MessageKind::LeftDown, PointOf(from));
    Queue(MessageKind::MouseMove, {PointOf(from).x + 20, PointOf(from).y});
    for (const CPoint& point : over) Queue(MessageKind::MouseMove, point);
    Queue(right ? MessageKind::RightUp : MessageKind::LeftUp, over.back());
  }
  /// What the probes wrote, without pages.
  std::string Told() {
    m_toolkit.Pump();
    CheckIdle();
    std::string log = ProbeNode::TakeLog();
    for (const char* page : {"page ", "pages "}) {
      for (std::size_t at = log.find(page); at != std::string::npos; at = log.find(page)) {
        log.erase(at, log.find(' ', at + std::string(page).size()) + 1 - at);
      }
    }
    return log;
  }

  /// Between two acts nothing is left of the first, and what is on the screen is what stands in the rows.
  void CheckIdle() {
    EXPECT_FALSE(Tree().IsDragging());
    auto timers = m_toolkit.TimersOf(Tree());
    timers.erase(2);  // letters that were typed wait for the next
    EXPECT_TRUE(timers.empty());
    EXPECT_EQ(m_toolkit.PointerOf(Tree()), "arrow");
    EXPECT_EQ(m_toolkit.Tip(), L"");
    for (HTREEITEM row = Tree().GetRootItem(); row; row = NextRow(row)) {
      EXPECT_EQ(Tree().GetItemState(row, kRowDropHighlight), 0U) << workbench::ToUtf8(Tree().GetItemText(row, 0));
    }
    const CPoint stale = PaintedWhole(Tree()).Difference(m_screen);
    EXPECT_EQ(stale, (CPoint{-1, -1})) << "not painted anew at " << stale.x << "," << stale.y;
  }
  /// A drag of `from` to `points`, in the middle of which the steps run one after the other.
  void DragSteps(const CString& from, const std::vector<std::function<void()>>& steps, CPoint last,
                 bool right = false) {
    if (!m_watch.IsCreated()) m_watch.Create(nullptr, 9, {});
    m_watch.inTurn = true;
    Queue(right ? MessageKind::RightDown : MessageKind::LeftDown, PointOf(from));
    Queue(MessageKind::MouseMove, {PointOf(from).x + 20, PointOf(from).y});
    m_watch.looks.assign(steps.begin(), steps.end());
    m_watch.looks.emplace_back(
        [this, last, right] { Queue(right ? MessageKind::RightUp : MessageKind::LeftUp, last); });
    m_watch.Post(1, 0);
  }

  Screen m_screen;
  ProbeNode* a = nullptr;
  ProbeNode* b = nullptr;
  ProbeNode* c = nullptr;
  ProbeNode* c1 = nullptr;
  ProbeNode* d = nullptr;
  Watch m_watch;
};

// ---- dragging with the left button ----------------------------------------------------------------------

TEST_F(Input, ADropReachesATargetOfAnAcceptedType) {
  Drag(L"a", {PointOf(L"c")});
  EXPECT_EQ(Told(), "drop a on c ");
  Drag(L"a", {PointOf(L"c"), PointOf(L"d")});  // type 0
  EXPECT_EQ(Told(), "");
  Drag(L"a", {PointOf(L"root")});
  EXPECT_EQ(Told(), "");
  c->Expand(1);
  m_toolkit.Pump();
  Drag(L"a", {{PointOf(L"c1").x + 250, PointOf(L"c1").y}});  // anywhere on the line; the type is inherited
  EXPECT_EQ(Told(), "drop a on c1 ");
  EXPECT_FALSE(Tree().IsDragging());
}

struct PermissionCase {
  const char* name;
  bool right;
  bool activeTree;
  int nodes;
  bool may, mayMulti;  // with this button
  bool starts;
};
class DragPermissions : public Input, public ::testing::WithParamInterface<PermissionCase> {};
TEST_P(DragPermissions, DecideWhetherADragBegins) {
  const PermissionCase& with = GetParam();
  m_bar.CreateTreeItems(1, &m_probes, with.activeTree ? 1 : 0);
  m_toolkit.Pump();
  for (const wchar_t* title : {L"a", L"b"}) {
    auto& node = static_cast<ProbeNode&>(*Node(title));
    // Those of the other button must not count. The first node may everything.
    node.m_leftDrag = node.m_multiLeftDrag = with.right;
    node.m_rightDrag = node.m_multiRightDrag = !with.right;
    const bool last = title == CString(L"b");
    if (with.right) {
      node.m_rightDrag = with.may || !last;
      node.m_multiRightDrag = with.mayMulti || !last;
    } else {
      node.m_leftDrag = with.may || !last;
      node.m_multiLeftDrag = with.mayMulti || !last;
    }
  }
  if (with.nodes == 2) Click(L"a");
  Click(L"b", with.nodes == 2 ? kMouseControl : 0U);
  Told();
  bool dragging = false;
  DragSteps(L"b", {[&] { dragging = Tree().IsDragging() && m_toolkit.PointerOf(Tree()) == "picture"; }},
            PointOf(L"d"), with.right);
  Told();
  EXPECT_EQ(dragging, with.starts);
}
INSTANTIATE_TEST_SUITE_P(
    Buttons, DragPermissions,
    ::testing::Values(PermissionCase{"left_one", false, false, 1, true, false, true},
                      PermissionCase{"left_one_may_not", false, true, 1, false, true, false},
                      PermissionCase{"left_two_in_the_active_tree", false, true, 2, true, false, true},
                      PermissionCase{"left_two_elsewhere", false, false, 2, true, false, false},
                      PermissionCase{"left_two_elsewhere_permitted", false, false, 2, true, true, true},
                      PermissionCase{"left_two_one_may_not", false, true, 2, false, true, false},
                      PermissionCase{"right_one", true, false, 1, true, false, true},
                      PermissionCase{"right_one_may_not", true, true, 1, false, true, false},
                      PermissionCase{"right_two_in_the_active_tree", true, true, 2, true, false, false},
                      PermissionCase{"right_two_permitted", true, true, 2, true, true, true}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(Input, TheEdgesScrollFromTheirFirstPixelOnAndNothingScrollsElsewhere) {
  for (int i = 0; i < 40; ++i) Add(*Tree().GetQDRootItem(), L"row" + std::to_wstring(i));
  m_toolkit.Pump();
  Tree().ScrollTo(20);
  static_cast<ProbeNode*>(Node(L"row25"))->m_leftDrag = true;
  const int bottom = Tree().GetClientRect().bottom;
  const int edge = Tree().GetItemHeight() / 2;
  std::string seen;
  const auto lineAt = [&](int y) {
    return [this, y, &seen] {
      Queue(MessageKind::MouseMove, {60, y});
      m_watch.looks.emplace_front([this, y, &seen] {
        const std::size_t before = Tree().TopPosition();
        for (const auto& [id, period] : m_toolkit.TimersOf(Tree())) {
          seen += std::to_string(id) + "/" + std::to_string(period) + " ";
        }
        m_toolkit.Advance(79);
        m_watch.looks.emplace_front([this, y, before, &seen] {
          EXPECT_EQ(Tree().TopPosition(), before);
          m_toolkit.Advance(1);
          m_watch.looks.emplace_front([this, y, before, &seen] {
            seen += std::to_string(static_cast<int>(Tree().TopPosition()) - static_cast<int>(before)) + "; ";
            unsigned hit = 0;  // the row that has come under the pointer is the target now
            const HTREEITEM under = Tree().HitTest({60, y}, hit);
            for (HTREEITEM row = Tree().GetRootItem(); row; row = NextRow(row)) {
              EXPECT_EQ(Tree().GetItemState(row, kRowDropHighlight) != 0, row == under);
            }
          });
        });
      });
    };
  };
  DragSteps(L"row25",
            {lineAt(edge), lineAt(edge - 1), lineAt(edge), lineAt(bottom - edge - 1), lineAt(bottom - edge),
             lineAt(-30), lineAt(bottom + 30), lineAt(bottom / 2)},
            {60, bottom / 2});
  Told();
  EXPECT_EQ(seen, "0; 100/80 -1; 0; 0; 101/80 1; 100/80 -1; 101/80 1; 0; ");
}

TEST_F(Input, HoveringOpensAClosedBranchAfterAWhileAndOnlyThere) {
  std::string seen;
  const auto hover = [&](const CString& title, unsigned milliseconds) {
    return [this, title, milliseconds, &seen] {
      Queue(MessageKind::MouseMove, PointOf(title));
      Queue(MessageKind::MouseMove, {PointOf(title).x + 1, PointOf(title).y});  // a hand is never quite still
      m_watch.looks.emplace_front([this, milliseconds, &seen] {
        m_toolkit.Advance(milliseconds);
        m_watch.looks.emplace_front([this, &seen] {
          seen += m_toolkit.TimersOf(Tree()).contains(102) ? "waits " : "";
          seen += Tree().IsExpanded(Row(L"c")) ? "open; " : "closed; ";
        });
      });
    };
  };
  const CPoint end = PointOf(L"b");
  DragSteps(L"a", {hover(L"c", 699), hover(L"b", 700), hover(L"c", 699), hover(L"c", 1)}, end);
  Told();
  EXPECT_EQ(seen, "waits closed; closed; waits closed; open; ");
  // The drag ends over a branch: nothing opens afterwards, and the next drag waits anew.
  seen.clear();
  c->Expand(0);
  m_toolkit.Pump();
  DragSteps(L"a", {hover(L"c", 699)}, PointOf(L"c"));
  EXPECT_EQ(Told(), "drop a on c ");
  m_toolkit.Advance(5000);
  Told();
  EXPECT_FALSE(Tree().IsExpanded(Row(L"c")));
  DragSteps(L"a", {hover(L"c", 500)}, PointOf(L"d"));
  Told();
  EXPECT_EQ(seen, "waits closed; waits closed; ");
  // An open branch waits for nothing.
  seen.clear();
  c->Expand(1);
  m_toolkit.Pump();
  DragSteps(L"a", {hover(L"c", 1)}, PointOf(L"d"));
  Told();
  EXPECT_EQ(seen, "open; ");
}

TEST_F(Input, OneActLeavesNothingForTheNext) {
  a->m_dragToView = true;
  const auto cancel = [this](bool right, bool escape) {
    DragSteps(L"a", {[this, escape] {
                Queue(MessageKind::MouseMove, PointOf(L"c"));
                if (escape) m_toolkit.Key(Tree(), kKeyEscape);
                if (!escape) Queue(MessageKind::CaptureLost, {});
              }},
              PointOf(L"c"), right);
  };
  // A cancelled drag, then a click, a drop and a drop on the view.
  for (const bool escape : {true, false}) {
    cancel(false, escape);
    EXPECT_EQ(Told(), "");
    Click(L"d");
    EXPECT_EQ(State(), "root [a b c [c1] *d]");
    Drag(L"b", {PointOf(L"c")});
    EXPECT_EQ(Told(), "drop b on c ");
    Drag(L"a", {{-50, 40}});
    EXPECT_EQ(Told(), "view a ");
  }
  // A right drag swallows the menu of its own release and no other, however it ends.
  cancel(true, true);
  EXPECT_EQ(Told(), "");
  m_toolkit.RightClick(Tree(), PointOf(L"a"));
  EXPECT_EQ(Told(), "menu a ");
  // A command that comes before the menu was asked for is swallowed instead, and the next is heard.
  Queue(MessageKind::RightDown, PointOf(L"a"));
  Queue(MessageKind::MouseMove, {PointOf(L"a").x + 20, PointOf(L"a").y});
  Queue(MessageKind::CaptureLost, {});
  EXPECT_EQ(Told(), "");
  Command(7);
  Command(8);
  EXPECT_EQ(Told(), "a:8 ");
  Click(L"c");
  Command(9);
  EXPECT_EQ(Told(), "c:9 ");
}

TEST_F(Input, SeveralNodesGoToTheViewFromTheTreeInUseOnly) {
  for (const bool active : {true, false}) {
    m_bar.CreateTreeItems(1, &m_probes, active ? 1 : 0);
    m_toolkit.Pump();
    for (const wchar_t* title : {L"a", L"b"}) {
      auto& node = static_cast<ProbeNode&>(*Node(title));
      node.m_leftDrag = node.m_multiLeftDrag = node.m_dragToView = true;
    }
    Click(L"a");
    Click(L"b", kMouseControl);
    Told();
    for (const CPoint& beside : {CPoint{-50, 40}, CPoint{60, 200}}) {  // outside, and where the tree is empty
      Drag(L"b", {beside});
      EXPECT_EQ(Told(), active ? "view a " : "");
    }
  }
}

TEST_F(Input, ARowOfSomebodyElseIsNeitherATargetNorTheView) {
  a->m_dragToView = true;
  Tree().InsertItem(L"foreign", 0, 0, 0, 0, Row(L"root"), kInsertLast);
  m_toolkit.Pump();
  Drag(L"a", {PointOf(L"foreign")});
  EXPECT_EQ(Told(), "");
}

TEST_F(Input, TheLabelNamesWhatIsDraggedAndWhetherItFits) {
  for (ProbeNode* node : {a, b}) node->m_multiLeftDrag = true;
  a->m_dragToView = true;
  Click(L"a");
  Click(L"b", kMouseControl);
  Told();
  std::string seen;
  const auto over = [&](CPoint point) {
    return [this, point, &seen] {
      Queue(MessageKind::MouseMove, point);
      m_watch.looks.emplace_front([this, &seen] { seen += workbench::ToUtf8(m_toolkit.Tip()) + "; "; });
    };
  };
  const int right = Tree().GetClientRect().right;
  DragSteps(L"b",
            {over(PointOf(L"c")), over(PointOf(L"d")), over({right - 1, 240}), over({right, 20}), over({-1, 20}),
             over(PointOf(L"root"))},
            PointOf(L"d"));
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(seen, "a +1; \u2298 a +1; \u2298 a +1; a +1; a +1; \u2298 a +1; ");
}

TEST_F(Input, NodesMayDieDuringTheDrag) {
  const CPoint target = PointOf(L"c");
  m_watch.Create(nullptr, 9, {});
  const auto dragWhile = [this, target](const std::function<void()>& happens) {
    Queue(MessageKind::LeftDown, PointOf(L"a"));
    Queue(MessageKind::MouseMove, {PointOf(L"a").x + 20, PointOf(L"a").y});
    Queue(MessageKind::MouseMove, target);
    m_watch.looks.push_back(happens);
    m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_watch, .id = 1});
    Queue(MessageKind::MouseMove, target);
    Queue(MessageKind::LeftUp, target);
    return Told();
  };
  EXPECT_EQ(dragWhile([this] { Tree().GetQDRootItem()->DeleteChild(c); }), "~c1 ~c ");  // d moved up there
  EXPECT_EQ(dragWhile([this] { Tree().GetQDRootItem()->DeleteChild(a); }), "~a ");
  EXPECT_EQ(State(), "root [b d]");
}

// ---- titles edited in place -----------------------------------------------------------------------------

struct RenameCase {
  const char* name;
  int key;
  const char* told;
  const wchar_t* title;
};
class Renaming : public Input, public ::testing::WithParamInterface<RenameCase> {};
TEST_P(Renaming, KeepsOrDiscards) {
  auto* editable = new ProbeNode(&Tree(), d, L"named");
  editable->m_editable = true;
  editable->MakeItem(kInsertLast);
  d->Expand(1);
  m_toolkit.Pump();
  Click(L"named");
  Told();
  Key(kKeyF2);
  CWnd* box = m_toolkit.FindChild(Tree(), 1);
  ASSERT_NE(box, nullptr);
  m_toolkit.Type(*box, L"other");
  if (GetParam().key != 0) {
    m_toolkit.Key(*box, GetParam().key);
  } else {
    m_toolkit.Click(Tree(), PointOf(L"b"));
  }
  EXPECT_EQ(Told(), GetParam().told);
  EXPECT_EQ(editable->GetTitle(), GetParam().title);
}
INSTANTIATE_TEST_SUITE_P(Ends, Renaming,
                         ::testing::Values(RenameCase{"enter", kKeyEnter, "edit other ", L"other"},
                                           RenameCase{"tab", kKeyTab, "edit other ", L"other"},
                                           RenameCase{"escape", kKeyEscape, "", L"named"},
                                           RenameCase{"click_elsewhere", 0, "edit other ", L"other"}),
                         [](const auto& param) { return std::string(param.param.name); });

// ---- keys -----------------------------------------------------------------------------------------------

TEST_F(Input, SpaceSwitchesTheBoxesOfTheSelectionAndKeepsIt) {
  Click(L"a");
  Click(L"b", kMouseControl);
  Told();
  Key(kKeySpace);
  EXPECT_EQ(Told(), "check a check b! ");
  EXPECT_EQ(State(), "root [*-a *-b c [c1] d]");
  Key(kKeySpace);
  EXPECT_EQ(State(), "root [*a *b c [c1] d]");
}

TEST_F(Input, ControlAAndIChangeTheWholeSelectionWithOneNotice) {
  Click(L"b");
  Heard();
  Told();
  Key(kKeyI, kMouseControl);
  EXPECT_EQ(State(), "*root [*a b *c [c1] *d]");
  EXPECT_EQ(ProbeNode::TakeLog(), "pages root ");
  Key(kKeyA, kMouseControl);
  EXPECT_EQ(State(), "*root [*a *b *c [c1] *d]");
}

/// A program may show nodes of its own before it has a document.
TEST(TreeWithoutDocument, StaysEmpty) {
  HeadlessToolkit toolkit;
  InputRows rows;
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 500});
  bar.CreateTreeItems(1, &rows, 1);
  CQDTreeListCtrl& tree = bar.GetTreeCtrl();
  EXPECT_EQ(tree.VisibleRowCount(), 0U);
  toolkit.Key(tree, kKeySpace);
  toolkit.Pump();
}

}  // namespace
}  // namespace qd::test

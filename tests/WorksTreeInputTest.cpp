// The works tree under mouse and keys: dragging, editing titles, check boxes and type-ahead by keyboard.

#include <deque>

#include "qd_wrt/panel/CWorksTreeBar.h"
#include "support/InputRows.h"
#include "support/Probes.h"

namespace qd::test {
namespace {

constexpr std::uint16_t kKind = 30;

/// Runs something in the middle of a queue of input.
class Watch final : public CWnd {
 public:
  std::deque<std::function<void()>> looks;

 protected:
  void OnPosted(unsigned, std::uint64_t) override {
    looks.front()();
    looks.pop_front();
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
    std::string log = ProbeNode::TakeLog();
    for (const char* page : {"page ", "pages "}) {
      for (std::size_t at = log.find(page); at != std::string::npos; at = log.find(page)) {
        log.erase(at, log.find(' ', at + std::string(page).size()) + 1 - at);
      }
    }
    return log;
  }

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

TEST_F(Input, PermissionsDecideWhetherADragStarts) {
  Drag(L"d", {PointOf(L"c")});
  EXPECT_EQ(Told(), "");
  Click(L"a");
  Click(L"b", kMouseControl);
  Drag(L"b", {PointOf(L"c")});  // several, in the tree in use
  EXPECT_EQ(Told(), "drop a b on c ");
  Click(L"a");
  Click(L"b", kMouseControl);
  Drag(L"b", {PointOf(L"c")}, true);  // several need their permission with the right button always
  EXPECT_EQ(Told(), "menu a ");       // no drag, so the release asks for the menu
  a->m_multiRightDrag = b->m_multiRightDrag = true;
  Drag(L"b", {PointOf(L"d")}, true);  // no type is asked for
  EXPECT_EQ(Told(), "rdrop a b on d ");
  Click(L"a");
  Click(L"d", kMouseControl);
  Drag(L"d", {PointOf(L"c")});  // one of them may not
  EXPECT_EQ(Told(), "");
}

TEST_F(Input, ADropBesideTheRowsGoesToTheView) {
  const CPoint outside{-50, 40};
  Drag(L"a", {outside});
  EXPECT_EQ(Told(), "");
  a->m_dragToView = true;
  Drag(L"a", {outside});
  EXPECT_EQ(Told(), "view a ");
  Drag(L"a", {{60, 200}});  // the empty part of the tree counts as outside
  EXPECT_EQ(Told(), "view a ");
}

TEST_F(Input, EscapeAndALostCaptureCancel) {
  for (const bool escape : {true, false}) {
    Queue(MessageKind::LeftDown, PointOf(L"a"));
    Queue(MessageKind::MouseMove, {PointOf(L"a").x + 20, PointOf(L"a").y});
    Queue(MessageKind::MouseMove, PointOf(L"c"));
    m_toolkit.Enqueue(
        {.kind = escape ? MessageKind::KeyDown : MessageKind::CaptureLost, .target = &Tree(), .key = kKeyEscape});
    Queue(MessageKind::LeftUp, PointOf(L"c"));
    EXPECT_EQ(Told(), "");
    EXPECT_FALSE(Tree().IsDragging());
    EXPECT_EQ(Tree().GetItemState(Row(L"c"), kRowDropHighlight), 0U);
    EXPECT_EQ(m_toolkit.Tip(), L"");
  }
}

TEST_F(Input, TheTargetIsHighlightedAndTheLabelTellsWhetherItTakes) {
  Queue(MessageKind::LeftDown, PointOf(L"a"));
  Queue(MessageKind::MouseMove, {PointOf(L"a").x + 20, PointOf(L"a").y});
  Queue(MessageKind::MouseMove, PointOf(L"d"));
  std::string seen;
  const auto look = [&](const CString& title) {
    m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_watch, .id = 1});
    m_watch.looks.push_back([this, title, &seen] {
      seen += Tree().GetItemState(Row(title), kRowDropHighlight) != 0 ? "lit " : "dark ";
      seen += workbench::ToUtf8(m_toolkit.Tip()) + "; ";
    });
  };
  m_watch.Create(nullptr, 9, {});
  look(L"d");
  Queue(MessageKind::MouseMove, PointOf(L"c"));
  look(L"d");
  look(L"c");
  Queue(MessageKind::LeftUp, PointOf(L"c"));
  m_toolkit.Pump();
  EXPECT_EQ(seen, "lit \u2298 a; dark a; lit a; ");
}

TEST_F(Input, HoveringOpensABranchAndTheEdgesScroll) {
  for (int i = 0; i < 40; ++i) Add(*Tree().GetQDRootItem(), L"row" + std::to_wstring(i));
  m_toolkit.Pump();
  Queue(MessageKind::LeftDown, PointOf(L"a"));
  Queue(MessageKind::MouseMove, {PointOf(L"a").x + 20, PointOf(L"a").y});
  Queue(MessageKind::MouseMove, PointOf(L"c"));
  m_toolkit.Enqueue({.kind = MessageKind::Timer, .target = &Tree(), .id = 102});
  Queue(MessageKind::MouseMove, {60, Tree().GetClientRect().bottom - 2});
  for (int i = 0; i < 3; ++i) m_toolkit.Enqueue({.kind = MessageKind::Timer, .target = &Tree(), .id = 101});
  m_toolkit.Enqueue({.kind = MessageKind::KeyDown, .target = &Tree(), .key = kKeyEscape});
  m_toolkit.Pump();
  EXPECT_TRUE(Tree().IsExpanded(Row(L"c")));
  EXPECT_EQ(Tree().GetFirstVisibleItem(), Row(L"c"));
  m_toolkit.Advance(10000);  // no timer is left running
  m_toolkit.Pump();
  EXPECT_EQ(Tree().GetFirstVisibleItem(), Row(L"c"));
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

TEST_F(Input, ARightDragSwallowsItsMenuOnly) {
  Drag(L"a", {PointOf(L"c")}, true);
  EXPECT_EQ(Told(), "rdrop a on c ");
  m_toolkit.RightClick(Tree(), PointOf(L"a"));
  EXPECT_EQ(Told(), "menu a ");
  Drag(L"d", {PointOf(L"c")}, true);  // refused: nothing to swallow
  EXPECT_EQ(Told(), "menu d ");
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

TEST_F(Input, F2NeedsAnEditableSelectedRow) {
  Key(kKeyF2);
  Click(L"a");
  Key(kKeyF2);
  EXPECT_EQ(Tree().IsEditing(), 0);
}

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

TEST_F(Input, TypingFindsTitlesRoundTheEnd) {
  ProbeNode* alpha = Add(*c, L"Alpha");
  Add(*c, L"apple");
  const auto type = [this](const CString& text) {
    m_toolkit.Type(Tree(), text);
    m_toolkit.Pump();
    return workbench::ToUtf8(Tree().GetItemText(Tree().GetFirstSelectedItem(), 0));
  };
  EXPECT_EQ(type(L"a"), "a");
  EXPECT_EQ(type(L"a"), "a");  // those in the closed branch are not looked at
  c->Expand(1);
  EXPECT_EQ(type(L"a"), "Alpha");
  EXPECT_EQ(type(L"a"), "apple");
  EXPECT_EQ(type(L"a"), "a");
  EXPECT_EQ(type(L"zz"), "a");
  EXPECT_EQ(alpha->GetTitle(), L"Alpha");
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
TEST(TreeWithoutDocument, ShowsNodesAndTakesChecks) {
  HeadlessToolkit toolkit;
  InputRows rows;
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 500});
  bar.CreateTreeItems(1, &rows, 1);
  CQDTreeListCtrl& tree = bar.GetTreeCtrl();
  EXPECT_EQ(tree.VisibleRowCount(), 41U);
  const HTREEITEM first = tree.GetChildItem(tree.GetRootItem());
  tree.SelectItem(first);
  toolkit.Key(tree, kKeySpace);
  toolkit.Pump();
  EXPECT_EQ(tree.WhichCheck(first), kUnchecked);
}

}  // namespace
}  // namespace qd::test

// Rows of a host that derives no class: what the user does reaches the host, and what the host says is shown.

#include <gtest/gtest.h>

#include <numeric>
#include <random>

#include "host/CMSGFunction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

class NoTable final : public CMSGFunction::ITable {
  bool Find(std::string_view, CString&) const override { return false; }
};

class HostRows : public ::testing::Test {
 protected:
  HostRows() {
    { const NoTable gone; }  // when it goes there is none, as in a host that brings none
    m_bar.Create(nullptr, 0, {0, 0, 400, 600});
    m_rows = std::make_unique<HostTree>(m_bar.GetTreeCtrl());
    m_toolkit.Pump();
  }
  ~HostRows() override { m_bar.DestroyWindow(); }

  std::shared_ptr<const HostNodeKind> Logs() {
    return std::make_shared<const HostNodeKind>(HostNodeKind{
        .clicked = [this](HostNode& node) { Log("clicked", node); },
        .switched = [this](HostNode& node, bool on) { Log(on ? "on" : "off", node); },
        .renamed =
            [this](HostNode& node, const CString& title) {
              Log("renamed", node);
              return title != L"refused";
            },
        .menu =
            [](HostNode&) {
              return std::vector<HostMenuEntry>{{1, L"Open"}, {}, {2, L"Drawn", true}};
            },
        .command = [this](HostNode& node, unsigned command) { Log("command " + std::to_string(command), node); },
        .dropped =
            [this](HostNode& node, const std::vector<HostNode*>& dragged) {
              for (HostNode* row : dragged) Log("moved " + std::to_string(row->MoveBranch(&node)), *row);
            },
        .isDragged = true});
  }
  void Log(const std::string& what, const HostNode& node) {
    m_log += what + " " + workbench::ToUtf8(node.GetTitle()) + ";";
  }
  std::string TakeLog() { return std::exchange(m_log, {}); }
  /// Open rows with what is below them in brackets, closed ones with a plus, selected ones with a star.
  std::string State(HTREEITEM parent = {}) {
    CQDTreeListCtrl& tree = Tree();
    std::string text;
    for (HTREEITEM row = tree.GetChildItem(parent); row; row = tree.GetNextSiblingItem(row)) {
      text += (text.empty() ? "" : " ") + workbench::ToUtf8(tree.GetItemText(row, 0));
      if (tree.GetItemState(row, kRowSelected) != 0) text += "*";
      if (tree.IsExpanded(row) && tree.ItemHasChildren(row)) {
        text += "[" + State(row) + "]";
      } else if (tree.CanOpen(row)) {
        text += "+";
      }
    }
    return text;
  }
  CQDTreeListCtrl& Tree() { return m_bar.GetTreeCtrl(); }
  /// A place in the row's title, or in its box.
  CPoint At(const HostNode& node, bool box = false) {
    const RowGeometry geometry = Tree().GetGeometry();
    CRect line;
    Tree().GetItemRect(node.GetTreeItemHandle(), line, false);
    const RowParts parts = geometry.PartsOf(node.GetTreeItemHandle());
    return {(box ? parts.state : parts.text) + 4, line.top + 4};
  }
  void Click(const HostNode& node, bool box = false) {
    m_toolkit.Click(Tree(), At(node, box));
    m_toolkit.Pump();
  }

  HeadlessToolkit m_toolkit;
  CWorksTreeBar m_bar;
  std::unique_ptr<HostTree> m_rows;
  std::string m_log;
};

TEST_F(HostRows, HearWhatTheUserDoes) {
  HostNode& a = m_rows->Root().Add({.title = L"a", .id = 7, .colour = 0xFFU, .checked = false, .key = 11}, Logs());
  HostNode& b = a.Add({.title = L"b", .checked = true});
  a.Expand(1);
  m_toolkit.Pump();
  EXPECT_EQ(State(), "a[b]");
  EXPECT_EQ(m_rows->Find(11), &a);
  EXPECT_EQ(m_rows->Find(0), nullptr);
  EXPECT_FALSE(a.IsChecked());
  Click(a);
  EXPECT_EQ(m_rows->Selected(), std::vector<HostNode*>{&a});
  Click(a, true);
  EXPECT_TRUE(a.IsChecked());
  EXPECT_TRUE(b.IsChecked());
  EXPECT_EQ(TakeLog(), "clicked a;on a;");

  m_toolkit.AnswerMenu(2);
  m_toolkit.RightClick(Tree(), At(b));
  m_toolkit.Pump();
  EXPECT_EQ(m_toolkit.ShownMenus().back(), "Open|-|[x] Drawn");
  EXPECT_EQ(TakeLog(), "clicked b;command 2 b;");

  for (const auto& [typed, shown] : {std::pair<CString, CString>{L"c", L"c"}, {L"refused", L"c"}}) {
    m_toolkit.Key(Tree(), kKeyF2);
    m_toolkit.Pump();
    ASSERT_EQ(Tree().IsEditing(), 1);
    m_toolkit.Type(*m_toolkit.FocusWindow(), typed);
    m_toolkit.Key(*m_toolkit.FocusWindow(), kKeyEnter);
    m_toolkit.Pump();
    EXPECT_EQ(b.GetTitle(), shown);
  }
}

/// The rows of the top level are one tree, though they stand below no row.
TEST_F(HostRows, AClickSelectsAloneWhereverItsRowStands) {
  std::vector<HostNode*> rows;
  for (const wchar_t* title : {L"a", L"b", L"c"}) rows.push_back(&m_rows->Root().Add({.title = title}));
  m_toolkit.Pump();
  for (HostNode* row : {rows[1], rows[2], rows[0], rows[2]}) {
    Click(*row);
    EXPECT_EQ(m_rows->Selected(), std::vector<HostNode*>{row});
  }
}

/// Each call may close the pane with the tree.
TEST_F(HostRows, MayBeTakenDownInTheirCalls) {
  for (const int call : {0, 1, 2, 3, 4, 5}) {
    HostRows::TakeLog();
    const auto close = [this](HostNode&) { m_rows.reset(), m_bar.DestroyWindow(); };
    auto kind = std::make_shared<HostNodeKind>();
    if (call == 0) kind->clicked = close;
    if (call == 1) kind->switched = [&](HostNode& node, bool) { close(node); };
    if (call == 2) kind->renamed = [&](HostNode& node, const CString&) { return close(node), true; };
    if (call == 3) kind->menu = [&](HostNode& node) { return close(node), std::vector<HostMenuEntry>{{1, L"x"}}; };
    if (call == 4) kind->command = [&](HostNode& node, unsigned) { close(node); };
    if (call == 5) kind->children = close;
    if (call == 4) kind->menu = [](HostNode&) { return std::vector<HostMenuEntry>{{1, L"x"}}; };
    HostNode& row = m_rows->Root().Add({.title = L"row", .checked = true}, kind);
    m_toolkit.Pump();
    if (call == 0) Click(row);
    if (call == 1) Click(row, true);
    if (call == 2) row.OnEditChange(L"typed");
    if (call >= 3 && call <= 4) m_toolkit.AnswerMenu(1);
    if (call >= 3 && call <= 4) m_toolkit.RightClick(Tree(), At(row));
    if (call == 5) row.Expand(1);
    m_toolkit.Pump();
    m_toolkit.ForgetAnswers();
    EXPECT_EQ(m_rows, nullptr) << call;
    m_bar.Create(nullptr, 0, {0, 0, 400, 600});
    m_rows = std::make_unique<HostTree>(m_bar.GetTreeCtrl());
  }
}

TEST_F(HostRows, CaptionsAreEnglishWithoutATable) {
  EXPECT_EQ(Tree().GetHeader().GetItem(0)->text, L"Item");
  EXPECT_EQ(CMSGFunction::GetValue("IDS_NO_SUCH_KEY"), L"IDS_NO_SUCH_KEY");
}

TEST_F(HostRows, ChildrenAreMadeWhenTheirRowIsOpened) {
  int made = 0;
  std::shared_ptr<const HostNodeKind> kind;
  const auto make = [&](HostNode& node) {
    ++made;
    if (node.GetTitle() == L"empty") return;
    node.Add({.title = L"x"}, kind);
    node.Add({.title = L"empty"}, kind);
  };
  kind = std::make_shared<const HostNodeKind>(HostNodeKind{.children = make});
  HostNode& top = m_rows->Root().Add({.title = L"top"}, kind);
  m_rows->Root().Add({.title = L"plain"});
  m_toolkit.Pump();
  EXPECT_EQ(State(), "top+ plain");
  EXPECT_EQ(made, 0);
  // A press on the button, the key and opening all below.
  const CPoint title = At(top);
  m_toolkit.Click(Tree(), {RowGeometry::ButtonsOf(0) + 4, title.y});
  m_toolkit.Pump();
  EXPECT_EQ(State(), "top[x+ empty+] plain");
  Click(top.Child(0));
  m_toolkit.Key(Tree(), kKeyRight);
  m_toolkit.Pump();
  EXPECT_EQ(State(), "top[x*[x+ empty+] empty+] plain");
  EXPECT_EQ(made, 2);
  top.Child(1).Expand(1);
  EXPECT_EQ(State(), "top[x*[x+ empty+] empty] plain") << "nothing came: the button goes";
  Tree().ExpandBelow(top.GetTreeItemHandle(), ExpandAction::Expand);
  EXPECT_EQ(made, 3) << "what is not there yet is left closed";
  // What failed can be tried again.
  bool fails = true;
  kind = std::make_shared<const HostNodeKind>(HostNodeKind{.children = [&fails](HostNode& node) {
    if (fails) throw std::runtime_error("no connection");
    node.Add({.title = L"came"});
  }});
  HostNode& failing = m_rows->Root().Add({.title = L"failing"}, kind);
  EXPECT_THROW(failing.Expand(1), std::runtime_error);
  fails = false;
  failing.Expand(1);
  EXPECT_EQ(failing.GetChildCount(), 1);
  failing.Remove();
  // The row may go while its children are made.
  kind = std::make_shared<const HostNodeKind>(HostNodeKind{.children = [](HostNode& node) { node.Remove(); }});
  m_rows->Root().Add({.title = L"gone"}, kind).Expand(1);
  EXPECT_EQ(m_rows->Root().GetChildCount(), 2);
}

TEST_F(HostRows, BranchesMoveAsTheyAre) {
  HostNode& a = m_rows->Root().Add({.title = L"a"});
  HostNode& b = m_rows->Root().Add({.title = L"b"});
  HostNode& open = a.Add({.title = L"open", .id = 3, .colour = 0xFFU, .checked = true, .key = 5});
  HostNode& closed = open.Add({.title = L"closed"});
  HostNode& leaf = closed.Add({.title = L"leaf", .checked = false});
  open.Add({.title = L"last"});
  a.Expand(1);
  open.Expand(1);
  open.Child(1).Select(0);
  ASSERT_EQ(State(), "a[open[closed+ last*]] b");
  EXPECT_EQ(open.MoveBranch(&leaf), 0) << "below itself";
  EXPECT_EQ(m_rows->Root().MoveBranch(&b), 0);
  CWorksTreeBar otherBar;
  otherBar.Create(nullptr, 0, {0, 0, 400, 600});
  HostTree other(otherBar.GetTreeCtrl());
  EXPECT_EQ(open.MoveBranch(&other.Root()), 0) << "of another tree";
  EXPECT_EQ(open.MoveBranch(&other.Root().Add({.title = L"x"})), 0);
  Tree().SetItemState(closed.GetTreeItemHandle(), kRowFocused, kRowFocused);
  EXPECT_EQ(open.MoveBranch(&b), 1);
  b.Expand(1);
  EXPECT_EQ(State(), "a b[open[closed+ last*]]");
  EXPECT_EQ(open.Above(), &b);
  EXPECT_EQ(Tree().GetFocusedItem(), closed.GetTreeItemHandle());
  EXPECT_EQ(a.GetChildCount(), 0);
  EXPECT_EQ(m_rows->Find(5), &open);
  EXPECT_EQ(Tree().GetItemText(open.GetTreeItemHandle(), 1), L"3  ");
  EXPECT_TRUE(open.IsChecked());
  leaf.ChangeTitle(L"changed");
  closed.Expand(1);
  EXPECT_EQ(closed.MoveBranch(&m_rows->Root()), 1) << "to the top level";
  EXPECT_EQ(State(), "a b[open[last*]] closed[changed]");
  EXPECT_EQ(Tree().GetRowCount(), 6);
  // Found rows stay found where they go, and what the search opened is closed again.
  m_bar.SetFilter(L"changed");
  m_toolkit.Pump();
  EXPECT_EQ(closed.MoveBranch(&a), 1);
  m_toolkit.Pump();
  EXPECT_EQ(m_bar.GetMatchCount(), 1);
  EXPECT_FALSE(Tree().IsFilteredOut(leaf.GetTreeItemHandle()));
  m_bar.ClearFilter();
  a.Expand(1);
  EXPECT_EQ(State(), "a[closed[changed]] b[open[last*]]");
  // Tens of thousands of rows below one another, without recursion.
  HostNode* deepest = &a;
  for (int i = 0; i < 50000; ++i) deepest = &deepest->Add({.title = L"d"});
  EXPECT_EQ(a.MoveBranch(&b), 1);
  EXPECT_TRUE(Tree().IsLive(deepest->GetTreeItemHandle()));
}

TEST_F(HostRows, ADragMovesWhatTheHostMoves) {
  HostNode& a = m_rows->Root().Add({.title = L"a"}, Logs());
  HostNode& b = m_rows->Root().Add({.title = L"b"}, Logs());
  a.Add({.title = L"c"});
  m_toolkit.Pump();
  const CPoint from = At(a);
  const CPoint to = At(b);
  m_toolkit.Enqueue({.kind = MessageKind::LeftDown, .target = &Tree(), .point = from});
  m_toolkit.Enqueue({.kind = MessageKind::MouseMove, .target = &Tree(), .point = {from.x + 20, from.y}});
  m_toolkit.Enqueue({.kind = MessageKind::MouseMove, .target = &Tree(), .point = to});
  m_toolkit.Enqueue({.kind = MessageKind::LeftUp, .target = &Tree(), .point = to});
  m_toolkit.Pump();
  EXPECT_EQ(TakeLog(), "clicked a;moved 1 a;");
  b.Expand(1);
  EXPECT_EQ(State(), "b[a*+]");
}

/// A million rows of a host: what is not looked at is not asked for, and what becomes of the host's rows becomes
/// of the tree's, whichever of them were looked at.
TEST_F(HostRows, AreAskedForWhenTheyAreLookedAt) {
  std::vector<int> model(20000);
  std::iota(model.begin(), model.end(), 0);
  std::size_t asked = 0;
  auto below = std::make_shared<HostNodeKind>();
  below->clicked = [this](HostNode& node) { Log("clicked", node); };
  auto kind = std::make_shared<HostNodeKind>();
  kind->rowCount = [&](HostNode&) { return model.size(); };
  kind->row = [&](const HostNode&, std::size_t place) {
    ++asked;
    const int number = model.at(place);
    return HostRow{.title = L"row " + std::to_wstring(number),
                   .id = number + 1,
                   .checked = number % 2 == 0,
                   .key = static_cast<std::uint64_t>(number) + 1};
  };
  kind->rowKind = below;
  HostNode& root = m_rows->Root();
  root.ShowRows(kind);
  m_toolkit.Pump();
  EXPECT_EQ(Tree().RowCount(), model.size());
  EXPECT_LT(asked, 200U);
  Tree().ScrollTo(10000);
  Tree().SelectAll(1);
  Tree().TellSelection();
  m_toolkit.Pump();
  EXPECT_LT(asked, 400U) << "selecting asks for none";
  const auto titles = [&] {
    std::vector<CString> all;
    for (HTREEITEM row = Tree().GetRootItem(); row; row = Tree().GetNextSiblingItem(row)) {
      all.push_back(Tree().GetItemText(row, 0));
    }
    return all;
  };
  std::mt19937 random(3);
  model.resize(300);
  root.RemoveRows(300, 20000);
  for (int step = 0; step < 300; ++step) {
    const std::size_t place = random() % model.size();
    const std::size_t count = 1 + random() % 3;
    switch (random() % 4) {
      case 0:
        for (std::size_t i = 0; i < count; ++i)
          model.insert(model.begin() + static_cast<long>(place), 1000 + step);
        root.InsertRows(place, count);
        break;
      case 1:
        if (model.size() < 100 || place + count > model.size()) break;
        model.erase(model.begin() + static_cast<long>(place), model.begin() + static_cast<long>(place + count));
        root.RemoveRows(place, count);
        break;
      case 2:
        model[place] += 5000;
        root.ChangeRows(place, 1);
        break;
      default:
        static_cast<void>(Tree().NodeOf(Tree().GetChildAt({}, place)));
    }
  }
  std::vector<CString> wanted;
  wanted.reserve(model.size());
  for (const int number : model) wanted.push_back(L"row " + std::to_wstring(number));
  EXPECT_EQ(titles(), wanted);
  Tree().SortItems(0, 1, {});
  EXPECT_EQ(titles(), wanted) << "the order is the host's";
  // Rows that nobody has seen are found, by what they say and by what they are.
  model.assign(5000, 7);
  model[4321] = 77777;
  root.Clear();
  root.InsertRows(0, model.size());
  asked = 0;
  for (const wchar_t* query : {L"77777", L"id:77778", L"-shown: id:77778"}) {
    m_bar.SetFilter(query);
    for (int i = 0; i < 10000 && !Tree().GetFinder().IsDone(); ++i) {
      m_toolkit.Advance(1);
      m_toolkit.Pump();
    }
    m_toolkit.Pump();
    EXPECT_EQ(m_bar.GetMatchCount(), 1) << workbench::ToUtf8(query);
  }
  EXPECT_LT(root.GetChildCount(), 100) << "and none was made for that";
  m_bar.ClearFilter();
  m_toolkit.Pump();
  Tree().SelectAlone(Tree().GetChildAt({}, 4321));
  EXPECT_EQ(m_rows->Selected().at(0)->GetTitle(), L"row 77777");
  EXPECT_EQ(m_rows->Selected()[0]->MoveBranch(&root), 0) << "rows of the host are moved by it";
}

/// What is open and selected comes back by the host's keys; what is no such text changes nothing.
TEST_F(HostRows, ComeBackAsTheyWere) {
  int made = 0;
  auto kind = std::make_shared<HostNodeKind>();
  kind->children = [&](HostNode& node) {
    ++made;
    for (std::uint64_t key = 1; key < 4; ++key) {
      node.Add({.title = L"below " + std::to_wstring(key), .key = node.GetKey() * 10 + key});
    }
  };
  auto many = std::make_shared<HostNodeKind>();
  many->rowCount = [](HostNode&) { return std::size_t{1000}; };
  many->row = [](const HostNode&, std::size_t place) {
    return HostRow{.title = L"many", .key = 100000 + static_cast<std::uint64_t>(place)};
  };
  const auto fill = [&] {
    m_rows->Root().Clear();
    m_rows->Root().Add({.title = L"a", .key = 1}, kind);
    m_rows->Root().Add({.title = L"nameless"}, kind);
    m_rows->Root().Add({.title = L"b", .key = 2}, many);
    m_toolkit.Pump();
  };
  fill();
  m_rows->Find(1)->Expand(1);
  m_rows->Find(2)->Expand(1);
  const HTREEITEM far = Tree().GetChildAt(m_rows->Find(2)->GetTreeItemHandle(), 700);
  Tree().SelectAlone(far);
  Tree().SetItemState(m_rows->Find(13)->GetTreeItemHandle(), kRowSelected, kRowSelected);
  Tree().ScrollTo(690);
  m_toolkit.Pump();
  const std::string before = m_rows->SaveState({.widths = {120, 40, 30}});
  fill();
  ColumnLayout widths;
  ASSERT_EQ(m_rows->RestoreState(before, widths), 1);
  EXPECT_EQ(widths.widths, (std::vector<int>{120, 40, 30}));
  EXPECT_EQ(m_rows->SaveState({.widths = {120, 40, 30}}), before);
  EXPECT_EQ(Tree().GetSelectedRowCount(), 2U);
  EXPECT_EQ(Tree().TopPosition(), 690U);
  Tree().SelectAll(1);
  Tree().TellSelection();
  const std::string all = m_rows->SaveState();
  EXPECT_LT(all.size(), 200U) << "all of them in one line";
  // Any text: refused with nothing changed, or a state that can be saved again.
  for (const char* wrong : {"", "qd-tree-state 2\n", "qd-tree-state 1", "qd-tree-state 1\nrow 1 o 5\n",
                            "qd-tree-state 1\nrow 0 oo 1\n", "qd-tree-state 1\nrow 0 x 1\n",
                            "qd-tree-state 1\nrow 99999999999999999999 o 1\n", "qd-tree-state 1\nrow 0 o %4\n",
                            "qd-tree-state 1\ncolumns 5 -1\n", "qd-tree-state 1\nrow 0 o \n"}) {
    EXPECT_EQ(m_rows->RestoreState(wrong, widths), 0) << wrong;
    EXPECT_EQ(m_rows->SaveState(), all) << wrong;
  }
  std::mt19937 random(5);
  for (int i = 0; i < 2000; ++i) {
    std::string text = before;
    for (int change = 0; change < 3; ++change) text[random() % text.size()] = static_cast<char>(random() % 256);
    if (random() % 2 != 0) text.resize(random() % text.size());
    if (m_rows->RestoreState(text, widths) == 0) continue;
    m_toolkit.Pump();
    const std::string then = m_rows->SaveState();
    ASSERT_EQ(m_rows->RestoreState(then, widths), 1);
    m_toolkit.Pump();
    ASSERT_EQ(m_rows->SaveState(), then);
  }
}

}  // namespace
}  // namespace qd::test

// What becomes of the rest when a part goes first, comes from another thread or another version, or throws. All of
// it holds in release builds.

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "host/CQDNullDocument.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/c/Tree.h"
#include "qd_wrt/c/qd_wrt.h"
#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "support/Probes.h"

namespace qd::test {
namespace {

constexpr CRect kPlace{0, 0, 400, 300};

TEST(Lifetimes, AToolkitThatGoesFirstTakesItsWindowsAlong) {
  auto toolkit = std::make_unique<HeadlessToolkit>();
  CWorksTreeBar bar;
  CWorksTreeBar below;
  ASSERT_EQ(bar.Create(nullptr, 0, kPlace), 1);
  ASSERT_EQ(below.Create(&bar, 1, kPlace), 1);
  HostTree rows(bar.GetTreeCtrl());
  rows.Root().Add({.title = L"a", .key = 1});
  toolkit->Click(bar.GetTreeCtrl(), {30, 5});  // what is queued goes, too
  toolkit.reset();
  EXPECT_FALSE(bar.IsCreated());
  EXPECT_FALSE(below.IsCreated());
  EXPECT_EQ(rows.Find(1), nullptr);
  // The program may begin anew, with the same objects.
  HeadlessToolkit next;
  ASSERT_EQ(bar.Create(nullptr, 0, kPlace), 1);
  rows.Root().Add({.title = L"b"});
  next.Pump();
  EXPECT_EQ(bar.GetTreeCtrl().GetRowCount(), 1);
}

TEST(Lifetimes, ADocumentThatGoesFirstTakesTheRowsAlong) {
  HeadlessToolkit toolkit;
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, kPlace);
  ProbeFactory probes;
  probes.make = [](CQDTreeListCtrl* control) { return new ProbeNode(control, nullptr, L"root"); };
  auto doc = std::make_unique<CQDNullDocument>();
  bar.SetDocument(doc.get());
  bar.CreateTreeItems(1, &probes, 1);
  ASSERT_EQ(bar.GetTreeCtrl().GetRowCount(), 1);
  CQDDocBase* gone = doc.get();
  doc.reset();
  EXPECT_EQ(bar.GetTreeCtrl().RowCount(), 0U);
  EXPECT_EQ(bar.GetDocument(), nullptr);
  bar.CreateTreeItems(1, &probes, 1);
  bar.UpdateDB(gone, 0);  // only ever compared
  EXPECT_EQ(bar.GetTreeCtrl().RowCount(), 0U);
  ProbeNode::TakeLog();
}

TEST(LifetimesDeathTest, AControlThatGoesFirstTakesTheRowsOfAHostAlong) {
  HeadlessToolkit toolkit;
  auto bar = std::make_unique<CWorksTreeBar>();
  bar->Create(nullptr, 0, kPlace);
  HostTree rows(bar->GetTreeCtrl());
  rows.Root().Add({.title = L"a", .key = 1});
  bar.reset();
  EXPECT_EQ(rows.Find(1), nullptr);
  EXPECT_TRUE(rows.Selected().empty());
  EXPECT_DEATH(rows.Root(), "QD_wrt: the control of a HostTree is gone");
}

TEST(LifetimesDeathTest, VersionsAndThreadsAreChecked) {
  EXPECT_DEATH(HeadlessToolkit("0.0.9"), "QD_wrt: the toolkit was built against another version");
  EXPECT_DEATH(HeadlessToolkit(nullptr), "QD_wrt: the toolkit was built against another version");
  HeadlessToolkit toolkit("0.1.77");  // patches of one version are exchanged freely
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, kPlace);
  HostTree rows(bar.GetTreeCtrl());
  HostNode& row = rows.Root().Add({.title = L"a"});
  const auto elsewhere = [](const std::function<void()>& work) { std::thread(work).join(); };
  EXPECT_DEATH(elsewhere([&] { rows.Root().Add({}); }), "QD_wrt: called from a thread");
  EXPECT_DEATH(elsewhere([&] { row.Remove(); }), "QD_wrt: called from a thread");
  EXPECT_DEATH(elsewhere([&] { bar.UpdateDB(nullptr, 0); }), "QD_wrt: called from a thread");
  EXPECT_DEATH(elsewhere([&] { bar.DestroyWindow(); }), "QD_wrt: called from a thread");
}

/// Whatever a call throws comes out where events are handled, and the next act of the user is as if nothing had
/// been.
TEST(Lifetimes, WhatACallOfARowThrowsLeavesNothingHalfDone) {
  HeadlessToolkit toolkit;
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, kPlace);
  HostTree rows(bar.GetTreeCtrl());
  bool throws = false;
  std::string log;
  const auto act = [&](const char* what) {
    log += std::string(what) + ";";
    if (throws) throw std::runtime_error("host");
  };
  const auto kind = std::make_shared<const HostNodeKind>(
      HostNodeKind{.clicked = [&](HostNode&) { act("clicked"); },
                   .switched = [&](HostNode&, bool) { act("switched"); },
                   .renamed = [&](HostNode&, const CString&) { return act("renamed"), true; },
                   .menu =
                       [&](HostNode&) {
                         return act("menu"), std::vector<HostMenuEntry>{{1, L"x"}};
                       },
                   .command = [&](HostNode&, unsigned) { act("command"); },
                   .dropped = [&](HostNode&, const std::vector<HostNode*>&) { act("dropped"); },
                   .isDragged = true});
  HostNode& a = rows.Root().Add({.title = L"a", .checked = false}, kind);
  HostNode& b = rows.Root().Add({.title = L"b", .checked = false}, kind);
  toolkit.Pump();
  CQDTreeListCtrl& tree = bar.GetTreeCtrl();
  const auto at = [&](const HostNode& node, bool box) {
    CRect line;
    tree.GetItemRect(node.GetTreeItemHandle(), line, false);
    const RowParts parts = tree.GetGeometry().PartsOf(node.GetTreeItemHandle());
    return CPoint{(box ? parts.state : parts.text) + 4, line.top + 4};
  };
  struct Act {
    const char* heard;
    std::function<void()> input;
  };
  const auto drag = [&] {
    using enum MessageKind;
    toolkit.Enqueue({.kind = LeftDown, .target = &tree, .point = at(a, false)});
    toolkit.Enqueue({.kind = MouseMove, .target = &tree, .point = {at(a, false).x + 20, at(a, false).y}});
    toolkit.Enqueue({.kind = MouseMove, .target = &tree, .point = at(b, false)});
    toolkit.Enqueue({.kind = LeftUp, .target = &tree, .point = at(b, false)});
  };
  const auto rename = [&] {
    toolkit.Key(tree, kKeyF2);
    const bool before = std::exchange(throws, false);
    toolkit.Pump();
    throws = before;
    if (toolkit.FocusWindow() == nullptr) return;
    toolkit.Type(*toolkit.FocusWindow(), L"c");
    toolkit.Key(*toolkit.FocusWindow(), kKeyEnter);
  };
  const auto menu = [&] {
    toolkit.AnswerMenu(1);
    toolkit.RightClick(tree, at(a, false));
  };
  const std::vector<Act> acts{{"clicked;", [&] { toolkit.Click(tree, at(a, false)); }},
                              {"switched;", [&] { toolkit.Click(tree, at(b, true)); }},
                              {"clicked;", [&] { toolkit.Click(tree, at(a, false)); }},
                              {"renamed;", rename},
                              {"clicked;menu;command;", menu},
                              {"clicked;dropped;", drag}};
  for (const Act& each : acts) {
    throws = true;
    each.input();
    EXPECT_THROW(toolkit.Pump(), std::runtime_error) << each.heard;
    throws = false;
    toolkit.ForgetAnswers();
    toolkit.Pump();  // what was queued behind
    log.clear();
    each.input();
    toolkit.Pump();
    EXPECT_EQ(log, each.heard);
    EXPECT_FALSE(tree.IsEmulatedNotify()) << each.heard;
    EXPECT_FALSE(tree.IsDragging()) << each.heard;
    EXPECT_EQ(tree.IsEditing(), 0) << each.heard;
  }
}

// ---- the interface for C ------------------------------------------------------------------------------------

class CInterface : public ::testing::Test {
 protected:
  ~CInterface() override { EXPECT_EQ(qd_shutdown(), QD_OK); }
  static qd_tree* MakeTree(void* user = nullptr, void (*selected)(void*, qd_tree*) = nullptr) {
    qd_tree_options options{};
    options.size = sizeof(options);
    options.interface_number = QD_INTERFACE;
    options.user = user;
    options.selected = selected;
    qd_tree* tree = nullptr;
    EXPECT_EQ(qd_tree_create_headless(&options, &tree), QD_OK) << qd_last_error();
    return tree;
  }
  static qd_node Add(qd_tree* tree, const qd_callbacks& calls) {
    qd_kind kind = 0;
    EXPECT_EQ(qd_kind_create(tree, &calls, &kind), QD_OK);
    qd_row row{};
    row.size = sizeof(row);
    row.fields = QD_ROW_TITLE | QD_ROW_KIND | QD_ROW_CHECKED;
    row.title = "row";
    row.kind = kind;
    qd_node node = 0;
    EXPECT_EQ(qd_node_add(tree, 0, &row, &node), QD_OK);
    return node;
  }
};

TEST_F(CInterface, OtherThreadsAreRefused) {
  qd_tree* tree = MakeTree();
  std::thread([tree] {
    EXPECT_EQ(qd_tree_clear(tree), QD_ERROR_THREAD);
    EXPECT_STREQ(qd_last_error(), qd_error_text(QD_ERROR_THREAD));
    EXPECT_EQ(qd_headless_pump(), QD_ERROR_THREAD);
    EXPECT_EQ(qd_tree_destroy(tree), QD_ERROR_THREAD);
    EXPECT_EQ(qd_shutdown(), QD_ERROR_THREAD);
    qd_tree_options options{};
    options.size = sizeof(options);
    options.interface_number = QD_INTERFACE;
    qd_tree* other = nullptr;
    EXPECT_EQ(qd_tree_create_headless(&options, &other), QD_ERROR_THREAD);
  }).join();
  EXPECT_STREQ(qd_last_error(), "") << "errors are told to the thread that made them";
  EXPECT_EQ(qd_tree_clear(tree), QD_OK);
}

TEST_F(CInterface, ExceptionsOfCallbacksEndInTheLibrary) {
  qd_tree* tree = MakeTree(nullptr, [](void*, qd_tree*) { throw std::runtime_error("selected"); });
  qd_callbacks calls{};
  calls.size = sizeof(calls);
  calls.clicked = [](void*, qd_tree*, qd_node) { throw std::runtime_error("clicked"); };
  calls.switched = [](void*, qd_tree*, qd_node, int) { throw 1; };
  calls.renamed = [](void*, qd_tree*, qd_node, const char*) -> int { throw std::runtime_error("renamed"); };
  calls.menu = [](void*, qd_tree*, qd_node, qd_menu* menu) {
    qd_menu_add(menu, 1, "x", 0);
    throw std::runtime_error("menu");
  };
  calls.children = [](void*, qd_tree*, qd_node) { throw std::runtime_error("children"); };
  const qd_node node = Add(tree, calls);
  EXPECT_EQ(qd_headless_click(tree, node, QD_PART_TITLE), QD_OK);
  EXPECT_NE(std::string(qd_last_error()).find("thrown an exception. selected"), std::string::npos);
  EXPECT_EQ(qd_headless_rename(tree, "typed"), QD_OK);
  char title[8];
  EXPECT_EQ(qd_node_title(tree, node, title, sizeof(title), nullptr), QD_OK);
  EXPECT_STREQ(title, "row") << "no answer is no";
  EXPECT_EQ(qd_headless_click(tree, node, QD_PART_BOX), QD_OK);
  EXPECT_EQ(qd_headless_menu(tree, node, 1), QD_ERROR_STATE) << "nothing of a menu that was not finished";
  EXPECT_EQ(qd_node_expand(tree, node, 1), QD_OK);
}

TEST_F(CInterface, TheLibrarySpeaksTheLanguageThatItIsGiven) {
  const auto caption = [](qd_tree* handle) {
    std::shared_ptr<c::Tree> tree;
    EXPECT_EQ(c::FindTree(handle, tree), QD_OK);
    return tree->Bar().GetTreeCtrl().GetHeader().GetItem(0)->text;
  };
  qd_tree* tree = MakeTree();
  EXPECT_EQ(qd_texts_set("# German\nIDS_QD_WRT_Item=Element\nIDS_QD_WRT_Color=%s\n"), QD_OK);
  EXPECT_EQ(caption(tree), L"Element");
  EXPECT_EQ(caption(MakeTree()), L"Element");
  for (const char* bad : {"", "no text\n", "IDS_QD_WRT_Item=\xFF\n", "IDS_QD_WRT_Item=%s\n"}) {
    EXPECT_EQ(qd_texts_set(bad), QD_ERROR_VALUE) << bad;
    EXPECT_EQ(caption(tree), L"Element") << bad;
  }
  EXPECT_EQ(qd_texts_set(nullptr), QD_OK);
  EXPECT_EQ(caption(tree), L"Item");
  EXPECT_EQ(qd_texts_set("IDS_QD_WRT_Item=Element\n"), QD_OK);
  EXPECT_EQ(qd_shutdown(), QD_OK);
  EXPECT_EQ(caption(MakeTree()), L"Item") << "what was given goes with all else";
}

/// The toolkit is a C++ program's, which ends it.
TEST_F(CInterface, TreesOfAToolkitThatIsGoneAreGone) {
  qd_tree* tree = nullptr;
  {
    const HeadlessToolkit toolkit;
    tree = MakeTree();
    EXPECT_EQ(qd_tree_clear(tree), QD_OK);
  }
  EXPECT_EQ(qd_tree_clear(tree), QD_ERROR_WINDOW);
  EXPECT_EQ(qd_headless_pump(), QD_ERROR_TOOLKIT);
  qd_tree* next = MakeTree();
  EXPECT_EQ(qd_tree_clear(next), QD_OK);
  EXPECT_EQ(qd_tree_clear(tree), QD_ERROR_WINDOW);
  EXPECT_EQ(qd_tree_destroy(tree), QD_OK);
  EXPECT_EQ(qd_tree_destroy(tree), QD_ERROR_TREE);
}

}  // namespace
}  // namespace qd::test

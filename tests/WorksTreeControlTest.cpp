// The works-tree control: change notices, selection, menus, maps and the life of nodes.

#include "support/Probes.h"

#include <array>
#include <random>

#include "qd_wrt/core/CQDTreeBranch.h"

namespace qd::test {
namespace {

using namespace workbench;

// ---- building -------------------------------------------------------------------------------------------

TEST_F(WorksTree, NullRootAndNullDocumentLeaveAnEmptyTreeThatAnswersEverything) {
  for (CQDDocBase* doc : {static_cast<CQDDocBase*>(&m_doc), static_cast<CQDDocBase*>(nullptr)}) {
    m_bar.SetDocument(doc);
    m_bar.CreateTreeItems(1, &m_probes, 1);
    TArray<iterator> some{1, 2};
    m_bar.UpdateDB(doc, 0);
    m_bar.ResetFilePath();
    m_bar.OnChangeLanguage();
    m_bar.OnMenuEvent(doc, 41007);
    m_bar.OnMenuEventGeomRoot(doc, 41007);
    m_bar.ShowHideDatum(doc, some, 1);
    m_bar.ShowHideAllLabel(doc, 0);
    m_bar.SetSelection(doc, 1, some);
    EXPECT_EQ(m_bar.IsSelectedItemExist(doc), 0);
    EXPECT_EQ(Tree().RowCount(), 0U);
    m_bar.DestroyTreeItems();
    m_toolkit.RightClick(Tree(), {20, 20});
    m_toolkit.Pump();
  }
}

TEST_F(WorksTree, ANewTreeReplacesTheOldOneLastNodeFirst) {
  m_bar.CreateTreeItems(1, nullptr, 0);
  bool inUse = true;
  OpenProbes([this, &inUse](ProbeNode& root) {
    inUse = Tree().IsActiveTree();
    Add(*Add(root, L"a"), L"a1");
    Add(root, L"b");
  });
  EXPECT_EQ(State(), "root [a [a1] b]");
  EXPECT_TRUE(Tree().IsExpanded(Row(L"root")));
  EXPECT_TRUE(!inUse && Tree().IsActiveTree()) << "it is in use when it stands, not before";
  m_bar.CreateTreeItems(1, &m_probes, 0);
  EXPECT_TRUE(inUse);
  EXPECT_EQ(ProbeNode::TakeLog(), "~b ~a1 ~a ~root ");
  EXPECT_FALSE(Tree().IsActiveTree());
  EXPECT_EQ(Tree().GetRowCount(), 4);
}

TEST_F(WorksTree, BranchesWithEditableChildrenAreSortedByKeyWithThoseAfterThem) {
  const auto keyed = [this](CQDTreeItem& parent, const CString& title, int id) {
    auto* node = new ProbeNode(&Tree(), &parent, title);
    node->m_editable = true;
    node->m_showID = true;
    node->m_id = id;
    node->MakeItem(kInsertLast);
  };
  OpenProbes([&](ProbeNode& root) {
    ProbeNode* last = Add(root, L"last");
    Add(*last, L"y [7]");
    Add(*last, L"x [3]");  // not editable: stays as it is until an earlier branch is made
    auto* first = new ProbeNode(&Tree(), &root, L"first");
    first->makeChildren = [&](ProbeNode& self) {
      keyed(self, L"c", 30);
      keyed(self, L"a", 4);
      keyed(self, L"b", 200);
      keyed(self, L"none", 0);
    };
    first->MakeItem(kInsertFirst);
  });
  EXPECT_EQ(State(), "root [first [none a c b] last [x [3] y [7]]]");
  EXPECT_EQ(Tree().GetItemText(Row(L"a"), 1), L"4  ");
  EXPECT_EQ(Tree().GetItemText(Row(L"none"), 1), L"");
  Node(L"a")->ChangeID(4);
  EXPECT_EQ(Tree().GetItemText(Row(L"a"), 1), L"4");
}

TEST_F(WorksTree, ABranchOfAnyDepthIsBuiltWalkedAndTakenDown) {
  constexpr int kDepth = 20000;
  OpenProbes([](ProbeNode& root) {
    root.makeChildren = [](ProbeNode& self) {
      if (self.GetTitle() == L"19999") return;
      const CString title = self.IsRoot() ? L"0" : std::to_wstring(std::stoi(self.GetTitle()) + 1);
      auto* child = new ProbeNode(self.GetControl(), &self, title);
      child->makeChildren = self.makeChildren;
      child->MakeItem(kInsertLast);
    };
    root.makeChildren(root);
  });
  EXPECT_EQ(Tree().GetRowCount(), kDepth + 1);
  EXPECT_EQ(Tree().GetQDRootItem()->GetAllChildCount(), kDepth);
  Tree().GetQDRootItem()->SetCheck(kUnchecked, 1);
  EXPECT_EQ(Tree().GetQDRootItem()->GetChild(0)->GetCheckStatus(), kUnchecked);
  m_bar.OnChangeLanguage();
  std::vector<iterator> none;
  Tree().GetQDRootItem()->SetShowHide(none, 1, 1);
  Tree().GetQDRootItem()->GetChecked();
  m_bar.DestroyTreeItems();
  EXPECT_EQ(Tree().RowCount(), 0U);
}

// ---- change notices -------------------------------------------------------------------------------------

TEST_F(WorksTree, ANodeIsUpdatedOnceWithAllItsRecordsInTheirOrder) {
  OpenProbes([this](ProbeNode& root) {
    Add(root, L"both", {5, 9});
    Add(root, L"nine", {9});
    Add(root, L"none", {2});
  });
  Notice({{9, 100, 1}, {5, 100, 2}, {9, 102, 3}, {77, 100, 4}});
  EXPECT_EQ(ProbeNode::TakeLog(), "both(1 2 3 ) nine(1 3 ) ");
  Notice({{9, 100, 5}});  // earlier records are not handed out again
  EXPECT_EQ(ProbeNode::TakeLog(), "both(5 ) nine(5 ) ");
}

/// Nodes that hear of their own records only: those that end with the node's number.
class Chooser final : public ProbeNode {
 public:
  using ProbeNode::ProbeNode;
  void AppendConcerned(const tagTRNotify& change, std::vector<CQDTreeItem*>& nodes) const override {
    for (CQDTreeItem* child : Children()) {
      if (change.itr % 10 == static_cast<iterator>(child->GetID())) nodes.insert(nodes.end(), 2, child);
    }
  }
};
class Chosen final : public ProbeNode {
 public:
  using ProbeNode::ProbeNode;
  CQDTreeItem* FollowsThrough(unsigned short type) const override { return type == 7 ? GetParent() : nullptr; }
};

TEST_F(WorksTree, NodesThatFollowThroughABranchHearOfTheirOwnRecordsOnly) {
  ProbeNode* branch = nullptr;
  std::vector<CQDTreeItem*> nodes;
  OpenProbes([&](ProbeNode& root) {
    branch = new Chooser(&Tree(), &root, L"branch");
    branch->MakeItem(kInsertLast);
    const auto add = [&](const CString& title, int id, std::vector<unsigned short> types) {
      auto* node = new Chosen(&Tree(), branch, title, std::move(types));
      node->m_id = id;
      node->MakeItem(kInsertLast);
      nodes.push_back(node);
    };
    add(L"a", 1, {7, 8});
    Add(root, L"all", {7});
    add(L"b", 2, {7});
    add(L"deaf", 3, {8});  // what concerns it, but is not followed, does not reach it
  });
  Notice({{7, kChangeAdded, 2},
          {7, kChangeAdded, 1},
          {8, kChangeAdded, 5},
          {7, kChangeAdded, 11},
          {7, kChangeAdded, 3}});
  EXPECT_EQ(ProbeNode::TakeLog(), "a(1 5 11 ) all(2 1 11 3 ) b(2 ) deaf(5 ) ");
  CQDTreeItem::Destroy(nodes[0]);
  ProbeNode::TakeLog();
  Notice({{7, kChangeAdded, 1}, {7, kChangeAdded, 2}});
  EXPECT_EQ(ProbeNode::TakeLog(), "all(1 2 ) b(2 ) ");
  Tree().DeleteItem(branch);  // all of them stay, without rows
  Notice({{7, kChangeAdded, 2}});
  EXPECT_EQ(ProbeNode::TakeLog(), "all(2 ) ");
  branch->makeChildren = [&](ProbeNode&) { nodes[1]->MakeItem(kInsertLast); };
  branch->MakeItem(kInsertLast);
  Notice({{7, kChangeAdded, 2}, {8, kChangeAdded, 5}});
  EXPECT_EQ(ProbeNode::TakeLog(), "all(2 ) b(2 ) ");
}

/// Says what concerns nodes that do not stand below it.
class Relay final : public ProbeNode {
 public:
  using ProbeNode::ProbeNode;
  void AppendConcerned(const tagTRNotify&, std::vector<CQDTreeItem*>& nodes) const override {
    log += "asked ";
    nodes.push_back(guest);
  }
  CQDTreeItem* guest = nullptr;
};
class Guest final : public ProbeNode {
 public:
  using ProbeNode::ProbeNode;
  CQDTreeItem* FollowsThrough(unsigned short) const override { return through; }
  CQDTreeItem* through = nullptr;
};

TEST_F(WorksTree, ABranchThatFollowsNothingItselfMayDieBeforeThoseThatFollowThroughIt) {
  Relay* relay = nullptr;
  OpenProbes([&](ProbeNode& root) {
    relay = new Relay(&Tree(), &root, L"relay");
    relay->MakeItem(kInsertLast);
    auto* guest = new Guest(&Tree(), &root, L"guest", {7});
    relay->guest = guest;
    guest->through = relay;
    guest->MakeItem(kInsertLast);
  });
  Notice({{7, kChangeAdded, 1}});
  EXPECT_EQ(ProbeNode::TakeLog(), "asked guest(1 ) ");
  Tree().RunDeep(Tree().GetQDRootItem(), [&] {  // the memory stays meanwhile, so that asking it would be seen
    CQDTreeItem::Destroy(relay);
    Notice({{7, kChangeAdded, 2}});
  });
  EXPECT_EQ(ProbeNode::TakeLog(), "~relay ");
}

TEST_F(WorksTree, NodesThatAnEarlierOneDeletesOrLeavesWithoutRowAreNotCalled) {
  OpenProbes([this](ProbeNode& root) {
    ProbeNode* killer = Add(root, L"killer", {9});
    Add(root, L"victim", {9});
    Add(root, L"rowless", {9});
    Add(root, L"last", {9});
    killer->onUpdate = [this](ProbeNode& self) {
      Tree().EraseHTREEITEM(Node(L"rowless"), 0);
      self.GetParent()->DeleteChild(Node(L"victim"));
      // A node made now may get the memory of the deleted one; it did not ask for this notice.
      Add(*self.GetParent(), L"fresh", {9});
    };
  });
  Notice({{9, 100, 1}});
  EXPECT_EQ(ProbeNode::TakeLog(), "killer(1 ) last(1 ) ~victim ");
  EXPECT_EQ(State(), "root [killer last fresh]");
}

TEST_F(WorksTree, ANodeMayDeleteItselfInItsUpdate) {
  OpenProbes([this](ProbeNode& root) {
    Add(root, L"self", {9})->onUpdate = [](ProbeNode& self) { self.GetParent()->DeleteChild(&self); };
  });
  Notice({{9, 100, 1}});
  EXPECT_EQ(State(), "root");
  Notice({{9, 100, 1}});
}

TEST_F(WorksTree, ANoticeInsideAnUpdateWaitsUntilTheOuterOneIsDone) {
  OpenProbes([this](ProbeNode& root) {
    Add(root, L"first", {9})->onUpdate = [this](ProbeNode& self) {
      self.onUpdate = nullptr;
      Notice({{9, 100, 2}});
    };
    Add(root, L"second", {9});
  });
  Click(L"second");
  ProbeNode::TakeLog();
  Notice({{9, 100, 1}});
  EXPECT_EQ(ProbeNode::TakeLog(), "first(1 ) second(1 ) first(2 ) second(2 ) page second ");
}

TEST_F(WorksTree, EveryNoticeRefreshesThePropertyWindowFromTheSelection) {
  OpenProbes([this](ProbeNode& root) {
    Add(root, L"a");
    Add(root, L"b");
  });
  Heard();
  Notice({});
  EXPECT_EQ(Heard(), "pages.SetPropertySet(none)\npages.Refresh\n");  // nothing is selected in any tree
  Click(L"a");
  EXPECT_EQ(ProbeNode::TakeLog(), "page a ");
  m_bar.UpdateDB(&m_doc, 0);
  EXPECT_EQ(ProbeNode::TakeLog(), "page a ");
  Click(L"b", kMouseControl);
  EXPECT_EQ(ProbeNode::TakeLog(), "pages a ");
  Heard();
  m_toolkit.Click(Tree(), {50, 250});  // beside the rows: clears the selection, the page stays
  m_toolkit.Pump();
  EXPECT_EQ(ProbeNode::TakeLog() + Heard(), "doc.ClearSelectBuffer(0)\nview.Redraw(0)\n");
}

// ---- check clicks ---------------------------------------------------------------------------------------

TEST_F(WorksTree, ACheckClickRedrawsForTheLastSelectedRowOnlyAndAZeroEndsIt) {
  OpenProbes([this](ProbeNode& root) {
    for (const wchar_t* title : {L"a", L"b", L"c"}) Add(root, title);
  });
  m_doc.AddToSelBuffer(1);
  for (const wchar_t* title : {L"a", L"b", L"c"}) Click(title, kMouseControl);
  ProbeNode::TakeLog();
  ClickCheck(L"b");
  EXPECT_EQ(ProbeNode::TakeLog(), "check a check b check c! ");
  EXPECT_EQ(State(), "root [-a -b -c]");
  for (const wchar_t* title : {L"a", L"b", L"c"}) Click(title, kMouseControl);
  static_cast<ProbeNode*>(Node(L"b"))->stops = true;
  ProbeNode::TakeLog();
  ClickCheck(L"a");
  EXPECT_EQ(ProbeNode::TakeLog(), "check a check b ");
  EXPECT_EQ(State(), "root [a b -c]");
}

TEST_F(WorksTree, CheckOnlyInChildLeavesOneCheckedOrOneUnchecked) {
  OpenProbes([this](ProbeNode& root) {
    Add(*Add(root, L"a"), L"a1");
    Add(root, L"b");
  });
  CQDTreeItem* root = Tree().GetQDRootItem();
  root->CheckOnlyInChild(Node(L"b"), kChecked, 1);
  EXPECT_EQ(State(), "root [-a [-a1] b]");
  root->CheckOnlyInChild(Node(L"b"), kUnchecked, 0);
  EXPECT_EQ(State(), "root [a [-a1] -b]");
  root->CheckOnlyInChild(nullptr, kChecked, 1);
  EXPECT_EQ(State(), "root [-a [-a1] -b]");
}

// ---- menus ----------------------------------------------------------------------------------------------

TEST_F(WorksTree, MenusAndCommandsGoToTheFirstSelectedNode) {
  OpenProbes([this](ProbeNode& root) {
    Add(root, L"a");
    Add(root, L"b");
  });
  m_bar.OnMenuEvent(&m_doc, 1);  // nothing selected: nobody hears it
  Click(L"b");
  Click(L"a", kMouseControl);
  ProbeNode::TakeLog();
  m_bar.OnMenuEvent(&m_doc, 41000);
  m_bar.OnMenuEventGeomRoot(&m_doc, 41001);  // goes to the tree's root
  m_toolkit.RightClick(Tree(), PointOf(L"b"));
  m_toolkit.Pump();
  EXPECT_EQ(ProbeNode::TakeLog(), "a:41000 geom41001 pages a menu a ");
  m_toolkit.RightClick(Tree(), {50, 280});  // beside the rows nothing is selected any more: no menu
  m_toolkit.Pump();
  EXPECT_EQ(ProbeNode::TakeLog(), "");
}

// ---- selection both ways --------------------------------------------------------------------------------

TEST_F(WorksTree, OfManyPickedRowsTheFirstComesIntoSight) {
  std::vector<CString> titles;
  for (int i = 10; i < 90; ++i) titles.push_back(L"part" + std::to_wstring(i));
  const auto parts = AddParts(titles);
  Open();
  const auto inSight = [this](const CString& title) {
    CRect line;
    return Tree().GetItemRect(Row(title), line, false) && line.top >= 0 &&
           line.bottom <= Tree().GetClientRect().bottom;
  };
  for (const auto& [first, last] : {std::pair(50U, 5U), {5U, 79U}, {79U, 0U}}) {
    m_doc.Select({{parts[first], parts[30], parts[last]}});
    m_bar.OnSelectGeom(&m_doc);
    EXPECT_EQ(Tree().GetSelectedCount(), 3);
    EXPECT_TRUE(inSight(titles[first])) << first;
    EXPECT_FALSE(inSight(titles[last])) << last;
  }
}

TEST_F(WorksTree, SelectedNodesAreListedTopToBottomAndHiddenOnesOnlyBelowARow) {
  OpenProbes([this](ProbeNode& root) {
    Add(*Add(root, L"a"), L"a1");
    Add(root, L"b");
  });
  Node(L"b")->Select(0);
  Node(L"a")->Select(1);
  std::vector<CQDTreeItem*> nodes;
  EXPECT_EQ(Tree().GetSelectedTreeItems(nodes, 0), 2);  // a1 stands in a collapsed branch
  EXPECT_EQ(nodes.front()->GetTitle() + nodes.back()->GetTitle(), L"ab");
  EXPECT_EQ(Tree().GetSelectedTreeItems(Row(L"root"), nodes), 3);
  m_bar.ResetSelection(&m_doc, 1);
  EXPECT_EQ(Tree().GetSelectedTreeItems(Row(L"root"), nodes), 0);
}

// ---- nodes ----------------------------------------------------------------------------------------------

TEST_F(WorksTree, MovingANodeTakesItsRowAndRefusesWhatCannotBe) {
  OpenProbes([this](ProbeNode& root) {
    Add(*Add(root, L"a"), L"a1");
    Add(root, L"b");
  });
  CQDTreeItem* leaf = Node(L"a1");
  const HTREEITEM before = leaf->GetTreeItemHandle();
  EXPECT_EQ(Node(L"a")->MoveItem(Node(L"b")), 0);  // has children
  EXPECT_EQ(leaf->MoveItem(leaf), 0);
  EXPECT_EQ(leaf->MoveItem(nullptr), 0);
  EXPECT_EQ(Tree().GetQDRootItem()->MoveItem(leaf), 0);
  EXPECT_EQ(leaf->MoveItem(Node(L"b")), 1);
  EXPECT_EQ(State(), "root [a b [a1]]");
  EXPECT_EQ(Tree().NodeOf(leaf->GetTreeItemHandle()), leaf);
  EXPECT_EQ(Tree().NodeOf(before), nullptr);
  EXPECT_EQ(leaf->GetParent(), Node(L"b"));
  Node(L"b")->SetMove(0);  // with all below it
  EXPECT_EQ(leaf->MoveItem(Node(L"a")), 0);
  EXPECT_EQ(State(), "root [a b [a1]]");
  leaf->SetMove(1);
  EXPECT_EQ(leaf->MoveItem(Node(L"a")), 1);
  EXPECT_EQ(State(), "root [a [a1] b]");
  EXPECT_EQ(Node(L"a")->GetChild(0), leaf);
  EXPECT_EQ(Tree().GetRowCount(), 4);
}

TEST_F(WorksTree, ANodeWithoutRowKeepsItsValuesAndTouchesNoOtherRow) {
  OpenProbes([this](ProbeNode& root) { Add(*Add(root, L"a"), L"a1"); });
  CQDTreeItem* node = Node(L"a");
  CQDTreeItem* below = Node(L"a1");
  Tree().EraseHTREEITEM(node, 0);
  EXPECT_EQ(State(), "root");
  EXPECT_FALSE(node->GetTreeItemHandle() || below->GetTreeItemHandle());
  EXPECT_EQ(below->GetTitle(), L"a1");
  EXPECT_EQ(node->ChangeImage(5), 0);
  node->ChangeTitle(L"new");
  node->ChangeID(7);
  node->SetCheck(kUnchecked, 1);
  node->Select(1);
  EXPECT_EQ(node->GetTitle(), L"new");
  EXPECT_EQ(State(), "root");
  auto* orphan = new ProbeNode(&Tree(), node, L"orphan");
  orphan->MakeItem(kInsertLast);  // would land at the top level
  EXPECT_EQ(State(), "root");
  EXPECT_EQ(Tree().GetRowCount(), 1);
}

TEST_F(WorksTree, ANodeThatGetsItsRowBackHearsOfEachLaterChangeOnce) {
  OpenProbes([this](ProbeNode& root) {
    Add(*Add(root, L"a", {9, 5}), L"a1", {9});
    Add(root, L"thief", {2})->onUpdate = [this](ProbeNode&) { Tree().EraseHTREEITEM(Node(L"a"), 0); };
    Add(root, L"late", {2});
  });
  CQDTreeItem* a = Node(L"a");
  CQDTreeItem* a1 = Node(L"a1");
  static_cast<ProbeNode*>(Node(L"late"))->onUpdate = [](ProbeNode& self) { self.onUpdate = nullptr; };
  Notice({{9, 100, 1}, {2, 100, 2}});
  EXPECT_EQ(ProbeNode::TakeLog(), "a(1 ) a1(1 ) thief(2 ) late(2 ) ");
  Notice({{9, 102, 3}, {5, 102, 4}});
  EXPECT_EQ(ProbeNode::TakeLog(), "");
  a->MakeItem(kInsertFirst);
  a1->MakeItem(kInsertLast);
  EXPECT_EQ(State(), "root [a [a1] thief late]");
  Notice({{9, 102, 5}, {5, 102, 6}});
  EXPECT_EQ(ProbeNode::TakeLog(), "a(5 6 ) a1(5 ) ");
  Tree().GetQDRootItem()->DeleteChild(a);
  ProbeNode::TakeLog();
  Notice({{9, 102, 7}});
  EXPECT_EQ(ProbeNode::TakeLog(), "");
}

/// Children come and go at any place; what stands is always told in the order of creation.
TEST_F(WorksTree, ChildrenKeepTheirOrderWhateverGoes) {
  OpenProbes([](ProbeNode&) {});
  CQDTreeItem* root = Tree().GetQDRootItem();
  std::vector<CQDTreeItem*> expected;
  std::mt19937 random(5);
  for (int step = 0; step < 2000; ++step) {
    if (expected.empty() || random() % 100 < (step / 200 % 2 == 0 ? 70U : 30U)) {
      expected.push_back(Add(*root, std::to_wstring(step)));
    } else {
      // Often the last ones, so that places that stand empty before them come to the end.
      const std::size_t at = random() % 3 == 0 ? expected.size() - 1 : random() % expected.size();
      root->DeleteChild(expected[at]);
      expected.erase(expected.begin() + static_cast<long>(at));
    }
    ASSERT_EQ(root->GetChildCount(), static_cast<int>(expected.size())) << step;
    ASSERT_EQ(root->Children(), expected) << step;
    if (step % (step % 400 < 200 ? 7 : 1) != 0 || expected.empty()) continue;
    const auto index = static_cast<int>(random() % expected.size());
    ASSERT_EQ(root->GetChild(index), expected[static_cast<std::size_t>(index)]) << step;
    ASSERT_EQ(root->GetChild(static_cast<int>(expected.size())), nullptr);
    ASSERT_EQ(Tree().GetRowCount(), 1 + static_cast<int>(expected.size()));
  }
}

TEST_F(WorksTree, TypesAreInheritedAndTheRootHasNone) {
  OpenProbes([this](ProbeNode& root) {
    root.SetTreeItemType(5);
    Add(*Add(root, L"a"), L"a1");
    Add(root, L"b");
  });
  Node(L"a")->SetTreeItemType(10);
  EXPECT_EQ(Node(L"a1")->GetTreeItemType(), 10);
  EXPECT_EQ(Node(L"b")->GetTreeItemType(), 0);
  EXPECT_EQ(Tree().GetQDRootItem()->GetTreeItemType(), 0);
  CQDTreeItem* a = Node(L"a");
  a->RegsiterDragEnableType(0);
  EXPECT_EQ(a->IsEnableDragType(0), 0);
  a->RegsiterDragEnableType(9);
  a->RegsiterDragEnableType(8);
  EXPECT_EQ(a->IsEnableDragType(9), 1);
  EXPECT_EQ(a->IsEnableDragType(8), 1);
  EXPECT_EQ(a->IsEnableDragType(10), 0);
}

TEST_F(WorksTree, OnlyARoleAboveNoneIsAPair) {
  OpenProbes([this](ProbeNode& root) { Add(root, L"a"); });
  auto& node = static_cast<ProbeNode&>(*Node(L"a"));
  const auto answers = [&](std::uint32_t role) {
    node.m_pairType = static_cast<PAIR_TYPE>(role);
    return std::array{node.IsPair(), node.IsPairM(), node.IsPairS()};
  };
  EXPECT_EQ(answers(0), (std::array{false, false, false}));
  EXPECT_EQ(answers(1), (std::array{true, false, false}));
  EXPECT_EQ(answers(2), (std::array{true, true, false}));
  EXPECT_EQ(answers(3), (std::array{true, false, true}));
  EXPECT_EQ(answers(0xFFFFFFFF), (std::array{false, false, false})) << "-1 is below none";
}

TEST_F(WorksTree, ImagesChangeOnceAndLanguageReachesEveryNode) {
  OpenProbes([this](ProbeNode& root) { Add(root, L"a"); });
  CQDTreeItem* a = Node(L"a");
  EXPECT_EQ(a->ChangeImage(0), 1);
  EXPECT_EQ(a->ChangeImage(21), 1);
  EXPECT_EQ(Tree().GetItemImage(Row(L"a")), 21);
  m_bar.OnChangeLanguage();
  EXPECT_EQ(ProbeNode::TakeLog(), "retitle root retitle a ");
  m_doc.SetPathName(L"other.step");
  m_bar.ResetFilePath();
  EXPECT_EQ(State(), "other.step [a]");
}

TEST_F(WorksTree, DestroyingThePaneWithTheTreeStandingIsClean) {
  OpenProbes([this](ProbeNode& root) { Add(root, L"a", {9}); });
  m_bar.DestroyWindow();
  EXPECT_EQ(ProbeNode::TakeLog(), "~a ~root ");
  EXPECT_EQ(Tree().RowCount(), 0U);
}

}  // namespace
}  // namespace qd::test

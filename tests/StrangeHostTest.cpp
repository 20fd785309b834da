// Hosts that do what nobody expects: throw, answer in the middle of a question, move nodes by hand, ask twice.

#include <stdexcept>
#include <thread>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/CQDTreeMenu.h"
#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "support/Geometry.h"
#include "support/Probes.h"

namespace qd::test {
namespace {

using namespace workbench;

constexpr unsigned short kType = 77;

TEST_F(WorksTree, AnExceptionOfAHandlerLeavesNothingHalfDone) {
  ProbeNode* a = nullptr;
  ProbeNode* b = nullptr;
  OpenProbes([&](ProbeNode& root) {
    a = Add(root, L"a", {kType});
    b = Add(root, L"b", {kType});
  });
  a->onUpdate = [this](ProbeNode&) {
    Notice({{kType, kChangeAdded, 2}});  // waits until this one is done, and must not be lost with it
    throw std::runtime_error("host");
  };
  EXPECT_THROW(Notice({{kType, kChangeAdded, 1}}), std::runtime_error);
  a->onUpdate = nullptr;
  EXPECT_EQ(ProbeNode::TakeLog(), "a(1 ) ");
  Notice({{kType, kChangeAdded, 3}});
  EXPECT_EQ(ProbeNode::TakeLog().substr(0, 24), "a(2 ) b(1 2 ) a(3 ) b(3 ");
  // Deep walks begin anew after one that was broken off.
  int steps = 0;
  EXPECT_THROW(Tree().RunDeep(a, [] { throw std::runtime_error("host"); }), std::runtime_error);
  Tree().RunDeep(b, [&] { Tree().RunDeep(b, [&steps] { ++steps; }); });
  EXPECT_EQ(steps, 1);
  // Steps too deep wait for the outermost one, and go with it when it is broken off.
  const std::function<void(int)> nest = [&](int deeper) {
    Tree().RunDeep(a, [&nest, &steps, deeper] {
      if (deeper != 0) return nest(deeper - 1);
      ++steps;
      throw std::runtime_error("host");
    });
  };
  EXPECT_THROW(Tree().RunDeep(a, [&] { nest(100), throw std::runtime_error("host"); }), std::runtime_error);
  Tree().RunDeep(b, [] {});
  EXPECT_EQ(steps, 1);
}

TEST_F(WorksTree, ANodeThatDeletesItselfInItsUpdateIsGone) {
  OpenProbes([&](ProbeNode& root) { Add(root, L"a", {kType}); });
  auto* node = static_cast<ProbeNode*>(Node(L"a"));
  node->onUpdate = [](ProbeNode& self) { CQDTreeItem::Destroy(&self); };
  node->PushUpdateInfo({kType, kChangeAdded, 1});
  node->Update();  // outside of any notice
  EXPECT_EQ(State(), "root");
}

TEST_F(WorksTree, AChildStandsInTheListOfOneParentOnly) {
  ProbeNode* a = nullptr;
  ProbeNode* b = nullptr;
  ProbeNode* child = nullptr;
  const auto open = [&] {
    OpenProbes([&](ProbeNode& root) {
      a = Add(root, L"a");
      b = Add(root, L"b");
      new ProbeNode(&Tree(), b, L"first");
      child = new ProbeNode(&Tree(), a, L"child");
    });
  };
  const std::function<void()> moves[] = {
      [&] { a->RegistToChild(child, 0), child->SetParent(b), b->RegistToChild(child, 1); },
      [&] { b->RegistToChild(child, 1), child->SetParent(b), a->RegistToChild(child, 0); },
      [&] { child->SetParent(b), b->RegistToChild(child, 1), a->RegistToChild(child, 0); },
      [&] { b->RegistToChild(child, 1), a->RegistToChild(child, 0), b->RegistToChild(child, 1); }};
  for (const auto& move : moves) {
    open();
    move();
    EXPECT_EQ(a->GetChildCount(), 0);
    EXPECT_EQ(b->GetChildCount(), 2);
    EXPECT_EQ(b->GetChild(1), child);
    EXPECT_EQ(child->GetParent(), b);
    CQDTreeItem::Destroy(child);
    EXPECT_EQ(b->GetChildCount(), 1);
  }
}

TEST_F(WorksTree, ARowIsMadeOnceAndNoMapNamesANodeThatIsGone) {
  OpenProbes([&](ProbeNode& root) { Add(root, L"a", {kType}); });
  CQDTreeItem* node = Node(L"a");
  const HTREEITEM row = node->GetTreeItemHandle();
  node->MakeItem(kInsertLast);
  EXPECT_EQ(node->GetTreeItemHandle(), row);
  EXPECT_EQ(State(), "root [a]");
  Notice({{kType, kChangeAdded, 1}});
  EXPECT_EQ(ProbeNode::TakeLog().find("a(1 1"), std::string::npos);
  Tree().DeleteItem(node);
  EXPECT_EQ(node->GetTitle(), L"a") << "the node stays, with its title";
  EXPECT_EQ(Tree().NodeOf(row), nullptr);
  node->ChangeTitle(L"");
  node->ChangeID(8);
  EXPECT_EQ(node->GetTitle(), L"");
  CQDTreeItem::Destroy(node);
  Notice({{kType, kChangeAdded, 2}});
  EXPECT_EQ(ProbeNode::TakeLog(), "~a ");
}

TEST_F(WorksTree, ATitleIsTheNodesAlsoWhereTheRowShowsItsNumber) {
  OpenProbes([&](ProbeNode& root) { Add(root, L"a"); });
  CQDTreeItem* node = Node(L"a");
  node->ChangeID(7);
  node->ChangeTitle(L"");
  node->ChangeID(8);
  EXPECT_EQ(node->GetTitle(), L"");
  EXPECT_EQ(Tree().GetItemText(node->GetTreeItemHandle(), 0), L"8");
}

TEST(Menus, ASubmenuMayGoBeforeItsMenuIsShown) {
  HeadlessToolkit toolkit;
  CWnd owner;
  owner.Create(nullptr, 0, {0, 0, 10, 10});
  CQDTreeMenu menu;
  {
    CQDTreeMenu sub;
    menu.AddSubMenu(sub, L"more");
    sub.AddMenu(7, L"seven", -1);
    EXPECT_EQ(menu.CheckMenu(7, 1), 1);
  }
  toolkit.AnswerMenu(7);
  EXPECT_EQ(menu.Track({1, 1}, owner), 7U);
  EXPECT_NE(toolkit.ShownMenus().back().find("seven"), std::string::npos);
}

/// In release builds, too.
TEST(StrangeHostDeathTest, IsToldWhatIsWrongWithItsToolkit) {
  CQDTreeListCtrl tree;
  EXPECT_EQ(tree.Create(nullptr, 1, {0, 0, 10, 10}), 0) << "no toolkit yet";
  EXPECT_FALSE(tree.IsCreated());
  EXPECT_DEATH(IToolkit::Instance(), "QD_wrt: there is no toolkit");
  HeadlessToolkit toolkit;
  EXPECT_EQ(tree.Create(nullptr, 1, {0, 0, 10, 10}), 1);
  EXPECT_DEATH(HeadlessToolkit(), "QD_wrt: there is a toolkit already");
  EXPECT_DEATH(std::thread([] { IToolkit::Instance(); }).join(), "QD_wrt: called from a thread");
  tree.DestroyWindow();  // before its toolkit goes
}

/// The buffer is emptied before it is filled; a host that answers with a request must not empty the rows, too.
class AnsweringDocument final : public WorkDocument {
 public:
  void ClearSelectBuffer(int notify) override {
    WorkDocument::ClearSelectBuffer(notify);
    if (bar != nullptr) bar->OnSelectGeom(this);
  }
  CWorksTreeBar* bar = nullptr;
};
TEST(StrangeHost, MayAskForTheSelectionWhileItIsTold) {
  HeadlessToolkit toolkit;
  AnsweringDocument doc;
  ProbeFactory probes;
  probes.make = [](CQDTreeListCtrl* control) {
    auto* root = new ProbeNode(control, nullptr, L"root");
    root->makeChildren = [control](ProbeNode& self) {
      (new ProbeNode(control, &self, L"a"))->MakeItem(kInsertLast);
    };
    return root;
  };
  CWorksTreeBar bar;
  bar.SetDocument(&doc);
  bar.Create(nullptr, 0, {0, 0, 300, 300});
  bar.CreateTreeItems(1, &probes, 1);
  toolkit.Pump();
  doc.bar = &bar;
  CQDTreeListCtrl& tree = bar.GetTreeCtrl();
  tree.SelectCTItem(tree.GetQDRootItem()->Children().front());
  EXPECT_EQ(tree.GetSelectedCount(), 1);
  doc.bar = nullptr;
  bar.DestroyTreeItems();
  ProbeNode::TakeLog();
}

/// Its own database may hold what ours refuses: sets that stand below themselves.
TEST(StrangeHost, IsToldOnceOfMeshSetsThatHaveNoPlace) {
  struct Texts final : CMSGFunction::ITable {
    bool Find(std::string_view, CString& text) const override { return text = L"%s", true; }
  };
  struct Output final : IMessageOutput {
    void Warn(const CString& text) override { said += text + L";"; }
    CString said;
  };
  const Texts texts;
  Output output;
  HeadlessToolkit toolkit;
  WorkDocument doc;
  Database& data = doc.GetDatabase();
  const auto put = [&](iterator itr, iterator parent) {
    data.BeginTransaction(L"act");
    tagTMset record = *data.GetMsetPool().GetAtNU(itr);
    record.parent = parent != 0 ? data.GetMsetPool().GetAtNU(parent)->key : 0;
    static_cast<Pool<tagTMset, DPoolMset>&>(data.GetMsetPool()).Change(itr, record);
    data.CommitTransaction(0);
  };
  const auto add = [&](const wchar_t* name, std::uint32_t parent) {
    tagTMset record;
    record.name = name;
    record.parent = parent;
    return data.GetMsetPool().Add(record);
  };
  data.BeginTransaction(L"act");
  const iterator a = add(L"A", 0);
  const iterator b = add(L"B", data.GetMsetPool().GetAtNU(a)->key);
  add(L"D", 0);
  data.CommitTransaction(0);
  ProbeFactory probes;
  CQDTreeItem* branch = nullptr;
  probes.make = [&branch](CQDTreeListCtrl* control) {
    auto* root = new ProbeNode(control, nullptr, L"root");
    root->makeChildren = [control, &branch](ProbeNode& self) {
      (branch = new CQDTreeItemMesh(control, &self))->MakeItem(kInsertLast);
    };
    return root;
  };
  CWorksTreeBar bar;
  bar.SetDocument(&doc);
  bar.Create(nullptr, 0, {0, 0, 300, 300});
  bar.CreateTreeItems(1, &probes, 1);
  const auto notice = [&](iterator itr) {
    CQDUpdateRecord record;
    record.changes.push_back({kDataMset, kChangeModified, itr});
    bar.UpdateDB(&doc, HintOf(record));
  };
  EXPECT_EQ(output.said, L"");
  put(a, b);
  notice(a);
  EXPECT_EQ(branch->GetAllChildCount(), 1);
  EXPECT_EQ(output.said, L"A, B;");
  notice(b);
  EXPECT_EQ(output.said, L"A, B;") << "once";
  bar.CreateTreeItems(1, &probes, 1);
  EXPECT_EQ(output.said, L"A, B;A, B;") << "in each tree";
  put(a, 0);
  notice(a);
  EXPECT_EQ(branch->GetAllChildCount(), 3);
  bar.DestroyTreeItems();
  ProbeNode::TakeLog();
}

/// Only what was chosen goes: sets and groups that are selected beside it keep their parts.
TEST_F(WorksTree, AGeometrySetMayStandBelowARowOfTheHost) {
  const iterator a = AddSet(L"A");
  const iterator b = AddSet(L"B");
  AddPartTo(a, L"a1");
  OpenProbes([&](ProbeNode& root) { (new CQDTreeItemGset(&Tree(), &root, a))->MakeItem(kInsertLast); });
  const iterator stranger = AddPartTo(b, L"b1");
  EXPECT_EQ(State(), "root [A [IDS_QD_WRT_GEOMSET_SOLID [1] [a1]]]");
  ChangePart(stranger, [&](tagTGeom& part) { part.gset = a; });
  EXPECT_EQ(State(), "root [A [IDS_QD_WRT_GEOMSET_SOLID [2] [a1 b1]]]");
  ChangePart(stranger, [&](tagTGeom& part) { part.gset = b; });
  EXPECT_EQ(State(), "root [A [IDS_QD_WRT_GEOMSET_SOLID [1] [a1]]]");
  Select({L"A"});
  ProbeNode::TakeLog();
  Command(kCommandShowOnly);
  EXPECT_EQ(ProbeNode::TakeLog(), "root:41008 ");
  Select({L"A"});
  Command(kCommandHide);
  EXPECT_EQ(State(), "root [*-A [-IDS_QD_WRT_GEOMSET_SOLID [1] [-a1]]]");
}

TEST_F(GeometryTest, DeleteOfAnEntityLeavesWhatStandsBelowOtherSelectedRows) {
  const iterator first = AddSet(L"first");
  const iterator second = AddSet(L"second");
  const iterator part = AddPartTo(first, L"chosen");
  const iterator other = AddPartTo(second, L"kept");
  Show(kGeometrySetTree);
  Open();
  Select({L"chosen", L"second"});
  Tree().FindGeomNode(part)->OnMenuEvent(kCommandDelete);
  Settle();
  EXPECT_EQ(Data().GetDataType(part), 0);
  EXPECT_NE(Data().GetDataType(other), 0);
}

}  // namespace
}  // namespace qd::test

// Commands of the geometry trees on a model of 100,000 parts in 1,000 sets, on the headless toolkit.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "host/CTransaction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/tree/DocumentNode.h"

namespace qd::workbench {
namespace {

constexpr int kParts = 100'000;
constexpr int kSets = 1'000;

class Model final : private IDatabaseListener {
 public:
  Model() {
    CTransaction transaction(&m_doc.GetDatabase());
    transaction.Begin(L"fill");
    std::vector<iterator> sets;
    for (int i = 0; i < kSets; ++i) {
      tagTGset set;
      set.name = L"Set " + std::to_wstring(i);
      sets.push_back(m_doc.GetDatabase().GetGsetPool().Add(set));
    }
    for (int i = 0; i < kParts; ++i) AddPart(sets[static_cast<std::size_t>(i % kSets)]);
    transaction.Commit(1);
    for (CWorksTreeBar* bar : {&m_parts, &m_sets}) {
      bar->SetDocument(&m_doc);
      bar->Create(nullptr, 0, {0, 0, 400, 800});
    }
    m_parts.CreateTreeItems(kModelTree, &m_factory, 1);
    m_sets.CreateTreeItems(kGeometrySetTree, &m_factory, 0);
    m_doc.GetDatabase().SetListener(this);
    Root(m_parts).Expand(1);
    m_toolkit.Pump();
  }
  iterator AddPart(iterator set) {
    GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
    tagTGeom record;
    record.name = L"Part " + std::to_wstring(pool.NextNumber());
    record.cadItem = pool.NextNumber();
    record.gset = set;
    record.kind = static_cast<TopologyKind>(pool.NextNumber() % 5);
    return pool.Add(std::move(record));
  }
  static CQDTreeItem& Root(CWorksTreeBar& bar) { return *bar.GetTreeCtrl().GetQDRootItem()->GetChild(0); }
  CQDTreeListCtrl& Tree(int tree) { return (tree == 0 ? m_parts : m_sets).GetTreeCtrl(); }
  /// Selects the root of a branch and runs one of its commands, rows of the other tree included.
  void Command(int tree, unsigned command) {
    Root(tree == 0 ? m_parts : m_sets).OnMenuEvent(command);
    TArray<iterator> changed;
    for (const int item : m_doc.GetDisplay().TakeChangedItems()) {
      changed.push_back(m_doc.GetDatabase().GetGeomPool().ItrOfNumber(item));
    }
    for (CWorksTreeBar* bar : {&m_parts, &m_sets}) bar->GetTreeCtrl().RefreshRows(changed);
    m_toolkit.Pump();
  }

  HeadlessToolkit m_toolkit;
  WorkDocument m_doc;
  TreeFactory m_factory;
  CWorksTreeBar m_parts;
  CWorksTreeBar m_sets;

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override {
    m_parts.UpdateDB(&m_doc, HintOf(record));
    m_sets.UpdateDB(&m_doc, HintOf(record));
  }
};

Model& TheModel() {
  static Model model;
  return model;
}

/// Two commands that undo each other, in the model tree (0) or the set tree (1).
void BM_Visibility(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.Command(static_cast<int>(state.range(0)), static_cast<unsigned>(state.range(1)));
    model.Command(static_cast<int>(state.range(0)), static_cast<unsigned>(state.range(2)));
  }
}
BENCHMARK(BM_Visibility)
    ->ArgNames({"tree", "command", "and"})
    ->Args({0, kCommandHideAll, kCommandShowAll})
    ->Args({0, kCommandReverseAll, kCommandReverseAll})
    ->Args({1, kCommandHideAll, kCommandShowAll})
    ->Args({1, kCommandReverseAll, kCommandReverseAll})
    ->Unit(benchmark::kMillisecond);

void BM_ShowOnlyOnePart(benchmark::State& state) {
  Model& model = TheModel();
  model.Tree(0).ResetSelection(1);
  model.Command(0, kCommandShowAll);
  const iterator part = model.m_doc.GetDatabase().GetGeomPool().GetItrList().front();
  for (auto _ : state) {
    model.Tree(0).SetSelection(1, {part});
    model.Tree(0).OnMenuEvent(kCommandShowOnly);
    state.PauseTiming();
    model.Command(0, kCommandShowAll);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_ShowOnlyOnePart)->Unit(benchmark::kMillisecond);

void BM_RandomColours(benchmark::State& state) {
  Model& model = TheModel();
  model.Tree(0).ResetSelection(1);  // all parts
  for (auto _ : state) model.Command(0, kCommandRandomColour);
}
BENCHMARK(BM_RandomColours)->Unit(benchmark::kMillisecond);

void BM_OpenTheMenuWithEverythingSelected(benchmark::State& state) {
  Model& model = TheModel();
  CQDTreeListCtrl& tree = model.Tree(static_cast<int>(state.range(0)));
  CQDTreeItem& root = *tree.GetQDRootItem()->GetChild(0);
  root.Expand(1);
  tree.SelectAll(1);
  // The root's own menu is for it alone; the first part or set asks for the menu of all.
  tree.SetItemState(tree.GetQDRootItem()->GetTreeItemHandle(), 0, kRowSelected);
  tree.SetItemState(root.GetTreeItemHandle(), 0, kRowSelected);
  for (auto _ : state) tree.ShowContextMenu({0, 0});
  state.counters["selected"] = tree.GetSelectedCount();
  tree.ResetSelection(1);
}
BENCHMARK(BM_OpenTheMenuWithEverythingSelected)->ArgName("tree")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// One part comes and goes, in both trees.
void BM_AddAndDeleteOnePart(benchmark::State& state) {
  Model& model = TheModel();
  Database& database = model.m_doc.GetDatabase();
  const iterator set = database.GetGsetPool().GetItrList().front();
  for (auto _ : state) {
    CTransaction transaction(&database);
    transaction.Begin(L"add");
    const iterator part = model.AddPart(set);
    transaction.Commit(1);
    database.GetGeomPool().TR_Del({part});
  }
}
BENCHMARK(BM_AddAndDeleteOnePart)->Unit(benchmark::kMicrosecond)->Iterations(2000);

/// All parts of one set move to another and back.
void BM_MoveASet(benchmark::State& state) {
  Model& model = TheModel();
  Database& database = model.m_doc.GetDatabase();
  const std::vector<iterator> sets = database.GetGsetPool().GetItrList();
  const std::vector<iterator> parts = database.GetGeomPool().PartsOf(sets[7]);
  for (auto _ : state) {
    CTransaction transaction(&database);
    transaction.Begin(L"move");
    database.GetGeomPool().Private_ApplyGset(parts, sets[8]);
    transaction.Commit(1);
    database.Undo();
  }
}
BENCHMARK(BM_MoveASet)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qd::workbench

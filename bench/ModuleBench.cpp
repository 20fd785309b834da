// The works tree over the model database, with a million parts.

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <string>

#include "bench/Screen.h"
#include "host/CTransaction.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/tree/DocumentNode.h"

namespace qd::workbench {
namespace {

constexpr int kRows = 1'000'000;

using bench::HeapInUse;

/// A document with a million parts and its works tree in a window of usual size.
class BigModel final : private IDatabaseListener {
 public:
  BigModel() {
    m_before = HeapInUse();
    CTransaction transaction(&m_doc.GetDatabase());
    transaction.Begin(L"fill");
    for (int i = 0; i < kRows; ++i) {
      tagTGeom record;
      record.name = L"Part " + std::to_wstring(i + 1);
      record.colour = static_cast<COLORREF>(i);
      record.cadItem = i;
      m_doc.GetDatabase().GetGeomPool().Add(std::move(record));
    }
    transaction.Commit(1);
    m_bar.SetDocument(&m_doc);
    m_bar.Create(nullptr, 0, {0, 0, 400, 800});
    m_screen.Show(m_bar);
    const auto start = std::chrono::steady_clock::now();
    m_bar.CreateTreeItems(kModelTree, &m_factory, 1);
    m_build = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    m_after = HeapInUse();
    m_doc.GetDatabase().SetListener(this);
    m_screen.Settle();
  }

  bench::Screen m_screen;
  WorkDocument m_doc;
  TreeFactory m_factory;
  CWorksTreeBar m_bar;
  double m_build = 0;
  std::size_t m_before = 0;
  std::size_t m_after = 0;

  CQDTreeListCtrl& Tree() { return m_bar.GetTreeCtrl(); }
  /// The branch that holds the parts.
  HTREEITEM Geometry() { return Tree().GetParentItem(Tree().FindGeomNode(Parts().front())->GetTreeItemHandle()); }
  std::vector<iterator> Parts() { return m_doc.GetDatabase().GetGeomPool().GetItrList(); }

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override { m_bar.UpdateDB(&m_doc, HintOf(record)); }
};

BigModel& Model() {
  static BigModel model;
  return model;
}

/// Rows through nodes and records: the time of building the tree, and the bytes a row of everything, the database
/// and its undo record included.
void BM_Build(benchmark::State& state) {
  for (auto _ : state) {
    auto model = std::make_unique<BigModel>();
    state.SetIterationTime(model->m_build);
    state.counters["bytes_per_row"] = static_cast<double>(model->m_after - model->m_before) / kRows;
  }
}
BENCHMARK(BM_Build)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_ChangeOneRecord(benchmark::State& state) {
  BigModel& model = Model();
  const std::vector<iterator> parts = model.Parts();
  GeomPool& pool = model.m_doc.GetDatabase().GetGeomPool();
  std::size_t at = 0;
  for (auto _ : state) {
    const iterator itr = parts[(at += 7919) % parts.size()];
    tagTGeom record = *pool.GetAtNU(itr);
    record.name += L"'";
    CTransaction transaction(&model.m_doc.GetDatabase());
    transaction.Begin(L"rename");
    pool.Change(itr, std::move(record));
    transaction.Commit(1);
  }
}
BENCHMARK(BM_ChangeOneRecord)->Unit(benchmark::kMicrosecond)->Iterations(20000);

void BM_DeleteOneRecordAndUndo(benchmark::State& state) {
  BigModel& model = Model();
  const std::vector<iterator> parts = model.Parts();
  std::size_t at = 0;
  for (auto _ : state) {
    model.m_doc.GetDatabase().GetGeomPool().TR_Del({parts[(at += 7919) % parts.size()]});
    model.m_doc.GetDatabase().Undo();
  }
}
BENCHMARK(BM_DeleteOneRecordAndUndo)->Unit(benchmark::kMicrosecond)->Iterations(20000);

void BM_TenThousandChangesInOneNotice(benchmark::State& state) {
  BigModel& model = Model();
  const std::vector<iterator> parts = model.Parts();
  GeomPool& pool = model.m_doc.GetDatabase().GetGeomPool();
  for (auto _ : state) {
    CTransaction transaction(&model.m_doc.GetDatabase());
    transaction.Begin(L"rename");
    for (std::size_t i = 0; i < 10'000; ++i) {
      tagTGeom record = *pool.GetAtNU(parts[i * 97]);
      record.colour ^= 0xFFU;
      pool.Change(parts[i * 97], std::move(record));
    }
    transaction.Commit(1);
  }
}
BENCHMARK(BM_TenThousandChangesInOneNotice)->Unit(benchmark::kMillisecond);

void BM_ExpandAndCollapseABranch(benchmark::State& state) {
  BigModel& model = Model();
  const HTREEITEM branch = model.Geometry();
  for (auto _ : state) model.Tree().Expand(branch, ExpandAction::Toggle);
  if (!model.Tree().IsExpanded(branch)) model.Tree().Expand(branch, ExpandAction::Expand);
}
BENCHMARK(BM_ExpandAndCollapseABranch)->Unit(benchmark::kMicrosecond);

void BM_PaintAScreenAllSelected(benchmark::State& state) {
  BigModel& model = Model();
  model.Tree().SelectAll(1);
  std::size_t at = 0;
  for (auto _ : state) {
    model.Tree().ScrollTo((at += 77'777) % kRows);
    model.m_screen.Paint(model.Tree());
  }
  model.Tree().ResetSelection(1);
}
BENCHMARK(BM_PaintAScreenAllSelected)->Unit(benchmark::kMicrosecond);

void BM_SelectAllAndClear(benchmark::State& state) {
  BigModel& model = Model();
  for (auto _ : state) {
    model.Tree().SelectAll(1);
    model.Tree().ResetSelection(1);
  }
}
BENCHMARK(BM_SelectAllAndClear)->Unit(benchmark::kMillisecond);

void BM_GetTenSelected(benchmark::State& state) {
  BigModel& model = Model();
  TArray<iterator> ten;
  for (std::size_t i = 0; i < 10; ++i) ten.push_back(model.Parts()[i * 99'991]);
  model.Tree().SetSelection(1, ten);
  for (auto _ : state) benchmark::DoNotOptimize(model.Tree().GetSelectedItems());
  model.Tree().ResetSelection(1);
}
BENCHMARK(BM_GetTenSelected)->Unit(benchmark::kMicrosecond);

void BM_InvertSelection(benchmark::State& state) {
  BigModel& model = Model();
  for (auto _ : state) model.Tree().InvertSelection();
  model.Tree().ResetSelection(1);
}
BENCHMARK(BM_InvertSelection)->Unit(benchmark::kMillisecond);

void BM_SelectARangeOfAllRows(benchmark::State& state) {
  BigModel& model = Model();
  const HTREEITEM branch = model.Geometry();
  const HTREEITEM first = model.Tree().GetChildItem(branch);
  HTREEITEM last = first;
  for (HTREEITEM next = first; next; next = model.Tree().GetNextSiblingItem(next)) last = next;
  for (auto _ : state) model.Tree().SelectRange(first, last, 1);
  model.Tree().ResetSelection(1);
}
BENCHMARK(BM_SelectARangeOfAllRows)->Unit(benchmark::kMillisecond);

/// A rubber band whose moving edge jumps over `rows` rows, with every second row selected before.
void BM_MoveARubberBand(benchmark::State& state) {
  RowTree rows;
  for (int i = 0; i < kRows; ++i) rows.Insert({}, kInsertLast, 0, 0, 0);
  for (std::size_t i = 0; i < kRows; i += 2) rows.SelectVisible(i, i, true);
  BandSelection band(rows.Selected(true), true);
  const auto jump = static_cast<std::size_t>(state.range(0));
  band.Update(rows, 1, {{100, 200}});
  std::size_t end = 200;
  for (auto _ : state) {
    end = end + jump < kRows ? end + jump : 200;
    band.Update(rows, 1, {{100, end}});
  }
}
BENCHMARK(BM_MoveARubberBand)->ArgName("rows")->Arg(1)->Arg(50)->Arg(1000)->Unit(benchmark::kMicrosecond);

/// Type-ahead that finds nothing looks at every row.
void BM_TypeATitleThatIsNotThere(benchmark::State& state) {
  BigModel& model = Model();
  for (auto _ : state) {
    model.m_screen.Type(model.Tree(), L"z");
  }
}
BENCHMARK(BM_TypeATitleThatIsNotThere)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_SortAllByName(benchmark::State& state) {
  BigModel& model = Model();
  const HTREEITEM branch = model.Geometry();
  for (auto _ : state) {
    model.Tree().SortItems(0, static_cast<int>(state.range(0)), branch);
    state.PauseTiming();
    // Shuffle with a sort by another order, so that every round has work to do.
    model.Tree().SortItems(0, 1 - static_cast<int>(state.range(0)), branch);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_SortAllByName)->ArgName("by_name")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_ShowAndHideAll(benchmark::State& state) {
  BigModel& model = Model();
  const HTREEITEM root = model.Tree().GetRootItem();
  CQDTreeItem* document = model.Tree().NodeOf(root);
  for (auto _ : state) {
    document->OnMenuEvent(41008);
    document->OnMenuEvent(41007);
  }
}
BENCHMARK(BM_ShowAndHideAll)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qd::workbench

// Filtering a tree list of a million rows in a window: until the tree is right, and the longest the window waits.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "benchmarks/Proof.h"
#include "benchmarks/Screen.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {
namespace {

using Clock = std::chrono::steady_clock;

enum Shape { kThousands, kFlat, kDeep };

/// One of a thousand rows is a "Flange", every other one is not.
CString TitleOf(int row) {
  return (row % 1000 == 7 ? L"Flange " : row % 2 == 0 ? L"Bolt M8 " : L"Part ") + std::to_wstring(row);
}

/// A tree list with all branches closed, in a window of usual size.
struct Model {
  bench::Screen screen;
  CWnd parent;
  CTreeListCtrl tree;
  std::vector<HTREEITEM> rows;
  std::size_t heap = 0;

  explicit Model(std::int64_t shape) {
    parent.Create(nullptr, 0, {0, 0, 400, 800});
    tree.GetHeader().Create(&parent, 1, {0, 0, 400, 20});
    tree.Create(&parent, 2, {0, 20, 400, 800});
    tree.InsertColumn(0, L"Name", 0, 300, 0);
    screen.Show(parent);
    const int count = bench::RowsOf(1'000'000);
    HTREEITEM above;
    for (int row = 0; row < count; ++row) {
      if (shape == kThousands && row % 1000 == 0) above = {};
      if (shape == kDeep && row % 10'000 == 0) above = {};
      rows.push_back(tree.InsertItem(TitleOf(row), 0, 0, above, kInsertLast));
      if (shape == kDeep || (shape == kThousands && row % 1000 == 0)) above = rows.back();
    }
    screen.Settle();
    heap = bench::HeapInUse();
  }
  std::size_t CountOf(const CString& word) const {
    return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), [&](HTREEITEM row) {
      return tree.GetRecord(row)->View(0).find(word) != std::wstring_view::npos;
    }));
  }
  /// Types a query; returns the longest time that the window did nothing else, in milliseconds.
  double Filter(const CString& query) {
    Clock::duration longest{};
    const auto time = [&longest](const auto& act) {
      const auto begin = Clock::now();
      act();
      longest = std::max(longest, Clock::now() - begin);
    };
    time([&] { static_cast<void>(tree.GetFinder().Search(RowFinder::Mode::Filter, query)); });
    while (!tree.GetFinder().IsDone()) time([&] { screen.Wait(); });
    time([&] { screen.Settle(); });
    return std::chrono::duration<double, std::milli>(longest).count();
  }
};

std::string TextOf(double longest) {
  return "longest pause " + std::to_string(longest) + " ms";
}

Model& ModelOf(std::int64_t shape) {
  static std::unique_ptr<Model> model;
  static std::int64_t made = -1;
  if (std::exchange(made, shape) != shape || model == nullptr) {
    model.reset();
    model = std::make_unique<Model>(shape);
  }
  return *model;
}

void Shapes(benchmark::internal::Benchmark* bench) {
  bench->ArgName("shape")->Arg(kThousands)->Arg(kFlat)->Arg(kDeep)->Unit(benchmark::kMillisecond);
}

/// The field is open, as when somebody types: titles are folded already.
void BM_FilterFirstKey(benchmark::State& state) {
  Model& model = ModelOf(state.range(0));
  model.tree.GetFinder().Prepare(true);
  while (!model.tree.GetFinder().IsPrepared()) model.screen.Wait();
  double longest = 0;
  std::size_t found = 0;
  for (auto _ : state) {
    longest = std::max(longest, model.Filter(L"f"));
    found = model.tree.GetFinder().GetMatchCount();
    state.PauseTiming();
    model.tree.GetFinder().Clear();
    model.screen.Settle();
    state.ResumeTiming();
  }
  state.SetLabel(TextOf(longest));
  model.tree.GetFinder().Prepare(false);
  bench::Prove(state, found == model.CountOf(L"Flange"), "other rows were found");
}
BENCHMARK(BM_FilterFirstKey)->Apply(Shapes);

/// Nothing is ready: the first query takes the titles in.
void BM_FilterFromNothing(benchmark::State& state) {
  Model& model = ModelOf(state.range(0));
  double longest = 0;
  std::size_t held = 0;
  const std::size_t before = bench::HeapInUse();
  for (auto _ : state) {
    longest = std::max(longest, model.Filter(L"bolt"));
    held = bench::HeapInUse();
    state.PauseTiming();
    bench::Prove(state, model.tree.VisibleRowCount() >= model.CountOf(L"Bolt"), "rows are missing");
    model.tree.GetFinder().Clear();
    model.screen.Settle();
    state.ResumeTiming();
  }
  const auto rows = static_cast<double>(model.rows.size());
  const auto bytes = [&](std::size_t heap) {
    return std::to_string((static_cast<double>(heap) - static_cast<double>(before)) / rows);
  };
  state.SetLabel(TextOf(longest) + ", bytes a row " + bytes(held) + ", afterwards " + bytes(bench::HeapInUse()));
}
BENCHMARK(BM_FilterFromNothing)->Apply(Shapes);

/// One key more than "bolt", which half of all rows match.
void BM_FilterNextKey(benchmark::State& state) {
  Model& model = ModelOf(state.range(0));
  double longest = 0;
  std::size_t found = 0;
  for (auto _ : state) {
    state.PauseTiming();
    model.Filter(L"bolt");
    state.ResumeTiming();
    longest = std::max(longest, model.Filter(L"bolt m"));
    found = model.tree.GetFinder().GetMatchCount();
  }
  state.SetLabel(TextOf(longest));
  model.tree.GetFinder().Clear();
  bench::Prove(state, found == model.CountOf(L"Bolt"), "other rows were found");
}
BENCHMARK(BM_FilterNextKey)->Apply(Shapes);

void BM_FilterClear(benchmark::State& state) {
  Model& model = ModelOf(state.range(0));
  const std::size_t before = model.tree.VisibleRowCount();
  for (auto _ : state) {
    state.PauseTiming();
    model.Filter(L"bolt");
    state.ResumeTiming();
    model.tree.GetFinder().Clear();
    model.screen.Settle();
  }
  bench::Prove(state, model.tree.VisibleRowCount() == before, "not all came back");
}
BENCHMARK(BM_FilterClear)->Apply(Shapes);

/// Everything is selected, which a filter takes most of away and the end of it brings back.
void BM_FilterSelected(benchmark::State& state) {
  Model& model = ModelOf(state.range(0));
  model.tree.SelectAll(1);
  const std::size_t before = model.tree.GetSelectedRowCount();
  double filter = 0;
  double clear = 0;
  std::size_t with = 0;
  for (auto _ : state) {
    filter = std::max(filter, model.Filter(L"flange"));
    with = model.tree.GetSelectedRowCount();
    const auto begin = Clock::now();
    model.tree.GetFinder().Clear();
    clear = std::max(clear, std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    model.screen.Settle();
  }
  state.SetLabel(TextOf(filter) + ", to clear " + std::to_string(clear) + " ms");
  // All branches are closed: what is selected are the rows at the top, and each branch has a match.
  const std::size_t stay = state.range(0) == kFlat ? model.CountOf(L"Flange") : before;
  const bool right = with == stay && model.tree.GetSelectedRowCount() == before;
  model.tree.ClearAllSelected();
  bench::Prove(state, right, "other rows are selected");
}
BENCHMARK(BM_FilterSelected)->Apply(Shapes);

/// All matches are selected, half of all rows.
void BM_FilterSelectMatches(benchmark::State& state) {
  Model& model = ModelOf(state.range(0));
  model.Filter(L"bolt");
  for (auto _ : state) {
    model.tree.GetFinder().SelectMatches();
    model.screen.Settle();
  }
  const std::size_t selected = model.tree.GetSelectedRowCount();
  model.tree.ClearAllSelected();
  model.tree.GetFinder().Clear();
  bench::Prove(state, selected == model.CountOf(L"Bolt"), "other rows are selected");
}
BENCHMARK(BM_FilterSelectMatches)->Apply(Shapes);

/// A row gets a title that matches, then its own again.
void BM_FilterFollowChange(benchmark::State& state) {
  Model& model = ModelOf(state.range(0));
  model.Filter(L"flange");
  const std::size_t before = model.tree.GetFinder().GetMatchCount();
  const HTREEITEM row = model.rows[model.rows.size() / 2];
  const CString title = model.tree.GetItemText(row, 0);
  std::size_t with = 0;
  for (auto _ : state) {
    model.tree.SetItemText(row, 0, L"flange");
    model.tree.GetFinder().FollowChanges();
    with = model.tree.GetFinder().GetMatchCount();
    model.tree.SetItemText(row, 0, title);
    model.tree.GetFinder().FollowChanges();
  }
  const bool right = with == before + 1 && model.tree.GetFinder().GetMatchCount() == before;
  model.tree.GetFinder().Clear();
  bench::Prove(state, right, "the row did not enter and leave");
}
BENCHMARK(BM_FilterFollowChange)
    ->ArgName("shape")
    ->Arg(kThousands)
    ->Arg(kFlat)
    ->Arg(kDeep)
    ->Unit(benchmark::kMicrosecond);

/// A screen of rows, with a filter (1) and without.
void BM_FilterPaint(benchmark::State& state) {
  Model& model = ModelOf(kThousands);
  if (state.range(0) != 0) {
    model.Filter(L"m8");
  } else {
    for (HTREEITEM row = model.tree.GetRootItem(); row; row = model.tree.GetNextSiblingItem(row)) {
      model.tree.Expand(row, ExpandAction::Expand);
    }
  }
  model.tree.ScrollTo(model.tree.VisibleRowCount() / 2);
  model.screen.Settle();
  bool drew = false;
  for (auto _ : state) drew = model.screen.Paint(model.tree);
  model.tree.GetFinder().Clear();
  bench::Prove(state, drew, "nothing was painted");
}
BENCHMARK(BM_FilterPaint)->ArgName("filtered")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qd

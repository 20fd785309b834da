// The row tree alone: finding rows and positions in every shape, expanding and collapsing.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <vector>

#include "platform/tree/RowTree.h"

namespace qd {
namespace {

enum Shape : int { kFlat, kThousands, kHundreds, kChain };

struct Sample {
  RowTree tree;
  std::vector<HTREEITEM> rows;
};

void AddLevel(Sample& sample, HTREEITEM parent, int levels, int width) {
  for (int i = 0; i < width; ++i) {
    const HTREEITEM row = sample.tree.Insert(parent, kInsertLast, 0, 0, 0);
    sample.rows.push_back(row);
    if (levels > 1) AddLevel(sample, row, levels - 1, width);
  }
}

/// Built once per shape, all expanded.
Sample& SampleOf(int shape) {
  static std::array<Sample, 4> samples;
  Sample& sample = samples[static_cast<std::size_t>(shape)];
  if (!sample.rows.empty()) return sample;
  if (shape == kFlat) AddLevel(sample, {}, 1, 1'000'000);
  if (shape == kThousands) AddLevel(sample, {}, 2, 1000);
  if (shape == kHundreds) AddLevel(sample, {}, 3, 100);
  if (shape == kChain) {
    HTREEITEM row;
    for (int i = 0; i < 100'000; ++i) sample.rows.push_back(row = sample.tree.Insert(row, kInsertLast, 0, 0, 0));
  }
  for (const HTREEITEM row : sample.rows) sample.tree.SetExpanded(row, true);
  return sample;
}

/// Times single calls and reports their median, in nanoseconds.
template <typename Call>
void MedianOf(benchmark::State& state, const Call& call) {
  Sample& sample = SampleOf(static_cast<int>(state.range(0)));
  std::mt19937 random(7);
  std::vector<double> times;
  for (auto _ : state) {
    const HTREEITEM row = sample.rows[random() % sample.rows.size()];
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(call(sample.tree, row));
    times.push_back(std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count());
  }
  std::nth_element(times.begin(), times.begin() + static_cast<long>(times.size() / 2), times.end());
  state.counters["median_ns"] = times[times.size() / 2];
}

void BM_Position(benchmark::State& state) {
  MedianOf(state, [](RowTree& tree, HTREEITEM row) { return tree.Position(row); });
}
void BM_RowAt(benchmark::State& state) {
  std::mt19937 random(3);
  MedianOf(state, [&random](RowTree& tree, HTREEITEM) { return tree.RowAt(random() % tree.VisibleCount()); });
}
void BM_NextVisible(benchmark::State& state) {
  MedianOf(state, [](RowTree& tree, HTREEITEM row) { return tree.NextVisible(row); });
}
void BM_PreviousVisible(benchmark::State& state) {
  MedianOf(state, [](RowTree& tree, HTREEITEM row) { return tree.PreviousVisible(row); });
}
void BM_ToggleBranch(benchmark::State& state) {
  MedianOf(state, [](RowTree& tree, HTREEITEM row) { return tree.SetExpanded(row, !tree.IsExpanded(row)); });
  Sample& sample = SampleOf(static_cast<int>(state.range(0)));
  for (const HTREEITEM row : sample.rows) sample.tree.SetExpanded(row, true);
}
void BM_InsertAndErase(benchmark::State& state) {
  MedianOf(state, [](RowTree& tree, HTREEITEM row) {
    const HTREEITEM fresh = tree.Insert(tree.Parent(row), row, 0, 0, 0);
    return tree.Erase(fresh, nullptr);
  });
}
void BM_SelectAllAndClear(benchmark::State& state) {
  RowTree& tree = SampleOf(static_cast<int>(state.range(0))).tree;
  for (auto _ : state) {
    tree.SelectVisible(0, tree.VisibleCount() - 1, true);
    tree.ClearSelection();
  }
}
/// Swaps two branches of half a million rows each.
void BM_SwapHalves(benchmark::State& state) {
  RowTree tree;
  for (int branch = 0; branch < 2; ++branch) {
    const HTREEITEM top = tree.Insert({}, kInsertLast, 0, 0, static_cast<std::uint64_t>(branch));
    for (int i = 0; i < 500'000; ++i) tree.Insert(top, kInsertLast, 0, 0, 0);
  }
  for (auto _ : state) tree.ReorderChildren({}, {tree.NextSibling(tree.First()), tree.First()});
}

#define QD_SHAPES Arg(kFlat)->Arg(kThousands)->Arg(kHundreds)->Arg(kChain)->ArgName("shape")
BENCHMARK(BM_Position)->QD_SHAPES;
BENCHMARK(BM_RowAt)->QD_SHAPES;
BENCHMARK(BM_NextVisible)->QD_SHAPES;
BENCHMARK(BM_PreviousVisible)->QD_SHAPES;
BENCHMARK(BM_ToggleBranch)->QD_SHAPES;
BENCHMARK(BM_InsertAndErase)->QD_SHAPES;
BENCHMARK(BM_SelectAllAndClear)->QD_SHAPES->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SwapHalves)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qd

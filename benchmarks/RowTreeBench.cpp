// The row tree alone: finding rows and positions in every shape, expanding and collapsing.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <vector>

#include "benchmarks/Proof.h"
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
  if (shape == kFlat) AddLevel(sample, {}, 1, bench::RowsOf(1'000'000));
  if (shape == kThousands) AddLevel(sample, {}, 2, bench::RowsOf(1'000'000) / 1000);
  if (shape == kHundreds) AddLevel(sample, {}, 3, std::max(10, bench::RowsOf(100)));
  if (shape == kChain) {
    HTREEITEM row;
    for (int i = 0; i < bench::RowsOf(100'000); ++i)
      sample.rows.push_back(row = sample.tree.Insert(row, kInsertLast, 0, 0, 0));
  }
  for (const HTREEITEM row : sample.rows) sample.tree.SetExpanded(row, true);
  return sample;
}

/// Times single calls on rows and reports their median; `isRight` looks at each answer.
template <typename Call, typename IsRight>
void MedianOf(benchmark::State& state, const Call& call, const IsRight& isRight) {
  Sample& sample = SampleOf(static_cast<int>(state.range(0)));
  std::mt19937 random(7);
  std::vector<double> times;
  bool right = true;
  for (auto _ : state) {
    const HTREEITEM row = sample.rows[random() % sample.rows.size()];
    const auto start = std::chrono::steady_clock::now();
    const auto answer = call(sample.tree, row);
    times.push_back(std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count());
    state.SetIterationTime(times.back() * 1e-9);
    right = right && isRight(sample.tree, row, answer);
  }
  std::nth_element(times.begin(), times.begin() + static_cast<long>(times.size() / 2), times.end());
  state.SetLabel("median " + std::to_string(static_cast<int>(times[times.size() / 2])) + " ns");
  bench::Prove(state, right, "an answer was wrong");
}

void BM_Position(benchmark::State& state) {
  MedianOf(
      state, [](RowTree& tree, HTREEITEM row) { return tree.Position(row); },
      [](RowTree& tree, HTREEITEM row, std::size_t position) { return tree.RowAt(position) == row; });
}
void BM_RowAt(benchmark::State& state) {
  std::mt19937 random(3);
  std::size_t asked = 0;
  MedianOf(
      state, [&](RowTree& tree, HTREEITEM) { return tree.RowAt(asked = random() % tree.VisibleCount()); },
      [&](RowTree& tree, HTREEITEM, HTREEITEM found) { return tree.Position(found) == asked; });
}
void BM_NextVisible(benchmark::State& state) {
  MedianOf(
      state, [](RowTree& tree, HTREEITEM row) { return tree.NextVisible(row); },
      [](RowTree& tree, HTREEITEM row, HTREEITEM next) {
        // Everything is expanded, so the first child comes next, or the next sibling of the row or of one above.
        HTREEITEM expected = tree.FirstChild(row);
        for (; !expected && row; row = tree.Parent(row)) expected = tree.NextSibling(row);
        return next == expected;
      });
}
void BM_PreviousVisible(benchmark::State& state) {
  MedianOf(
      state, [](RowTree& tree, HTREEITEM row) { return tree.PreviousVisible(row); },
      [](RowTree& tree, HTREEITEM row, HTREEITEM previous) {
        HTREEITEM expected = tree.PreviousSibling(row);
        if (!expected) return previous == tree.Parent(row);
        while (tree.LastChild(expected)) expected = tree.LastChild(expected);
        return previous == expected;
      });
}
void BM_ToggleBranch(benchmark::State& state) {
  std::size_t visible = 0;
  MedianOf(
      state,
      [&](RowTree& tree, HTREEITEM row) {
        visible = tree.VisibleCount();
        return tree.SetExpanded(row, !tree.IsExpanded(row));
      },
      [&](RowTree& tree, HTREEITEM row, bool changed) {
        const bool has = tree.ChildCount(row) != 0;
        return changed == has && (!has || !tree.IsVisible(row) || tree.VisibleCount() != visible);
      });
  Sample& sample = SampleOf(static_cast<int>(state.range(0)));
  for (const HTREEITEM row : sample.rows) sample.tree.SetExpanded(row, true);
}
void BM_InsertAndErase(benchmark::State& state) {
  HTREEITEM fresh;
  std::size_t count = 0;
  MedianOf(
      state,
      [&](RowTree& tree, HTREEITEM row) {
        fresh = tree.Insert(tree.Parent(row), row, 0, 0, 0);
        count = tree.Count();
        return tree.Erase(fresh, nullptr);
      },
      [&](RowTree& tree, HTREEITEM, std::size_t erased) {
        return erased == 1 && tree.Count() + 1 == count && fresh && !tree.Contains(fresh);
      });
}
void BM_SelectAllAndClear(benchmark::State& state) {
  RowTree& tree = SampleOf(static_cast<int>(state.range(0))).tree;
  std::size_t selected = 0;
  for (auto _ : state) {
    tree.SelectVisible(0, tree.VisibleCount() - 1, true);
    selected += tree.SelectedCount();
    tree.ClearSelection();
  }
  bench::Prove(state, selected == bench::Rounds(state) * tree.Count() && tree.SelectedCount() == 0,
               "not all rows were selected, or not all cleared");
}
/// Swaps two branches of half a million rows each.
void BM_SwapHalves(benchmark::State& state) {
  RowTree tree;
  for (int branch = 0; branch < 2; ++branch) {
    const HTREEITEM top = tree.Insert({}, kInsertLast, 0, 0, static_cast<std::uint64_t>(branch));
    for (int i = 0; i < bench::RowsOf(500'000); ++i) tree.Insert(top, kInsertLast, 0, 0, 0);
  }
  std::size_t second = 0;
  for (auto _ : state) {
    tree.ReorderChildren({}, {tree.NextSibling(tree.First()), tree.First()});
    second += tree.Word(tree.First());
  }
  bench::Prove(state, second == (bench::Rounds(state) + 1) / 2, "the branches have not changed places");
}

#define QD_SHAPES Arg(kFlat)->Arg(kThousands)->Arg(kHundreds)->Arg(kChain)->ArgName("shape")
BENCHMARK(BM_Position)->QD_SHAPES->UseManualTime();
BENCHMARK(BM_RowAt)->QD_SHAPES->UseManualTime();
BENCHMARK(BM_NextVisible)->QD_SHAPES->UseManualTime();
BENCHMARK(BM_PreviousVisible)->QD_SHAPES->UseManualTime();
BENCHMARK(BM_ToggleBranch)->QD_SHAPES->UseManualTime();
BENCHMARK(BM_InsertAndErase)->QD_SHAPES->UseManualTime();
BENCHMARK(BM_SelectAllAndClear)->QD_SHAPES->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SwapHalves)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qd

// Names of many rows: renamed at once, and sorted with and without accents.

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "benchmarks/OpenModel.h"
#include "benchmarks/Proof.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/core/RenameDialog.h"

namespace qd {
namespace {

using bench::Prove;

const int kRows = bench::RowsOf(100'000);

/// All rows looked at, which the dialog does in slices, by a rule with an expression.
void BM_LookAtNewNames(benchmark::State& state) {
  const auto read = [](std::size_t row) -> RenamePlan::Row {
    return {L"Bolt M8 " + std::to_wstring(row), static_cast<std::int64_t>(row), {1, true}};
  };
  RenamePlan plan(static_cast<std::size_t>(kRows), read, [](std::size_t, const CString&) { return false; });
  const NamingRule rule{.pattern = L"{name}-{n:06}", .sought = L"/m[0-9]+ /", .replacement = L"M10x"};
  QueryFault fault;
  for (auto _ : state) {
    plan.SetRule(rule, fault);
    plan.Check([] { return false; });
  }
  Prove(state, plan.RenamedCount() == plan.RowCount() && plan.NewNameOf(1) == L"Bolt M10x1-000002",
        "not all rows were looked at");
}
BENCHMARK(BM_LookAtNewNames)->Unit(benchmark::kMillisecond);

/// From the key until all rows of the tree have their names; the label says what passes until the dialog asks, and
/// from its end on, in one stretch. Between them the dialog works in slices.
void BM_RenameManyParts(benchmark::State& state) {
  using Clock = std::chrono::steady_clock;
  const int count = bench::RowsOf(static_cast<int>(state.range(0)));
  bench::OpenModel model([count](workbench::Database& data) {
    for (int i = 0; i < count; ++i) {
      tagTGeom record;
      record.name = L"Part " + std::to_wstring(i);
      data.GetGeomPool().Add(std::move(record));
    }
  });
  auto& toolkit = static_cast<HeadlessToolkit&>(IToolkit::Instance());
  CQDTreeListCtrl& tree = model.Tree();
  tree.SetSelection(0, model.Data().GetGeomPool().GetItrList());
  model.Settle();
  bool other = false;
  Clock::duration asking{};
  Clock::duration acting{};
  for (auto _ : state) {
    other = !other;
    const Clock::time_point start = Clock::now();
    Clock::time_point asked;
    Clock::time_point told;
    // The model hears of the names as soon as the dialog has ended.
    toolkit.WorkDialog(
        {{RenameDialog::kPattern, other ? L"Other {n}" : L"Part {n}", [&] { asked = Clock::now(); }},
         {.id = kDialogOk}});
    model.Data().SetWriteGuard([&told](iterator) {
      if (told == Clock::time_point()) told = Clock::now();
      return true;
    });
    tree.RenameSelected();
    model.Data().SetWriteGuard(nullptr);
    acting += Clock::now() - told;
    asking += asked - start;
    model.Settle();
  }
  const auto perRun = [&state](Clock::duration all) {
    const double milliseconds = std::chrono::duration<double, std::milli>(all).count();
    return std::to_string(milliseconds / static_cast<double>(state.iterations())) + " ms";
  };
  state.SetLabel("asked after " + perRun(asking) + ", renamed in " + perRun(acting));
  const CString name = other ? L"Other 1" : L"Part 1";
  Prove(state, model.Data().GetGeomPool().GetAtNU(model.Data().GetGeomPool().GetItrList().front())->name == name,
        "the parts were not renamed");
}
BENCHMARK(BM_RenameManyParts)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

/// Names as people write them, in disorder; each second one with an accent, or none.
void BM_SortNames(benchmark::State& state) {
  const bool accents = state.range(0) != 0;
  bench::OpenModel model([accents](workbench::Database& data) {
    std::uint32_t random = 1;
    for (int i = 0; i < kRows; ++i) {
      tagTGeom record;
      record.name = accents && i % 2 != 0 ? L"Tr\u00E4ger " : L"Halter ";
      for (int letter = 0; letter < 8; ++letter) {
        random = random * 1664525U + 1013904223U;
        record.name += static_cast<wchar_t>(L'a' + (random >> 16U) % 26U);
      }
      data.GetGeomPool().Add(std::move(record));
    }
  });
  CQDTreeListCtrl& tree = model.Tree();
  const HTREEITEM branch =
      tree.FindNode(model.Data().GetGeomPool().GetItrList().front())->GetParent()->GetTreeItemHandle();
  for (auto _ : state) {
    state.PauseTiming();
    tree.SortItems(1, 0, branch);  // by their IDs
    state.ResumeTiming();
    tree.SortItems(0, 1, branch);
  }
  CString before;
  bool sorted = true;
  for (HTREEITEM row = tree.GetChildItem(branch); row; row = tree.GetNextSiblingItem(row)) {
    const CString title = tree.GetItemText(row, 0);
    sorted = sorted && CompareFolded(before, title) <= 0;
    before = title;
  }
  Prove(state, sorted, "the rows do not stand in order");
}
BENCHMARK(BM_SortNames)->ArgName("accents")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
}  // namespace qd

// The works tree over the model database, with a million parts.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

#include "benchmarks/OpenModel.h"
#include "benchmarks/Proof.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"

namespace qd::workbench {
namespace {

using bench::HeapInUse;
using bench::OpenModel;
using bench::Prove;

const int kRows = bench::RowsOf(1'000'000);

/// Parts named in another order than they were made in; the last one's name begins like no other.
void FillWithParts(Database& data) {
  for (int i = 0; i < kRows; ++i) {
    tagTGeom record;
    record.name = i + 1 < kRows ? L"Part " + std::to_wstring((i + 1) * 7919LL % kRows) : L"Zone";
    record.colour = static_cast<COLORREF>(i);
    data.GetGeomPool().Add(std::move(record));
  }
}

/// A document with a million parts and its works tree in a window of usual size.
struct BigModel {
  std::size_t before = HeapInUse();
  std::chrono::steady_clock::time_point filled;
  OpenModel model{[this](Database& data) {
    FillWithParts(data);
    filled = std::chrono::steady_clock::now();
  }};
  double build = std::chrono::duration<double>(std::chrono::steady_clock::now() - filled).count();
  std::size_t after = HeapInUse();
  std::vector<iterator> parts = model.Data().GetGeomPool().GetItrList();

  BigModel() { model.Settle(); }
  CQDTreeListCtrl& Tree() { return model.Tree(); }
  /// The row of the branch that holds the parts.
  HTREEITEM Geometry() { return bench::BranchOf<CQDTreeItemGeom>(Tree()).GetTreeItemHandle(); }
  HTREEITEM RowOf(iterator part) {
    const CQDTreeItem* node = Tree().FindGeomNode(part);
    return node != nullptr ? node->GetTreeItemHandle() : HTREEITEM{};
  }
  const tagTGeom& Part(iterator part) { return *model.Data().GetGeomPool().GetAtNU(part); }
  /// Whether each part has a row with its name and colour, and no other row stands there.
  bool RowsAreRight() {
    if (Tree().GetChildCount(Geometry()) != static_cast<int>(parts.size())) return false;
    return std::all_of(parts.begin(), parts.end(), [this](iterator part) {
      const HTREEITEM row = RowOf(part);
      return row && Tree().GetItemText(row, 0) == Part(part).name &&
             Tree().GetRecord(row)->GetColor() == Part(part).colour;
    });
  }
};

BigModel& Model() {
  static BigModel model;
  return model;
}

/// Rows through nodes and records: the time of building the tree, and the bytes a row of everything, the database
/// and its undo record included.
void BM_Build(benchmark::State& state) {
  for (auto _ : state) {
    auto big = std::make_unique<BigModel>();
    state.SetIterationTime(big->build);
    state.SetLabel(std::to_string((big->after - big->before) / static_cast<std::size_t>(kRows)) + " bytes a row");
    Prove(state, big->RowsAreRight(), "the rows are not those of the records");
  }
}
BENCHMARK(BM_Build)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_ChangeOneRecord(benchmark::State& state) {
  BigModel& big = Model();
  GeomPool& pool = big.model.Data().GetGeomPool();
  const CString first = big.Part(big.parts[7919 % big.parts.size()]).name;
  std::size_t at = 0;
  for (auto _ : state) {
    const iterator itr = big.parts[(at += 7919) % big.parts.size()];
    tagTGeom record = *pool.GetAtNU(itr);
    record.name += L"'";
    big.model.Act([&] { pool.Change(itr, std::move(record)); });
  }
  Prove(state, big.Part(big.parts[7919 % big.parts.size()]).name.starts_with(first + L"'") && big.RowsAreRight(),
        "the rows have not got the new names");
}
BENCHMARK(BM_ChangeOneRecord)->Unit(benchmark::kMicrosecond)->Iterations(20000);

void BM_DeleteOneRecordAndUndo(benchmark::State& state) {
  BigModel& big = Model();
  std::size_t at = 0;
  std::size_t gone = 0;
  for (auto _ : state) {
    const iterator itr = big.parts[(at += 7919) % big.parts.size()];
    big.model.Data().GetGeomPool().TR_Del({itr});
    gone += big.Tree().FindGeomNode(itr) == nullptr ? 1 : 0;
    big.model.Data().Undo();
  }
  Prove(state, gone == bench::Rounds(state) && big.RowsAreRight(), "a row has not gone, or not come back");
}
BENCHMARK(BM_DeleteOneRecordAndUndo)->Unit(benchmark::kMicrosecond)->Iterations(20000);

void BM_TenThousandChangesInOneNotice(benchmark::State& state) {
  BigModel& big = Model();
  GeomPool& pool = big.model.Data().GetGeomPool();
  const std::size_t count = big.parts.size() / 100;
  const COLORREF before = big.Part(big.parts[97]).colour;
  for (auto _ : state) {
    big.model.Act([&] {
      for (std::size_t i = 0; i < count; ++i) {
        tagTGeom record = *pool.GetAtNU(big.parts[i * 97]);
        record.colour ^= 0xFFU;
        pool.Change(big.parts[i * 97], std::move(record));
      }
    });
  }
  const bool odd = bench::Rounds(state) % 2 != 0;
  Prove(state, (big.Part(big.parts[97]).colour == before) != odd && big.RowsAreRight(),
        "the rows have not got the new colours");
}
BENCHMARK(BM_TenThousandChangesInOneNotice)->Unit(benchmark::kMillisecond);

void BM_ExpandAndCollapseABranch(benchmark::State& state) {
  BigModel& big = Model();
  const HTREEITEM branch = big.Geometry();
  big.Tree().Expand(branch, ExpandAction::Expand);
  std::size_t visible = 0;
  std::size_t opened = 0;
  for (auto _ : state) {
    big.Tree().Expand(branch, ExpandAction::Toggle);
    visible = big.Tree().VisibleRowCount();
    opened += visible > big.parts.size() ? 1 : 0;
  }
  Prove(state, opened == bench::Rounds(state) / 2, "the branch has not been closed and opened in turn");
  big.Tree().Expand(branch, ExpandAction::Expand);
}
BENCHMARK(BM_ExpandAndCollapseABranch)->Unit(benchmark::kMicrosecond);

void BM_PaintAScreenAllSelected(benchmark::State& state) {
  BigModel& big = Model();
  big.Tree().SelectAll(1);
  std::size_t at = 0;
  std::size_t painted = 0;
  for (auto _ : state) {
    at = (at + 77'777) % (big.parts.size() - 100);
    big.Tree().ScrollTo(at);
    painted += big.model.GetScreen().Paint(big.Tree()) ? 1 : 0;
  }
  Prove(state,
        painted == bench::Rounds(state) && big.Tree().TopPosition() == at &&
            big.Tree().GetSelectedCount() >= static_cast<int>(big.parts.size()),
        "a screen was not painted");
  big.Tree().ResetSelection(1);
}
BENCHMARK(BM_PaintAScreenAllSelected)->Unit(benchmark::kMicrosecond);

void BM_SelectAllAndClear(benchmark::State& state) {
  BigModel& big = Model();
  std::size_t selected = 0;
  for (auto _ : state) {
    big.Tree().SelectAll(1);
    selected += static_cast<std::size_t>(big.Tree().GetSelectedCount());
    big.Tree().ResetSelection(1);
  }
  Prove(state,
        selected == bench::Rounds(state) * big.Tree().VisibleRowCount() && big.Tree().GetSelectedCount() == 0,
        "not all rows were selected, or not all cleared");
}
BENCHMARK(BM_SelectAllAndClear)->Unit(benchmark::kMillisecond);

void BM_GetTenSelected(benchmark::State& state) {
  BigModel& big = Model();
  TArray<iterator> ten;
  for (std::size_t i = 0; i < 10; ++i) ten.push_back(big.parts[i * big.parts.size() / 11]);
  big.Tree().SetSelection(1, ten);
  std::size_t got = 0;
  for (auto _ : state) got += big.Tree().GetSelectedItems().size();
  Prove(state, got == 10 * bench::Rounds(state), "not ten rows were selected");
  big.Tree().ResetSelection(1);
}
BENCHMARK(BM_GetTenSelected)->Unit(benchmark::kMicrosecond);

void BM_InvertSelection(benchmark::State& state) {
  BigModel& big = Model();
  big.Tree().ResetSelection(1);
  for (auto _ : state) big.Tree().InvertSelection();
  const std::size_t expected = bench::Rounds(state) % 2 != 0 ? big.Tree().VisibleRowCount() : 0;
  Prove(state, static_cast<std::size_t>(big.Tree().GetSelectedCount()) == expected,
        "the selection was not inverted");
  big.Tree().ResetSelection(1);
}
BENCHMARK(BM_InvertSelection)->Unit(benchmark::kMillisecond);

void BM_SelectARangeOfAllRows(benchmark::State& state) {
  BigModel& big = Model();
  const HTREEITEM branch = big.Geometry();
  const HTREEITEM first = big.Tree().GetChildItem(branch);
  HTREEITEM last = first;
  for (HTREEITEM next = first; next; next = big.Tree().GetNextSiblingItem(next)) last = next;
  big.Tree().ResetSelection(1);
  for (auto _ : state) big.Tree().SelectRange(first, last, 1);
  Prove(state, big.Tree().GetSelectedCount() == static_cast<int>(big.parts.size()), "the range was not selected");
  big.Tree().ResetSelection(1);
}
BENCHMARK(BM_SelectARangeOfAllRows)->Unit(benchmark::kMillisecond);

/// A rubber band whose moving edge jumps over `rows` rows, with every second row selected before: those that it
/// covers are cleared, the others selected.
void BM_MoveARubberBand(benchmark::State& state) {
  RowTree rows;
  const auto all = static_cast<std::size_t>(kRows);
  for (std::size_t i = 0; i < all; ++i) rows.Insert({}, kInsertLast, 0, 0, 0);
  for (std::size_t i = 0; i < all; i += 2) rows.SelectVisible(i, i, true);
  BandSelection band(rows, true, true);
  const auto jump = static_cast<std::size_t>(state.range(0));
  band.Update(rows, 1, {{100, 200}});
  std::size_t end = 200;
  for (auto _ : state) {
    end = end + jump < all ? end + jump : 200;
    band.Update(rows, 1, {{100, end}});
  }
  bool right = true;
  for (std::size_t i = 0; i < all; ++i) {
    right = right && rows.IsSelected(rows.RowAt(i)) == ((i % 2 == 0) != (i >= 100 && i < end));
  }
  Prove(state, right, "the rows in the band are not selected");
}
BENCHMARK(BM_MoveARubberBand)->ArgName("rows")->Arg(1)->Arg(50)->Arg(1000)->Unit(benchmark::kMicrosecond);

/// Type-ahead looks at every row until it finds the last one, some at a time: until then, or the key alone, which
/// is as long as the window is held up.
void BM_TypeTheTitleOfTheLastRow(benchmark::State& state) {
  BigModel& big = Model();
  const bool wholeSearch = state.range(0) != 0;
  const HTREEITEM wanted = big.RowOf(big.parts.back());
  big.Tree().SortItems(0, 0, big.Geometry());
  const auto wait = [&] {
    for (int i = 0; i < 1000 && big.Tree().GetFocusedItem() != wanted; ++i) big.model.GetScreen().Wait();
  };
  for (auto _ : state) {
    state.PauseTiming();
    big.Tree().SelectAlone(big.RowOf(big.parts.front()));
    state.ResumeTiming();
    big.model.GetScreen().Type(big.Tree(), L"z");
    if (wholeSearch) wait();
  }
  wait();
  Prove(state, big.Tree().GetFocusedItem() == wanted, "the row was not found");
  big.Tree().ResetSelection(1);
}
BENCHMARK(BM_TypeTheTitleOfTheLastRow)
    ->ArgName("whole")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

/// The first and second move of a rubber band with all rows selected before, which it takes away from them.
void BM_BeginARubberBandWithAllSelected(benchmark::State& state) {
  RowTree rows;
  const auto all = static_cast<std::size_t>(kRows);
  for (std::size_t i = 0; i < all; ++i) rows.Insert({}, kInsertLast, 0, 0, 0);
  std::size_t selected = 0;
  for (auto _ : state) {
    rows.SelectVisible(0, all - 1, true);
    BandSelection band(rows, true, true);
    band.Update(rows, 1, {{100, 200}});
    band.Update(rows, 1, {{100, 300}});
    selected += rows.SelectedCount();
  }
  Prove(state, selected == bench::Rounds(state) * (all - 200), "the rows outside the band are not selected");
}
BENCHMARK(BM_BeginARubberBandWithAllSelected)->Unit(benchmark::kMicrosecond);

void BM_SortAllByName(benchmark::State& state) {
  BigModel& big = Model();
  const HTREEITEM branch = big.Geometry();
  const bool byName = state.range(0) != 0;
  for (auto _ : state) {
    state.PauseTiming();
    // Every round has work to do.
    big.Tree().SortItems(0, byName ? 0 : 1, branch);
    state.ResumeTiming();
    big.Tree().SortItems(0, byName ? 1 : 0, branch);
  }
  // By name means by the number in it, with the one that has none at the end.
  const auto placeOf = [&](iterator part) {
    const CString& name = big.Part(part).name;
    if (!byName) return static_cast<long>(part & 0xFFFFFFFFU);
    return name.starts_with(L"Part ") ? std::stol(name.substr(5)) : static_cast<long>(kRows);
  };
  std::vector<long> places;
  for (HTREEITEM row = big.Tree().GetChildItem(branch); row; row = big.Tree().GetNextSiblingItem(row)) {
    places.push_back(placeOf(big.Tree().NodeOf(row)->GetIterator()));
  }
  const bool sorted = places.size() == big.parts.size() && std::is_sorted(places.begin(), places.end());
  Prove(state, sorted, "the rows do not stand in order");
}
BENCHMARK(BM_SortAllByName)->ArgName("by_name")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_ShowAndHideAll(benchmark::State& state) {
  BigModel& big = Model();
  CQDTreeItem& document = *big.Tree().GetQDRootItem();
  const int last = big.Part(big.parts.back()).cadItem;
  std::size_t hidden = 0;
  for (auto _ : state) {
    document.OnMenuEvent(kCommandHideAll);
    hidden += big.model.Display().Parts().GetLook(last).shown ? 0 : 1;
    document.OnMenuEvent(kCommandShowAll);
    state.PauseTiming();
    big.model.Settle();
    state.ResumeTiming();
  }
  const bool shown = std::all_of(big.parts.begin(), big.parts.end(), [&big](iterator part) {
    return big.model.Display().Parts().GetLook(big.Part(part).cadItem).shown &&
           big.Tree().WhichCheck(big.RowOf(part)) == kChecked;
  });
  Prove(state, hidden == bench::Rounds(state) && shown, "the parts were not hidden and shown");
}
BENCHMARK(BM_ShowAndHideAll)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qd::workbench

// Commands of the geometry trees on a model of 100,000 parts in 1,000 sets, in both works trees.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "benchmarks/OpenModel.h"
#include "benchmarks/Proof.h"
#include "host/Act.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/geometry/CQDTreeItemTopo.h"
#include "workbench/session/FollowedWork.h"

namespace qd::workbench {
namespace {

using bench::Prove;

const int kParts = bench::RowsOf(100'000);
constexpr int kSets = 1'000;

class Model final : public bench::OpenModel {
 public:
  Model() : OpenModel(&Model::Fill, {kModelTree, kGeometrySetTree}) {
    Root(0).Expand(1);
    Settle();
    m_parts = Data().GetGeomPool().GetItrList();
  }
  static iterator AddPart(Database& data, iterator set) {
    GeomPool& pool = data.GetGeomPool();
    tagTGeom record;
    record.name = L"Part " + std::to_wstring(pool.NextNumber());
    record.gset = set;
    record.kind = static_cast<TopologyKind>(pool.NextNumber() % 5);
    return pool.Add(std::move(record));
  }
  const std::vector<iterator>& Parts() const { return m_parts; }
  CQDTreeListCtrl& TreeAt(std::int64_t tree) { return Tree(tree == 0 ? kModelTree : kGeometrySetTree); }
  /// The branch of parts in the model tree (0), or of sets in the other one.
  CQDTreeItem& Root(std::int64_t tree) {
    if (tree == 0) return bench::BranchOf<CQDTreeItemGeom>(TreeAt(tree));
    return bench::BranchOf<CQDTreeItemTopo>(TreeAt(tree));
  }
  /// Runs a command of a branch and lets all rows follow.
  void Command(std::int64_t tree, unsigned command) {
    Root(tree).OnMenuEvent(command);
    Settle();
  }
  bool IsShown(iterator part) {
    return Display().Parts().GetLook(Data().GetGeomPool().GetAtNU(part)->cadItem).shown;
  }
  /// Whether all parts are shown, or hidden, and the boxes of both trees say so.
  bool AllAre(bool shown) {
    return std::all_of(m_parts.begin(), m_parts.end(), [this, shown](iterator part) {
      const auto box = [&](long tree) { return Tree(tree).FindGeomNode(part)->GetCheckStatus() == kChecked; };
      return IsShown(part) == shown && box(kModelTree) == shown && box(kGeometrySetTree) == shown;
    });
  }

 private:
  static void Fill(Database& data) {
    std::vector<iterator> sets;
    for (int i = 0; i < kSets; ++i) {
      tagTGset set;
      set.name = L"Set " + std::to_wstring(i);
      sets.push_back(data.GetGsetPool().Add(set));
    }
    for (int i = 0; i < kParts; ++i) AddPart(data, sets[static_cast<std::size_t>(i % kSets)]);
  }

  std::vector<iterator> m_parts;
};

Model& TheModel() {
  static Model model;
  return model;
}

/// Two commands that undo each other, in the model tree (0) or the set tree (1).
void BM_Visibility(benchmark::State& state) {
  Model& model = TheModel();
  model.Command(0, kCommandShowAll);
  std::size_t hidden = 0;
  for (auto _ : state) {
    model.Command(state.range(0), static_cast<unsigned>(state.range(1)));
    hidden += model.IsShown(model.Parts().back()) ? 0 : 1;
    model.Command(state.range(0), static_cast<unsigned>(state.range(2)));
  }
  bool right = hidden == bench::Rounds(state) && model.AllAre(true);
  model.Command(state.range(0), static_cast<unsigned>(state.range(1)));
  right = right && model.AllAre(false);
  model.Command(0, kCommandShowAll);
  Prove(state, right, "the parts were not hidden and shown");
}
BENCHMARK(BM_Visibility)
    ->ArgNames({"tree", "command", "and"})
    ->Args({0, kCommandHideAll, kCommandShowAll})
    ->Args({0, kCommandReverseAll, kCommandReverseAll})
    ->Args({1, kCommandHideAll, kCommandShowAll})
    ->Args({1, kCommandReverseAll, kCommandReverseAll})
    ->Unit(benchmark::kMillisecond);

/// A part hidden and shown while a dialog on all parts stands open.
void BM_HideAPartBesideADialog(benchmark::State& state) {
  Model& model = TheModel();
  model.Command(0, kCommandShowAll);
  model.Tree().ResetSelection(1);
  std::size_t told = 0;
  FollowedWork work(model.Doc(), {.elseAll = true}, [&] {
    ++told;
    benchmark::DoNotOptimize(work.Names());
  });
  const int part = model.Data().GetGeomPool().GetAtNU(model.Parts().back())->cadItem;
  int shown = 1;
  for (auto _ : state) {
    model.Display().Parts().SetShowHide(part, shown = 1 - shown);
    model.Settle();
  }
  Prove(state, told == bench::Rounds(state) && work.Count() == model.Parts().size() - (shown == 0 ? 1 : 0),
        "the dialog was not told of each change");
  model.Command(0, kCommandShowAll);
}
BENCHMARK(BM_HideAPartBesideADialog)->Unit(benchmark::kMicrosecond);

/// A part renamed while a dialog on the branch of all parts stands open.
void BM_RenameAPartBesideADialog(benchmark::State& state) {
  Model& model = TheModel();
  GeomPool& parts = model.Data().GetGeomPool();
  const iterator part = model.Parts().back();
  const CString before = parts.GetAtNU(part)->name;
  model.Tree().SelectCTItem(&model.Root(0));
  model.Doc().Select({{}, 1, kModelTree});
  std::size_t told = 0;
  const FollowedWork work(model.Doc(), {.reach = Reach::All}, [&] { ++told; });
  const auto rename = [&](const CString& name) {
    RunAct(&model.Data(), CString(L"rename"), [&] {
      tagTGeom record = *parts.GetAtNU(part);
      record.name = name;
      return parts.Change(part, std::move(record));
    });
  };
  bool other = false;
  for (auto _ : state) {
    rename((other = !other) ? L"other" : before);
    model.Settle();
  }
  Prove(state, told == bench::Rounds(state) && work.Count() == model.Parts().size(),
        "the dialog was not told of each change");
  rename(before);
  model.Tree().ResetSelection(1);
  model.Doc().Select({});
}
BENCHMARK(BM_RenameAPartBesideADialog)->Unit(benchmark::kMicrosecond);

void BM_ShowOnlyOnePart(benchmark::State& state) {
  Model& model = TheModel();
  model.Tree().ResetSelection(1);
  model.Command(0, kCommandShowAll);
  const iterator part = model.Parts().front();
  std::size_t alone = 0;
  for (auto _ : state) {
    model.Tree().SetSelection(1, {part});
    model.Tree().OnMenuEvent(kCommandShowOnly);
    state.PauseTiming();
    alone +=
        model.IsShown(part) && model.Display().HiddenNow().hiddenParts.size() == model.Parts().size() - 1 ? 1 : 0;
    model.Command(0, kCommandShowAll);
    state.ResumeTiming();
  }
  Prove(state, alone == bench::Rounds(state), "the part was not shown alone");
}
BENCHMARK(BM_ShowOnlyOnePart)->Unit(benchmark::kMillisecond);

void BM_RandomColours(benchmark::State& state) {
  Model& model = TheModel();
  model.Tree().ResetSelection(1);  // all parts
  GeomPool& pool = model.Data().GetGeomPool();
  constexpr COLORREF kDull = Rgb(1, 2, 3);
  model.Act([&] {
    for (const iterator part : model.Parts()) {
      tagTGeom record = *pool.GetAtNU(part);
      record.colour = kDull;
      pool.Change(part, std::move(record));
    }
  });
  for (auto _ : state) model.Command(0, kCommandRandomColour);
  Prove(state,
        std::all_of(model.Parts().begin(), model.Parts().end(),
                    [&](iterator part) {
                      const HTREEITEM row = model.Tree().FindGeomNode(part)->GetTreeItemHandle();
                      const COLORREF colour = pool.GetAtNU(part)->colour;
                      return colour != kDull && model.Tree().GetRecord(row)->GetColor() == colour;
                    }),
        "the parts have not got other colours");
}
BENCHMARK(BM_RandomColours)->Unit(benchmark::kMillisecond);

void BM_OpenTheMenuWithEverythingSelected(benchmark::State& state) {
  Model& model = TheModel();
  CQDTreeListCtrl& tree = model.TreeAt(state.range(0));
  CQDTreeItem& root = model.Root(state.range(0));
  root.Expand(1);
  tree.ResetSelection(1);
  // The menus of branches are for them alone; the first part or set asks for the menu of all.
  tree.SelectChildren(root.GetTreeItemHandle(), 1, 0);
  const int selected = tree.GetSelectedCount();
  const std::size_t shown = model.GetScreen().MenusShown();
  for (auto _ : state) tree.ShowContextMenu({0, 0});
  Prove(state,
        selected == root.GetChildCount() && selected >= std::min(kParts, kSets) &&
            model.GetScreen().MenusShown() == shown + bench::Rounds(state),
        "the menu was not opened, or not for all");
  state.SetLabel(std::to_string(selected) + " selected");
  tree.ResetSelection(1);
}
BENCHMARK(BM_OpenTheMenuWithEverythingSelected)->ArgName("tree")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// One part comes and goes, in both trees.
void BM_AddAndDeleteOnePart(benchmark::State& state) {
  Model& model = TheModel();
  const iterator set = model.Data().GetGsetPool().GetItrList().front();
  const std::size_t rows = model.TreeAt(0).RowCount() + model.TreeAt(1).RowCount();
  std::size_t came = 0;
  for (auto _ : state) {
    iterator part = 0;
    model.Act([&] { part = Model::AddPart(model.Data(), set); });
    came += model.TreeAt(0).FindGeomNode(part) != nullptr && model.TreeAt(1).FindGeomNode(part) != nullptr ? 1 : 0;
    model.Data().GetGeomPool().TR_Del({part});
  }
  Prove(state, came == bench::Rounds(state) && model.TreeAt(0).RowCount() + model.TreeAt(1).RowCount() == rows,
        "a part has not come, or not gone");
}
BENCHMARK(BM_AddAndDeleteOnePart)->Unit(benchmark::kMicrosecond)->Iterations(bench::RowsOf(2000));

/// All parts of one set move to another and back.
void BM_MoveASet(benchmark::State& state) {
  Model& model = TheModel();
  const std::vector<iterator> sets = model.Data().GetGsetPool().GetItrList();
  GeomPool& pool = model.Data().GetGeomPool();
  const std::vector<iterator> parts = pool.PartsOf(sets[7]);
  std::size_t moved = 0;
  for (auto _ : state) {
    model.Act([&] { pool.Private_ApplyGset(parts, sets[8]); });
    moved += pool.GetAtNU(parts.front())->gset == sets[8] ? 1 : 0;
    model.Data().Undo();
  }
  Prove(state, !parts.empty() && moved == bench::Rounds(state) && pool.PartsOf(sets[7]) == parts,
        "the parts were not moved and brought back");
}
BENCHMARK(BM_MoveASet)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qd::workbench

// The mesh branch on a model of 100,000 mesh sets nested three deep, on the headless toolkit.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>

#include "benchmarks/OpenModel.h"
#include "benchmarks/Proof.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::workbench {
namespace {

using bench::Prove;

const int kTop = bench::RowsOf(10'000) / 100 > 1 ? 100 : 10;
const int kMiddle = kTop / 10;
constexpr int kBottom = 99;  // 100 * (1 + 10 * (1 + 99)) sets, 100,100 of them

/// Ten nodes and ten elements with numbers of their own.
MeshPtr SmallMesh(std::uint64_t base) {
  auto mesh = std::make_shared<MeshData>();
  MeshData::Block block;
  block.elementType = 1;
  block.nodesPerElement = 2;
  for (std::uint64_t i = 0; i < 11; ++i) {
    mesh->nodeIds.push_back(base + i);
    mesh->coordinates.insert(mesh->coordinates.end(), {static_cast<double>(i), 0, 0});
    if (i == 10) break;
    block.elementIds.push_back(base + i);
    block.nodeIds.insert(block.nodeIds.end(), {base + i, base + i + 1});
  }
  mesh->blocks.push_back(std::move(block));
  return mesh;
}

class Model final : public bench::OpenModel {
 public:
  Model() : OpenModel(&Model::Fill) {
    Settle();
    m_sets = Data().GetMsetPool().GetItrList();
  }
  const std::vector<iterator>& Sets() const { return m_sets; }
  const tagTMset& Set(iterator set) { return *Data().GetMsetPool().GetAtNU(set); }
  CQDTreeItemMesh& Branch() { return bench::BranchOf<CQDTreeItemMesh>(Tree()); }
  void Command(unsigned command) {
    Tree().OnMenuEventMeshRoot(command);
    Settle();
  }
  /// Whether each set has a row with its name, and no other row stands there.
  bool RowsAreRight() {
    if (Branch().GetAllChildCount() != static_cast<int>(m_sets.size())) return false;
    return std::all_of(m_sets.begin(), m_sets.end(), [this](iterator set) {
      CQDTreeItem* node = Tree().FindMeshNode(set);
      return node != nullptr && node->GetTitle() == Set(set).name;
    });
  }
  bool AllAre(bool shown) {
    return std::all_of(m_sets.begin(), m_sets.end(), [this, shown](iterator set) {
      return (Display().Meshes().IsMsetShown(set) != 0) == shown &&
             (Tree().FindMeshNode(set)->GetCheckStatus() == kChecked) == shown;
    });
  }

 private:
  static iterator Add(Database& data, iterator parent) {
    MsetPool& pool = data.GetMsetPool();
    const int number = pool.NextNumber();
    tagTMset record;
    record.name = L"Set " + std::to_wstring(number * 7919LL % 100'003);
    record.parent = parent != 0 ? pool.GetAtNU(parent)->key : 0;
    PutMesh(record, SmallMesh(static_cast<std::uint64_t>(number) * 100));
    return pool.Add(record);
  }
  static void Fill(Database& data) {
    for (int top = 0; top < kTop; ++top) {
      const iterator above = Add(data, 0);
      for (int middle = 0; middle < kMiddle; ++middle) {
        const iterator between = Add(data, above);
        for (int bottom = 0; bottom < kBottom; ++bottom) Add(data, between);
      }
    }
  }

  std::vector<iterator> m_sets;
};

Model& TheModel() {
  static Model model;
  return model;
}

void BuildMeshBranch(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.Trees().MakeAnew();
    model.Settle();
  }
  Prove(state, model.RowsAreRight(), "the rows are not those of the records");
}
BENCHMARK(BuildMeshBranch)->Unit(benchmark::kMillisecond);

void HideAllShowAllMeshes(benchmark::State& state) {
  Model& model = TheModel();
  std::size_t hidden = 0;
  for (auto _ : state) {
    model.Command(kCommandHideAllMeshes);
    hidden += model.Display().Meshes().IsMsetShown(model.Sets().back()) == 0 ? 1 : 0;
    model.Command(kCommandShowAllMeshes);
  }
  bool right = hidden == bench::Rounds(state) && model.AllAre(true);
  model.Command(kCommandHideAllMeshes);
  right = right && model.AllAre(false);
  model.Command(kCommandShowAllMeshes);
  Prove(state, right, "the sets were not hidden and shown");
}
BENCHMARK(HideAllShowAllMeshes)->Unit(benchmark::kMillisecond);

void SortMeshesByNameAndBack(benchmark::State& state) {
  Model& model = TheModel();
  const auto first = [&] {
    return model.Tree().GetItemText(model.Tree().GetChildItem(model.Branch().GetTreeItemHandle()), 0);
  };
  std::set<CString> firsts;
  for (auto _ : state) {
    for (const unsigned command : {kCommandSortByName, kCommandSortByCreation}) {
      model.Command(command);
      firsts.insert(first());
    }
  }
  // The first of the top sets by creation, and by name, which is another one.
  CString least = model.Set(model.Sets().front()).name;
  for (const iterator set : model.Sets()) {
    const CString& name = model.Set(set).name;
    if (model.Set(set).parent == 0 && std::stol(name.substr(4)) < std::stol(least.substr(4))) least = name;
  }
  Prove(state, firsts == std::set<CString>{model.Set(model.Sets().front()).name, least},
        "the sets were not sorted");
}
BENCHMARK(SortMeshesByNameAndBack)->Unit(benchmark::kMillisecond);

void RandomColoursOfMeshes(benchmark::State& state) {
  Model& model = TheModel();
  constexpr COLORREF kDull = Rgb(1, 2, 3);
  model.Act([&] {
    for (const iterator set : model.Sets()) {
      tagTMset record = model.Set(set);
      record.colour = kDull;
      model.Data().GetMsetPool().Modify(set, record);
    }
  });
  for (auto _ : state) model.Command(kCommandMeshRandomColour);
  Prove(state,
        std::all_of(model.Sets().begin(), model.Sets().end(),
                    [&](iterator set) { return model.Set(set).colour != kDull; }),
        "the sets have not got other colours");
}
BENCHMARK(RandomColoursOfMeshes)->Unit(benchmark::kMillisecond);

/// Merges the sets of ten middle ones into the first of them, then takes it back.
void Merge1000SetsAndUndo(benchmark::State& state) {
  Model& model = TheModel();
  MsetPool& pool = model.Data().GetMsetPool();
  const std::vector<iterator>& all = model.Sets();
  const std::vector<iterator> merged(all.begin() + 2, all.begin() + 2 + kTop * kMiddle);
  std::size_t gone = 0;
  for (auto _ : state) {
    pool.Merge(all[0], merged);
    state.PauseTiming();
    gone +=
        pool.Count() == all.size() - merged.size() && model.Tree().FindMeshNode(merged.back()) == nullptr ? 1 : 0;
    model.Data().Undo();
    state.ResumeTiming();
  }
  Prove(state, gone == bench::Rounds(state) && model.RowsAreRight(), "the sets were not merged and brought back");
}
BENCHMARK(Merge1000SetsAndUndo)->Unit(benchmark::kMillisecond);

/// Moves one set below another and back.
void MoveAMeshSetTwice(benchmark::State& state) {
  Model& model = TheModel();
  MsetPool& pool = model.Data().GetMsetPool();
  const iterator moved = model.Sets().back();
  const std::uint32_t home = model.Set(moved).parent;
  std::size_t there = 0;
  for (auto _ : state) {
    for (const std::uint32_t parent : {1U, home}) {
      model.Act([&] {
        tagTMset record = model.Set(moved);
        record.parent = parent;
        pool.Modify(moved, record);
      });
      const CQDTreeItem* above = model.Tree().FindMeshNode(moved)->GetParent();
      there += above != nullptr && above->GetIterator() == pool.GetItrByKey(parent) ? 1 : 0;
    }
  }
  Prove(state, there == 2 * bench::Rounds(state), "the set was not moved");
}
BENCHMARK(MoveAMeshSetTwice)->Unit(benchmark::kMicrosecond);

void DeleteAllMeshSetsAndUndo(benchmark::State& state) {
  Model& model = TheModel();
  std::size_t left = 0;
  for (auto _ : state) {
    model.Command(kCommandDeleteAllMeshSets);
    left += model.Data().GetMsetPool().Count() + static_cast<std::size_t>(model.Branch().GetChildCount());
    model.Data().Undo();
  }
  // The set that new elements go to is made anew at once.
  Prove(state, left <= 2 * bench::Rounds(state) && model.RowsAreRight(), "the sets have not gone and come back");
}
BENCHMARK(DeleteAllMeshSetsAndUndo)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qd::workbench

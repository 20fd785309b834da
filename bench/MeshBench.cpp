// The mesh branch on a model of 100,000 mesh sets nested three deep, on the headless toolkit.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "host/CTransaction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/tree/DocumentNode.h"

namespace qd::workbench {
namespace {

constexpr int kTop = 100;
constexpr int kMiddle = 10;
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

class Model final : private IDatabaseListener {
 public:
  Model() {
    CTransaction transaction(&m_doc.GetDatabase());
    transaction.Begin(L"fill");
    for (int top = 0; top < kTop; ++top) {
      const iterator above = Add(0);
      for (int middle = 0; middle < kMiddle; ++middle) {
        const iterator between = Add(above);
        for (int bottom = 0; bottom < kBottom; ++bottom) Add(between);
      }
    }
    transaction.Commit(1);
    m_doc.GetDatabase().SetListener(this);
    m_bar.SetDocument(&m_doc);
    m_bar.Create(nullptr, 0, {0, 0, 400, 800});
    Build();
  }
  iterator Add(iterator parent) {
    MsetPool& pool = m_doc.GetDatabase().GetMsetPool();
    const int number = pool.NextNumber();
    tagTMset record;
    record.name = L"Set " + std::to_wstring(number * 7919 % 100'003);
    record.parent = parent != 0 ? pool.GetAtNU(parent)->key : 0;
    PutMesh(record, SmallMesh(static_cast<std::uint64_t>(number) * 100));
    return pool.Add(record);
  }
  void Build() {
    m_bar.CreateTreeItems(kModelTree, &m_factory, 1);
    m_toolkit.Pump();
  }
  void Command(unsigned command) {
    m_bar.GetTreeCtrl().OnMenuEventMeshRoot(command);
    m_toolkit.Pump();
  }

  HeadlessToolkit m_toolkit;
  WorkDocument m_doc;
  TreeFactory m_factory;
  CWorksTreeBar m_bar;

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override { m_bar.UpdateDB(&m_doc, HintOf(record)); }
};

Model& TheModel() {
  static Model model;
  return model;
}

void BuildMeshBranch(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) model.Build();
}
BENCHMARK(BuildMeshBranch)->Unit(benchmark::kMillisecond);

void HideAllShowAllMeshes(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.Command(kCommandHideAllMeshes);
    model.Command(kCommandShowAllMeshes);
    model.m_doc.GetDisplay().TakeChangedMsets();
  }
}
BENCHMARK(HideAllShowAllMeshes)->Unit(benchmark::kMillisecond);

void SortMeshesByNameAndBack(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.Command(kCommandSortByName);
    model.Command(kCommandSortByCreation);
  }
}
BENCHMARK(SortMeshesByNameAndBack)->Unit(benchmark::kMillisecond);

void RandomColoursOfMeshes(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) model.Command(kCommandMeshRandomColour);
}
BENCHMARK(RandomColoursOfMeshes)->Unit(benchmark::kMillisecond);

/// Merges the sets of ten middle ones into the first of them, then takes it back.
void Merge1000SetsAndUndo(benchmark::State& state) {
  Model& model = TheModel();
  MsetPool& pool = model.m_doc.GetDatabase().GetMsetPool();
  const std::vector<iterator> all = pool.GetItrList();
  const std::vector<iterator> merged(all.begin() + 2, all.begin() + 1002);
  for (auto _ : state) {
    if (pool.Merge(all[0], merged) == 0) state.SkipWithError("refused");
    state.PauseTiming();
    model.m_doc.GetDatabase().Undo();
    state.ResumeTiming();
  }
}
BENCHMARK(Merge1000SetsAndUndo)->Unit(benchmark::kMillisecond);

/// Moves one set below another and back.
void MoveAMeshSetTwice(benchmark::State& state) {
  Model& model = TheModel();
  MsetPool& pool = model.m_doc.GetDatabase().GetMsetPool();
  const iterator moved = pool.GetItrList().back();
  const std::uint32_t home = pool.GetAtNU(moved)->parent;
  for (auto _ : state) {
    for (const std::uint32_t parent : {1U, home}) {
      CTransaction transaction(&model.m_doc.GetDatabase());
      transaction.Begin(L"move");
      tagTMset record = *pool.GetAtNU(moved);
      record.parent = parent;
      pool.Modify(moved, record);
      transaction.Commit(1);
    }
  }
}
BENCHMARK(MoveAMeshSetTwice)->Unit(benchmark::kMicrosecond);

void DeleteAllMeshSetsAndUndo(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.Command(kCommandDeleteAllMeshSets);
    model.m_doc.GetDatabase().Undo();
  }
}
BENCHMARK(DeleteAllMeshSetsAndUndo)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qd::workbench

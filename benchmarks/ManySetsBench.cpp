// One change where there are very many that might have to follow it: sets, and parts with a material.

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <string>

#include "benchmarks/OpenModel.h"
#include "benchmarks/Proof.h"

namespace qd::workbench {
namespace {

using bench::Prove;

/// As many parts as sets, one in each, and a material.
class Model final : public bench::OpenModel {
 public:
  explicit Model(int sets)
      : OpenModel([sets](Database& data) { Fill(data, sets); }, {kModelTree, kGeometrySetTree}) {
    Settle();
  }
  iterator Middle() {
    const std::vector<iterator> parts = Data().GetGeomPool().GetItrList();
    return parts[parts.size() / 2];
  }
  CString TitleInSets(iterator part) { return Tree(kGeometrySetTree).FindGeomNode(part)->GetTitle(); }

 private:
  static void Fill(Database& data, int sets) {
    tagTMaterial material;
    material.name = L"Nobody's";
    data.GetMaterialPool().Add(material);
    for (int i = 0; i < sets; ++i) {
      tagTGset set;
      set.name = L"Set " + std::to_wstring(i);
      tagTGeom part;
      part.name = L"Part " + std::to_wstring(i);
      part.gset = data.GetGsetPool().Add(set);
      part.kind = TopologyKind::Solid;
      data.GetGeomPool().Add(part);
    }
  }
};

Model& TheModel(int sets) {
  static std::map<int, std::unique_ptr<Model>> models;
  std::unique_ptr<Model>& model = models[sets];
  if (model == nullptr) model = std::make_unique<Model>(sets);
  return *model;
}

/// The notice of one renamed part, followed by both trees.
void BM_RenameOnePartAmongSets(benchmark::State& state) {
  Model& model = TheModel(bench::RowsOf(static_cast<int>(state.range(0))));
  GeomPool& pool = model.Data().GetGeomPool();
  const iterator part = model.Middle();
  int number = 0;
  for (auto _ : state) {
    tagTGeom record = *pool.GetAtNU(part);
    record.name = L"Other " + std::to_wstring(++number);
    model.Act([&] { pool.Change(part, std::move(record)); });
  }
  const CString name = L"Other " + std::to_wstring(number);
  Prove(state, model.TitleInSets(part) == name && model.Tree(kModelTree).FindGeomNode(part)->GetTitle() == name,
        "the rows do not have the part's name");
}
BENCHMARK(BM_RenameOnePartAmongSets)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMicrosecond);

/// One part goes to another set and back, in two notices.
void BM_MoveOnePartAmongSets(benchmark::State& state) {
  Model& model = TheModel(bench::RowsOf(static_cast<int>(state.range(0))));
  GeomPool& pool = model.Data().GetGeomPool();
  const iterator part = model.Middle();
  const iterator home = pool.GetAtNU(part)->gset;
  const iterator away = model.Data().GetGsetPool().GetItrList()[3];
  const auto setOfRow = [&] {
    return model.Tree(kGeometrySetTree).FindGeomNode(part)->GetParent()->GetParent()->GetIterator();
  };
  std::size_t moved = 0;
  for (auto _ : state) {
    model.Act([&] { pool.Private_ApplyGset({part}, away); });
    moved += setOfRow() == away ? 1 : 0;
    model.Act([&] { pool.Private_ApplyGset({part}, home); });
  }
  Prove(state, moved == bench::Rounds(state) && setOfRow() == home, "the part was not moved and brought back");
}
BENCHMARK(BM_MoveOnePartAmongSets)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMicrosecond);

/// The notice of a changed material that no part (0) or one part of very many (1) has.
void BM_ChangeAMaterial(benchmark::State& state) {
  Model& model = TheModel(bench::RowsOf(100'000));
  MaterialPool& materials = model.Data().GetMaterialPool();
  const iterator material = materials.GetItrList().front();
  const iterator part = model.Middle();
  model.Tree(kModelTree).ChangeGeomTitle(1);
  model.Act([&] {
    tagTGeom record = *model.Data().GetGeomPool().GetAtNU(part);
    record.material = state.range(0) != 0 ? material : 0;
    model.Data().GetGeomPool().Change(part, std::move(record));
  });
  int number = 0;
  for (auto _ : state) {
    tagTMaterial record = *materials.GetAtNU(material);
    record.name = L"Steel " + std::to_wstring(++number);
    model.Act([&] { materials.Change(material, std::move(record)); });
  }
  const bool named =
      model.Tree(kModelTree).FindGeomNode(part)->GetTitle().find(L"(Steel " + std::to_wstring(number) + L")") !=
      CString::npos;
  Prove(state, named == (state.range(0) != 0), "the part's title does not name its material");
  model.Tree(kModelTree).ChangeGeomTitle(0);
}
BENCHMARK(BM_ChangeAMaterial)->ArgName("parts_with_it")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qd::workbench

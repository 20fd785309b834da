// The branch of coordinate systems with 100,000 of them; and the language switch of a tree.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "benchmarks/OpenModel.h"
#include "benchmarks/Proof.h"
#include "host/CMSGFunction.h"
#include "qd_wrt/coords/CQDTreeItemCord.h"
#include "qd_wrt/core/CommandNumbers.h"

namespace qd::workbench {
namespace {

using bench::Prove;

const int kSystems = bench::RowsOf(100'000);

/// Two languages: texts are the keys, with or without a mark.
class Languages final : public CMSGFunction::ITable {
 public:
  bool Find(std::string_view key, CString& text) const override {
    text.assign(key.begin(), key.end());
    if (other) text += L"'";
    return true;
  }
  bool other = false;
};

class Model final : public bench::OpenModel {
 public:
  Model() : OpenModel(&Model::Fill) {
    Settle();
    m_systems = Data().GetCordPool().GetItrList();
  }
  CQDTreeItemCord& Branch() { return bench::BranchOf<CQDTreeItemCord>(Tree()); }
  iterator Last() const { return m_systems.back(); }
  bool IsShown(iterator system) {
    return Display().Labels().GetShowHide(kLabelCord, Data().GetRecordID(system)) != 0;
  }
  /// Whether each system has a row with its name, and its symbol and box are on, or off.
  bool AllAre(bool shown) {
    if (Branch().GetChildCount() != static_cast<int>(m_systems.size())) return false;
    return std::all_of(m_systems.begin(), m_systems.end(), [this, shown](iterator system) {
      const CQDTreeItem* node = Branch().FindChild(system);
      return node != nullptr && node->GetTitle() == Data().GetCordPool().GetAtNU(system)->GetName() &&
             IsShown(system) == shown && (node->GetCheckStatus() == kChecked) == shown;
    });
  }

  Languages m_languages;

 private:
  static void Fill(Database& data) {
    for (int i = 0; i < kSystems; ++i) {
      tagTCord record;
      record.SetName(L"System " + std::to_wstring(i * 7919LL % 100'003));
      record.origin = {1.0 * i, 0, 0};
      data.GetCordPool().Add(record);
    }
  }

  std::vector<iterator> m_systems;
};

Model& TheModel() {
  static Model model;
  return model;
}

void CordBuild(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.Trees().MakeAnew();
    model.Settle();
  }
  Prove(state, model.AllAre(true), "the rows are not those of the records");
}
BENCHMARK(CordBuild)->Unit(benchmark::kMillisecond);

void CordRenameOne(benchmark::State& state) {
  Model& model = TheModel();
  CordPool& pool = model.Data().GetCordPool();
  int number = 0;
  for (auto _ : state) {
    model.Act([&] {
      tagTCord record = *pool.GetAtNU(model.Last());
      record.SetName(L"Renamed " + std::to_wstring(++number));
      pool.Modify(model.Last(), record);
    });
  }
  Prove(state, model.Branch().FindChild(model.Last())->GetTitle() == L"Renamed " + std::to_wstring(number),
        "the row has not got the new name");
}
BENCHMARK(CordRenameOne)->Unit(benchmark::kMicrosecond);

void CordHideAndShowAll(benchmark::State& state) {
  Model& model = TheModel();
  std::size_t hidden = 0;
  for (auto _ : state) {
    model.Branch().OnMenuEvent(kCommandHideAll);
    model.Settle();
    hidden += model.IsShown(model.Last()) ? 0 : 1;
    model.Branch().OnMenuEvent(kCommandShowAll);
    model.Settle();
  }
  Prove(state, hidden == bench::Rounds(state) && model.AllAre(true), "the systems were not hidden and shown");
}
BENCHMARK(CordHideAndShowAll)->Unit(benchmark::kMillisecond);

void CordShowOneByRecord(benchmark::State& state) {
  Model& model = TheModel();
  TArray<iterator> one{model.Last()};
  int show = 1;
  for (auto _ : state) model.Bar().ShowHideCordLabel(&model.Doc(), one, show = 1 - show);
  model.Settle();
  const bool box = model.Branch().FindChild(model.Last())->GetCheckStatus() == kChecked;
  Prove(state, model.IsShown(model.Last()) == (show != 0) && box == (show != 0),
        "the system does not show what was asked");
  model.Bar().ShowHideCordLabel(&model.Doc(), one, 1);
}
BENCHMARK(CordShowOneByRecord)->Unit(benchmark::kMicrosecond);

void CordChangeLanguage(benchmark::State& state) {
  Model& model = TheModel();
  bool followed = true;
  for (auto _ : state) {
    model.m_languages.other = !model.m_languages.other;
    model.Bar().OnChangeLanguage();
    model.Settle();
    followed = followed && model.Branch().GetTitle().ends_with(L"'") == model.m_languages.other;
  }
  Prove(state, followed, "the titles do not follow the language");
  model.m_languages.other = false;
}
BENCHMARK(CordChangeLanguage)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qd::workbench

// The branch of coordinate systems with 100,000 of them, on the headless toolkit; and the language switch of a
// tree.

#include <benchmark/benchmark.h>

#include <string>

#include "host/CTransaction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/tree/DocumentNode.h"

namespace qd::workbench {
namespace {

constexpr int kSystems = 100'000;

class Model final : private IDatabaseListener {
 public:
  Model() {
    CTransaction transaction(&m_doc.GetDatabase());
    transaction.Begin(L"fill");
    for (int i = 0; i < kSystems; ++i) {
      tagTCord record;
      record.SetName(L"System " + std::to_wstring(i * 7919 % 100'003));
      record.origin = {1.0 * i, 0, 0};
      m_last = m_doc.GetDatabase().GetCordPool().Add(record);
    }
    transaction.Commit(1);
    m_doc.GetDatabase().SetListener(this);
    m_bar.SetDocument(&m_doc);
    m_bar.Create(nullptr, 0, {0, 0, 400, 800});
    Build();
  }
  void Build() {
    m_bar.CreateTreeItems(kModelTree, &m_factory, 1);
    m_toolkit.Pump();
  }
  CQDTreeItem& Branch() { return *m_bar.GetTreeCtrl().GetQDRootItem()->GetChild(0); }
  void Rename(const CString& name) {
    CordPool& pool = m_doc.GetDatabase().GetCordPool();
    CTransaction transaction(&m_doc.GetDatabase());
    transaction.Begin(L"rename");
    tagTCord record = *pool.GetAtNU(m_last);
    record.SetName(name);
    pool.Modify(m_last, record);
    transaction.Commit(1);
  }

  HeadlessToolkit m_toolkit;
  WorkDocument m_doc;
  TreeFactory m_factory;
  CWorksTreeBar m_bar;
  iterator m_last = 0;

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override { m_bar.UpdateDB(&m_doc, HintOf(record)); }
};

Model& TheModel() {
  static Model model;
  return model;
}

void CordBuild(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) model.Build();
}
BENCHMARK(CordBuild)->Unit(benchmark::kMillisecond);

void CordRenameOne(benchmark::State& state) {
  Model& model = TheModel();
  int number = 0;
  for (auto _ : state) model.Rename(L"Renamed " + std::to_wstring(++number));
}
BENCHMARK(CordRenameOne)->Unit(benchmark::kMicrosecond);

void CordHideAndShowAll(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.Branch().OnMenuEvent(kCommandHideAll);
    model.Branch().OnMenuEvent(kCommandShowAll);
  }
}
BENCHMARK(CordHideAndShowAll)->Unit(benchmark::kMillisecond);

void CordShowOneByRecord(benchmark::State& state) {
  Model& model = TheModel();
  TArray<iterator> one{model.m_last};
  int show = 0;
  for (auto _ : state) model.m_bar.ShowHideCordLabel(&model.m_doc, one, show = 1 - show);
}
BENCHMARK(CordShowOneByRecord)->Unit(benchmark::kMicrosecond);

void CordChangeLanguage(benchmark::State& state) {
  Model& model = TheModel();
  for (auto _ : state) {
    model.m_bar.OnChangeLanguage();
    model.m_toolkit.Pump();
  }
}
BENCHMARK(CordChangeLanguage)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qd::workbench

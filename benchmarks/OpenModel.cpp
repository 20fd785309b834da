#include "benchmarks/OpenModel.h"

#include <utility>

namespace qd::bench {

OpenModel::OpenModel(const Fill& fill, const std::vector<long>& trees, const Fill& load) {
  if (load) load(Data());
  if (fill) Act([&] { fill(Data()); });
  std::map<long, CWorksTreeBar*> bars;
  for (const long type : trees) {
    CWorksTreeBar& bar = m_bars[type];
    bar.SetDocument(&m_doc);
    bar.Create(nullptr, 0, {0, 0, 400, 800});
    m_screen.Show(bar);
    bars[type] = &bar;
  }
  m_trees = std::make_unique<workbench::WorksTrees>(
      m_doc, bars, [this](std::function<void()> task) { m_later.push_back(std::move(task)); });
}

void OpenModel::Settle() {
  do {
    m_screen.Settle();
    for (const auto& task : std::exchange(m_later, {})) task();
  } while (!m_later.empty());
}

}  // namespace qd::bench

#pragma once

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "benchmarks/Screen.h"
#include "host/CTransaction.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/session/WorksTrees.h"

namespace qd::bench {

/// The branch of a kind in a tree, wherever it stands. The program ends without one: there is nothing to measure.
template <typename Branch>
Branch& BranchOf(const CQDTreeListCtrl& tree) {
  for (CQDTreeItem* child : tree.GetQDRootItem()->Children()) {
    if (auto* branch = dynamic_cast<Branch*>(child)) return *branch;
  }
  std::abort();
}

/// A document in works trees of usual size, put together as the programs do it.
class OpenModel {
 public:
  using Fill = std::function<void(workbench::Database&)>;

  /// `load` brings the records of a document; `fill` then writes records in one act; then the rows are made.
  explicit OpenModel(const Fill& fill, const std::vector<long>& trees = {workbench::kModelTree},
                     const Fill& load = nullptr);
  OpenModel(const OpenModel&) = delete;
  OpenModel& operator=(const OpenModel&) = delete;

  workbench::WorkDocument& Doc() { return m_doc; }
  workbench::Database& Data() { return m_doc.GetDatabase(); }
  workbench::Display& Display() { return m_doc.GetDisplay(); }
  CWorksTreeBar& Bar(long tree = workbench::kModelTree) { return m_bars.at(tree); }
  CQDTreeListCtrl& Tree(long tree = workbench::kModelTree) { return Bar(tree).GetTreeCtrl(); }
  workbench::WorksTrees& Trees() { return *m_trees; }
  Screen& GetScreen() { return m_screen; }
  /// Handles what is queued, and what the trees do once that is handled.
  void Settle();
  /// Runs writes as one act.
  template <typename Writes>
  void Act(const Writes& writes) {
    CTransaction transaction(&Data());
    transaction.Begin(L"act");
    writes();
    transaction.Commit(1);
  }

 private:
  Screen m_screen;
  workbench::WorkDocument m_doc;
  std::map<long, CWorksTreeBar> m_bars;
  std::vector<std::function<void()>> m_later;
  std::unique_ptr<workbench::WorksTrees> m_trees;
};

}  // namespace qd::bench

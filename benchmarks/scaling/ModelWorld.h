#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/OpenModel.h"
#include "benchmarks/scaling/World.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "support/Digest.h"

namespace qd::scaling {

/// An open document with n records of one kind, and what is the same for all kinds: changes and their undo, with
/// one record and with all, selection, boxes, branches, requests of the host.
class ModelWorld : public World {
 public:
  std::vector<Case> Cases() override;

 protected:
  using Fill = std::function<void(workbench::Database&)>;

  /// Of a shape that matters to few operations, only changes of one record and those of the kind are tried.
  enum class Extent { Everything, Changes };

  ModelWorld(const Fill& fill, const std::vector<long>& trees, bool selected, Extent extent = Extent::Everything);

  /// Records of the kind, oldest first; those that cannot be changed are left out.
  virtual std::vector<iterator> Records() = 0;
  /// Inside an open transaction: a new record, another name for one.
  virtual iterator AddRecord() = 0;
  virtual bool Rename(iterator itr, const CString& name) = 0;
  virtual bool Delete(const std::vector<iterator>& itrs) = 0;
  /// The branch that holds the records, or the roots of them.
  virtual CQDTreeItem& Branch() = 0;
  virtual CQDTreeItem* NodeOf(iterator itr) = 0;
  /// Whether half of the records stand above the middle one, each below another, and half below it. What asks all
  /// above, or switches all below, may grow with them.
  virtual bool IsChain() const { return false; }
  /// Whether the host selects such records.
  virtual bool IsPicked() const { return true; }
  /// Operations that only this kind has.
  virtual void AddOwnCases(std::vector<Case>& cases) = 0;

  bench::OpenModel& Model() { return m_model; }
  workbench::Database& Data() { return m_model.Data(); }
  CQDTreeListCtrl& Tree() { return *Branch().GetControl(); }
  /// To be called at the end of the constructor of each kind.
  void Begin();
  const std::vector<iterator>& All() const { return m_all; }
  const std::vector<iterator>& SomeOf() const { return m_some; }
  iterator Middle() const { return m_all[m_all.size() / 2]; }
  bool RowsStand();
  /// One act of the host and what follows from it, counted.
  Case Act(const char* name, Growth growth, const std::function<void()>& act, const std::function<bool()>& check);
  /// A command of a branch or of the first selected node, counted with what follows.
  Case Command(const char* name, Growth growth, CQDTreeItem& node, unsigned command,
               const std::function<bool()>& check);
  /// An act of a user that must change what the model holds, or how it is shown, or the rows; counted.
  /// `prepare` goes before it and is not counted.
  Case Change(
      std::string name, Growth growth, const std::function<void()>& act,
      const std::function<void()>& prepare = [] {});
  /// An act on all and what takes it back; whether it was done is asked in between and at the end.
  Case ThereAndBack(const char* name, const std::function<void()>& there, const std::function<bool()>& isThere,
                    const std::function<void()>& back);
  void SelectRows(const std::vector<iterator>& itrs);

 private:
  /// The model, how it is shown, and first rows of the branch and beside the middle record: different whenever an
  /// act has done something.
  struct Look {
    test::Digest digest;
    std::vector<std::pair<HTREEITEM, int>> rows;  // with their boxes
    bool operator==(const Look&) const = default;
  };
  Look LookNow();
  void AddChanges(std::vector<Case>& cases);
  void AddChangesOfAll(std::vector<Case>& cases);
  void AddPicking(std::vector<Case>& cases);
  void AddSelection(std::vector<Case>& cases);
  void AddNodes(std::vector<Case>& cases);

  bench::OpenModel m_model;
  bool m_selected;
  Extent m_extent;
  std::vector<iterator> m_all;
  std::vector<iterator> m_some;
};

}  // namespace qd::scaling

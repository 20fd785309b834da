#pragma once

#include "qd_wrt/core/CQDTreeBranch.h"

namespace qd {

/// The root of the coordinate-system branch, with an entry for each record of the pool.
class QD_EXPORT CQDTreeItemCord : public CQDTreeBranch {
 public:
  /// Appends the branch to the children of `parent`, without a row yet.
  CQDTreeItemCord(CQDTreeListCtrl* control, CQDTreeItem* parent);

  /// Adds a system, or shows or hides all.
  void OnMenuEvent(unsigned command) override;
  /// Shows (1) or hides (3) every system.
  int OnClickCheck(int oldState) override;
  int GetItemType() const override { return kLabelCord; }
  /// Shows or hides the systems of these records; `kind` and `flags` are not used. Their view-update flags are off
  /// from then on.
  void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags) override;
  void OnUpdate() override;
  /// 1, whether there was a child or not.
  int DeleteChildItem(iterator itr) override;
  /// Brings the title up to date, or makes the child of a record that has none. 1.
  int ModifyChildItem(iterator itr) override;
  /// The boxes follow the label manager.
  void RereadBoxes(iterator itr) override;

 protected:
  const BranchKind* GetBranchKind() const override;
  std::vector<iterator> Records() const override;
  CQDTreeItem* MakeNode(iterator itr) override;
};

}  // namespace qd

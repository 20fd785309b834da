#pragma once

#include <functional>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeBranch.h"

namespace qd {

/// What the root of the mesh branch and every mesh set have in common: their children are the mesh sets whose
/// parent they are.
class QD_EXPORT CQDTreeMeshBranch : public CQDTreeBranch {
 public:
  using CQDTreeBranch::CQDTreeBranch;

  /// Makes the children in order of creation and sorts them by key.
  int MakeChildItems() override;
  /// Brings title and colour of a child up to date; makes the child of a record that has none.
  int ModifyChildItem(iterator itr) override;
  /// Brings the branch in step with the change records of mesh sets that wait. Sets that moved away are deleted
  /// first, then those that came are made: the other way round a set could stand twice or not at all. What is
  /// made anew keeps its place in the selection and whether it was expanded.
  void OnUpdate() override;
  /// A set takes what is nested in it along, so with `recurse` deep ones are switched once for all above them.
  void CheckOnlyInChild(CQDTreeItem* except, int state, int recurse) override;
  /// Appends every mesh-set node below this one, each before its own; siblings in order of their records.
  void GetChildItemMset(std::vector<CQDTreeItem*>& nodes) const;

 protected:
  /// The key by which records name this node as their parent; 0 for the top level.
  virtual std::uint32_t ParentKey() const = 0;
  /// The node for which this one hears of changes: the branch that holds a record's children. Null for one that it
  /// does not hear for, or that does not stand.
  virtual CQDTreeMeshBranch* BranchOf(std::uint32_t parentKey) = 0;
  /// The node of a record that this one hears for, null for none.
  virtual CQDTreeItem* FindMset(iterator itr) const = 0;

  std::vector<iterator> Records() const override;
  CQDTreeItem* MakeNode(iterator itr) override;

 private:
  class RowLooks;

  /// Takes down the nodes of sets that were deleted or stand below another parent now. Only what has changed is
  /// looked at, however many sets there are.
  void ClearParentChangedItem(const std::vector<tagTRNotify>& changes, RowLooks& looks);
  bool HasLeft(const CQDTreeItem& node, const tagTRNotify& change) const;
};

/// What follows a change of how meshes are shown: nothing stays selected and the view is redrawn, unless the
/// node's view-update flag is off.
QD_EXPORT void RefreshMeshDisplay(CQDTreeItem& node);

/// Changes mesh sets in one transaction, all or none. Returns 1, or 0 with nothing changed.
QD_EXPORT int ModifyMsets(CQDDBSession& session, const char* titleKey, const std::vector<iterator>& itrs,
                          const std::function<void(tagTMset&)>& change);

/// @{
/// Records and keys of mesh-set nodes, in their order; other nodes are left out.
QD_EXPORT std::vector<iterator> MsetsOf(const std::vector<CQDTreeItem*>& nodes);
QD_EXPORT std::vector<std::uint32_t> MsetKeysOf(const std::vector<CQDTreeItem*>& nodes);
/// @}

}  // namespace qd

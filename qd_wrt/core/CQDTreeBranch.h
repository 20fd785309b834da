#pragma once

#include "qd_wrt/core/CQDTreeItem.h"

namespace qd {

/// A node whose children stand for records of one pool: finds the child of a record and walks the change records.
class QD_EXPORT CQDTreeBranch : public CQDTreeItem {
 public:
  using CQDTreeItem::CQDTreeItem;

  /// Makes a child for each of the branch's records, in their order.
  int MakeChildItems() override;

  // ---- virtual operations, behind those of the base ---------------------------------------------------------
  /// Makes the child of a record as the last one. 1, or 0 when the record cannot be read. A record that has a
  /// child already counts as modified.
  virtual int MakeChildItem(iterator itr);
  /// Deletes the child of a record. The answer for an unknown record is the branch's own.
  virtual int DeleteChildItem(iterator itr);
  /// Brings the child of a record up to date. The answer for an unknown record is the branch's own.
  virtual int ModifyChildItem(iterator itr) = 0;

  /// Null when the record has no child here.
  CQDTreeItem* FindChild(iterator itr) const;
  /// All children in ascending order of their records.
  std::vector<CQDTreeItem*> ChildrenByRecord() const;

 protected:
  /// The records that have children here, when the branch is built.
  virtual std::vector<iterator> Records() const = 0;
  /// A new node for a record, without a row yet; null when the record cannot be read.
  virtual CQDTreeItem* MakeNode(iterator itr) = 0;
  /// Makes, deletes or modifies the child that a change record of the branch's own pool names.
  void ApplyChange(const tagTRNotify& change);
};

}  // namespace qd

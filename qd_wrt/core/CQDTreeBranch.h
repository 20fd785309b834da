#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/core/MenuTable.h"

namespace qd {

/// What the root of a branch is, said once by whoever makes the branch; the rest follows. It outlives the nodes.
struct BranchKind {
  std::string_view titleKey;                    ///< message key of the title
  unsigned icon = 0;                            ///< of the row
  bool hasCheck = false;                        ///< whether the row has a box
  std::uint16_t treeItemType = 0;               ///< for drops, 0 for none; what is below the root inherits it
  std::span<const unsigned short> dataTypes{};  ///< whose changes it hears of, in this order
  std::vector<MenuEntry> (*menu)() = nullptr;   ///< for the variant that runs; null for a row without menu
  bool menuOfOneRow = true;                     ///< no menu while other rows are selected too
};

/// A node whose children stand for records of one pool: finds the child of a record and walks the change records.
class QD_EXPORT CQDTreeBranch : public CQDTreeItem {
 public:
  using CQDTreeItem::CQDTreeItem;
  /// The root of a branch, which also answers GetBranchKind with `kind`.
  CQDTreeBranch(CQDTreeListCtrl* control, CQDTreeItem* parent, const BranchKind& kind);

  void RegisterReceiveDataType() override;
  /// Reads the title of a root anew.
  void SetTitleIncludeType() override;
  /// The menu of a root.
  void CreateContextMenu(CPoint& screen) override;
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
  /// Null for a node that is no root.
  virtual const BranchKind* GetBranchKind() const { return nullptr; }
  /// What the table of the root's menu leaves open, asked when the menu opens.
  virtual MenuFill FillMenu() { return {}; }
  /// The records that have children here, when the branch is built.
  virtual std::vector<iterator> Records() const = 0;
  /// A new node for a record, without a row yet; null when the record cannot be read.
  virtual CQDTreeItem* MakeNode(iterator itr) = 0;
  /// Makes, deletes or modifies the child that a change record of the branch's own pool names.
  void ApplyChange(const tagTRNotify& change);
};

}  // namespace qd

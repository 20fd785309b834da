#pragma once

#include <QModelIndex>

#include "qd_wrt/core/CQDTreeItem.h"

namespace qd {

class ItemModelTree;

/// A row of an ItemModelTree that was looked at. Its index follows from the place of its row among those below the
/// node above; it keeps none of Qt's indexes, which cost each change of the model time.
class ModelNode final : public CQDTreeItem {
 public:
  /// `index`: invalid for the root, which has no row.
  ModelNode(CQDTreeListCtrl* control, ModelNode* parent, ItemModelTree& tree, const QModelIndex& index);
  ~ModelNode() override;

  ModelNode* Above() const { return static_cast<ModelNode*>(GetParent()); }
  /// Whether the rows below have come.
  bool IsMade() const { return m_made; }
  void SetMade() { m_made = true; }
  /// Whether the row is to be opened when the model has fetched what is below it.
  bool IsWanted() const { return m_wanted; }
  void SetWanted(bool wanted) { m_wanted = wanted; }
  /// Shows what the model has for this row now.
  void Refresh(const QModelIndex& index);

  int MakeChildItems() override { return 1; }
  void OnInitialize() override;
  bool HasOwnRow() const override { return GetParent() != nullptr; }
  void OnMakeChildren() override;
  CQDTreeItem* MakeSupplied(std::size_t place) override;
  bool DescribeSupplied(std::size_t place, LaterRow& shown) const override;
  void DescribeSuppliedCell(std::size_t place, int column, TreeCell& cell) const override;
  int OnClickCheck(int oldState) override;
  void OnEditChange(const wchar_t* text) override;
  bool ShowsTypedTitle() const override { return false; }
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  int IsEnableDragType(std::uint16_t type) const override;

 private:
  void Write(const QVariant& value, int role);

  ItemModelTree& m_tree;
  bool m_made = false;
  bool m_wanted = false;
};

}  // namespace qd

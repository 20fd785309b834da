#pragma once

#include "qd_wrt/geometry/CQDTreeGeomRoot.h"

namespace qd {

/// The root of the geometry-set tree: one child per geometry set.
class QD_EXPORT CQDTreeItemTopo : public CQDTreeGeomRoot {
 public:
  /// Appends the branch to the children of `parent`, without a row yet.
  CQDTreeItemTopo(CQDTreeListCtrl* control, CQDTreeItem* parent);

  /// Switches the root's box and all sets.
  int OnClickCheck(int oldState) override;
  /// Acts on sets; changes of meshes and materials reach the root too but are none of its business.
  void OnUpdate() override;
  std::optional<RowBox> GetRowBox() const override { return RowBox{kDataGset}; }
  void RereadBox(const RowBox& box) override;

  int ModifyChildItem(iterator itr) override;
  void GetGeomItems(std::vector<CQDTreeItem*>& parts) const override;
  /// The icons of these parts follow how they are drawn now.
  void SetGeomRenderMode(const TArray<iterator>& itrs);
  /// Adds a set with a free name to the model.
  void NewGeometrySet();

  /// The set that a part is in now, and the one below which it stands.
  void AppendConcerned(const tagTRNotify& change, std::vector<CQDTreeItem*>& nodes) const override;

 protected:
  const BranchKind* GetBranchKind() const override;
  std::vector<iterator> Records() const override;
  CQDTreeItem* MakeNode(iterator itr) override;
  CQDTreeItem* NodeOfRecord(iterator itr) const override;
  bool RunOwn(unsigned command) override;
  VisibilityRow KindOfRow() const override { return VisibilityRow::SetRoot; }
  PartCommands::Meshes Meshes() const override { return PartCommands::Meshes::StayAsTheyAre; }
};

}  // namespace qd

#pragma once

#include <map>
#include <memory>

#include "qd_wrt/geometry/CQDTreeGeomRoot.h"

namespace qd {

class CQDTreeItemGset;

/// The root of the geometry-set tree: one child per geometry set.
class QD_EXPORT CQDTreeItemTopo : public CQDTreeGeomRoot {
 public:
  CQDTreeItemTopo(CQDTreeListCtrl* control, CQDTreeItem* parent);

  void CreateContextMenu(CPoint& screen) override;
  void RegisterReceiveDataType() override;
  /// Switches the root's box and all sets.
  int OnClickCheck(int oldState) override;
  /// Acts on sets; changes of meshes and materials reach the root too but are none of its business.
  void OnUpdate() override;
  std::optional<RowBox> GetRowBox() const override { return RowBox{kDataGset}; }
  void RereadBox(const RowBox& box) override;

  int ModifyChildItem(iterator itr) override;
  void GetGeomItems(std::vector<CQDTreeItem*>& parts) const override;
  /// Adds a set with a free name to the model.
  void NewGeometrySet();

  /// The waiting change records that concern a set: of parts that are in it now or stand below its node. They are
  /// sorted out once per notice for all sets.
  std::vector<tagTRNotify> RecordsOfSet(const CQDTreeItemGset& set);

 protected:
  std::vector<iterator> Records() const override;
  CQDTreeItem* MakeNode(iterator itr) override;
  CQDTreeItem* NodeOfRecord(iterator itr) const override;
  bool RunOwn(unsigned command, const std::vector<CQDTreeItem*>& acting) override;
  PartCommands::Meshes Meshes() const override { return PartCommands::Meshes::StayAsTheyAre; }

 private:
  std::uint64_t m_sortedNotice = 0;
  std::map<iterator, std::vector<tagTRNotify>> m_recordsOfSets;
};

}  // namespace qd

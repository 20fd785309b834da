#pragma once

#include "qd_wrt/geometry/CQDTreeItemPart.h"

namespace qd {

/// A geometry part in the geometry-set tree. It can be dragged onto another set, alone or with others.
class QD_EXPORT CQDTreeItemTopoData : public CQDTreeItemPart {
 public:
  /// Appends the node to the children of `group`, without a row yet.
  CQDTreeItemTopoData(CQDTreeListCtrl* control, CQDTreeItem* group, iterator itr);

  void CreateContextMenu(CPoint& screen) override;
  void OnMenuEvent(unsigned command) override;
  /// Goes to the set, like a drop on any node below it.
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
};

/// Entity nodes by kind of topology.
template <TopologyKind Kind>
class TopoDataOf final : public CQDTreeItemTopoData {
 public:
  using CQDTreeItemTopoData::CQDTreeItemTopoData;  ///< see there
};
/// @{
/// The nodes of one kind.
using CQDTreeItemTopoPointData = TopoDataOf<TopologyKind::Point>;
using CQDTreeItemTopoCurveData = TopoDataOf<TopologyKind::Curve>;
using CQDTreeItemTopoSurfaceData = TopoDataOf<TopologyKind::Surface>;
using CQDTreeItemTopoSolidData = TopoDataOf<TopologyKind::Solid>;
using CQDTreeItemTopoCompoundData = TopoDataOf<TopologyKind::Compound>;
/// @}

}  // namespace qd

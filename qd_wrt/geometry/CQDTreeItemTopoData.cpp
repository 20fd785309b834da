#include "qd_wrt/geometry/CQDTreeItemTopoData.h"

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/geometry/GeomMenus.h"
#include "qd_wrt/geometry/PartCommands.h"
#include "qd_wrt/geometry/TopologyCommands.h"

namespace qd {

CQDTreeItemTopoData::CQDTreeItemTopoData(CQDTreeListCtrl* control, CQDTreeItem* group, iterator itr)
    : CQDTreeItemPart(control, group, itr) {
  m_leftDrag = m_multiLeftDrag = true;
  RegsiterDragEnableType(kDataGeom);
}

void CQDTreeItemTopoData::CreateContextMenu(CPoint& screen) {
  if (Record() == nullptr) return;
  TableMenu menu(TopologyEntityMenu(Record()->kind, IsAnySelectedHidden(*GetControl())));
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemTopoData::OnMenuEvent(unsigned command) {
  RunTopologyCommand(*this, command);
}

void CQDTreeItemTopoData::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  GetParent()->OnDrop(nodes);
}

}  // namespace qd

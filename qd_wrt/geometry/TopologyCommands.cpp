#include "qd_wrt/geometry/TopologyCommands.h"

#include <algorithm>

#include "host/CGeomPrevShowHideStarter.h"
#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "qd_wrt/geometry/CQDTreeItemTopo.h"
#include "qd_wrt/geometry/PartCommands.h"

namespace qd {

CQDTreeItemTopo& TopologyRootOf(CQDTreeItem& node) {
  CQDTreeItem* at = &node;
  while (dynamic_cast<CQDTreeItemTopo*>(at) == nullptr) at = at->GetParent();
  return *static_cast<CQDTreeItemTopo*>(at);
}

bool RunTopologyVisibility(CQDTreeItem& node, unsigned command) {
  const bool only = command == kCommandShowOnly || command == kCommandHideOnly;
  const bool plain = command == kCommandShow || command == kCommandHide;
  if (!only && !plain && command != kCommandReverse) return false;
  CQDTreeListCtrl& control = *node.GetControl();
  CQDTreeItemTopo& root = TopologyRootOf(node);
  // What the nodes above change together counts as one change, so that "previous" means before all of it.
  const CGeomPrevShowHideStarter change(node.GetDocument()->GetCADSession());
  if (command == kCommandReverse) {
    InvertParts(SelectedParts(control));
    node.RedrawView();
    return true;
  }
  // The selection goes while the root switches everything.
  std::vector<CQDTreeItem*> chosen;
  control.GetSelectedTreeItems(chosen, 0);
  std::erase_if(chosen, [&](const CQDTreeItem* item) { return item == &root || !item->HasCheck(); });
  const bool show = command == kCommandShow || command == kCommandShowOnly;
  root.SetViewUpdate(0);
  if (command == kCommandShowOnly) node.GetDocument()->OnShowOnly();
  if (only) root.OnMenuEvent(show ? kCommandHideAll : kCommandShowAll);
  for (CQDTreeItem* item : chosen) item->OnClickCheck(show ? kUnchecked : kChecked);
  if (only) node.ResetSelection(1);
  root.SetViewUpdate(1);
  if (only) {
    node.RedrawView();
  } else if (CQDViewBase* view = node.GetDocument()->GetActiveView()) {
    view->Redraw(0);  // whatever the node's own flag says
  }
  return true;
}

void RunTopologyCommand(CQDTreeItem& node, unsigned command) {
  CQDDocBase* doc = node.GetDocument();
  if (!RunTopologyVisibility(node, command)) {
    CQDTreeItem* set = &node;
    while (dynamic_cast<CQDTreeItemGset*>(set) == nullptr) set = set->GetParent();
    const iterator gset = set->GetIterator();
    const bool onGroup = command == kCommandDelete && !node.IsGeom();
    if (command == kCommandNewSet) {
      static_cast<CQDTreeItemGset*>(set)->NewGeometrySet();
    } else if (command == kCommandIncludeExclude) {
      IGeomDialog::DoModeless(doc, L"CQDGeomIncludeExcludeDlg", &gset, nullptr);
    } else if (onGroup) {  // a group is no thing that could be deleted, and its parts must stay
      qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_WRT_GROUP_STAYS"));
    } else {
      std::vector<CQDTreeItem*> parts = SelectedParts(*node.GetControl());
      // What stands below other selected sets and groups is shown and drawn with them, but was not chosen to go.
      if (command == kCommandDelete) {
        std::erase_if(parts, [&node](const CQDTreeItem* part) {
          return !node.GetControl()->IsSelected(part->GetTreeItemHandle());
        });
      }
      PartCommands(node, parts, PartCommands::Meshes::StayAsTheyAre).Run(command);
    }
  }
  MarkModelInfo(doc, command);
}

}  // namespace qd

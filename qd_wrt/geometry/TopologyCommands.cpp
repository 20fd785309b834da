#include "qd_wrt/geometry/TopologyCommands.h"

#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "qd_wrt/geometry/PartCommands.h"
#include "qd_wrt/geometry/PartVisibility.h"

namespace qd {

CQDTreeItemGset* SetOf(CQDTreeItem& node) {
  for (CQDTreeItem* at = &node; at != nullptr; at = at->GetParent()) {
    if (auto* set = dynamic_cast<CQDTreeItemGset*>(at)) return set;
  }
  return nullptr;
}

namespace {

void RunOnRows(CQDTreeItem& node, unsigned command) {
  if (RunVisibility(command, VisibilityRow::RowOfSets, node, nullptr, {})) return;
  CQDTreeItemGset* set = SetOf(node);
  if (command == kCommandNewSet) {
    if (set != nullptr) set->NewGeometrySet();
  } else if (command == kCommandIncludeExclude) {
    const iterator gset = set != nullptr ? set->GetIterator() : 0;
    if (gset != 0) IGeomDialog::DoModeless(node.GetDocument(), L"CQDGeomIncludeExcludeDlg", &gset, nullptr);
  } else if (command == kCommandDelete && !node.IsGeom()) {
    // A group is no thing that could be deleted, and its parts must stay.
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

}  // namespace

void RunTopologyCommand(CQDTreeItem& node, unsigned command) {
  CQDDocBase* doc = node.GetDocument();
  RunOnRows(node, command);
  MarkModelInfo(doc, command);
}

}  // namespace qd

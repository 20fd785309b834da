#pragma once

#include "qd_wrt/core/RecordBranch.h"

namespace qd::workbench {

/// Commands of the host's own nodes.
enum HostCommand : unsigned {
  kCommandNewMaterial = 50001,
  kCommandEditMaterial = 50002,
  kCommandDeleteMaterial = 50003
};

/// The materials of the document. The branch stands in the tree while there is any; a material that is dropped on
/// geometry is applied to it.
class MaterialBranch final : public CQDTreeRecordBranch {
 public:
  MaterialBranch(CQDTreeListCtrl* control, CQDTreeItem* parent);
};

}  // namespace qd::workbench

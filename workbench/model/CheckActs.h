#pragma once

#include <vector>

#include "workbench/mesh/MeshChecks.h"
#include "workbench/model/MeshActs.h"

namespace qd::workbench {

/// Makes mesh sets of what a check of some sets has found, as one undoable act under a title: nodes and edges, as
/// lines, in one set; elements go out of their set into a new one that is nested in it and has its property, so
/// that what they belong to stays true. `checked` are the meshes as they were looked at, beside the sets. The
/// result is how much was found; `made` gets the new sets.
ActResult PutFound(Database& database, const std::vector<iterator>& sets, const std::vector<MeshPtr>& checked,
                   const CheckResult& found, const CString& name, const CString& title,
                   std::vector<iterator>& made);

}  // namespace qd::workbench

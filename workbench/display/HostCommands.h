#pragma once

#include "host/CQDCommandObj.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// Runs a command object on a database: "Geom" applies materials and geometry sets to parts, "GeomSet" adds and
/// changes geometry sets. Each is one undoable act. Returns 1, or 0 with nothing changed, also for a command or
/// parameters that it does not know.
int RunHostCommand(Database& database, const CQDCommandObj& command);

}  // namespace qd::workbench

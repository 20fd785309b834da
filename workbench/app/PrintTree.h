#pragma once

#include <QStringList>

#include "workbench/app/MessageTables.h"

namespace qd::workbench {

/// Imports files without a window and prints the model tree on standard output. Returns the exit status: 1 when
/// any file could not be imported; why is said on standard error.
int PrintTreeOf(const QStringList& paths);

}  // namespace qd::workbench

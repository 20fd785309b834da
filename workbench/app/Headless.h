#pragma once

#include "workbench/app/CommandLine.h"

namespace qd::workbench {

/// Does what a command line asks for without a window. Returns the exit status: 1 when something failed, 2 when it
/// was called in a wrong way; what that was is said on standard error.
int RunWithoutWindow(const CommandLine& line);

}  // namespace qd::workbench

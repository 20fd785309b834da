#pragma once

namespace qd::workbench {

/// Lets the process, with all its threads, make only the system calls that reading a file needs: an allow-list,
/// which no new call of a newer kernel slips through. False when the kernel cannot filter calls.
bool FilterCalls();

}  // namespace qd::workbench

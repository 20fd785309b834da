#pragma once

#include <string>
#include <vector>

namespace qd::workbench {

/// Lets the system's Python run a script, with the module qd at hand, in place of this program. Returns only when
/// that cannot be done, with the reason in a sentence.
std::string RunScript(const std::string& script, const std::vector<std::string>& arguments);

}  // namespace qd::workbench

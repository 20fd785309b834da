#pragma once

#include <string>
#include <string_view>

namespace qd::workbench {

/// A text from outside as it may stand in a message: at most some tens of characters of valid UTF-8 on one line,
/// without what steers a terminal.
std::string ShownText(std::string_view bytes);

}  // namespace qd::workbench

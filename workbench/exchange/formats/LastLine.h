#pragma once

#include <string_view>

namespace qd::workbench {

/// The last line of a text that holds more than blanks.
inline std::string_view LastLine(std::string_view text) {
  const std::size_t last = text.find_last_not_of(" \t\r\n\v\f");
  text = text.substr(0, last == std::string_view::npos ? 0 : last + 1);
  return text.substr(text.find_last_of("\r\n") + 1);
}

}  // namespace qd::workbench

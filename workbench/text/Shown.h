#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qd::workbench {

/// How much is shown of a name, and of what a message says of several.
inline constexpr std::size_t kShownName = 60;
inline constexpr std::size_t kShownDetail = 400;

/// Codes that end lines or steer terminals; names of records and of what is written have none.
bool IsControl(std::uint32_t code);

/// A text from outside as it may stand in a message: at most so many characters of valid UTF-8 on one line,
/// without what steers a terminal.
std::string ShownText(std::string_view bytes, std::size_t mostCharacters = kShownName);

}  // namespace qd::workbench

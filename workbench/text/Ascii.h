#pragma once

#include <string>
#include <string_view>

namespace qd::workbench {

/// The text with the letters a to z in capitals; nothing else changes, whatever the language of the system.
std::string UpperCase(std::string_view text);
/// Likewise with the letters A to Z made small.
std::string LowerCase(std::string_view text);
/// The text without blanks, tabulators and carriage returns at its ends.
std::string_view Trimmed(std::string_view text);

}  // namespace qd::workbench

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Types.h"

namespace qd::workbench {

// Values as they stand in lines of Python.

/// A text in quotes: on one line, whatever is in it, and with nothing that only looks like something else.
std::string PythonText(const CString& text);
/// Likewise the name of a file, whose bytes may be any.
std::string PythonPath(std::string_view bytes);
std::string PythonNumber(double value);
/// "#RRGGBB" in quotes.
std::string PythonColour(COLORREF colour);
/// Numbers in brackets that a loop goes through: a range where they follow one another.
std::string PythonNumbers(const std::vector<int>& numbers);

}  // namespace qd::workbench

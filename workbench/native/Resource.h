#pragma once

#include <string>

namespace qd::workbench {

/// The bytes of one of the program's resources; empty when there is none.
std::string ReadResource(const std::wstring& name, const wchar_t* type);

}  // namespace qd::workbench

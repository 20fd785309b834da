#pragma once

#include <string>

namespace qd::workbench {

/// UTF-8 for a text of any elements; what is no character becomes U+FFFD.
std::string ToUtf8(const std::wstring& text);
/// The text of UTF-8; what is none becomes U+FFFD.
std::wstring FromUtf8(const std::string& bytes);

}  // namespace qd::workbench

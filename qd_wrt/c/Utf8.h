#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd::c {

/// The text of UTF-8; none for bytes that are not exactly that.
QD_EXPORT std::optional<CString> FromUtf8(std::string_view bytes);
/// UTF-8 of a text of any elements. What is no character, or would end a text of C, becomes U+FFFD.
std::string ToUtf8(const CString& text);

}  // namespace qd::c

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace qd {

/// The text of UTF-8; none for bytes that are not exactly that.
QD_EXPORT std::optional<std::wstring> DecodeUtf8(std::string_view bytes);
/// UTF-8 of a text of any elements. What is no character, or would end a text of C, becomes U+FFFD.
QD_EXPORT std::string EncodeUtf8(const std::wstring& text);

}  // namespace qd

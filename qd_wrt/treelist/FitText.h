#pragma once

#include <string_view>

#include "platform/Export.h"
#include "platform/Toolkit.h"

namespace qd {

/// The longest beginning of `text` that fits into `width` pixels, followed by "..." when anything was cut. Never
/// cuts a character of two elements in half. Tabs and line breaks become blanks.
QD_EXPORT CString FitText(const Font& font, std::wstring_view text, int width);

/// A text is cut when it comes closer than this to the width of its cell.
inline constexpr int kTextMargin = 8;

}  // namespace qd

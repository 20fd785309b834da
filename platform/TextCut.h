#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Export.h"

namespace qd {

/// The greatest length, not above `length`, at which a text can be cut without breaking what a reader sees as one
/// character: an accent stays with its letter, an emoji with its parts, the halves of a pair stay together. A run
/// of marks that does not end is cut all the same.
QD_EXPORT std::size_t CutLength(std::wstring_view text, std::size_t length);

}  // namespace qd

#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Export.h"

namespace qd {

/// Whether what a reader sees as one character ends before a place of a text (Unicode's extended grapheme
/// clusters): not between a letter and its marks, the parts of an emoji, the two letters of a flag, those of a
/// Korean syllable, or the halves of a pair. The ends of a text are such places.
QD_EXPORT bool IsCharacterEnd(std::wstring_view text, std::size_t at);

/// The greatest length, not above `length`, at which a text can be cut without breaking a character. A run of
/// more than 32 marks is cut all the same.
QD_EXPORT std::size_t CutLength(std::wstring_view text, std::size_t length);

/// Whether nothing can be seen of a text: it is empty, or holds only blanks of all widths, controls, and what
/// tells how others stand or join.
QD_EXPORT bool IsBlank(std::wstring_view text);

}  // namespace qd

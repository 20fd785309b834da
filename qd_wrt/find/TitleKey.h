#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Export.h"

namespace qd::find {

/// @{
/// Appends what a text is searched by: without regard to case, without accents, as UTF-8. A word that is typed
/// without accents occurs in a title when its key occurs in the title's key.
QD_EXPORT void AppendKey(std::wstring_view text, std::string& key);
QD_EXPORT std::string KeyOf(std::wstring_view text);
/// @}

/// A text without regard to case, each accent as a character of its own behind its letter.
QD_EXPORT std::u32string FoldedWithMarks(std::wstring_view text);
/// Whether a character of FoldedWithMarks is an accent, which is not in the key.
QD_EXPORT bool IsMark(char32_t character);

/// Whether a character of a key goes on with what a reader sees as one: the later letters of a Korean syllable,
/// signs of voiced kana, vowels of Indic scripts.
QD_EXPORT bool GoesOn(char32_t character);

/// Each character that differs from its lower case in no more than case, and that lower case; in order of the
/// first.
QD_EXPORT const std::vector<std::pair<char32_t, char32_t>>& CasePairs();

/// Whether a character belongs to a word: a letter, a digit, an underscore, a mark.
QD_EXPORT bool IsOfWord(char32_t character);

}  // namespace qd::find

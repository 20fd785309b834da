#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace qd {

/// Whether accents, and the other marks that people leave out when they search, count where texts are compared.
/// The signs that spell do in any case: those of voiced kana, of Indic scripts, and the vowels of Thai.
enum class Accents { kCount, kLeftOut };

/// The code that stands for a letter in both cases, one for one, the same in every locale.
QD_EXPORT char32_t FoldCase(char32_t code);

/// @{
/// A text in capitals, or without any: letter for letter, the same in every locale. A letter that has no other
/// form of its own, as "ß", stays.
QD_EXPORT std::wstring InCapitals(std::wstring_view text);
QD_EXPORT std::wstring InSmallLetters(std::wstring_view text);
/// @}

/// Codes that show nothing: joiners, variation selectors, soft hyphens. They count nowhere here.
QD_EXPORT bool IsIgnorable(char32_t code);

/// What texts are compared by: equal for texts that a reader takes for the same, in either case and however they
/// are composed. Letters are folded fully ("Straße" is as "STRASSE", "ﬁ" as "fi"). In UTF-8, so that the key of a
/// part of a text is a part of its key, and keys stand in the order of their codes; halves that stand alone and
/// numbers behind the last code are written by the same rule.
QD_EXPORT std::string FoldedKey(std::wstring_view text, Accents accents = Accents::kCount);

/// Adds the key of a text to `keys`, which may hold those of others.
QD_EXPORT void AppendFoldedKey(std::wstring_view text, Accents accents, std::string& keys);

/// Whether leaving out the accents makes a difference to a text.
QD_EXPORT bool HasAccents(std::wstring_view text);

/// Whether the key of a text begins with `key`. Looks at no more of the text than is needed, and makes no key.
QD_EXPORT bool StartsWithFolded(std::wstring_view text, std::string_view key, Accents accents = Accents::kCount);

/// Order of two texts without case: 0 for those with the same key. Letters decide, in the order of their codes,
/// and accents between texts that differ in nothing else. Otherwise the difference of the first two codes that
/// differ; the shorter of two stands before the longer with -1.
QD_EXPORT int CompareFolded(std::wstring_view a, std::wstring_view b);

}  // namespace qd

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qd {

/// Whether an element of a text is one of the first 128 codes.
inline constexpr bool IsAscii(wchar_t element) {
  return static_cast<char32_t>(element) < 0x80;
}

/// A code of a text, and how many elements it takes.
struct CodePoint {
  char32_t code = 0;       ///< the code
  std::size_t length = 1;  ///< how many elements of the text it takes
};

/// @{
/// The halves of a code that takes two elements, and the code that two of them are.
inline constexpr bool IsFirstHalf(char32_t element) {
  return element >= 0xD800 && element <= 0xDBFF;
}
inline constexpr bool IsSecondHalf(char32_t element) {
  return element >= 0xDC00 && element <= 0xDFFF;
}
inline constexpr char32_t JoinHalves(char32_t first, char32_t second) {
  constexpr char32_t kBeyond = 0x10000;
  constexpr unsigned kBits = 10;
  return kBeyond + ((first - 0xD800) << kBits) + (second - 0xDC00);
}
/// @}

/// The code that begins at a place of a text: an element, or a pair of halves, however wide elements are. A half
/// that stands alone, and what is no code at all, are taken as they are.
inline CodePoint CodePointAt(std::wstring_view text, std::size_t at) {
  const auto first = static_cast<char32_t>(text[at]);
  if (!IsFirstHalf(first) || at + 1 >= text.size()) return {first, 1};
  const auto second = static_cast<char32_t>(text[at + 1]);
  return IsSecondHalf(second) ? CodePoint{JoinHalves(first, second), 2} : CodePoint{first, 1};
}

/// The code that ends at a place of a text that is not its beginning.
inline CodePoint CodePointBefore(std::wstring_view text, std::size_t at) {
  const auto second = static_cast<char32_t>(text[at - 1]);
  if (!IsSecondHalf(second) || at < 2) return {second, 1};
  const auto first = static_cast<char32_t>(text[at - 2]);
  return IsFirstHalf(first) ? CodePoint{JoinHalves(first, second), 2} : CodePoint{second, 1};
}

/// Adds a code to a text: where elements are small, in two halves.
inline void AppendCodePoint(std::wstring& text, char32_t code) {
  constexpr char32_t kBeyond = 0x10000;
  constexpr unsigned kBits = 10;
  if (sizeof(wchar_t) > 2 || code < kBeyond) {
    text += static_cast<wchar_t>(code);
    return;
  }
  text += static_cast<wchar_t>(0xD800 + ((code - kBeyond) >> kBits));
  text += static_cast<wchar_t>(0xDC00 + ((code - kBeyond) & ((1U << kBits) - 1)));
}

/// Whether a place lies between the halves of a pair.
inline bool SplitsPair(std::wstring_view text, std::size_t at) {
  return at > 0 && at < text.size() && IsFirstHalf(static_cast<char32_t>(text[at - 1])) &&
         IsSecondHalf(static_cast<char32_t>(text[at]));
}

}  // namespace qd

#pragma once

#include <bit>
#include <cstddef>
#include <string_view>

#include "platform/text/CodePoints.h"

namespace qd::find {

/// The character at `at`, which moves behind it; see CodePointAt for what one is.
inline char32_t NextCharacter(std::wstring_view text, std::size_t& at) {
  const CodePoint character = CodePointAt(text, at);
  at += character.length;
  return character.code;
}

/// Likewise in the bytes of a folded key, whose first says how many there are.
inline char32_t NextCharacter(std::string_view key, std::size_t& at) {
  const auto first = static_cast<unsigned char>(key[at++]);
  const int bytes = std::countl_one(first);
  char32_t code = bytes == 0 ? first : first & (0x7FU >> static_cast<unsigned>(bytes));
  for (int left = bytes; left > 1 && at < key.size(); --left) {
    code = code << 6U | (static_cast<unsigned char>(key[at++]) & 0x3FU);
  }
  return code;
}

/// Likewise of a text in characters.
inline char32_t NextCharacter(std::u32string_view text, std::size_t& at) {
  return text[at++];
}

}  // namespace qd::find

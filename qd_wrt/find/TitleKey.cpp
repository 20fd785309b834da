#include "qd_wrt/find/TitleKey.h"

#include <array>

#include "platform/text/Folding.h"
#include "platform/text/UnicodeTables.h"
#include "qd_wrt/find/CodePoints.h"

namespace qd::find {

void AppendKey(std::wstring_view text, std::string& key) {
  // Most titles are plain; a loop without branches takes these many at a time.
  const std::size_t start = key.size();
  key.resize(start + text.size());
  char* out = key.data() + start;
  std::uint32_t all = 0;
  for (const wchar_t element : text) {
    const auto code = static_cast<std::uint32_t>(element);
    all |= code;
    *out++ = static_cast<char>(code - U'A' < 26 ? code | 0x20U : code);
  }
  if (all < 0x80) return;
  key.resize(start);
  AppendFoldedKey(text, Accents::kLeftOut, key);
}

std::string KeyOf(std::wstring_view text) {
  std::string key;
  AppendKey(text, key);
  return key;
}

std::u32string FoldedWithMarks(std::wstring_view text) {
  const std::string key = FoldedKey(text, Accents::kCount);
  std::u32string folded;
  for (std::size_t at = 0; at < key.size();) folded += NextCharacter(std::string_view(key), at);
  return folded;
}

bool IsMark(char32_t character) {
  return DataOf(character).accent;
}

bool GoesOn(char32_t character) {
  switch (DataOf(character).breaks) {
    case BreakKind::kExtend:
    case BreakKind::kJoiner:
    case BreakKind::kSpacingMark:
    case BreakKind::kVowel:
    case BreakKind::kTrailing:
      return true;
    default:
      return false;
  }
}

const std::vector<std::pair<char32_t, char32_t>>& CasePairs() {
  static const std::vector<std::pair<char32_t, char32_t>> pairs = [] {
    std::vector<std::pair<char32_t, char32_t>> made;
    for (char32_t c = 0; c < kUnicodeEnd; ++c) {
      if (const char32_t small = FoldCase(c); small != c) made.emplace_back(c, small);
    }
    return made;
  }();
  return pairs;
}

bool IsOfWord(char32_t character) {
  if (character < 0x80) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == '_';
  }
  // Of other scripts all but the blocks of signs, which hold no letters that titles are made of.
  constexpr std::array<std::pair<char32_t, char32_t>, 6> kSigns{
      {{0x80, 0xBF}, {0x2000, 0x206F}, {0x20A0, 0x2BFF}, {0x3000, 0x3004}, {0x3008, 0x3020}, {0xFF00, 0xFF0F}}};
  for (const auto& [first, last] : kSigns) {
    if (character >= first && character <= last) return false;
  }
  return DataOf(character).breaks != BreakKind::kPictograph && DataOf(character).breaks != BreakKind::kControl;
}

}  // namespace qd::find

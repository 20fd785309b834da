#include "platform/TextCut.h"

#include <algorithm>
#include <array>

namespace qd {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

/// Marks that belong to the character before them: accents, vowel signs, variation selectors, tags, skin tones.
constexpr std::array kMarks{
    Range{0x0300, 0x036F},   Range{0x0483, 0x0489},   Range{0x0591, 0x05BD}, Range{0x05BF, 0x05BF},
    Range{0x05C1, 0x05C2},   Range{0x05C4, 0x05C5},   Range{0x05C7, 0x05C7}, Range{0x0610, 0x061A},
    Range{0x064B, 0x065F},   Range{0x0670, 0x0670},   Range{0x06D6, 0x06DC}, Range{0x06DF, 0x06E4},
    Range{0x06E7, 0x06E8},   Range{0x06EA, 0x06ED},   Range{0x0730, 0x074A}, Range{0x07A6, 0x07B0},
    Range{0x0E31, 0x0E31},   Range{0x0E34, 0x0E3A},   Range{0x0E47, 0x0E4E}, Range{0x0EB1, 0x0EB1},
    Range{0x0EB4, 0x0EBC},   Range{0x0EC8, 0x0ECE},   Range{0x0F71, 0x0F84}, Range{0x102B, 0x103E},
    Range{0x17B4, 0x17D3},   Range{0x1AB0, 0x1AFF},   Range{0x1DC0, 0x1DFF}, Range{0x20D0, 0x20FF},
    Range{0x3099, 0x309A},   Range{0xFE00, 0xFE0F},   Range{0xFE20, 0xFE2F}, Range{0x1F3FB, 0x1F3FF},
    Range{0xE0020, 0xE007F}, Range{0xE0100, 0xE01EF},
};
/// Where signs stand in the Indic blocks, which are laid out alike, 128 places each.
constexpr Range kIndicBlocks{0x0900, 0x0DFF};
constexpr std::array kIndicSigns{Range{0x00, 0x03}, Range{0x3A, 0x3C}, Range{0x3E, 0x4F}, Range{0x51, 0x57},
                                 Range{0x62, 0x63}};
constexpr Range kFlagLetters{0x1F1E6, 0x1F1FF};
constexpr Range kFirstHalves{0xD800, 0xDBFF};
constexpr Range kSecondHalves{0xDC00, 0xDFFF};
constexpr char32_t kJoiner = 0x200D;

constexpr bool In(const Range& range, char32_t code) {
  return code >= range.first && code <= range.last;
}
bool InAny(const auto& ranges, char32_t code) {
  return std::any_of(ranges.begin(), ranges.end(), [code](const Range& range) { return In(range, code); });
}

bool IsMark(char32_t code) {
  if (code < kMarks.front().first) return false;
  constexpr char32_t kBlock = 0x80;
  return code == kJoiner || InAny(kMarks, code) || (In(kIndicBlocks, code) && InAny(kIndicSigns, code % kBlock));
}

/// Conjoining letters of Korean syllables: leading, vowel, trailing.
bool ContinuesSyllable(char32_t before, char32_t after) {
  constexpr Range kLeading{0x1100, 0x115F};
  constexpr Range kVowel{0x1160, 0x11A7};
  constexpr Range kTrailing{0x11A8, 0x11FF};
  constexpr Range kSyllables{0xAC00, 0xD7A3};
  if (In(kVowel, after)) return In(kLeading, before) || In(kVowel, before) || In(kSyllables, before);
  return In(kTrailing, after) && (In(kVowel, before) || In(kTrailing, before) || In(kSyllables, before));
}

char32_t Element(std::wstring_view text, std::size_t at) {
  return static_cast<char32_t>(text[at]);
}
char32_t Joined(char32_t first, char32_t second) {
  constexpr char32_t kBeyond = 0x10000;
  constexpr unsigned kBits = 10;
  return kBeyond + ((first - kFirstHalves.first) << kBits) + (second - kSecondHalves.first);
}
/// The characters after and before a place, each one element or a pair of halves.
char32_t After(std::wstring_view text, std::size_t at) {
  const char32_t first = Element(text, at);
  const bool pair = In(kFirstHalves, first) && at + 1 < text.size() && In(kSecondHalves, Element(text, at + 1));
  return pair ? Joined(first, Element(text, at + 1)) : first;
}
char32_t Before(std::wstring_view text, std::size_t at) {
  const char32_t second = Element(text, at - 1);
  const bool pair = In(kSecondHalves, second) && at > 1 && In(kFirstHalves, Element(text, at - 2));
  return pair ? Joined(Element(text, at - 2), second) : second;
}

/// Flags are pairs of letters: between the two of one there is no end.
bool IsInsideFlag(std::wstring_view text, std::size_t at) {
  std::size_t letters = 0;
  while (at > 0 && In(kFlagLetters, Before(text, at))) {
    ++letters;
    at -= Element(text, at - 1) > 0xFFFF ? 1 : 2;
  }
  return letters % 2 == 1;
}

bool SplitsPair(std::wstring_view text, std::size_t at) {
  return In(kFirstHalves, Element(text, at - 1)) && In(kSecondHalves, Element(text, at));
}

bool IsEnd(std::wstring_view text, std::size_t at) {
  if (SplitsPair(text, at)) return false;
  const char32_t before = Before(text, at);
  const char32_t after = After(text, at);
  if (before == kJoiner || IsMark(after) || ContinuesSyllable(before, after)) return false;
  return !In(kFlagLetters, after) || !In(kFlagLetters, before) || !IsInsideFlag(text, at);
}

}  // namespace

std::size_t CutLength(std::wstring_view text, std::size_t length) {
  if (length >= text.size()) return text.size();
  constexpr std::size_t kLongestCharacter = 24;
  const std::size_t least = length > kLongestCharacter ? length - kLongestCharacter : 0;
  for (std::size_t at = length; at > least; --at) {
    if (IsEnd(text, at)) return at;
  }
  if (least == 0) return 0;
  return SplitsPair(text, length) ? length - 1 : length;
}

}  // namespace qd

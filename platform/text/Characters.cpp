#include "platform/text/Characters.h"

#include "platform/text/CodePoints.h"
#include "platform/text/UnicodeTables.h"

namespace qd {

namespace {

bool IsControlKind(BreakKind kind) {
  return kind == BreakKind::kControl || kind == BreakKind::kCarriageReturn || kind == BreakKind::kLineFeed;
}

/// Conjoining letters of Korean syllables: leading, vowel, trailing.
bool ContinuesSyllable(BreakKind before, BreakKind after) {
  switch (before) {
    case BreakKind::kLeading:
      return after == BreakKind::kLeading || after == BreakKind::kVowel || after == BreakKind::kOpenSyllable ||
             after == BreakKind::kClosedSyllable;
    case BreakKind::kOpenSyllable:
    case BreakKind::kVowel:
      return after == BreakKind::kVowel || after == BreakKind::kTrailing;
    case BreakKind::kClosedSyllable:
    case BreakKind::kTrailing:
      return after == BreakKind::kTrailing;
    default:
      return false;
  }
}

/// Whether the joiner before a place joins what comes to a pictograph, with marks between them.
bool JoinsPictographs(std::wstring_view text, std::size_t at) {
  at -= CodePointBefore(text, at).length;
  while (at > 0) {
    const CodePoint before = CodePointBefore(text, at);
    const BreakKind kind = DataOf(before.code).breaks;
    if (kind != BreakKind::kExtend) return kind == BreakKind::kPictograph;
    at -= before.length;
  }
  return false;
}

/// Flags are pairs of letters: between the two of one there is no end.
bool IsInsideFlag(std::wstring_view text, std::size_t at) {
  bool odd = false;
  while (at > 0) {
    const CodePoint before = CodePointBefore(text, at);
    if (DataOf(before.code).breaks != BreakKind::kFlagLetter) break;
    odd = !odd;
    at -= before.length;
  }
  return odd;
}

}  // namespace

bool IsCharacterEnd(std::wstring_view text, std::size_t at) {
  if (at == 0 || at >= text.size()) return true;
  if (IsAscii(text[at - 1]) && IsAscii(text[at])) return text[at - 1] != L'\r' || text[at] != L'\n';
  if (SplitsPair(text, at)) return false;
  const BreakKind before = DataOf(CodePointBefore(text, at).code).breaks;
  const BreakKind after = DataOf(CodePointAt(text, at).code).breaks;
  if (IsControlKind(before) || IsControlKind(after)) return true;
  if (after == BreakKind::kExtend || after == BreakKind::kJoiner || after == BreakKind::kSpacingMark) return false;
  if (before == BreakKind::kPrepend || ContinuesSyllable(before, after)) return false;
  if (before == BreakKind::kJoiner && after == BreakKind::kPictograph) return !JoinsPictographs(text, at);
  if (before == BreakKind::kFlagLetter && after == BreakKind::kFlagLetter) return !IsInsideFlag(text, at);
  return true;
}

bool IsBlank(std::wstring_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint point = CodePointAt(text, at);
    if (!DataOf(point.code).blank) return false;
    at += point.length;
  }
  return true;
}

std::size_t CutLength(std::wstring_view text, std::size_t length) {
  if (length >= text.size()) return text.size();
  constexpr std::size_t kLongestCharacter = 32;
  const std::size_t least = length > kLongestCharacter ? length - kLongestCharacter : 0;
  for (std::size_t at = length; at > least; --at) {
    if (IsCharacterEnd(text, at)) return at;
  }
  if (least == 0) return 0;
  return SplitsPair(text, length) ? length - 1 : length;
}

}  // namespace qd

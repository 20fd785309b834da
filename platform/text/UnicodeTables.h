#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace qd {

/// What decides whether a character may end before or behind a code.
enum class BreakKind : std::uint8_t {
  kOther,
  kCarriageReturn,
  kLineFeed,
  kControl,
  kExtend,
  kJoiner,
  kPrepend,
  kSpacingMark,
  kFlagLetter,
  kLeading,  ///< conjoining letters of Korean syllables
  kVowel,
  kTrailing,
  kOpenSyllable,  ///< composed syllables without a trailing letter, and with one
  kClosedSyllable,
  kPictograph
};

/// What is known of a code. Codes that are alike share one.
struct CodeData {
  BreakKind breaks = BreakKind::kOther;  ///< where characters end beside it
  std::uint8_t combining = 0;            ///< canonical combining class; 0 of what begins a sequence
  bool ignorable = false;                ///< shows nothing, and is passed over where texts are compared
  bool accent = false;                   ///< a mark that people leave out when they search
  bool blank = false;          ///< nothing can be seen of it: blanks of all widths, controls, what is ignorable
  std::int32_t toSmall = 0;    ///< distance of the code that stands for both cases
  std::int32_t toCapital = 0;  ///< distance of the letter's other form, one for one; 0 for a letter without one
  std::int32_t toLower = 0;    ///< likewise, of its small letter
};

/// @{
/// The tables, which the program in resources/ makes from the Unicode data files: the block of each run of codes,
/// and for each code of a block the place of its data, or of its folded text: a count, and as many codes.
inline constexpr unsigned kUnicodeBlockBits = 7;
inline constexpr char32_t kUnicodeEnd = 0x110000;
extern const std::uint16_t kDataBlocks[];
extern const std::uint16_t kDataPlaces[];
extern const CodeData kCodeData[];
extern const std::uint16_t kFoldedBlocks[];
extern const std::uint16_t kFoldedPlaces[];
extern const char32_t kFoldedTexts[];
/// @}

/// The entry of a code in a table of two stages. Codes behind the last have that of the last, which says nothing.
inline std::uint16_t UnicodeEntry(const std::uint16_t* blocks, const std::uint16_t* places, char32_t code) {
  constexpr char32_t kInBlock = (1U << kUnicodeBlockBits) - 1;
  if (code >= kUnicodeEnd) code = kUnicodeEnd - 1;
  return places[(std::size_t{blocks[code >> kUnicodeBlockBits]} << kUnicodeBlockBits) + (code & kInBlock)];
}

/// What is known of a code.
inline const CodeData& DataOf(char32_t code) {
  return kCodeData[UnicodeEntry(kDataBlocks, kDataPlaces, code)];
}

/// What a code becomes when it is decomposed canonically and its case is folded; nothing where that is the code
/// itself. Composed Korean syllables, which follow a rule, are not among them.
inline std::span<const char32_t> FoldedTextOf(char32_t code) {
  const char32_t* text = kFoldedTexts + UnicodeEntry(kFoldedBlocks, kFoldedPlaces, code);
  return {text + 1, *text};
}

}  // namespace qd

#pragma once

#include <vector>

#include "platform/Export.h"

namespace qd::find {

/// The greatest one that there is.
inline constexpr char32_t kLastCharacter = 0x10FFFF;

/// A set of characters as ranges, in order and apart from each other once it is tidy.
class QD_EXPORT CharacterSet {
 public:
  /// Characters from one to another, both included.
  struct Range {
    /// @{
    /// Both are in it.
    char32_t first = 0;
    char32_t last = 0;
    /// @}
    bool operator==(const Range&) const = default;  ///< member by member
  };

  /// @{
  /// Adds characters; Tidy is wanted then.
  void Add(char32_t first, char32_t last) { m_ranges.push_back({first, last}); }
  void Add(const CharacterSet& other);
  /// @}
  /// Puts the ranges in order. Wanted after adding, before anything below.
  void Tidy();
  /// Adds to each character what differs from it by case only.
  void AddOtherCases();
  void Invert();                                                 ///< to all characters that it does not hold
  bool Contains(char32_t character) const;                       ///< whether it holds a character
  const std::vector<Range>& Ranges() const { return m_ranges; }  ///< in order, once it is tidy
  bool operator==(const CharacterSet&) const = default;  ///< whether both hold the same, once they are tidy

  /// @{
  /// A tidy set of these characters.
  static CharacterSet Of(char32_t first, char32_t last);
  static CharacterSet Digits();
  static CharacterSet Blanks();
  /// @}
  /// What words are made of; see IsOfWord.
  static CharacterSet WordCharacters();

 private:
  std::vector<Range> m_ranges;
};

}  // namespace qd::find

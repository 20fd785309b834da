#pragma once

#include <vector>

namespace qd::find {

inline constexpr char32_t kLastCharacter = 0x10FFFF;

/// A set of characters as ranges, in order and apart from each other once it is tidy.
class CharacterSet {
 public:
  struct Range {
    char32_t first = 0;
    char32_t last = 0;
    bool operator==(const Range&) const = default;
  };

  void Add(char32_t first, char32_t last) { m_ranges.push_back({first, last}); }
  void Add(const CharacterSet& other);
  /// Puts the ranges in order. Wanted after adding, before anything below.
  void Tidy();
  /// Adds to each character what differs from it by case only.
  void AddOtherCases();
  void Invert();
  bool Contains(char32_t character) const;
  const std::vector<Range>& Ranges() const { return m_ranges; }
  bool operator==(const CharacterSet&) const = default;

  static CharacterSet Of(char32_t first, char32_t last);
  static CharacterSet Digits();
  static CharacterSet Blanks();
  /// What words are made of; see IsOfWord.
  static CharacterSet WordCharacters();

 private:
  std::vector<Range> m_ranges;
};

}  // namespace qd::find

#include "qd_wrt/find/CharacterSet.h"

#include <algorithm>

#include "qd_wrt/find/TitleKey.h"

namespace qd::find {

void CharacterSet::Add(const CharacterSet& other) {
  m_ranges.insert(m_ranges.end(), other.m_ranges.begin(), other.m_ranges.end());
}

void CharacterSet::Tidy() {
  std::sort(m_ranges.begin(), m_ranges.end(), [](const Range& a, const Range& b) { return a.first < b.first; });
  std::vector<Range> tidy;
  for (const Range& range : m_ranges) {
    if (!tidy.empty() && range.first <= tidy.back().last + 1) {
      tidy.back().last = std::max(tidy.back().last, range.last);
    } else {
      tidy.push_back(range);
    }
  }
  m_ranges = std::move(tidy);
}

void CharacterSet::AddOtherCases() {
  CharacterSet lower = *this;
  for (const auto& [upper, folded] : CasePairs()) {
    if (Contains(upper)) lower.Add(folded, folded);
  }
  lower.Tidy();
  CharacterSet all = lower;
  for (const auto& [upper, folded] : CasePairs()) {
    if (lower.Contains(folded)) all.Add(upper, upper);
  }
  all.Tidy();
  *this = std::move(all);
}

void CharacterSet::Invert() {
  std::vector<Range> others;
  char32_t next = 0;
  for (const Range& range : m_ranges) {
    if (range.first > next) others.push_back({next, range.first - 1});
    next = range.last + 1;
  }
  if (next <= kLastCharacter) others.push_back({next, kLastCharacter});
  m_ranges = std::move(others);
}

bool CharacterSet::Contains(char32_t character) const {
  const auto behind = std::upper_bound(m_ranges.begin(), m_ranges.end(), character,
                                       [](char32_t c, const Range& range) { return c < range.first; });
  return behind != m_ranges.begin() && std::prev(behind)->last >= character;
}

CharacterSet CharacterSet::Of(char32_t first, char32_t last) {
  CharacterSet set;
  set.Add(first, last);
  return set;
}

CharacterSet CharacterSet::Digits() {
  return Of(U'0', U'9');
}

CharacterSet CharacterSet::Blanks() {
  CharacterSet set;
  set.Add(U'\t', U'\r');
  for (const char32_t blank : {0x20, 0x85, 0xA0, 0x1680, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000})
    set.Add(blank, blank);
  set.Add(0x2000, 0x200A);
  set.Tidy();
  return set;
}

CharacterSet CharacterSet::WordCharacters() {
  // Looked up one by one, once in a program.
  static const CharacterSet set = [] {
    CharacterSet made;
    for (char32_t c = 0; c <= kLastCharacter; ++c) {
      if (!IsOfWord(c)) continue;
      if (!made.m_ranges.empty() && made.m_ranges.back().last + 1 == c) {
        made.m_ranges.back().last = c;
      } else {
        made.Add(c, c);
      }
    }
    return made;
  }();
  return set;
}

}  // namespace qd::find

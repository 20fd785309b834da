#include "qd_wrt/find/TextPattern.h"

#include <algorithm>
#include <utility>

#include "qd_wrt/find/TitleKey.h"

namespace qd::find {
namespace {

/// All characters of which something holds.
CharacterSet SetWhere(bool (*holds)(char32_t)) {
  CharacterSet set;
  for (char32_t c = 0; c <= kLastCharacter; ++c) {
    if (holds(c)) set.Add(c, c);
  }
  set.Tidy();
  return set;
}

/// Writes the steps of a word with `*` and `?`; where marks count, a letter that was typed without any may have
/// some.
class WordWriter {
 public:
  explicit WordWriter(bool marksCount) : m_marksCount(marksCount) {}

  Pattern Write(std::u32string_view word) {
    for (const char32_t character : word) {
      if (m_marksMayFollow && !IsMark(character)) Append(Marks(), true);
      if (character == '*') {
        Append(CharacterSet::Of(0, kLastCharacter), true);
      } else if (character == '?') {
        Append(Beginnings(), false);
        Append(Continuations(), true);
      } else {
        Append(CharacterSet::Of(character, character), false);
      }
      m_marksMayFollow = m_marksCount && character != '*' && character != '?';
    }
    return std::move(m_pattern);
  }

 private:
  // Found out once in a program.
  static const CharacterSet& Marks() {
    static const CharacterSet set = SetWhere(IsMark);
    return set;
  }
  static const CharacterSet& Continuations() {
    static const CharacterSet set = SetWhere(GoesOn);
    return set;
  }
  static const CharacterSet& Beginnings() {
    static const CharacterSet set = SetWhere([](char32_t c) { return !GoesOn(c); });
    return set;
  }

  void Append(const CharacterSet& set, bool anyTimes) {
    m_pattern.steps.push_back({Step::Set, m_pattern.IndexOf(set)});
    if (anyTimes) m_pattern.steps.push_back({Step::AnyTimes, 0});
    if (m_isBegun) m_pattern.steps.push_back({Step::Then, 0});
    m_isBegun = true;
  }

  bool m_marksCount;
  bool m_marksMayFollow = false;
  bool m_isBegun = false;
  Pattern m_pattern;
};

/// A pattern may stand anywhere in a text, so any text around it says nothing.
std::u32string_view WithoutOuterStars(std::u32string_view word) {
  const std::size_t first = std::min(word.find_first_not_of(U'*'), word.size());
  word.remove_prefix(first);
  return word.substr(0, word.find_last_not_of(U'*') + 1);
}

/// The longest run between the signs for any text and any character, as a key.
std::string LongestRun(std::wstring_view word) {
  std::string longest;
  for (std::size_t start = 0; start < word.size();) {
    const std::size_t end = std::min(word.find_first_of(L"*?", start), word.size());
    std::string run = KeyOf(word.substr(start, end - start));
    if (run.size() > longest.size()) longest = std::move(run);
    start = end + 1;
  }
  return longest;
}

/// Whether the pieces of `former` between its stars stand in those of `next`, in order and apart from each other;
/// a question mark of `former` stands for any one character of `next` that begins one.
bool HoldsPieces(std::u32string_view next, std::u32string_view former) {
  const auto isCovered = [](char32_t have, char32_t want) {
    return have != '*' && (want == have || (want == '?' && !GoesOn(have)));
  };
  std::size_t at = 0;
  for (std::size_t start = 0; start <= former.size();) {
    const std::size_t end = std::min(former.find(U'*', start), former.size());
    const std::u32string_view piece = former.substr(start, end - start);
    const auto found = std::search(next.begin() + static_cast<std::ptrdiff_t>(at), next.end(), piece.begin(),
                                   piece.end(), isCovered);
    if (found == next.end() && !piece.empty()) return false;
    at = static_cast<std::size_t>(found - next.begin()) + piece.size();
    start = end + 1;
  }
  return true;
}

}  // namespace

std::optional<TextPattern> TextPattern::OfWord(const CString& word) {
  const std::u32string whole = FoldedWithMarks(word);
  const std::u32string_view folded = WithoutOuterStars(whole);
  const bool hasMarks = std::any_of(folded.begin(), folded.end(), IsMark);
  const bool isWild = folded.find_first_of(U"*?") != std::u32string_view::npos;
  TextPattern pattern;
  pattern.source = word;
  pattern.needle = LongestRun(word);
  if (folded.empty()) return pattern;
  pattern.kind = hasMarks ? Kind::Accents : isWild ? Kind::Wild : Kind::Word;
  if (pattern.kind == Kind::Word) return pattern;
  const Pattern steps = WordWriter(hasMarks).Write(folded);
  if (steps.steps.size() > kMostSteps) return std::nullopt;
  pattern.automaton = std::make_shared<const Automaton>(steps);
  return pattern;
}

TextPattern TextPattern::OfQuoted(const CString& text) {
  if (text.empty()) return {};
  return {Kind::Exact, KeyOf(text), text, nullptr};
}

TextPattern TextPattern::OfExpression(const CString& source, const Pattern& pattern) {
  return {Kind::Expression, NeedleOf(pattern), source, std::make_shared<const Automaton>(pattern)};
}

bool Implies(const TextPattern& next, const TextPattern& former) {
  if (next.kind == former.kind && next.source == former.source) return true;
  switch (former.kind) {
    case TextPattern::Kind::Anything:
      return true;
    case TextPattern::Kind::Word:
      return next.needle.find(former.needle) != std::string::npos;
    case TextPattern::Kind::Exact:
      return next.kind == TextPattern::Kind::Exact && next.source.find(former.source) != CString::npos;
    case TextPattern::Kind::Wild:
      return (next.kind == TextPattern::Kind::Wild || next.kind == TextPattern::Kind::Word) &&
             HoldsPieces(FoldedWithMarks(next.source), FoldedWithMarks(former.source));
    case TextPattern::Kind::Accents: {
      const std::u32string piece = FoldedWithMarks(former.source);
      return next.kind == TextPattern::Kind::Accents && piece.find_first_of(U"*?") == std::u32string::npos &&
             FoldedWithMarks(next.source).find(piece) != std::u32string::npos;
    }
    case TextPattern::Kind::Expression:
      return false;
  }
  return false;
}

TextMatcher::TextMatcher(const TextPattern& pattern) : m_pattern(&pattern) {
  if (pattern.automaton != nullptr) m_run.emplace(*pattern.automaton);
}

bool TextMatcher::Matches(std::string_view key, std::wstring_view text) {
  const bool mayMatch = m_pattern->needle.empty() || key.find(m_pattern->needle) != std::string_view::npos;
  if (!mayMatch) return false;
  switch (m_pattern->kind) {
    case TextPattern::Kind::Wild:
      return m_run->FindsIn(key);
    case TextPattern::Kind::Accents:
      return m_run->FindsIn(std::u32string_view(FoldedWithMarks(text)));
    case TextPattern::Kind::Exact:
      return text.find(m_pattern->source) != std::wstring_view::npos;
    case TextPattern::Kind::Expression:
      return m_run->FindsIn(text);
    default:
      return true;
  }
}

}  // namespace qd::find

#include "qd_wrt/find/Pattern.h"

#include <algorithm>
#include <climits>

#include "qd_wrt/find/CodePoints.h"

namespace qd::find {
namespace {

/// Reads from left to right and writes the steps behind each other; a stack holds the open groups.
class Reader {
 public:
  Reader(std::wstring_view text, QueryFault& fault) : m_text(text), m_fault(fault) {}

  std::optional<Pattern> Read() {
    m_groups.push_back({});
    while (m_at < m_text.size() && m_fault.key == nullptr) ReadOne();
    if (m_fault.key == nullptr && m_groups.size() > 1) Fail("IDS_QD_WRT_FIND_RE_GROUP", m_groups.back().at, 1);
    if (m_fault.key != nullptr) return std::nullopt;
    CloseGroup();
    return std::move(m_pattern);
  }

 private:
  /// Of a repetition: as often as it likes.
  static constexpr unsigned kNoEnd = UINT_MAX;

  struct Group {
    std::size_t at = 0;     ///< where it was opened
    std::size_t start = 0;  ///< its first step
    int terms = 0;          ///< operands of this alternative that wait to be joined
    int alternatives = 0;   ///< before this one
    std::size_t last = 0;   ///< first step of the operand that a repetition would be about
    bool repeatable = false;
  };

  bool More() const { return m_at < m_text.size(); }
  bool Take(wchar_t element) {
    if (!More() || m_text[m_at] != element) return false;
    ++m_at;
    return true;
  }
  void Fail(const char* key, std::size_t at, std::size_t length) {
    if (m_fault.key == nullptr) m_fault = {key, at, length};
  }
  /// Fails with all that was read since `at`.
  void FailSince(const char* key, std::size_t at) { Fail(key, at, m_at - at); }

  void Emit(Step step, std::uint32_t set = 0) {
    if (m_pattern.steps.size() >= kMostSteps) {
      Fail("IDS_QD_WRT_FIND_RE_TOO_LARGE", 0, m_text.size());
      return;
    }
    m_pattern.steps.push_back({step, set});
  }
  void EmitSet(CharacterSet set) {
    set.Tidy();
    set.AddOtherCases();
    BeginTerm();
    Emit(Step::Set, m_pattern.IndexOf(set));
  }
  void EmitOperand(Step step, bool repeatable) {
    BeginTerm();
    m_groups.back().repeatable = repeatable;
    Emit(step);
  }

  /// An operand follows: those before it can be joined, since no repetition can be about them any more.
  void BeginTerm() {
    Group& group = m_groups.back();
    if (group.terms > 1) {
      Emit(Step::Then);
      --group.terms;
    }
    ++group.terms;
    group.last = m_pattern.steps.size();
    group.repeatable = true;
  }
  void EndAlternative() {
    Group& group = m_groups.back();
    if (group.terms == 0) Emit(Step::Nothing);
    for (; group.terms > 1; --group.terms) Emit(Step::Then);
    group.terms = 0;
    group.repeatable = false;
  }
  void CloseGroup() {
    EndAlternative();
    for (int left = m_groups.back().alternatives; left > 0; --left) Emit(Step::Either);
  }

  void ReadOne() {
    const std::size_t at = m_at;
    const char32_t character = NextCharacter(m_text, m_at);
    switch (character) {
      case '(':
        return OpenGroup(at);
      case ')': {
        if (m_groups.size() == 1) return FailSince("IDS_QD_WRT_FIND_RE_CLOSES", at);
        CloseGroup();
        const std::size_t start = m_groups.back().start;
        m_groups.pop_back();
        // The group stands as one operand of the one around it.
        m_groups.back().last = start;
        m_groups.back().repeatable = true;
        return;
      }
      case '|':
        EndAlternative();
        ++m_groups.back().alternatives;
        return;
      case '*':
      case '+':
      case '?':
      case '{':
        return Repeat(at, character);
      case '[':
        return ReadSet(at);
      case '.':
        return EmitSet(CharacterSet::Of(0, kLastCharacter));
      case '^':
        return EmitOperand(Step::Start, false);
      case '$':
        return EmitOperand(Step::End, false);
      case '\\':
        return ReadEscape(at);
      default:
        return EmitSet(CharacterSet::Of(character, character));
    }
  }

  void OpenGroup(std::size_t at) {
    if (m_groups.size() > kDeepestGroups) return FailSince("IDS_QD_WRT_FIND_TOO_DEEP", at);
    if (Take(L'?') && !Take(L':')) return FailSince("IDS_QD_WRT_FIND_RE_KIND", at);
    BeginTerm();
    m_groups.push_back({.at = at, .start = m_pattern.steps.size()});
  }

  void Repeat(std::size_t at, char32_t kind) {
    unsigned least = kind == '+' ? 1 : 0;
    unsigned most = kNoEnd;
    if (kind == '?') most = 1;
    if (kind == '{' && !ReadCounts(least, most)) {
      return Fail("IDS_QD_WRT_FIND_RE_COUNT", at, std::max<std::size_t>(m_at - at, 1));
    }
    Group& group = m_groups.back();
    if (!group.repeatable) return FailSince("IDS_QD_WRT_FIND_RE_REPEAT", at);
    group.repeatable = false;
    // Whether a repetition takes as little as it can makes no difference to whether there is a match.
    Take(L'?');
    WriteRepetition(group.last, least, most);
  }

  /// Writes the operand that begins at `start` as often as wanted.
  void WriteRepetition(std::size_t start, unsigned least, unsigned most) {
    if (least == 0 && most == kNoEnd) return Emit(Step::AnyTimes);
    if (least == 1 && most == kNoEnd) return Emit(Step::OnceOrMore);
    if (least == 0 && most == 1) return Emit(Step::AtMostOnce);
    const std::vector<Pattern::Token> operand(m_pattern.steps.begin() + static_cast<std::ptrdiff_t>(start),
                                              m_pattern.steps.end());
    m_pattern.steps.resize(start);
    if (most == 0) return Emit(Step::Nothing);
    const std::size_t copies = most == kNoEnd ? least : most;
    if (operand.size() * copies > kMostSteps) return Fail("IDS_QD_WRT_FIND_RE_TOO_LARGE", 0, m_text.size());
    for (std::size_t copy = 0; copy < copies; ++copy) {
      for (const auto& [step, set] : operand) Emit(step, set);
    }
    if (most == kNoEnd) Emit(Step::OnceOrMore);
    // What may be missing lies in one another: x(x(x)?)?.
    std::size_t operands = copies;
    for (std::size_t optional = most == kNoEnd ? 0 : most - least; optional > 0; --optional) {
      Emit(Step::AtMostOnce);
      if (optional > 1) {
        Emit(Step::Then);
        --operands;
      }
    }
    for (; operands > 1; --operands) Emit(Step::Then);
  }

  /// A number of at most kMostRepetitions.
  std::optional<unsigned> ReadCount() {
    unsigned count = 0;
    const std::size_t start = m_at;
    while (More() && m_text[m_at] >= L'0' && m_text[m_at] <= L'9') {
      count = std::min(count * 10 + static_cast<unsigned>(m_text[m_at++] - L'0'), kMostRepetitions + 1);
    }
    if (m_at == start || count > kMostRepetitions) return std::nullopt;
    return count;
  }
  bool ReadCounts(unsigned& least, unsigned& most) {
    const std::optional<unsigned> first = ReadCount();
    if (!first) return false;
    least = *first;
    most = *first;
    if (Take(L',')) {
      most = kNoEnd;
      if (Take(L'}')) return true;
      const std::optional<unsigned> last = ReadCount();
      if (!last || *last < least) return false;
      most = *last;
    }
    return Take(L'}');
  }

  /// The set that the letter of an escape stands for, none when it stands for one character or nothing.
  static std::optional<CharacterSet> SetOfLetter(char32_t letter) {
    CharacterSet set;
    switch (letter) {
      case 'd':
      case 'D':
        set = CharacterSet::Digits();
        break;
      case 'w':
      case 'W':
        set = CharacterSet::WordCharacters();
        break;
      case 's':
      case 'S':
        set = CharacterSet::Blanks();
        break;
      default:
        return std::nullopt;
    }
    // In both cases before it is turned round: what is no word is not one in the other case, either.
    set.Tidy();
    set.AddOtherCases();
    if (letter < 'a') set.Invert();
    return set;
  }

  /// The character behind a backslash and its letter.
  char32_t EscapedCharacter(std::size_t at, char32_t letter) {
    const bool isAscii = letter < 0x80;
    const bool isDigit = letter >= '0' && letter <= '9';
    const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
    if (isDigit) FailSince("IDS_QD_WRT_FIND_RE_REFERENCE", at);
    if (letter == 't') return '\t';
    if (letter == 'n') return '\n';
    if (letter == 'r') return '\r';
    if (letter == 'x') return HexCharacter(at);
    if (isAscii && isLetter) FailSince("IDS_QD_WRT_FIND_RE_ESCAPE", at);
    return letter;
  }
  char32_t HexCharacter(std::size_t at) {
    const bool braced = Take(L'{');
    char32_t value = 0;
    std::size_t digits = 0;
    for (; More() && digits < (braced ? 6U : 2U); ++digits, ++m_at) {
      const wchar_t digit = m_text[m_at];
      if (digit >= L'0' && digit <= L'9') {
        value = value * 16 + static_cast<char32_t>(digit - L'0');
      } else if ((digit | 32) >= L'a' && (digit | 32) <= L'f') {
        value = value * 16 + static_cast<char32_t>((digit | 32) - L'a' + 10);
      } else {
        break;
      }
    }
    const bool whole = braced ? digits > 0 && Take(L'}') : digits == 2;
    if (!whole || value > kLastCharacter) FailSince("IDS_QD_WRT_FIND_RE_ESCAPE", at);
    return value;
  }

  void ReadEscape(std::size_t at) {
    if (!More()) return FailSince("IDS_QD_WRT_FIND_RE_ESCAPE", at);
    const char32_t letter = NextCharacter(m_text, m_at);
    if (letter == 'b') return EmitOperand(Step::WordEdge, false);
    if (letter == 'B') return EmitOperand(Step::NoWordEdge, false);
    if (std::optional<CharacterSet> set = SetOfLetter(letter)) return EmitSet(std::move(*set));
    const char32_t character = EscapedCharacter(at, letter);
    EmitSet(CharacterSet::Of(character, character));
  }

  /// One character of a bracketed set, or the set that an escape stands for.
  std::optional<CharacterSet> ReadSetPart(char32_t& character) {
    const std::size_t at = m_at;
    character = NextCharacter(m_text, m_at);
    if (character != '\\' || !More()) return std::nullopt;
    const char32_t letter = NextCharacter(m_text, m_at);
    std::optional<CharacterSet> set = SetOfLetter(letter);
    if (!set) character = EscapedCharacter(at, letter);
    return set;
  }

  void ReadSet(std::size_t at) {
    const bool inverted = Take(L'^');
    CharacterSet set;
    // A bracket that comes first is one of the characters.
    for (bool isFirst = true; More() && (isFirst || m_text[m_at] != L']'); isFirst = false) {
      const std::size_t from = m_at;
      char32_t first = 0;
      if (const std::optional<CharacterSet> part = ReadSetPart(first)) {
        set.Add(*part);
        continue;
      }
      char32_t last = first;
      if (m_at + 1 < m_text.size() && m_text[m_at] == L'-' && m_text[m_at + 1] != L']') {
        ++m_at;
        if (ReadSetPart(last) || last < first) return FailSince("IDS_QD_WRT_FIND_RE_RANGE", from);
      }
      set.Add(first, last);
    }
    if (!Take(L']')) return Fail("IDS_QD_WRT_FIND_RE_SET", at, 1);
    set.Tidy();
    set.AddOtherCases();
    if (inverted) set.Invert();
    BeginTerm();
    Emit(Step::Set, m_pattern.IndexOf(set));
  }

  std::wstring_view m_text;
  QueryFault& m_fault;
  std::size_t m_at = 0;
  std::vector<Group> m_groups;
  Pattern m_pattern;
};

}  // namespace

std::uint32_t Pattern::IndexOf(const CharacterSet& set) {
  const auto place = static_cast<std::size_t>(std::find(sets.begin(), sets.end(), set) - sets.begin());
  if (place == sets.size()) sets.push_back(set);
  return static_cast<std::uint32_t>(place);
}

std::optional<Pattern> ReadPattern(std::wstring_view text, QueryFault& fault) {
  fault = {};
  return Reader(text, fault).Read();
}

}  // namespace qd::find

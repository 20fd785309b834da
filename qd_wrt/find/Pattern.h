#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/find/CharacterSet.h"
#include "qd_wrt/find/QueryFault.h"

namespace qd::find {

/// One step of a pattern in the order of a stack machine: operands first.
enum class Step : std::uint8_t {
  Set,  ///< one character of a set
  Nothing,
  Start,  ///< of the text
  End,
  WordEdge,
  NoWordEdge,
  Then,    ///< two operands in order
  Either,  ///< one of two operands
  AnyTimes,
  OnceOrMore,
  AtMostOnce
};

/// A regular expression taken apart. Repetitions with counts are written out.
struct QD_EXPORT Pattern {
  /// A step and what it works on.
  struct Token {
    Step step = Step::Nothing;  ///< see Step
    std::uint32_t set = 0;      ///< of Set: its index
  };
  std::vector<Token> steps;        ///< all of them, operands first
  std::vector<CharacterSet> sets;  ///< each once

  /// The place of a set among `sets`, where it is put when it is not there.
  std::uint32_t IndexOf(const CharacterSet& set);
};

/// @{
/// Nothing may be repeated more often than this, and no pattern may have more steps when it is written out.
inline constexpr unsigned kMostRepetitions = 1000;
inline constexpr std::size_t kMostSteps = 4000;
inline constexpr std::size_t kDeepestGroups = 100;
/// @}

/// Takes a regular expression apart, without recursion; case is ignored. Understood are characters, `.`, `[…]` and
/// `[^…]`, `\d \w \s` and their opposites, `\t`, `\n`, `\r`, `\xHH`, `\x{H…}`, `^`, `$`, `\b`, `\B`, `(…)`,
/// `(?:…)`, `|`, `*`, `+`,
/// `?`, `{n}`, `{n,}`, `{n,m}`; a `?` behind one of these says nothing, since only whether a text matches is
/// asked. Otherwise nothing comes back and the fault says why; its place counts from the start of the expression.
QD_EXPORT std::optional<Pattern> ReadPattern(std::wstring_view text, QueryFault& fault);

/// A text that stands in the key (TitleKey.h) of every text in which the pattern is found; empty when none is
/// known.
QD_EXPORT std::string NeedleOf(const Pattern& pattern);

}  // namespace qd::find

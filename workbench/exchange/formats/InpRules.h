#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qd::workbench {

/// What names in a deck name. Names of one kind do not meet those of another.
enum class InpName : std::uint8_t {
  ElementSet,
  NodeSet,
  Surface,
  Material,
  Orientation,
  Amplitude,
  Interaction,
  Tie,
  Other
};
inline constexpr std::size_t kInpNames = static_cast<std::size_t>(InpName::Other) + 1;

/// What stands in the data lines of a keyword.
struct InpRule {
  std::string_view keyword;  ///< without blanks
  /// One letter for each field: n a node or node set, e an element or element set, s a surface, m a material, o an
  /// orientation, . none of these. What stands in brackets repeats to the end of the line.
  std::string_view fields;
  enum Loss : std::uint8_t {
    kLine,   ///< a line that no longer fits goes alone
    kField,  ///< the field goes alone: lines are lists
    kCard    ///< the lines are one thing: all go
  } loss = kLine;
  std::string_view under = {};  ///< the keyword that it belongs to and goes with
};

/// Null for a keyword of whose data nothing is known.
const InpRule* FindInpRule(std::string_view keyword);
/// Whether a keyword makes nodes or elements out of others.
bool IsInpGenerator(std::string_view keyword);
/// Whether a keyword gives elements their material and size.
bool IsInpSection(std::string_view keyword);

/// What the value of a parameter names, as a letter of InpRule::fields or a capital for what is no number, or t
/// for a tie, i for an interaction and a for an amplitude.
char InpLetterOfParameter(std::string_view keyword, std::string_view parameter);
InpName InpNameOfLetter(char what);
/// What a kind of name is called in comments.
const char* InpWordFor(InpName kind);

}  // namespace qd::workbench

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "qd_wrt/find/ColourNames.h"
#include "qd_wrt/find/QueryWords.h"
#include "qd_wrt/find/TextPattern.h"

namespace qd::find {

/// Numbers from one to another; the ends belong to it unless they are open.
struct Interval {
  /// @{
  /// The ends.
  double least = 0;
  double greatest = 0;
  /// @}
  /// @{
  /// Whether the end does not belong to it.
  bool leastIsOpen = false;
  bool greatestIsOpen = false;
  /// @}

  /// Whether a number lies in it.
  bool Has(double value) const {
    return (leastIsOpen ? value > least : value >= least) &&
           (greatestIsOpen ? value < greatest : value <= greatest);
  }
};

/// Numbers of rows from one to another, both included.
struct IdRange {
  /// @{
  /// Both are in it.
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  /// @}
};

/// One condition on a row.
struct Condition {
  QueryWords::Value about = QueryWords::Value::Title;  ///< what is asked
  bool isAnything = false;                             ///< it is enough to have a value at all
  TextPattern text;                                    ///< title, In, Text
  std::size_t inside = 0;                              ///< In: which of them
  std::size_t field = 0;                               ///< number, Text
  Interval interval;                                   ///< number
  std::vector<IdRange> ids;                            ///< in order, apart from each other
  std::uint32_t kinds = 0;                             ///< type
  WantedColours colours;                               ///< colour
};

/// A condition, or several nodes of which all or one must hold. A node stands behind those that it is made of.
struct QueryNode {
  /// What the node is.
  enum class Kind : std::uint8_t { Condition, All, OneOf };
  Kind kind = Kind::All;           ///< see Kind
  bool isNegated = false;          ///< whether the opposite must hold
  std::size_t condition = 0;       ///< of Condition: its index
  std::vector<std::size_t> parts;  ///< of All and OneOf: their indices
};

/// A test of a row and where it leads. Tests follow each other so that what is cheap comes first.
struct QueryJump {
  std::size_t condition = 0;  ///< what is tested
  /// @{
  /// The next test, kAccept or kRefuse.
  std::size_t onTrue = 0;
  std::size_t onFalse = 0;
  /// @}
};
/// @{
/// Where a jump ends: the row matches, or it does not.
inline constexpr std::size_t kAccept = SIZE_MAX;
inline constexpr std::size_t kRefuse = SIZE_MAX - 1;
/// @}

/// A query that has been understood. The last node is the whole; without nodes every row matches.
struct QueryTree {
  /// @{
  /// By index.
  std::vector<Condition> conditions;
  std::vector<QueryNode> nodes;
  /// @}
  std::vector<std::size_t> insides;  ///< the conditions about ancestors

  // Made from the nodes.
  std::vector<QueryJump> jumps;     ///< by index
  std::size_t firstJump = kAccept;  ///< where to begin
  /// The key of the title of every row that matches holds one of each of these; empty when nothing is known.
  std::vector<std::vector<std::string>> needles;

  /// Makes the above.
  void Finish();
};

}  // namespace qd::find

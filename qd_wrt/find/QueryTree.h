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
  double least = 0;
  double greatest = 0;
  bool leastIsOpen = false;
  bool greatestIsOpen = false;

  bool Has(double value) const {
    return (leastIsOpen ? value > least : value >= least) &&
           (greatestIsOpen ? value < greatest : value <= greatest);
  }
};

struct IdRange {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
};

/// One condition on a row.
struct Condition {
  QueryWords::Value about = QueryWords::Value::Title;
  bool isAnything = false;   ///< it is enough to have a value at all
  TextPattern text;          ///< Title, In, Text
  std::size_t inside = 0;    ///< In: which of them
  std::size_t field = 0;     ///< Number, Text
  Interval interval;         ///< Number
  std::vector<IdRange> ids;  ///< in order, apart from each other
  std::uint32_t kinds = 0;   ///< Type
  WantedColours colours;
};

/// A condition, or several nodes of which all or one must hold. A node stands behind those that it is made of.
struct QueryNode {
  enum class Kind : std::uint8_t { Condition, All, OneOf };
  Kind kind = Kind::All;
  bool isNegated = false;
  std::size_t condition = 0;
  std::vector<std::size_t> parts;
};

/// A test of a row and where it leads. Tests follow each other so that what is cheap comes first.
struct QueryJump {
  std::size_t condition = 0;
  std::size_t onTrue = 0;
  std::size_t onFalse = 0;
};
inline constexpr std::size_t kAccept = SIZE_MAX;
inline constexpr std::size_t kRefuse = SIZE_MAX - 1;

/// A query that has been understood. The last node is the whole; without nodes every row matches.
struct QueryTree {
  std::vector<Condition> conditions;
  std::vector<QueryNode> nodes;
  std::vector<std::size_t> insides;  ///< the conditions about ancestors

  // Made from the nodes.
  std::vector<QueryJump> jumps;
  std::size_t firstJump = kAccept;
  /// The key of the title of every row that matches holds one of these; empty when nothing is known.
  std::vector<std::string> needles;

  /// Makes the above.
  void Finish();
};

}  // namespace qd::find

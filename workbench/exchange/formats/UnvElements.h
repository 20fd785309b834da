#pragma once

#include <string_view>

namespace qd::workbench {

/// A kind of element of universal files as records hold it.
struct UnvElement {
  int elementType;         ///< number that records use
  int number;              ///< of the kind in the file
  std::string_view order;  ///< of the nodes: see OrderFromWords
  bool beam;               ///< has a line of its own for its sections
};

/// How a kind of records' elements is written; null for one that has no place in the format.
const UnvElement* FindUnvElement(int elementType);
/// What a kind of the file is read as: several kinds have one shape. Null for one without a shape.
const UnvElement* FindUnvNumber(int number);

}  // namespace qd::workbench

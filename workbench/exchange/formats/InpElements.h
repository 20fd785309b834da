#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qd::workbench {

/// A kind of element of solver input files as records hold it.
struct InpElement {
  int elementType;             ///< number that records use
  int nodes;                   ///< of one element
  std::span<const int> order;  ///< place in the file of each of the record's nodes; empty: the same order
};

/// Null for a name that is not known. Upper case.
const InpElement* FindInpElement(std::string_view name);
/// The name under which a kind of element is written; empty for one that solvers do not have.
std::string_view InpNameOf(int elementType);
/// The element as written: see InpElement::order.
std::span<const int> InpOrderOf(int elementType);

}  // namespace qd::workbench

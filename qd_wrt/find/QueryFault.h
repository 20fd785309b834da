#pragma once

#include <cstddef>

namespace qd {

/// What is wrong with a query: the message key of a sentence, and the place in the text, in elements, that it is
/// about. A length of 0 means the place behind the last thing that was right.
struct QueryFault {
  const char* key = nullptr;  ///< null when nothing is wrong
  /// @{
  /// The place, in elements.
  std::size_t at = 0;
  std::size_t length = 0;
  /// @}
};

}  // namespace qd

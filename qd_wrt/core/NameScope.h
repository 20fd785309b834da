#pragma once

#include <cstdint>

namespace qd {

/// Among what a name is to tell its bearer from the others.
struct NameScope {
  std::uint64_t number = 0;  ///< the same for all that are in it
  bool isUnique = false;     ///< no two may have one name
};

}  // namespace qd

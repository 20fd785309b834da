#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/IAppDB.h"
#include "host/Records.h"
#include "workbench/mesh/BoxTree.h"

namespace qd::workbench {

/// Two parts that touch each other.
struct PartContact {
  std::uint32_t one = 0;  ///< place of the part, below that of the other
  std::uint32_t other = 0;
  double distance = 0;       ///< the least between their faces, 0 where these meet
  double area = 0;           ///< that their faces have in common where they lie along each other
  std::uint64_t facets = 0;  ///< pairs of facets within the tolerance
};

struct PartContacts {
  bool done = false;               ///< it was not stopped
  bool complete = true;            ///< false when so many facets lie together that not all pairs were looked at
  std::vector<PartContact> pairs;  ///< by the places of the parts
};

using ShapePtr = std::shared_ptr<const PartShape>;

/// Finds the pairs of parts whose faces are within a distance of each other, by their facets; one of each pair is
/// wanted, which is said beside the parts. The time goes with the number of facets, times its logarithm, and with
/// how many are near each other, which has a bound.
PartContacts FindContacts(const std::vector<ShapePtr>& parts, const std::vector<bool>& wanted, double tolerance,
                          const ProgressCall& progress);

}  // namespace qd::workbench

#pragma once

#include <array>

#include "host/Records.h"

namespace qd::workbench {

using Vector3 = std::array<double, 3>;

/// Where a coordinate system stands: its origin and three axes of length 1, at right angles, right-handed.
struct Placement {
  Vector3 origin{};
  std::array<Vector3, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
};

/// Whether a record's origin and directions make a system: finite numbers, directions that are not zero and not
/// along one line.
bool IsPlaceable(const tagTCord& record);
/// The placement of a record in its parent's axes. The record must be placeable.
Placement PlacementOf(const tagTCord& record);
/// A placement inside another one, seen from outside.
Placement Compose(const Placement& outer, const Placement& inner);
/// Writes a placement into a record.
void Place(tagTCord& record, const Placement& placement);

}  // namespace qd::workbench

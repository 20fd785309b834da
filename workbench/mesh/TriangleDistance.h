#pragma once

#include <array>

#include "workbench/mesh/Point3.h"

namespace qd::workbench {

/// Corners; a line or a point has the same one several times.
using Triangle3 = std::array<Point3, 3>;

/// The least distance between two triangles, 0 where they meet, and where it is on each.
struct NearPoints {
  double distance = 0;
  Point3 one;
  Point3 other;
};
NearPoints DistanceBetween(const Triangle3& one, const Triangle3& other);

/// The area of what two triangles cover of each other, seen along the normal of the first: 0 unless they lie
/// nearly along each other.
double CommonArea(const Triangle3& one, const Triangle3& other);

}  // namespace qd::workbench

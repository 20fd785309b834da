#pragma once

#include <array>

#include "workbench/model/MeshActs.h"

namespace qd::workbench {

// How nodes are moved, for TransformMeshes.

Transform Translation(const std::array<double, 3>& way);
/// By degrees about an axis of any length but 0 through a point.
Transform Rotation(const std::array<double, 3>& point, const std::array<double, 3>& axis, double degrees);
/// At the plane through a point with a normal of any length but 0.
Transform Reflection(const std::array<double, 3>& point, const std::array<double, 3>& normal);
Transform Scaling(const std::array<double, 3>& point, double factor);

}  // namespace qd::workbench

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "workbench/display/Picks.h"
#include "workbench/display/ViewCamera.h"

namespace qd::workbench {

/// What something that was picked looks like, and where it is.
struct PickedShape {
  std::vector<float> points;             ///< x, y, z
  std::vector<std::uint32_t> triangles;  ///< three point numbers each
  std::vector<std::uint32_t> lines;      ///< two point numbers each: the outline
  std::vector<std::uint32_t> spots;      ///< point numbers
  bool isSolid = false;                  ///< the triangles bound the body of an element

  bool IsEmpty() const { return points.empty(); }
};

/// Nothing for what is not there. Takes time by what is picked, not by its part or mesh.
PickedShape ShapeOf(const Database& database, const Picks& picks, const Picked& one);
/// The place of a point or node; nothing for what is no single place.
std::optional<Vector3> PlaceOf(const Database& database, const Picks& picks, const Picked& one);
/// The box around it.
std::optional<ViewBox> BoxOf(const Database& database, const Picks& picks, const Picked& one);

}  // namespace qd::workbench

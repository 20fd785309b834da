#pragma once

#include <optional>
#include <vector>

#include "host/IAppDB.h"
#include "host/Records.h"
#include "workbench/mesh/TriangleDistance.h"

namespace qd::workbench {

/// A point, an edge, a face or an element that is to be measured, as it is drawn.
struct MeasuredEntity {
  std::vector<Triangle3> pieces;  ///< of a face its triangles, of an edge its lines, of a point itself
  enum class Kind { Point, Edge, Face, Solid } kind = Kind::Point;
};

/// A circle, or a cylinder of no particular length.
struct RoundShape {
  Point3 centre;
  Point3 axis;
  double radius = 0;
  double deviation = 0;  ///< how far the farthest point lies beside it
  Point3 rim;            ///< one of the points

  /// The point of the axis that is nearest to that one.
  Point3 Foot() const { return centre + axis * Dot(rim - centre, axis); }
};

/// What something measures by itself.
struct EntityMeasure {
  double length = 0;                ///< of an edge
  double area = 0;                  ///< of a face, or of the sides of a solid
  double volume = 0;                ///< of a solid
  std::optional<Point3> direction;  ///< of a straight edge
  std::optional<Point3> normal;     ///< of a flat face
  std::optional<RoundShape> round;  ///< of an arc, or a face of a cylinder
  bool IsCurved() const { return !direction && !normal && !round; }
};
EntityMeasure MeasureEntity(const MeasuredEntity& entity);

/// The angle between straight edges, flat faces or both, 0 to 90 degrees; none for others.
std::optional<double> AngleBetween(const EntityMeasure& one, const EntityMeasure& other);
/// The angle at the second of three points, 0 to 180 degrees; none when two of them are one.
std::optional<double> AngleAt(const Point3& from, const Point3& at, const Point3& to);

/// The facets of a part.
std::vector<Triangle3> TrianglesOf(const PartFacets& facets);
/// The least distance between two groups of triangles, lines or points, and where it is; none when one has none or
/// the work was stopped.
std::optional<NearPoints> LeastDistance(const std::vector<Triangle3>& one, const std::vector<Triangle3>& other,
                                        const ProgressCall& progress);

}  // namespace qd::workbench

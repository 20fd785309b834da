#pragma once

#include <QPointF>
#include <QSize>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

class vtkRenderer;

namespace qd::workbench {

class PickTree;

/// What lies under one pixel of the view: a ray from the eye through its middle.
struct PickRay {
  using Point = std::array<double, 3>;
  /// What lies where a x + b y + c z + d is below 0 is cut away.
  using Cut = std::array<double, 4>;

  Point origin{};
  Point direction{};  ///< of length 1
  double least = 0;   ///< distances between which anything is seen
  double most = 0;
  double reach = 0;   ///< how far beside the ray a line is still taken, at the origin
  double spread = 0;  ///< and what is added to that for each unit of distance
  std::vector<Cut> cuts;
};

/// The ray through a pixel, counted from the left and top of a view in its own pixels; lines are taken within
/// `reach` of these.
PickRay RayThrough(vtkRenderer& renderer, QSize view, QPointF at, double reach);

/// Least and greatest x, y, z.
using Bounds = std::array<float, 6>;
/// Bounds of no point at all.
Bounds NoBounds();
bool IsNowhere(const Bounds& bounds);
/// Widens bounds by a point.
void Widen(Bounds& bounds, const float* point);
void Widen(Bounds& bounds, const Bounds& other);

/// At what distance a ray comes into a box, or near it for a line; nothing when it passes by.
std::optional<double> DistanceTo(const PickRay& ray, const Bounds& box);

/// How a ray passes by a line.
struct Approach {
  double distance;       ///< along the ray
  double beside;         ///< as a share of how far beside the ray a line is still taken
  PickRay::Point point;  ///< of the line, the nearest to the ray
};
/// Nothing for a line, or a point when both ends are the same, that is too far beside the ray or is not seen
/// there.
std::optional<Approach> ApproachOf(const PickRay& ray, const float* from, const float* to);

/// The nearest of things along a ray. Points are x, y, z one after another.
class NearestHit {
 public:
  explicit NearestHit(const PickRay& ray) : m_ray(ray), m_distance(ray.most) {}

  /// Returns the first corner's place among the numbers of the nearest triangle that is hit before all so far. A
  /// tree of the triangles, when there is one, finds it without looking at all.
  std::optional<std::size_t> Triangles(const float* points, const std::vector<std::uint32_t>& corners,
                                       const PickTree* tree = nullptr);
  /// Whether a triangle is hit before all so far.
  bool Triangle(const float* points, const std::uint32_t* corners);
  /// Whether a line between two points is hit before all so far.
  bool Line(const float* from, const float* to);
  bool Spot(const float* point) { return Line(point, point); }

  /// Likewise one of the twelve edges of a box.
  bool Outline(const Bounds& box);

  double Distance() const { return m_distance; }
  const PickRay& Ray() const { return m_ray; }

 private:
  /// Whether something at a distance is seen there and lies before all so far.
  bool Take(double distance);

  const PickRay& m_ray;
  double m_distance;
};

}  // namespace qd::workbench

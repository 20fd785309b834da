#include "workbench/model/MeshTransforms.h"

#include <cmath>
#include <numbers>

namespace qd::workbench {

namespace {

using Point = std::array<double, 3>;
using Rows = std::array<Point, 3>;

/// Applies three rows about a point.
Transform About(const Point& point, const Rows& rows) {
  Transform transform{};
  for (std::size_t i = 0; i < 3; ++i) {
    transform[i][3] = point[i];
    for (std::size_t k = 0; k < 3; ++k) {
      transform[i][k] = rows[i][k];
      transform[i][3] -= rows[i][k] * point[k];
    }
  }
  return transform;
}

Point Normalised(Point a) {
  const double length = std::hypot(a[0], a[1], a[2]);
  for (double& part : a) part /= length;
  return a;
}

}  // namespace

Transform Translation(const Point& way) {
  Transform transform = Scaling({}, 1);
  for (std::size_t i = 0; i < 3; ++i) transform[i][3] = way[i];
  return transform;
}

Transform Rotation(const Point& point, const Point& axis, double degrees) {
  const Point along = Normalised(axis);
  const double angle = degrees * std::numbers::pi / 180;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  Rows rows{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) rows[i][k] = (1 - c) * along[i] * along[k] + (i == k ? c : 0);
    rows[i][(i + 1) % 3] -= s * along[(i + 2) % 3];
    rows[i][(i + 2) % 3] += s * along[(i + 1) % 3];
  }
  return About(point, rows);
}

Transform Reflection(const Point& point, const Point& normal) {
  const Point along = Normalised(normal);
  Rows rows{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) rows[i][k] = (i == k ? 1 : 0) - 2 * along[i] * along[k];
  }
  return About(point, rows);
}

Transform Scaling(const Point& point, double factor) {
  Rows rows{};
  for (std::size_t i = 0; i < 3; ++i) rows[i][i] = factor;
  return About(point, rows);
}

}  // namespace qd::workbench

#include "workbench/model/Placement.h"

#include <algorithm>
#include <cmath>

namespace qd::workbench {

namespace {

double Length(const Vector3& a) {
  return std::hypot(a[0], a[1], a[2]);
}

Vector3 Unit(const Vector3& a) {
  // Divided twice: the length of very long or short directions would be lost.
  const double largest = std::max({std::abs(a[0]), std::abs(a[1]), std::abs(a[2])});
  const Vector3 b{a[0] / largest, a[1] / largest, a[2] / largest};
  const double length = Length(b);
  return {b[0] / length, b[1] / length, b[2] / length};
}

Vector3 Cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

bool IsFinite(const Vector3& a) {
  return std::all_of(a.begin(), a.end(), [](double part) { return std::isfinite(part); });
}
bool IsZero(const Vector3& a) {
  return a == Vector3{};
}

/// A vector given in the axes of a placement.
Vector3 Turned(const Placement& in, const Vector3& a) {
  Vector3 sum{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    for (std::size_t i = 0; i < 3; ++i) sum[i] += a[axis] * in.axes[axis][i];
  }
  return sum;
}

}  // namespace

bool IsPlaceable(const tagTCord& record) {
  if (!IsFinite(record.origin) || !IsFinite(record.xAxis) || !IsFinite(record.xyPlane)) return false;
  if (IsZero(record.xAxis) || IsZero(record.xyPlane)) return false;
  constexpr double kLeastSine = 1e-6;
  return Length(Cross(Unit(record.xAxis), Unit(record.xyPlane))) > kLeastSine;
}

Placement PlacementOf(const tagTCord& record) {
  const Vector3 x = Unit(record.xAxis);
  const Vector3 z = Unit(Cross(x, Unit(record.xyPlane)));
  return {record.origin, {x, Cross(z, x), z}};
}

Placement Compose(const Placement& outer, const Placement& inner) {
  Placement whole;
  const Vector3 moved = Turned(outer, inner.origin);
  for (std::size_t i = 0; i < 3; ++i) {
    whole.origin[i] = outer.origin[i] + moved[i];
    whole.axes[i] = Turned(outer, inner.axes[i]);
  }
  return whole;
}

void Place(tagTCord& record, const Placement& placement) {
  record.origin = placement.origin;
  record.xAxis = placement.axes[0];
  record.xyPlane = placement.axes[1];
}

}  // namespace qd::workbench

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace qd::workbench {

/// A point, or the way from one to another.
struct Point3 {
  double x = 0;
  double y = 0;
  double z = 0;

  static Point3 At(const double* coordinates) { return {coordinates[0], coordinates[1], coordinates[2]}; }
  static Point3 At(const float* coordinates) { return {coordinates[0], coordinates[1], coordinates[2]}; }
  double& operator[](std::size_t axis) { return axis == 0 ? x : axis == 1 ? y : z; }
  double operator[](std::size_t axis) const { return axis == 0 ? x : axis == 1 ? y : z; }
  bool operator==(const Point3&) const = default;
};

inline Point3 operator+(const Point3& a, const Point3& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Point3 operator-(const Point3& a, const Point3& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Point3 operator*(const Point3& a, double factor) {
  return {a.x * factor, a.y * factor, a.z * factor};
}
inline double Dot(const Point3& a, const Point3& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Point3 Cross(const Point3& a, const Point3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Point3& a) {
  return std::sqrt(Dot(a, a));
}
inline bool IsFinite(const Point3& a) {
  return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}
/// The greatest of the amounts of the coordinates.
inline double Extent(const Point3& a) {
  return std::max({std::abs(a.x), std::abs(a.y), std::abs(a.z)});
}
/// In radians, 0 to pi; 0 with a way of no length.
inline double AngleBetween(const Point3& a, const Point3& b) {
  return std::atan2(Length(Cross(a, b)), Dot(a, b));
}

}  // namespace qd::workbench

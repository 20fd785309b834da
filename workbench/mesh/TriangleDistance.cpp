#include "workbench/mesh/TriangleDistance.h"

#include <limits>
#include <vector>

namespace qd::workbench {

namespace {

double Part(double share) {
  return std::clamp(share, 0.0, 1.0);
}

/// The point of a triangle that is nearest to another point.
Point3 NearestOf(const Triangle3& triangle, const Point3& at) {
  const auto& [a, b, c] = triangle;
  const Point3 normal = Cross(b - a, c - a);
  const double size = Dot(normal, normal);
  if (size > 0) {
    const double u = Dot(Cross(c - b, at - b), normal) / size;
    const double v = Dot(Cross(a - c, at - c), normal) / size;
    const double w = 1 - u - v;
    if (u >= 0 && v >= 0 && w >= 0) return a * u + b * v + c * w;
  }
  Point3 nearest = a;
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < 3; ++i) {
    const Point3& from = triangle[i];
    const Point3 way = triangle[(i + 1) % 3] - from;
    const double length = Dot(way, way);
    const Point3 point = from + way * (length > 0 ? Part(Dot(at - from, way) / length) : 0);
    const double distance = Dot(at - point, at - point);
    if (distance < least) {
      least = distance;
      nearest = point;
    }
  }
  return nearest;
}

/// The nearest points of two edges.
std::pair<Point3, Point3> NearestOf(const Point3& p, const Point3& pEnd, const Point3& q, const Point3& qEnd) {
  const Point3 u = pEnd - p;
  const Point3 v = qEnd - q;
  const Point3 gap = p - q;
  const double uu = Dot(u, u);
  const double vv = Dot(v, v);
  const double uv = Dot(u, v);
  const double ug = Dot(u, gap);
  const double vg = Dot(v, gap);
  const double spread = uu * vv - uv * uv;
  double s = spread > 0 ? Part((uv * vg - ug * vv) / spread) : 0;
  const double t = vv > 0 ? Part((uv * s + vg) / vv) : 0;
  s = uu > 0 ? Part((uv * t - ug) / uu) : 0;
  return {p + u * s, q + v * t};
}

/// Where an edge goes through a triangle.
bool Pierces(const Point3& from, const Point3& to, const Triangle3& triangle, Point3& at) {
  const auto& [a, b, c] = triangle;
  const Point3 normal = Cross(b - a, c - a);
  const double above = Dot(from - a, normal);
  const double below = Dot(to - a, normal);
  if (above == below || (above > 0) == (below > 0)) return false;
  at = from + (to - from) * (above / (above - below));
  for (std::size_t i = 0; i < 3; ++i) {
    const Point3& corner = triangle[i];
    if (Dot(Cross(triangle[(i + 1) % 3] - corner, at - corner), normal) < 0) return false;
  }
  return true;
}

}  // namespace

NearPoints DistanceBetween(const Triangle3& one, const Triangle3& other) {
  NearPoints nearest{std::numeric_limits<double>::infinity(), one[0], other[0]};
  const auto look = [&nearest](const Point3& a, const Point3& b) {
    const double distance = Length(a - b);
    if (distance < nearest.distance) nearest = {distance, a, b};
  };
  for (std::size_t i = 0; i < 3; ++i) {
    const Point3& p = one[i];
    const Point3& pEnd = one[(i + 1) % 3];
    Point3 at;
    if (Pierces(p, pEnd, other, at) || Pierces(other[i], other[(i + 1) % 3], one, at)) return {0, at, at};
    look(p, NearestOf(other, p));
    look(NearestOf(one, other[i]), other[i]);
    for (std::size_t k = 0; k < 3; ++k) {
      const auto [a, b] = NearestOf(p, pEnd, other[k], other[(k + 1) % 3]);
      look(a, b);
    }
  }
  return nearest;
}

double CommonArea(const Triangle3& one, const Triangle3& other) {
  constexpr double kAlong = 0.95;  // cosine: up to 18 degrees, as facets of one curved face may differ
  const Point3 normal = Cross(one[1] - one[0], one[2] - one[0]);
  const Point3 second = Cross(other[1] - other[0], other[2] - other[0]);
  const double size = Length(normal);
  if (!(size > 0) || !(std::abs(Dot(normal, second)) > kAlong * size * Length(second))) return 0;
  // The other one is cut at the three edges of the first, seen along its normal.
  std::vector<Point3> rest(other.begin(), other.end());
  for (std::size_t i = 0; i < 3; ++i) {
    const Point3& from = one[i];
    const Point3 inwards = Cross(normal, one[(i + 1) % 3] - from);
    std::vector<Point3> cut;
    for (std::size_t k = 0; k < rest.size(); ++k) {
      const Point3& a = rest[k];
      const Point3& b = rest[(k + 1) % rest.size()];
      const double inA = Dot(a - from, inwards);
      const double inB = Dot(b - from, inwards);
      if (inA >= 0) cut.push_back(a);
      if ((inA > 0 && inB < 0) || (inA < 0 && inB > 0)) cut.push_back(a + (b - a) * (inA / (inA - inB)));
    }
    rest = std::move(cut);
  }
  double area = 0;
  for (std::size_t k = 2; k < rest.size(); ++k) {
    area += Dot(Cross(rest[k - 1] - rest[0], rest[k] - rest[0]), normal) / size / 2;
  }
  return std::abs(area);
}

}  // namespace qd::workbench

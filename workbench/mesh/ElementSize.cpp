#include "workbench/mesh/ElementSize.h"

#include <algorithm>
#include <cmath>

#include "workbench/mesh/Point3.h"

namespace qd::workbench {

namespace {

/// The diagonal of the box around a part, 0 for none.
double DiagonalOf(const PartShape& part) {
  const std::vector<float>& points = part.facets.points;
  Point3 least;
  Point3 greatest;
  bool any = false;
  for (std::size_t i = 0; i + 2 < points.size(); i += 3) {
    const Point3 at = Point3::At(&points[i]);
    if (!IsFinite(at)) continue;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      least[axis] = any ? std::min(least[axis], at[axis]) : at[axis];
      greatest[axis] = any ? std::max(greatest[axis], at[axis]) : at[axis];
    }
    any = true;
  }
  return Length(greatest - least);
}

/// 0 for a part without extent.
double SizeFor(const PartShape& part, int dimension) {
  constexpr double kAlong = 15;  // elements along the diagonal
  constexpr double kMost = 100;  // likewise, where the part is thin
  const double diagonal = DiagonalOf(part);
  double size = diagonal / kAlong;
  // A plate has about twice its volume over its area as thickness.
  if (dimension == 3 && part.volume > 0 && part.area > 0) size = std::min(size, 2 * part.volume / part.area);
  return std::max(size, diagonal / kMost);
}

double RoundedUp(double size) {
  const double unit = std::pow(10, std::floor(std::log10(size)) - 1);
  return std::ceil(size / unit - 1e-9) * unit;
}

constexpr double kTetrahedra = 8.5;  // of edges of length 1 fill a volume of 1
constexpr double kTriangles = 2.3;   // likewise an area

}  // namespace

double LeastSize(double length, double area, double volume) {
  constexpr double kMostElements = 3e7;
  const double least = std::max({length / kMostElements, std::sqrt(area * kTriangles / kMostElements),
                                 std::cbrt(volume * kTetrahedra / kMostElements)});
  return least > 0 && std::isfinite(least) ? RoundedUp(least) : 0;
}

double OfferedSize(const std::vector<const PartShape*>& parts, int dimension) {
  constexpr double kMostElements = 1e6;
  std::vector<double> sizes;
  double amount = 0;
  for (const PartShape* part : parts) {
    const double size = SizeFor(*part, dimension);
    if (!(size > 0) || !std::isfinite(size)) continue;
    sizes.push_back(size);
    amount += std::max(dimension == 3 ? part->volume * kTetrahedra : part->area * kTriangles, 0.0);
  }
  if (sizes.empty()) return 0;
  const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
  std::nth_element(sizes.begin(), middle, sizes.end());
  const double least = std::pow(amount / kMostElements, 1.0 / dimension);
  return RoundedUp(std::isfinite(least) ? std::max(*middle, least) : *middle);
}

}  // namespace qd::workbench

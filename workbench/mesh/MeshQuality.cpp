#include "workbench/mesh/MeshQuality.h"

#include <array>
#include <cstdint>
#include <limits>
#include <numbers>

namespace qd::workbench {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::size_t kMostCorners = 8;
constexpr double kDegrees = 180 / std::numbers::pi;

constexpr QualityRule kRules[] = {
    {QualityMeasure::AspectRatio, "IDS_WB_QUALITY_ASPECT", false, false, 1, 5, kInfinity},
    {QualityMeasure::ScaledJacobian, "IDS_WB_QUALITY_JACOBIAN", true, false, 1, 0.3, -1},
    {QualityMeasure::Skewness, "IDS_WB_QUALITY_SKEWNESS", false, false, 0, 0.75, 1},
    {QualityMeasure::Warpage, "IDS_WB_QUALITY_WARPAGE", false, true, 0, 10, 180},
    {QualityMeasure::LeastAngle, "IDS_WB_QUALITY_LEAST_ANGLE", true, true, 90, 20, 0},
    {QualityMeasure::GreatestAngle, "IDS_WB_QUALITY_GREATEST_ANGLE", false, true, 60, 150, 360}};

/// The corners that a corner has edges to, right-handed inwards.
using Spread = std::array<int, 3>;
constexpr std::array<Spread, 4> kTetSpreads{{{1, 2, 3}, {2, 0, 3}, {0, 1, 3}, {0, 2, 1}}};
constexpr std::array<Spread, 8> kHexSpreads{
    {{1, 3, 4}, {2, 0, 5}, {3, 1, 6}, {0, 2, 7}, {7, 5, 0}, {4, 6, 1}, {5, 7, 2}, {6, 4, 3}}};
constexpr std::array<Spread, 6> kPrismSpreads{{{1, 2, 3}, {2, 0, 4}, {0, 1, 5}, {5, 4, 0}, {3, 5, 1}, {4, 3, 2}}};
/// Of the base; four edges meet at the top.
constexpr std::array<Spread, 4> kPyramidSpreads{{{1, 3, 4}, {2, 0, 4}, {3, 1, 4}, {0, 2, 4}}};

/// The corners of an element in a size in which nothing overflows and nothing vanishes.
struct Element {
  const ElementTopology* topology;
  std::array<Point3, kMostCorners> at;

  Point3 Way(int from, int to) const {
    return at[static_cast<std::size_t>(to)] - at[static_cast<std::size_t>(from)];
  }
};

/// None when a coordinate is not finite or all corners coincide.
std::optional<Element> InHandySize(const ElementTopology& topology, const Point3* corners) {
  Element element{&topology, {}};
  const auto count = static_cast<std::size_t>(topology.corners);
  double greatest = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!IsFinite(corners[i])) return std::nullopt;
    greatest = std::max(greatest, Extent(corners[i]));
  }
  // A power of two, so that no digit is lost.
  const int power = greatest > 0 ? std::ilogb(greatest) : 0;
  const auto scaled = [](const Point3& a, int by) {
    return Point3{std::scalbn(a.x, by), std::scalbn(a.y, by), std::scalbn(a.z, by)};
  };
  double extent = 0;
  const bool handy = power > -300 && power < 300;
  const Point3 first = handy ? corners[0] : scaled(corners[0], -power);
  for (std::size_t i = 0; i < count; ++i) {
    element.at[i] = (handy ? corners[i] : scaled(corners[i], -power)) - first;
    extent = std::max(extent, Extent(element.at[i]));
  }
  if (extent <= 0) return std::nullopt;
  const double factor = std::scalbn(1.0, -std::ilogb(extent));
  for (std::size_t i = 0; i < count; ++i) element.at[i] = element.at[i] * factor;
  return element;
}

double Determinant(const Point3& a, const Point3& b, const Point3& c) {
  return Dot(Cross(a, b), c);
}

/// The side of an element by its corners.
struct Side {
  std::array<Point3, 4> at;
  std::size_t count;

  Point3 Normal() const {
    return count == 3 ? Cross(at[1] - at[0], at[2] - at[0]) : Cross(at[2] - at[0], at[3] - at[1]) * 0.5;
  }
};

Side SideOf(const Element& element, const ElementFace& face) {
  Side side{};
  for (; side.count < 4 && face[side.count] >= 0; ++side.count) {
    side.at[side.count] = element.at[static_cast<std::size_t>(face[side.count])];
  }
  return side;
}

double AspectRatio(const Element& element) {
  double longest = 0;
  double shortest = kInfinity;
  double perimeter = 0;
  for (const auto& edge : element.topology->edges) {
    const double length = Length(element.Way(edge[0], edge[1]));
    longest = std::max(longest, length);
    shortest = std::min(shortest, length);
    perimeter += length;
  }
  // Simplices of equal edges can be flat, so they are judged by the circle or ball in them.
  double ball = 0;
  double ideal = 0;
  if (element.topology->shape == ElementShape::Triangle) {
    ball = 2 * (Length(SideOf(element, element.topology->faces[0]).Normal()) / 2) / perimeter;
    ideal = 2 * std::numbers::sqrt3;
  } else if (element.topology->shape == ElementShape::Tetrahedron) {
    double surface = 0;
    for (const ElementFace& face : element.topology->faces) surface += Length(SideOf(element, face).Normal()) / 2;
    const double volume = std::abs(Determinant(element.Way(0, 1), element.Way(0, 2), element.Way(0, 3))) / 6;
    ball = surface > 0 ? 3 * volume / surface : 0;
    constexpr double kSqrt6 = 2.449489742783178;
    ideal = 2 * kSqrt6;
  } else {
    return shortest > 0 ? longest / shortest : kInfinity;
  }
  return ball > 0 ? std::max(1.0, longest / (ideal * ball)) : kInfinity;
}

/// The least over the corners of the volume that their edges span, over that of edges at right angles; for the
/// ideal element it is made 1.
template <typename Spreads>
double LeastVolume(const Element& element, const Spreads& spreads, double factor) {
  double least = 1;
  for (std::size_t corner = 0; corner < spreads.size(); ++corner) {
    const Spread& to = spreads[corner];
    const auto from = static_cast<int>(corner);
    const Point3 a = element.Way(from, to[0]);
    const Point3 b = element.Way(from, to[1]);
    const Point3 c = element.Way(from, to[2]);
    const double lengths = Length(a) * Length(b) * Length(c);
    least = std::min(least, lengths > 0 ? factor * Determinant(a, b, c) / lengths : 0);
  }
  return std::max(least, -1.0);
}

double ScaledJacobian(const Element& element) {
  constexpr double kTriangle = 2 / std::numbers::sqrt3;
  switch (element.topology->shape) {
    case ElementShape::Tetrahedron:
      return LeastVolume(element, kTetSpreads, std::numbers::sqrt2);
    case ElementShape::Hexahedron:
      return LeastVolume(element, kHexSpreads, 1);
    case ElementShape::Prism:
      return LeastVolume(element, kPrismSpreads, kTriangle);
    case ElementShape::Pyramid:
      return LeastVolume(element, kPyramidSpreads, std::numbers::sqrt2);
    default:
      break;
  }
  const Side side = SideOf(element, element.topology->faces[0]);
  const Point3 normal = side.Normal();
  const double size = Length(normal);
  if (size <= 0) return 0;
  double least = 1;
  for (std::size_t i = 0; i < side.count; ++i) {
    const Point3 next = side.at[(i + 1) % side.count] - side.at[i];
    const Point3 before = side.at[(i + side.count - 1) % side.count] - side.at[i];
    const double lengths = Length(next) * Length(before);
    const double sine = lengths > 0 ? Dot(Cross(next, before), normal) / size / lengths : 0;
    least = std::min(least, side.count == 3 ? kTriangle * sine : sine);
  }
  return least;
}

/// Of the sides of an element, in degrees.
struct Angles {
  double least = 360;
  double greatest = 0;
  double skewness = 0;
};

Angles AnglesOf(const Element& element) {
  Angles all;
  for (const ElementFace& face : element.topology->faces) {
    const Side side = SideOf(element, face);
    const Point3 normal = side.Normal();
    Angles own;
    for (std::size_t i = 0; i < side.count; ++i) {
      const Point3 next = side.at[(i + 1) % side.count] - side.at[i];
      const Point3 before = side.at[(i + side.count - 1) % side.count] - side.at[i];
      if (Extent(next) <= 0 || Extent(before) <= 0) return {0, 360, 1};
      double angle = AngleBetween(next, before) * kDegrees;
      if (Dot(Cross(next, before), normal) < 0) angle = 360 - angle;  // a corner that points inwards
      own.least = std::min(own.least, angle);
      own.greatest = std::max(own.greatest, angle);
    }
    const double ideal = side.count == 3 ? 60 : 90;
    const double skewness = std::max((own.greatest - ideal) / (180 - ideal), (ideal - own.least) / ideal);
    all.least = std::min(all.least, own.least);
    all.greatest = std::max(all.greatest, own.greatest);
    all.skewness = std::max(all.skewness, std::min(skewness, 1.0));
  }
  return all;
}

/// The corner of a side that points inwards, as the sides of arrowheads have one.
std::optional<std::size_t> InwardCorner(const Side& side) {
  const Point3 normal = side.Normal();
  for (std::size_t i = 0; i < side.count; ++i) {
    const Point3 next = side.at[(i + 1) % side.count] - side.at[i];
    const Point3 before = side.at[(i + side.count - 1) % side.count] - side.at[i];
    if (Dot(Cross(next, before), normal) < 0) return i;
  }
  return std::nullopt;
}

/// The greatest angle between the two triangles into which a side is divided along one of its diagonals. Only one
/// of them divides a side with an inward corner.
std::optional<double> Warpage(const Element& element) {
  std::optional<double> greatest;
  for (const ElementFace& face : element.topology->faces) {
    if (face[3] < 0) continue;
    const Side side = SideOf(element, face);
    const std::optional<std::size_t> inward = InwardCorner(side);
    if (!greatest) greatest = 0;
    for (std::size_t i = 0; i < 2; ++i) {
      if (inward && *inward % 2 != i) continue;
      const Point3& a = side.at[i];
      const Point3& c = side.at[i + 2];
      const Point3 one = Cross(side.at[i + 1] - a, c - a);
      const Point3 other = Cross(c - a, side.at[(i + 3) % 4] - a);
      greatest = std::max(*greatest, AngleBetween(one, other) * kDegrees);
    }
  }
  return greatest;
}

}  // namespace

std::span<const QualityRule> QualityRules() {
  return kRules;
}

std::optional<double> QualityOf(QualityMeasure measure, ElementShape shape, const Point3* corners) {
  const ElementTopology& topology = TopologyOf(shape);
  if (topology.dimension < 2) return std::nullopt;
  const bool simplex = shape == ElementShape::Triangle || shape == ElementShape::Tetrahedron;
  if (measure == QualityMeasure::Warpage && simplex) return std::nullopt;
  const std::optional<Element> element = InHandySize(topology, corners);
  if (!element) return RuleOf(measure).worst;
  switch (measure) {
    case QualityMeasure::AspectRatio:
      return AspectRatio(*element);
    case QualityMeasure::ScaledJacobian:
      return ScaledJacobian(*element);
    case QualityMeasure::Skewness:
      return AnglesOf(*element).skewness;
    case QualityMeasure::Warpage:
      return Warpage(*element);
    case QualityMeasure::LeastAngle:
      return AnglesOf(*element).least;
    default:
      return AnglesOf(*element).greatest;
  }
}

double SignedVolume(ElementShape shape, const Point3* corners) {
  double volume = 0;
  for (const auto& tet : TopologyOf(shape).tetrahedra) {
    const auto at = [&](int corner) {
      return corners[static_cast<std::size_t>(tet[static_cast<std::size_t>(corner)])];
    };
    volume += Determinant(at(1) - at(0), at(2) - at(0), at(3) - at(0)) / 6;
  }
  return volume;
}

}  // namespace qd::workbench

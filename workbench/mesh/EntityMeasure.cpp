#include "workbench/mesh/EntityMeasure.h"

#include <cstdint>
#include <limits>
#include <numbers>
#include <set>
#include <tuple>
#include <utility>

#include "workbench/mesh/BoxTree.h"

namespace qd::workbench {

namespace {

constexpr double kDegrees = 180 / std::numbers::pi;

// ---- the main axes of many vectors ----------------------------------------------------------------------

/// The sum of the products of vectors with themselves: its axes say how they are spread.
struct Spread {
  std::array<Point3, 3> rows{};

  void Add(const Point3& way, double weight) {
    for (std::size_t i = 0; i < 3; ++i) rows[i] = rows[i] + way * (way[i] * weight);
  }
};

struct MainAxes {
  std::array<Point3, 3> axes;    ///< of length 1, from the one along which there is least
  std::array<double, 3> amount;  ///< along each
};

/// By turning away what stands beside the diagonal.
MainAxes AxesOf(Spread spread) {
  constexpr int kTurns = 32;  // some six are enough
  auto& a = spread.rows;
  std::array<Point3, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  for (int i = 0; i < kTurns; ++i) {
    for (std::size_t p = 0; p < 3; ++p) {
      const std::size_t q = (p + 1) % 3;
      if (a[p][q] == 0) continue;
      // The smaller of the two turns that do it: the other would swap the axes for ever.
      const double apart = a[q][q] - a[p][p];
      const double angle = apart != 0 ? std::atan(2 * a[p][q] / apart) / 2 : std::numbers::pi / 4;
      const double c = std::cos(angle);
      const double s = std::sin(angle);
      const auto turn = [c, s](auto& one, auto& other) {
        const auto old = one;
        one = old * c - other * s;
        other = old * s + other * c;
      };
      for (std::size_t k = 0; k < 3; ++k) turn(a[k][p], a[k][q]);
      turn(a[p], a[q]);
      turn(axes[p], axes[q]);
    }
  }
  std::array<std::size_t, 3> order{0, 1, 2};
  std::sort(order.begin(), order.end(), [&a](std::size_t i, std::size_t k) { return a[i][i] < a[k][k]; });
  MainAxes found;
  for (std::size_t i = 0; i < 3; ++i) {
    found.axes[i] = axes[order[i]];
    found.amount[i] = std::max(0.0, a[order[i]][order[i]]);
  }
  return found;
}

// ---- shapes through points ------------------------------------------------------------------------------

/// What an entity stands on, each point once.
struct Cloud {
  std::vector<Point3> points;
  Point3 middle;
  double extent = 0;
  double rounding = 0;  ///< what points may be beside a line that they mean

  explicit Cloud(const MeasuredEntity& entity) {
    std::set<std::tuple<double, double, double>> known;
    double farthest = 0;
    for (const Triangle3& piece : entity.pieces) {
      for (const Point3& at : piece) {
        if (!IsFinite(at) || !known.emplace(at.x, at.y, at.z).second) continue;
        points.push_back(at);
        middle = middle + at;
        farthest = std::max(farthest, Extent(at));
      }
    }
    if (points.empty()) return;
    middle = middle * (1 / static_cast<double>(points.size()));
    for (const Point3& at : points) extent = std::max(extent, Length(at - middle));
    constexpr double kShare = 1e-5;
    constexpr double kFloat = 4e-7;  // of the largest coordinate, by which what is far away is rounded
    rounding = std::max(extent * kShare, farthest * kFloat);
  }
  MainAxes Axes() const {
    Spread spread;
    for (const Point3& at : points) spread.Add((at - middle) * (1 / extent), 1);
    return AxesOf(spread);
  }
  /// The greatest length of what `beside` answers for the points.
  template <typename Beside>
  double Farthest(const Beside& beside) const {
    double farthest = 0;
    for (const Point3& at : points) farthest = std::max(farthest, std::abs(beside(at - middle)));
    return farthest;
  }
};

/// The circle through points as they are seen along an axis; the middles of the pieces may not lie far beside it,
/// or the pieces are a polygon.
std::optional<RoundShape> RoundOf(const MeasuredEntity& entity, const Cloud& cloud, const Point3& axis,
                                  const Point3& u, const Point3& v) {
  constexpr std::size_t kLeastPoints = 4;  // three lie on a circle whatever they are
  constexpr double kMostDeviation = 0.05;  // of the radius
  constexpr double kMostSagitta = 0.15;    // likewise: five sides round
  std::vector<std::array<double, 2>> seen;
  double uu = 0, uv = 0, vv = 0, ur = 0, vr = 0, r = 0, meanU = 0, meanV = 0;
  const auto count = static_cast<double>(cloud.points.size());
  for (const Point3& at : cloud.points) {
    const Point3 way = at - cloud.middle;
    seen.push_back({Dot(way, u), Dot(way, v)});
    meanU += seen.back()[0] / count;
    meanV += seen.back()[1] / count;
  }
  std::set<std::pair<std::int64_t, std::int64_t>> apart;
  const double cell = std::max(cloud.rounding * 4, std::numeric_limits<double>::min());
  for (auto& [a, b] : seen) {
    a -= meanU;
    b -= meanV;
    apart.emplace(std::llround(a / cell), std::llround(b / cell));
    const double square = a * a + b * b;
    uu += a * a;
    uv += a * b;
    vv += b * b;
    ur += a * square;
    vr += b * square;
    r += square / count;
  }
  const double determinant = uu * vv - uv * uv;
  if (apart.size() < kLeastPoints || !(determinant > 1e-12 * (uu + vv) * (uu + vv))) return std::nullopt;
  const double a = (ur * vv - vr * uv) / determinant / 2;
  const double b = (vr * uu - ur * uv) / determinant / 2;
  RoundShape round;
  round.axis = axis * (axis[0] + axis[1] + axis[2] < 0 ? -1 : 1);
  round.radius = std::sqrt(r + a * a + b * b);
  round.centre = cloud.middle + u * (a + meanU) + v * (b + meanV);
  round.rim = cloud.points.front();
  const auto beside = [&](const Point3& at) {
    const Point3 way = at - round.centre;
    return std::hypot(Dot(way, u), Dot(way, v)) - round.radius;
  };
  for (const Point3& at : cloud.points) round.deviation = std::max(round.deviation, std::abs(beside(at)));
  if (!std::isfinite(round.radius) || !(round.deviation <= kMostDeviation * round.radius)) return std::nullopt;
  for (const Triangle3& piece : entity.pieces) {
    for (std::size_t i = 0; i < 3; ++i) {
      const double sagitta = std::abs(beside((piece[i] + piece[(i + 1) % 3]) * 0.5));
      if (!(sagitta <= kMostSagitta * round.radius)) return std::nullopt;
    }
  }
  return round;
}

void MeasureEdge(const MeasuredEntity& entity, const Cloud& cloud, EntityMeasure& measure) {
  const auto [axes, amount] = cloud.Axes();
  const Point3& along = axes[2];
  const auto beside = [&along](const Point3& way) { return Length(way - along * Dot(way, along)); };
  if (cloud.Farthest(beside) <= cloud.rounding) {
    // Its ends are wanted one after another, as the edge goes.
    const double sense = Dot(entity.pieces.back()[1] - entity.pieces.front()[0], along);
    measure.direction = along * (sense < 0 ? -1 : 1);
    return;
  }
  std::optional<RoundShape> round = RoundOf(entity, cloud, axes[0], axes[2], axes[1]);
  if (!round) return;
  const double above = cloud.Farthest([&axes = axes](const Point3& way) { return Dot(way, axes[0]); });
  round->deviation = std::max(round->deviation, above);
  constexpr double kFlat = 0.05;  // of the radius: else it is no circle but goes round something
  if (above <= kFlat * round->radius) measure.round = round;
}

void MeasureFace(const MeasuredEntity& entity, const Cloud& cloud, EntityMeasure& measure) {
  const auto [axes, amount] = cloud.Axes();
  Point3 normals;
  Spread facing;
  for (const Triangle3& piece : entity.pieces) {
    const Point3 normal = Cross(piece[1] - piece[0], piece[2] - piece[0]);
    const double size = Length(normal);
    if (!(size > 0)) continue;
    normals = normals + normal;
    facing.Add(normal * (1 / size), size / (cloud.extent * cloud.extent));
  }
  const Point3& across = axes[0];
  if (cloud.Farthest([&across](const Point3& way) { return Dot(way, across); }) <= cloud.rounding) {
    measure.normal = across * (Dot(normals, across) < 0 ? -1 : 1);
    return;
  }
  // All normals of a cylinder stand across its axis.
  const MainAxes turned = AxesOf(facing);
  constexpr double kAcross = 1e-3;
  if (turned.amount[0] > kAcross * turned.amount[2]) return;
  measure.round = RoundOf(entity, cloud, turned.axes[0], turned.axes[1], turned.axes[2]);
}

}  // namespace

EntityMeasure MeasureEntity(const MeasuredEntity& entity) {
  using Kind = MeasuredEntity::Kind;
  EntityMeasure measure;
  const Cloud cloud(entity);
  if (entity.kind == Kind::Point || !(cloud.extent > 0)) return measure;
  for (const Triangle3& piece : entity.pieces) {
    const Point3 normal = Cross(piece[1] - piece[0], piece[2] - piece[0]);
    if (entity.kind == Kind::Edge) {
      measure.length += Length(piece[1] - piece[0]);
    } else {
      measure.area += Length(normal) / 2;
    }
    if (entity.kind == Kind::Solid) measure.volume += Dot(normal, piece[0] - cloud.middle) / 6;
  }
  if (entity.kind == Kind::Edge) MeasureEdge(entity, cloud, measure);
  if (entity.kind == Kind::Face) MeasureFace(entity, cloud, measure);
  return measure;
}

std::optional<double> AngleBetween(const EntityMeasure& one, const EntityMeasure& other) {
  const auto wayOf = [](const EntityMeasure& of) { return of.direction ? of.direction : of.normal; };
  const std::optional<Point3> a = wayOf(one);
  const std::optional<Point3> b = wayOf(other);
  if (!a || !b) return std::nullopt;
  const double angle = AngleBetween(*a, *b) * kDegrees;
  const double acute = std::min(angle, 180 - angle);
  return one.direction.has_value() == other.direction.has_value() ? acute : 90 - acute;
}

std::optional<double> AngleAt(const Point3& from, const Point3& at, const Point3& to) {
  if (from == at || to == at) return std::nullopt;
  return AngleBetween(from - at, to - at) * kDegrees;
}

// ---- distance -------------------------------------------------------------------------------------------

std::vector<Triangle3> TrianglesOf(const PartFacets& facets) {
  std::vector<Triangle3> triangles(facets.triangles.size() / 3);
  for (std::size_t i = 0; i < triangles.size(); ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      triangles[i][c] = Point3::At(&facets.points[std::size_t{facets.triangles[i * 3 + c]} * 3]);
    }
  }
  return triangles;
}

std::optional<NearPoints> LeastDistance(const std::vector<Triangle3>& one, const std::vector<Triangle3>& other,
                                        const ProgressCall& progress) {
  const auto boxOf = [](const Triangle3& triangle) {
    Box3 box;
    for (const Point3& corner : triangle) box.Add(corner);
    return box;
  };
  std::vector<Box3> boxes(other.size());
  std::transform(other.begin(), other.end(), boxes.begin(), boxOf);
  const BoxTree tree(std::move(boxes));
  NearPoints nearest{Box3::kFar, {}, {}};
  constexpr std::uint64_t kStep = 1024;
  std::uint64_t looked = 0;
  bool stopped = false;
  for (std::size_t i = 0; i < one.size() && nearest.distance > 0 && !stopped; ++i) {
    tree.ForNear(boxOf(one[i]), nearest.distance, [&](std::uint32_t k) {
      stopped = ++looked % kStep == 0 && !progress(static_cast<double>(i) / static_cast<double>(one.size()));
      if (stopped) return -1.0;
      const NearPoints points = DistanceBetween(one[i], other[k]);
      if (points.distance < nearest.distance) nearest = points;
      return nearest.distance;
    });
  }
  if (!std::isfinite(nearest.distance) || stopped) return std::nullopt;
  return nearest;
}

}  // namespace qd::workbench

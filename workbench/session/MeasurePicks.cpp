#include "workbench/session/MeasurePicks.h"

#include <charconv>
#include <cmath>

#include "workbench/display/PickedShape.h"

namespace qd::workbench {

namespace {

using Kind = MeasuredEntity::Kind;

/// The number that people would write for a coordinate of facets: the shortest that is the same to them.
double Written(double value) {
  const auto single = static_cast<float>(value);
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), single).ptr;
  std::from_chars(text.data(), end, value);
  return value;
}

/// What was worked out of such coordinates, without the digits that mean nothing.
Vector3 Rounded(const Point3& from) {
  constexpr int kDigits = 7;
  const double greatest = Extent(from);
  const int places = greatest > 0 ? kDigits - 1 - static_cast<int>(std::floor(std::log10(greatest))) : 0;
  const double power = std::pow(10.0, std::abs(places));
  Vector3 to{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    to[axis] = places >= 0 ? std::round(from[axis] * power) / power : std::round(from[axis] / power) * power;
    to[axis] += 0.0;  // no zero has a sign
  }
  return to;
}

/// The middle of the area.
Point3 MiddleOf(const std::vector<Triangle3>& triangles) {
  Point3 sum;
  double area = 0;
  for (const auto& [a, b, c] : triangles) {
    const double size = Length(Cross(b - a, c - a));
    sum = sum + (a + b + c) * (size / 3);
    area += size;
  }
  return area > 0 ? sum * (1 / area) : triangles.front()[0];
}

}  // namespace

MeasuredEntity EntityOf(const WorkDocument& doc, const Picked& one) {
  const Picks& picks = doc.GetPicks();
  MeasuredEntity entity;
  if (const std::optional<Vector3> place = PlaceOf(doc.GetDatabase(), picks, one)) {
    const Point3 at = Point3::At(place->data());
    entity.pieces = {{at, at, at}};
    return entity;
  }
  const PickedShape shape = ShapeOf(doc.GetDatabase(), picks, one);
  const auto at = [&shape](std::uint32_t point) { return Point3::At(&shape.points[std::size_t{point} * 3]); };
  for (std::size_t i = 0; i + 2 < shape.triangles.size(); i += 3) {
    entity.pieces.push_back({at(shape.triangles[i]), at(shape.triangles[i + 1]), at(shape.triangles[i + 2])});
  }
  entity.kind = shape.isSolid ? Kind::Solid : Kind::Face;
  if (!entity.pieces.empty()) return entity;
  entity.kind = Kind::Edge;
  for (std::size_t i = 0; i + 1 < shape.lines.size(); i += 2) {
    entity.pieces.push_back({at(shape.lines[i]), at(shape.lines[i + 1]), at(shape.lines[i + 1])});
  }
  if (!entity.pieces.empty()) return entity;
  entity.kind = Kind::Point;
  for (const std::uint32_t spot : shape.spots) entity.pieces.push_back({at(spot), at(spot), at(spot)});
  return entity;
}

PlaceOfPick PlaceAndWayOf(const WorkDocument& doc, const Picked& one) {
  PlaceOfPick found;
  if (auto place = PlaceOf(doc.GetDatabase(), doc.GetPicks(), one)) {
    if (one.kind == PickFilter::Points) std::transform(place->begin(), place->end(), place->begin(), Written);
    found.place = place;
    return found;
  }
  const MeasuredEntity entity = EntityOf(doc, one);
  if (entity.pieces.empty()) return found;
  const EntityMeasure measure = MeasureEntity(entity);
  if (measure.direction) {
    const Point3& from = entity.pieces.front()[0];
    found.place = Rounded(from);
    found.way = Rounded(entity.pieces.back()[1] - from);
  } else if (measure.normal) {
    found.place = Rounded(MiddleOf(entity.pieces));
    found.way = Rounded(*measure.normal);
  } else if (measure.round) {
    found.place = Rounded(measure.round->centre);
    found.way = Rounded(measure.round->axis);
  }
  return found;
}

MeasuredPicks GatherPicks(const WorkDocument& doc) {
  MeasuredPicks picks;
  const std::vector<Picked>& all = doc.GetPicks().All();
  picks.tooMany = all.size() > MeasuredPicks::kMost;
  if (picks.tooMany) return picks;
  for (const Picked& one : all) {
    MeasuredEntity entity = EntityOf(doc, one);
    if (!entity.pieces.empty()) picks.all.push_back(std::move(entity));
  }
  return picks;
}

bool MeasureAll(const MeasuredPicks& picks, const ProgressCall& progress, PicksMeasure& measure) {
  const std::vector<MeasuredEntity>& all = picks.all;
  std::size_t points = 0;
  for (const MeasuredEntity& entity : all) {
    if (!progress(0)) return false;
    const EntityMeasure one = MeasureEntity(entity);
    measure.sum.length += one.length;
    measure.sum.area += one.area;
    measure.sum.volume += one.volume;
    if (entity.kind == Kind::Point) ++points;
    if (all.size() <= 2) measure.each.push_back(one);
  }
  if (all.size() == 1 && points == 1) measure.place = all[0].pieces[0][0];
  if (all.size() == 2) {
    measure.distance = LeastDistance(all[0].pieces, all[1].pieces, progress);
    if (!measure.distance) return false;
    measure.angle = AngleBetween(measure.each[0], measure.each[1]);
    const auto isSide = [](const MeasuredEntity& of) { return of.kind == Kind::Edge || of.kind == Kind::Face; };
    measure.noAngle = !measure.angle && isSide(all[0]) && isSide(all[1]);
    const std::optional<RoundShape>& one = measure.each[0].round;
    const std::optional<RoundShape>& other = measure.each[1].round;
    if (one && other) measure.centres = Length(one->centre - other->centre);
  }
  if (all.size() == 3 && points == 3) {
    for (const MeasuredEntity& entity : all) measure.corners.push_back(entity.pieces[0][0]);
    measure.angle = AngleAt(measure.corners[0], measure.corners[1], measure.corners[2]);
  }
  return true;
}

}  // namespace qd::workbench

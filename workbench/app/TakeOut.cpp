#include "workbench/app/TakeOut.h"

#include <algorithm>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/display/PickedShape.h"

namespace qd::workbench {

namespace {

Vector3 PointOf(const PickedShape& shape, std::size_t point) {
  return {shape.points[point * 3], shape.points[point * 3 + 1], shape.points[point * 3 + 2]};
}

/// A place by which something is known from its neighbours: inside of a face, in the middle of an edge.
Vector3 PlaceIn(const PickedShape& shape) {
  if (!shape.spots.empty()) return PointOf(shape, shape.spots[0]);
  if (shape.triangles.empty()) {
    const std::size_t middle = shape.lines.size() / 4 * 2;
    const Vector3 from = PointOf(shape, shape.lines[middle]);
    // The points between the pieces lie on the edge, however it is bent.
    return middle != 0 ? from : (from + PointOf(shape, shape.lines[1])) * 0.5;
  }
  std::vector<bool> bounds(shape.points.size() / 3, false);
  for (const std::uint32_t point : shape.lines) bounds[point] = true;
  const auto inside = std::find(bounds.begin(), bounds.end(), false);
  if (inside != bounds.end()) return PointOf(shape, static_cast<std::size_t>(inside - bounds.begin()));
  Vector3 best{};
  double greatest = -1;
  for (std::size_t i = 0; i + 2 < shape.triangles.size(); i += 3) {
    const Vector3 a = PointOf(shape, shape.triangles[i]);
    const Vector3 b = PointOf(shape, shape.triangles[i + 1]);
    const Vector3 c = PointOf(shape, shape.triangles[i + 2]);
    const double area = Length(Cross(b - a, c - a));
    if (area <= greatest) continue;
    greatest = area;
    best = (a + b + c) * (1.0 / 3);
  }
  return best;
}

}  // namespace

ShapeOperation TakeOutPicked(const WorkDocument& doc, std::vector<iterator>& parts) {
  ShapeOperation operation;
  operation.kind = ShapeOperationKind::TakeOut;
  for (const Picked& one : doc.GetPicks().All()) {
    const tagTGeom* part = doc.GetDatabase().GetGeomPool().GetAtNU(one.owner);
    const PickedShape shape = ShapeOf(doc.GetDatabase(), doc.GetPicks(), one);
    if (part == nullptr || shape.IsEmpty()) continue;
    const auto known = std::find(parts.begin(), parts.end(), one.owner);
    ShapeOperation::Taken& taken = operation.taken.emplace_back();
    taken.operand = static_cast<std::uint32_t>(known - parts.begin());
    if (known == parts.end()) parts.push_back(one.owner);
    const bool face = one.kind == PickFilter::Faces;
    const bool edge = one.kind == PickFilter::Edges;
    taken.kind = face ? TopologyKind::Surface : edge ? TopologyKind::Curve : TopologyKind::Point;
    const Vector3 place = PlaceIn(shape);
    std::copy(place.begin(), place.end(), taken.at);
    const char* name = face ? "IDS_WB_TAKEN_FACE" : edge ? "IDS_WB_TAKEN_EDGE" : "IDS_WB_TAKEN_POINT";
    taken.name = Text(name, {ToQt(part->name), QString::number(one.number)}).toStdString();
  }
  return operation;
}

}  // namespace qd::workbench

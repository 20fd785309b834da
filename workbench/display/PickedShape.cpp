#include "workbench/display/PickedShape.h"

#include <algorithm>
#include <array>
#include <map>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::workbench {

namespace {

/// Copies what is used of the points of a part.
class PointTaker {
 public:
  PointTaker(const std::vector<float>& from, PickedShape& to) : m_from(from), m_to(to) {}
  std::uint32_t operator()(std::uint32_t point) {
    const auto [known, isNew] = m_taken.try_emplace(point, static_cast<std::uint32_t>(m_to.points.size() / 3));
    if (isNew) {
      const auto first = m_from.begin() + static_cast<std::ptrdiff_t>(point) * 3;
      m_to.points.insert(m_to.points.end(), first, first + 3);
    }
    return known->second;
  }

 private:
  const std::vector<float>& m_from;
  PickedShape& m_to;
  std::map<std::uint32_t, std::uint32_t> m_taken;
};

PickedShape ShapeInPart(const PartFacets& facets, const FacetParts& parts, const Picked& one) {
  PickedShape shape;
  PointTaker take(facets.points, shape);
  if (one.kind == PickFilter::Faces) {
    for (const std::uint32_t triangle : parts.TrianglesOf(one.number)) {
      for (std::size_t c = 0; c < 3; ++c) {
        shape.triangles.push_back(take(facets.triangles[std::size_t{triangle} * 3 + c]));
      }
    }
    for (const std::uint32_t point : parts.OutlineOf(facets, one.number)) shape.lines.push_back(take(point));
  } else if (one.kind == PickFilter::Edges) {
    for (const std::uint32_t point : parts.SegmentsOf(one.number)) shape.lines.push_back(take(point));
  } else if (one.number != 0 && one.number <= parts.CornerCount()) {
    shape.spots.push_back(take(parts.Corners()[one.number - 1]));
  }
  return shape;
}

PickedShape ElementIn(const MeshData& mesh, const ElementPlaces& places, std::uint64_t element) {
  PickedShape shape;
  const auto place = places.Find(mesh, element);
  const MeshData::Block* block = place ? &mesh.blocks[place->block] : nullptr;
  const ElementType* type = block != nullptr ? FindElementType(block->elementType) : nullptr;
  if (type == nullptr) return shape;
  const ElementTopology& topology = TopologyOf(type->shape);
  for (int corner = 0; corner < topology.corners; ++corner) {
    const auto first = place->element * static_cast<std::size_t>(block->nodesPerElement);
    const std::size_t node = PlaceOfNode(mesh, block->nodeIds[first + static_cast<std::size_t>(corner)]);
    if (node == mesh.nodeIds.size()) return {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      shape.points.push_back(static_cast<float>(mesh.coordinates[node * 3 + axis]));
    }
  }
  for (const ElementFace& face : topology.faces) {
    for (std::size_t i = 2; i < face.size() && face[i] >= 0; ++i) {
      for (const int corner : {face[0], face[i - 1], face[i]})
        shape.triangles.push_back(static_cast<std::uint32_t>(corner));
    }
  }
  for (const auto& edge : topology.edges) {
    for (const int corner : edge) shape.lines.push_back(static_cast<std::uint32_t>(corner));
  }
  if (topology.dimension == 0) shape.spots = {0};
  shape.isSolid = topology.dimension == 3;
  return shape;
}

}  // namespace

PickedShape ShapeOf(const Database& database, const Picks& picks, const Picked& one) {
  if (one.kind == PickFilter::Elements || one.kind == PickFilter::Nodes) {
    const tagTMset* set = database.GetMsetPool().GetAtNU(one.owner);
    if (set == nullptr || set->mesh == nullptr) return {};
    const MeshData& mesh = *set->mesh;
    if (one.kind == PickFilter::Elements) return ElementIn(mesh, *picks.PlacesOf(set->mesh), one.number);
    const std::size_t place = PlaceOfNode(mesh, one.number);
    if (place == mesh.nodeIds.size()) return {};
    PickedShape shape;
    shape.spots = {0};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      shape.points.push_back(static_cast<float>(mesh.coordinates[place * 3 + axis]));
    }
    return shape;
  }
  const tagTGeom* part = database.GetGeomPool().GetAtNU(one.owner);
  if (part == nullptr || part->shape == nullptr || TakesRecords(one.kind)) return {};
  return ShapeInPart(part->shape->facets, *picks.PartsOf(part->shape), one);
}

std::optional<Vector3> PlaceOf(const Database& database, const Picks& picks, const Picked& one) {
  if (one.kind == PickFilter::Nodes) {
    const tagTMset* set = database.GetMsetPool().GetAtNU(one.owner);
    if (set == nullptr || set->mesh == nullptr) return std::nullopt;
    const std::size_t place = PlaceOfNode(*set->mesh, one.number);
    if (place == set->mesh->nodeIds.size()) return std::nullopt;
    const double* at = &set->mesh->coordinates[place * 3];
    return Vector3{at[0], at[1], at[2]};
  }
  if (one.kind != PickFilter::Points) return std::nullopt;
  const PickedShape shape = ShapeOf(database, picks, one);
  if (shape.IsEmpty()) return std::nullopt;
  return Vector3{shape.points[0], shape.points[1], shape.points[2]};
}

std::optional<ViewBox> BoxOf(const Database& database, const Picks& picks, const Picked& one) {
  const PickedShape shape = ShapeOf(database, picks, one);
  std::optional<ViewBox> box;
  for (std::size_t i = 0; i + 2 < shape.points.size(); i += 3) {
    Widen(box, Vector3{shape.points[i], shape.points[i + 1], shape.points[i + 2]});
  }
  return box;
}

}  // namespace qd::workbench

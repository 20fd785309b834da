#include "workbench/mesh/Measures.h"

#include <utility>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::workbench {

void Measures::AddSimplex(const Point3* corners, std::size_t count, double volume, double mass) {
  const auto number = static_cast<double>(count);
  Point3 sum;
  for (std::size_t i = 0; i < count; ++i) sum = sum + corners[i];
  m_summedVolume += volume;
  m_volumeMoment = m_volumeMoment + sum * (volume / number);
  m_mass += mass;
  m_massMoment = m_massMoment + sum * (mass / number);
  constexpr std::array<std::pair<std::size_t, std::size_t>, 6> kAxes{
      {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {1, 2}, {2, 0}}};
  for (std::size_t k = 0; k < kAxes.size(); ++k) {
    const auto [a, b] = kAxes[k];
    double products = sum[a] * sum[b];
    for (std::size_t i = 0; i < count; ++i) products += corners[i][a] * corners[i][b];
    m_second[k] += mass * products / (number * (number + 1));
  }
}

/// Facets give the places of its volume, the shape how much it is.
void Measures::AddPart(const PartShape& shape, double density) {
  const PartFacets& facets = shape.facets;
  Box3 box;
  for (std::size_t i = 0; i + 2 < facets.points.size(); i += 3) {
    const Point3 at = Point3::At(&facets.points[i]);
    if (IsFinite(at)) box.Add(at);
  }
  m_length += shape.length;
  m_area += shape.area;
  m_volume += shape.volume;
  if (box.IsEmpty()) return;
  m_box.Add(box.least);
  m_box.Add(box.greatest);
  if (!(shape.volume > 0)) return;
  const Point3 middle = (box.least + box.greatest) * 0.5;  // near, so that no digits are lost
  const auto forTetrahedra = [&](const auto& call) {
    for (std::size_t i = 0; i + 2 < facets.triangles.size(); i += 3) {
      std::array<Point3, 4> corners{middle};
      for (std::size_t k = 0; k < 3; ++k) {
        corners[k + 1] = Point3::At(&facets.points[std::size_t{facets.triangles[i + k]} * 3]);
      }
      const Point3 normal = Cross(corners[2] - corners[1], corners[3] - corners[1]);
      const double volume = Dot(corners[1] - middle, normal) / 6;
      if (std::isfinite(volume)) call(corners, volume);
    }
  };
  double sum = 0;
  forTetrahedra([&sum](const auto&, double volume) { sum += volume; });
  if (sum == 0) return;
  const double factor = shape.volume / sum;  // which turns round what has its facets inside out
  forTetrahedra([&](const auto& corners, double volume) {
    AddSimplex(corners.data(), corners.size(), volume * factor, volume * factor * density);
  });
}

void Measures::AddMesh(const MeshData& mesh, double size, double density) {
  for (std::size_t i = 0; i + 2 < mesh.coordinates.size(); i += 3) {
    const Point3 at = Point3::At(&mesh.coordinates[i]);
    if (IsFinite(at)) m_box.Add(at);
  }
  for (const MeshData::Block& block : mesh.blocks) {
    const ElementType* type = FindElementType(block.elementType);
    if (type == nullptr) continue;
    const ElementTopology& topology = TopologyOf(type->shape);
    const auto count = static_cast<std::size_t>(topology.corners);
    const std::vector<std::uint32_t> places = CornerPlaces(mesh, block, topology.corners);
    for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
      const auto at = [&](int corner) {
        return Point3::At(
            &mesh.coordinates[std::size_t{places[element * count + static_cast<std::size_t>(corner)]} * 3]);
      };
      if (topology.dimension == 1) {
        const std::array<Point3, 2> ends{at(0), at(1)};
        const double length = qd::workbench::Length(ends[1] - ends[0]);
        m_length += length;
        AddSimplex(ends.data(), 2, 0, length * size * density);
      }
      for (int corner = 2; topology.dimension == 2 && corner < topology.corners; ++corner) {
        const std::array<Point3, 3> corners{at(0), at(corner - 1), at(corner)};
        const double area = qd::workbench::Length(Cross(corners[1] - corners[0], corners[2] - corners[0])) / 2;
        m_area += area;
        AddSimplex(corners.data(), 3, 0, area * size * density);
      }
      for (const auto& tet : topology.tetrahedra) {
        const std::array<Point3, 4> corners{at(tet[0]), at(tet[1]), at(tet[2]), at(tet[3])};
        const Point3 normal = Cross(corners[1] - corners[0], corners[2] - corners[0]);
        const double volume = Dot(normal, corners[3] - corners[0]) / 6;
        m_volume += volume;
        AddSimplex(corners.data(), 4, volume, volume * density);
      }
    }
  }
}

Point3 Measures::Centre() const {
  if (m_mass > 0) return m_massMoment * (1 / m_mass);
  return m_summedVolume > 0 ? m_volumeMoment * (1 / m_summedVolume) : Point3{};
}

std::array<double, 6> Measures::Inertia() const {
  if (!(m_mass > 0)) return {};
  const Point3 c = Centre();
  const double xx = m_second[0] - m_mass * c.x * c.x;
  const double yy = m_second[1] - m_mass * c.y * c.y;
  const double zz = m_second[2] - m_mass * c.z * c.z;
  return {yy + zz,
          xx + zz,
          xx + yy,
          m_mass * c.x * c.y - m_second[3],
          m_mass * c.y * c.z - m_second[4],
          m_mass * c.z * c.x - m_second[5]};
}

}  // namespace qd::workbench

#pragma once

#include <array>

#include "host/IAppDB.h"
#include "host/Records.h"
#include "workbench/mesh/BoxTree.h"

namespace qd::workbench {

/// What several parts and meshes measure together.
class Measures {
 public:
  /// What has no volume has no mass.
  void AddPart(const PartShape& shape, double density);
  /// Solids by volume, surfaces by area and `size` as thickness, lines by length and `size` as area.
  void AddMesh(const MeshData& mesh, double size, double density);

  const Box3& Box() const { return m_box; }
  double Length() const { return m_length; }
  double Area() const { return m_area; }
  double Volume() const { return m_volume; }
  /// 0 where nothing has a density.
  double Mass() const { return m_mass; }
  /// Of the mass, or without any of the volume; the origin without both.
  Point3 Centre() const;
  /// About axes through the centre of mass along those of the model: xx, yy, zz, xy, yz, zx; the last three with
  /// their sign in the matrix. Of the mass; zeros without any.
  std::array<double, 6> Inertia() const;

 private:
  /// A point, line, triangle or tetrahedron of a mass.
  void AddSimplex(const Point3* corners, std::size_t count, double volume, double mass);

  Box3 m_box;
  double m_length = 0;
  double m_area = 0;
  double m_volume = 0;
  double m_mass = 0;
  double m_summedVolume = 0;  // that has a place in m_volumeMoment
  Point3 m_volumeMoment;
  Point3 m_massMoment;
  std::array<double, 6> m_second{};  // moments of the mass about the origin: xx, yy, zz, xy, yz, zx
};

}  // namespace qd::workbench

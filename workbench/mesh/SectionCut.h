#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// A plane by one of its points and its normal of length 1.
struct CutPlane {
  std::array<double, 3> point{};
  std::array<double, 3> normal{0, 0, 1};

  double Above(const std::array<double, 3>& at) const {
    return (at[0] - point[0]) * normal[0] + (at[1] - point[1]) * normal[1] + (at[2] - point[2]) * normal[2];
  }
  bool operator==(const CutPlane&) const = default;
};

/// What a plane cuts out of something.
struct SectionCut {
  std::vector<float> points;             ///< x, y, z
  std::vector<std::uint32_t> triangles;  ///< three point numbers each
  std::vector<std::uint32_t> lines;      ///< two point numbers each

  std::uint32_t AddPoint(const std::array<double, 3>& at);
};

/// The inside of a solid where a plane cuts it, and its outline. Of a surface that is not closed what can be told.
SectionCut CutSolid(const PartFacets& facets, const CutPlane& plane);
/// The inside of each solid element that a plane cuts, with its edges, and the lines in which it cuts surfaces.
SectionCut CutMesh(const MeshData& mesh, const CutPlane& plane);

}  // namespace qd::workbench

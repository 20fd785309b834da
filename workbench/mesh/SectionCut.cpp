#include "workbench/mesh/SectionCut.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/OutlineFill.h"

namespace qd::workbench {

namespace {

using Point = std::array<double, 3>;

struct Corner {
  Point at;
  double above;
};

/// Where the plane meets an edge whose ends lie on either side. Both ways along an edge give the same point to the
/// last bit: faces that meet there have it each.
Point Between(const Corner& a, const Corner& b) {
  const Corner& first = a.at < b.at ? a : b;
  const Corner& second = a.at < b.at ? b : a;
  const double share = first.above / (first.above - second.above);
  Point point;
  for (std::size_t axis = 0; axis < 3; ++axis)
    point[axis] = first.at[axis] + share * (second.at[axis] - first.at[axis]);
  return point;
}

/// Two directions in a plane.
std::array<Point, 2> AxesOf(const Point& normal) {
  std::size_t least = 0;
  for (std::size_t axis = 1; axis < 3; ++axis) {
    if (std::abs(normal[axis]) < std::abs(normal[least])) least = axis;
  }
  Point u{};
  u[least] = 1;
  for (std::size_t axis = 0; axis < 3; ++axis) u[axis] -= normal[least] * normal[axis];
  const double length = std::sqrt(u[0] * u[0] + u[1] * u[1] + u[2] * u[2]);
  for (double& part : u) part /= length;
  return {u, Point{normal[1] * u[2] - normal[2] * u[1], normal[2] * u[0] - normal[0] * u[2],
                   normal[0] * u[1] - normal[1] * u[0]}};
}

}  // namespace

std::uint32_t SectionCut::AddPoint(const std::array<double, 3>& at) {
  for (const double number : at) points.push_back(static_cast<float>(number));
  return static_cast<std::uint32_t>(points.size() / 3 - 1);
}

SectionCut CutSolid(const PartFacets& facets, const CutPlane& plane) {
  SectionCut cut;
  const auto axes = AxesOf(plane.normal);
  const Point& u = axes[0];
  const Point& v = axes[1];
  std::vector<double> above(facets.points.size() / 3);
  const auto pointOf = [&](std::size_t number) {
    const float* at = &facets.points[number * 3];
    return Point{at[0], at[1], at[2]};
  };
  for (std::size_t i = 0; i < above.size(); ++i) above[i] = plane.Above(pointOf(i));
  std::vector<OutlinePiece> pieces;
  for (std::size_t i = 0; i + 2 < facets.triangles.size(); i += 3) {
    std::array<Point, 3> ends;
    std::size_t count = 0;
    for (std::size_t side = 0; side < 3; ++side) {
      const std::uint32_t a = facets.triangles[i + side];
      const std::uint32_t b = facets.triangles[i + (side + 1) % 3];
      // What lies in the plane counts as above, so that each outline closes.
      if ((above[a] < 0) != (above[b] < 0))
        ends[count++] = Between({pointOf(a), above[a]}, {pointOf(b), above[b]});
    }
    if (count != 2) continue;
    cut.lines.push_back(cut.AddPoint(ends[0]));
    cut.lines.push_back(cut.AddPoint(ends[1]));
    const auto along = [&](const Point& axis, const Point& at) {
      return (at[0] - plane.point[0]) * axis[0] + (at[1] - plane.point[1]) * axis[1] +
             (at[2] - plane.point[2]) * axis[2];
    };
    pieces.push_back({along(u, ends[0]), along(v, ends[0]), along(u, ends[1]), along(v, ends[1])});
  }
  const auto fill = [&](const OutlinePiece& left, const OutlinePiece& right, double low, double high) {
    const auto put = [&](double x, double y) {
      Point at;
      for (std::size_t axis = 0; axis < 3; ++axis) at[axis] = plane.point[axis] + x * u[axis] + y * v[axis];
      return cut.AddPoint(at);
    };
    const std::uint32_t first = put(left.At(low), low);
    put(right.At(low), low);
    put(right.At(high), high);
    put(left.At(high), high);
    cut.triangles.insert(cut.triangles.end(), {first, first + 1, first + 2, first, first + 2, first + 3});
  };
  // Of what takes too long to fill the outline alone is seen.
  const std::size_t outline = cut.points.size();
  if (!FillOutline(std::move(pieces), fill)) {
    cut.triangles = {};
    cut.points.resize(outline);
    cut.points.shrink_to_fit();
  }
  return cut;
}

// ---- meshes ---------------------------------------------------------------------------------------------

namespace {

/// Adds what an element's cut edges span: a convex face, or a line for a surface.
void AddElement(SectionCut& cut, std::vector<Point>& ends, const std::array<Point, 2>& axes) {
  Point middle{};
  for (const Point& end : ends) {
    for (std::size_t axis = 0; axis < 3; ++axis) middle[axis] += end[axis] / static_cast<double>(ends.size());
  }
  const auto angle = [&](const Point& at) {
    std::array<double, 2> along{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      along[0] += (at[axis] - middle[axis]) * axes[0][axis];
      along[1] += (at[axis] - middle[axis]) * axes[1][axis];
    }
    return std::atan2(along[1], along[0]);
  };
  if (ends.size() > 2)
    std::sort(ends.begin(), ends.end(), [&](const Point& a, const Point& b) { return angle(a) < angle(b); });
  const auto first = static_cast<std::uint32_t>(cut.points.size() / 3);
  const auto count = static_cast<std::uint32_t>(ends.size());
  for (const Point& end : ends) cut.AddPoint(end);
  for (std::uint32_t i = 1; i + 1 < count; ++i)
    cut.triangles.insert(cut.triangles.end(), {first, first + i, first + i + 1});
  for (std::uint32_t i = 0; i < (count == 2 ? 1 : count); ++i)
    cut.lines.insert(cut.lines.end(), {first + i, first + (i + 1) % count});
}

}  // namespace

SectionCut CutMesh(const MeshData& mesh, const CutPlane& plane) {
  SectionCut cut;
  const auto axes = AxesOf(plane.normal);
  std::vector<double> above(mesh.nodeIds.size());
  const auto pointOf = [&](std::size_t node) {
    const double* at = &mesh.coordinates[node * 3];
    return Point{at[0], at[1], at[2]};
  };
  for (std::size_t i = 0; i < above.size(); ++i) above[i] = plane.Above(pointOf(i));
  constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
  const auto placeOf = [&](std::uint64_t id) {
    // Mostly the numbers have no gaps.
    const std::uint64_t guess = mesh.nodeIds.empty() ? 0 : id - mesh.nodeIds.front();
    if (guess < mesh.nodeIds.size() && mesh.nodeIds[guess] == id) return static_cast<std::size_t>(guess);
    const auto found = std::lower_bound(mesh.nodeIds.begin(), mesh.nodeIds.end(), id);
    return found != mesh.nodeIds.end() && *found == id ? static_cast<std::size_t>(found - mesh.nodeIds.begin())
                                                       : kNone;
  };
  std::vector<Point> ends;
  for (const MeshData::Block& block : mesh.blocks) {
    const ElementType* type = FindElementType(block.elementType);
    if (type == nullptr || block.nodesPerElement < 1) continue;
    const ElementTopology& topology = TopologyOf(type->shape);
    const auto corners = static_cast<std::size_t>(topology.corners);
    const auto nodes = static_cast<std::size_t>(block.nodesPerElement);
    if (topology.dimension < 2 || nodes < corners) continue;
    std::array<std::size_t, 8> places{};
    for (std::size_t first = 0; first + nodes <= block.nodeIds.size(); first += nodes) {
      bool under = false;
      bool over = false;
      bool whole = true;
      for (std::size_t corner = 0; corner < corners; ++corner) {
        places[corner] = placeOf(block.nodeIds[first + corner]);
        whole = whole && places[corner] != kNone;
        if (!whole) break;
        (above[places[corner]] < 0 ? under : over) = true;
      }
      if (!whole || !under || !over) continue;
      ends.clear();
      for (const auto& [a, b] : topology.edges) {
        const std::size_t from = places[static_cast<std::size_t>(a)];
        const std::size_t to = places[static_cast<std::size_t>(b)];
        if ((above[from] < 0) != (above[to] < 0))
          ends.push_back(Between({pointOf(from), above[from]}, {pointOf(to), above[to]}));
      }
      AddElement(cut, ends, axes);
    }
  }
  return cut;
}

}  // namespace qd::workbench

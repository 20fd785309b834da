#include "workbench/mesh/MeshSkin.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::workbench {

namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

/// The elements of one block by the places of their corners in the mesh.
struct Corners {
  const MeshData::Block* block;
  const ElementType* type;
  const ElementTopology* topology;
  std::vector<std::uint32_t> places;

  std::size_t Count() const { return block->elementIds.size(); }
  const std::uint32_t* Of(std::size_t element) const {
    return &places[element * static_cast<std::size_t>(topology->corners)];
  }
};

/// One side of one element.
struct Face {
  std::uint32_t block;
  std::uint32_t element;
  std::uint32_t side;
};

using FaceKey = std::array<std::uint32_t, 4>;

FaceKey KeyOf(const Corners& corners, std::size_t element, const ElementFace& face) {
  const std::uint32_t* places = corners.Of(element);
  FaceKey key{kNone, kNone, kNone, kNone};
  for (std::size_t i = 0; i < 4 && face[i] >= 0; ++i) key[i] = places[face[i]];
  std::sort(key.begin(), key.end());
  return key;
}

/// Faces of solids that no other solid shares. Faces are gathered by their first node, so that each is compared
/// with its few neighbours only and needs no table of its own.
std::vector<Face> FreeFaces(const std::vector<Corners>& blocks, std::size_t nodes, const std::atomic<bool>& stop) {
  std::vector<std::uint32_t> start(nodes + 1, 0);
  const auto forEachFace = [&](const auto& visit) {
    for (std::uint32_t b = 0; b < blocks.size(); ++b) {
      if (blocks[b].topology->dimension != 3) continue;
      const auto& faces = blocks[b].topology->faces;
      for (std::uint32_t e = 0; e < blocks[b].Count() && !stop; ++e) {
        for (std::uint32_t side = 0; side < faces.size(); ++side) visit(Face{b, e, side});
      }
    }
  };
  const auto keyOf = [&blocks](const Face& face) {
    return KeyOf(blocks[face.block], face.element, blocks[face.block].topology->faces[face.side]);
  };
  forEachFace([&](const Face& face) { ++start[keyOf(face)[0] + 1]; });
  for (std::size_t i = 0; i < nodes; ++i) start[i + 1] += start[i];
  std::vector<Face> gathered(start[nodes]);
  std::vector<std::uint32_t> next(start.begin(), start.end() - 1);
  forEachFace([&](const Face& face) { gathered[next[keyOf(face)[0]]++] = face; });
  std::vector<Face> free;
  std::vector<std::pair<FaceKey, Face>> bucket;
  for (std::size_t node = 0; node < nodes && !stop; ++node) {
    bucket.clear();
    for (std::uint32_t i = start[node]; i < start[node + 1]; ++i) {
      bucket.emplace_back(keyOf(gathered[i]), gathered[i]);
    }
    std::sort(bucket.begin(), bucket.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < bucket.size();) {
      std::size_t end = i + 1;
      while (end < bucket.size() && bucket[end].first == bucket[i].first) ++end;
      if (end == i + 1) free.push_back(bucket[i].second);
      i = end;
    }
  }
  // In order of elements again: neighbours in memory are neighbours in space.
  std::sort(free.begin(), free.end(), [](const Face& a, const Face& b) {
    return std::tie(a.block, a.element, a.side) < std::tie(b.block, b.element, b.side);
  });
  return free;
}

/// The quality of each element of a block; none when it is not asked for.
std::vector<float> QualitiesOf(const MeshData& mesh, const Corners& corners, const SkinRequest& request,
                               MeshSkin& skin, const std::atomic<bool>& stop) {
  std::vector<float> qualities;
  if (!request.quality || corners.topology->dimension < 2) return qualities;
  qualities.resize(corners.Count(), std::numeric_limits<float>::quiet_NaN());
  std::array<Point3, 8> at;
  for (std::size_t element = 0; element < qualities.size() && !stop; ++element) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(corners.topology->corners); ++i)
      at[i] = Point3::At(&mesh.coordinates[std::size_t{corners.Of(element)[i]} * 3]);
    const std::optional<double> value = QualityOf(*request.quality, corners.type->shape, at.data());
    if (!value) continue;
    const auto quality = static_cast<float>(*value);
    qualities[element] = quality;
    if (!std::isfinite(quality)) continue;
    skin.leastQuality = std::min(skin.leastQuality, quality);
    skin.greatestQuality = std::max(skin.greatestQuality, quality);
  }
  return qualities;
}

/// Fills the piece of one block.
class PieceMaker {
 public:
  PieceMaker(const MeshData& mesh, const Corners& corners, bool shrink, std::vector<float> qualities)
      : m_mesh(mesh),
        m_corners(corners),
        m_shrink(shrink),
        m_qualities(std::move(qualities)),
        m_pointOf(mesh.nodeIds.size(), kNone) {
    m_piece.elementType = corners.type->number;
  }

  void AddFace(std::size_t element, const ElementFace& face) {
    std::array<std::uint32_t, 4> points{};
    std::size_t count = 0;
    for (; count < 4 && face[count] >= 0; ++count) points[count] = Point(element, face[count]);
    for (std::size_t i = 2; i < count; ++i) {
      m_piece.triangles.insert(m_piece.triangles.end(), {points[0], points[i - 1], points[i]});
      m_piece.elements.push_back(m_corners.block->elementIds[element]);
      if (!m_qualities.empty()) m_piece.quality.push_back(m_qualities[element]);
    }
    const std::array<float, 3> normal = Normal(points, count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint32_t a = points[i];
      const std::uint32_t b = points[(i + 1) % count];
      m_edges.push_back({std::min(a, b), std::max(a, b), static_cast<std::uint32_t>(m_normals.size())});
    }
    m_normals.push_back(normal);
  }
  void AddEdges(std::size_t element) {
    for (const auto& edge : m_corners.topology->edges) {
      const std::uint32_t a = Point(element, edge[0]);
      const std::uint32_t b = Point(element, edge[1]);
      m_edges.push_back({std::min(a, b), std::max(a, b), static_cast<std::uint32_t>(element)});
    }
  }
  /// For points and nodes that no face shows. Of several at one node the first one counts.
  void AddPoint(std::size_t element) {
    if (Point(element, 0) == m_piece.elements.size())
      m_piece.elements.push_back(m_corners.block->elementIds[element]);
  }

  MeshSkin::Piece Finish(const SkinRequest& request, bool elementLines) {
    std::sort(m_edges.begin(), m_edges.end(), [](const Edge& x, const Edge& y) {
      return std::tie(x.a, x.b, x.face) < std::tie(y.a, y.b, y.face);
    });
    for (std::size_t i = 0; i < m_edges.size();) {
      std::size_t end = i + 1;
      while (end < m_edges.size() && m_edges[end].a == m_edges[i].a && m_edges[end].b == m_edges[i].b) ++end;
      const bool draw = elementLines || (request.lines != MeshLines::None &&
                                         (request.lines != MeshLines::Features || IsFeature(i, end)));
      if (draw) m_piece.lines.insert(m_piece.lines.end(), {m_edges[i].a, m_edges[i].b});
      if (elementLines) m_piece.elements.push_back(m_corners.block->elementIds[m_edges[i].face]);
      i = end;
    }
    m_piece.elementLines = elementLines ? 0 : m_piece.lines.size();
    return std::move(m_piece);
  }

 private:
  struct Edge {
    std::uint32_t a;
    std::uint32_t b;
    std::uint32_t face;  // or the element, of lines that are elements
  };

  std::uint32_t Point(std::size_t element, int corner) {
    const std::uint32_t place = m_corners.Of(element)[corner];
    if (m_shrink) return ShrunkPoint(element, corner, place);
    std::uint32_t& point = m_pointOf[place];
    if (point == kNone) {
      point = static_cast<std::uint32_t>(m_piece.nodes.size());
      Append(place, &m_mesh.coordinates[std::size_t{place} * 3]);
    }
    return point;
  }
  /// Points of shrunken elements are their own, but all faces of one element share them.
  std::uint32_t ShrunkPoint(std::size_t element, int corner, std::uint32_t place) {
    constexpr double kScale = 0.8;
    const auto corners = static_cast<std::size_t>(m_corners.topology->corners);
    if (element != m_shrunkElement) {
      m_shrunkElement = element;
      m_shrunkPoints.fill(kNone);
      m_centre = {0, 0, 0};
      for (std::size_t i = 0; i < corners; ++i) {
        const double* at = &m_mesh.coordinates[std::size_t{m_corners.Of(element)[i]} * 3];
        for (std::size_t axis = 0; axis < 3; ++axis) m_centre[axis] += at[axis] / static_cast<double>(corners);
      }
    }
    std::uint32_t& point = m_shrunkPoints[static_cast<std::size_t>(corner)];
    if (point == kNone) {
      point = static_cast<std::uint32_t>(m_piece.nodes.size());
      const double* at = &m_mesh.coordinates[std::size_t{place} * 3];
      std::array<double, 3> moved{};
      for (std::size_t axis = 0; axis < 3; ++axis) {
        moved[axis] = m_centre[axis] + kScale * (at[axis] - m_centre[axis]);
      }
      Append(place, moved.data());
    }
    return point;
  }
  void Append(std::uint32_t place, const double* at) {
    m_piece.nodes.push_back(m_mesh.nodeIds[place]);
    for (int axis = 0; axis < 3; ++axis) m_piece.points.push_back(static_cast<float>(at[axis]));
  }

  std::array<float, 3> Normal(const std::array<std::uint32_t, 4>& points, std::size_t count) const {
    if (count < 3) return {0, 0, 0};
    const float* a = &m_piece.points[std::size_t{points[0]} * 3];
    const float* b = &m_piece.points[std::size_t{points[1]} * 3];
    const float* c = &m_piece.points[std::size_t{points[count - 1]} * 3];
    const std::array<float, 3> u{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const std::array<float, 3> v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    std::array<float, 3> n{u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
    const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (length > 0) {
      for (float& part : n) part /= length;
    }
    return n;
  }
  /// An edge of one face, of more than two, or where two meet at an angle.
  bool IsFeature(std::size_t first, std::size_t end) const {
    constexpr float kCosine = 0.866F;  // 30 degrees
    if (end - first != 2) return true;
    const auto& n = m_normals[m_edges[first].face];
    const auto& m = m_normals[m_edges[first + 1].face];
    return std::abs(n[0] * m[0] + n[1] * m[1] + n[2] * m[2]) < kCosine;
  }

  const MeshData& m_mesh;
  const Corners& m_corners;
  bool m_shrink;
  std::vector<float> m_qualities;  // by element; none where they are not asked for
  MeshSkin::Piece m_piece;
  std::vector<std::uint32_t> m_pointOf;  // by place of the node
  std::vector<Edge> m_edges;
  std::vector<std::array<float, 3>> m_normals;  // of the faces
  std::size_t m_shrunkElement = std::numeric_limits<std::size_t>::max();
  std::array<std::uint32_t, 8> m_shrunkPoints{};
  std::array<double, 3> m_centre{};
};

void Measure(MeshSkin& skin) {
  bool any = false;
  double length = 0;
  std::size_t count = 0;
  for (const MeshSkin::Piece& piece : skin.pieces) {
    for (std::size_t i = 0; i < piece.points.size(); ++i) {
      float* range = &skin.bounds[i % 3 * 2];
      range[0] = any || i >= 3 ? std::min(range[0], piece.points[i]) : piece.points[i];
      range[1] = any || i >= 3 ? std::max(range[1], piece.points[i]) : piece.points[i];
    }
    any = any || !piece.points.empty();
    const auto add = [&](std::uint32_t a, std::uint32_t b) {
      double square = 0;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const double d = piece.points[std::size_t{a} * 3 + axis] - piece.points[std::size_t{b} * 3 + axis];
        square += d * d;
      }
      length += std::sqrt(square);
      ++count;
    };
    for (std::size_t i = 0; i + 2 < piece.triangles.size(); i += 3)
      add(piece.triangles[i], piece.triangles[i + 1]);
    for (std::size_t i = 0; i + 1 < piece.lines.size(); i += 2) add(piece.lines[i], piece.lines[i + 1]);
  }
  skin.edgeLength = count != 0 ? static_cast<float>(length / static_cast<double>(count)) : 0;
}

}  // namespace

std::size_t MeshSkin::TriangleCount() const {
  std::size_t count = 0;
  for (const Piece& piece : pieces) count += piece.triangles.size() / 3;
  return count;
}

std::size_t MeshSkin::LineCount() const {
  std::size_t count = 0;
  for (const Piece& piece : pieces) count += piece.lines.size() / 2;
  return count;
}

MeshSkin MakeSkin(const MeshData& mesh, const SkinRequest& request, const std::atomic<bool>& stop) {
  std::vector<Corners> blocks;
  for (const MeshData::Block& block : mesh.blocks) {
    const ElementType* type = FindElementType(block.elementType);
    if (type == nullptr) continue;
    const ElementTopology& topology = TopologyOf(type->shape);
    blocks.push_back({&block, type, &topology, CornerPlaces(mesh, block, topology.corners)});
  }
  const std::vector<Face> free = FreeFaces(blocks, mesh.nodeIds.size(), stop);
  MeshSkin skin;
  std::size_t nextFree = 0;
  for (std::uint32_t b = 0; b < blocks.size() && !stop; ++b) {
    const Corners& corners = blocks[b];
    PieceMaker maker(mesh, corners, request.shrink, QualitiesOf(mesh, corners, request, skin, stop));
    const int dimension = corners.topology->dimension;
    // Edges of solids inside are gathered by element, all others come with the faces.
    const bool solidEdges = dimension == 3 && request.lines == MeshLines::AllElements;
    std::uint32_t shrunk = kNone;
    for (; nextFree < free.size() && free[nextFree].block == b && !stop; ++nextFree) {
      const Face& face = free[nextFree];
      if (!request.shrink) {
        maker.AddFace(face.element, corners.topology->faces[face.side]);
      } else if (std::exchange(shrunk, face.element) != face.element) {
        // Whole elements, but only those at the surface: the others hide behind them.
        for (const ElementFace& side : corners.topology->faces) maker.AddFace(face.element, side);
      }
    }
    for (std::size_t element = 0; element < corners.Count() && !stop; ++element) {
      if (dimension == 2) maker.AddFace(element, corners.topology->faces[0]);
      if (dimension == 1 || solidEdges) maker.AddEdges(element);
      if (dimension == 0) maker.AddPoint(element);
    }
    skin.pieces.push_back(maker.Finish(request, dimension == 1));
  }
  Measure(skin);
  return skin;
}

}  // namespace qd::workbench

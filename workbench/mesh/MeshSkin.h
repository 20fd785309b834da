#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "host/Records.h"
#include "workbench/mesh/MeshQuality.h"

namespace qd::workbench {

/// Which lines are drawn of a mesh.
enum class MeshLines { None, FreeFaces, AllElements, Features };

/// How a mesh is prepared for drawing.
struct SkinRequest {
  bool faces = true;  ///< drawn; labels and symbols need them either way
  MeshLines lines = MeshLines::FreeFaces;
  bool shrink = false;
  std::optional<QualityMeasure> quality = std::nullopt;  ///< to be found out of the elements
  bool operator==(const SkinRequest&) const = default;
};

/// What is seen of a mesh: the free faces of its solids, its surfaces and its lines, one piece per kind of
/// element.
struct MeshSkin {
  struct Piece {
    int elementType = 0;
    std::vector<float> points;             ///< x, y, z
    std::vector<std::uint64_t> nodes;      ///< numbers of the nodes, beside points
    std::vector<std::uint32_t> triangles;  ///< three point numbers each
    std::vector<std::uint64_t> elements;   ///< numbers of the elements, beside the triangles, lines or points that
                                           ///< are elements or of them
    std::vector<std::uint32_t> lines;      ///< two point numbers each
    std::size_t elementLines = 0;          ///< lines from here on are elements themselves
    std::vector<float> quality;            ///< of the elements beside the triangles, where it was asked for; no
                                           ///< number for those that have none
  };
  std::vector<Piece> pieces;
  float bounds[6] = {0, 0, 0, 0, 0, 0};  ///< least and greatest x, y, z
  float edgeLength = 0;                  ///< of a typical element
  /// Of all elements, also inside; the least is above the greatest when none has a quality that is finite.
  float leastQuality = std::numeric_limits<float>::infinity();
  float greatestQuality = -std::numeric_limits<float>::infinity();

  std::size_t TriangleCount() const;
  std::size_t LineCount() const;
};

/// Prepares a mesh for drawing. May take seconds for millions of elements, so it is made for other threads; a set
/// `stop` ends it with what was found so far.
MeshSkin MakeSkin(const MeshData& mesh, const SkinRequest& request, const std::atomic<bool>& stop);

}  // namespace qd::workbench

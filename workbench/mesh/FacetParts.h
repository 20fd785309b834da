#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// The faces, edges and corners of a part, as its facets tell them. The triangles of a face have points of their
/// own, which no other face uses, so a face is what hangs together by points; each edge polyline is an edge, and
/// its ends are corners. All are numbered from 1 in the order in which the facets have them, which is that of the
/// shape.
class FacetParts {
 public:
  explicit FacetParts(const PartFacets& facets);

  std::size_t FaceCount() const { return m_faceStarts.size() - 1; }
  std::size_t EdgeCount() const { return m_edgeStarts.size() - 1; }
  std::size_t CornerCount() const { return m_corners.size(); }

  /// The face of a triangle, both counted: triangles from 0, faces from 1.
  std::uint32_t FaceOf(std::size_t triangle) const { return m_faceOf[triangle]; }
  /// The triangles of a face; none for a number that is no face's.
  std::span<const std::uint32_t> TrianglesOf(std::uint64_t face) const {
    return Run(m_triangles, m_faceStarts, face);
  }
  /// Two point numbers for each piece of all edges, one after another.
  const std::vector<std::uint32_t>& Segments() const { return m_segments; }
  /// The edge of a piece, which is counted from 0.
  std::uint32_t EdgeOf(std::size_t segment) const { return m_edgeOf[segment]; }
  /// The pieces of an edge, two point numbers each.
  std::span<const std::uint32_t> SegmentsOf(std::uint64_t edge) const {
    return Run(m_segments, m_edgeStarts, edge);
  }
  /// The point numbers of all corners; the corner with the number n is the one before place n.
  const std::vector<std::uint32_t>& Corners() const { return m_corners; }
  /// Those lines between points of a face's triangles that bound it, two point numbers each.
  std::vector<std::uint32_t> OutlineOf(const PartFacets& facets, std::uint64_t face) const;

 private:
  static std::span<const std::uint32_t> Run(const std::vector<std::uint32_t>& all,
                                            const std::vector<std::size_t>& starts, std::uint64_t number) {
    if (number == 0 || number >= starts.size()) return {};
    return std::span(all).subspan(starts[number - 1], starts[number] - starts[number - 1]);
  }
  void FindFaces(const PartFacets& facets);
  void FindEdges(const PartFacets& facets);
  void FindCorners(const PartFacets& facets);

  std::vector<std::uint32_t> m_faceOf;     // by triangle
  std::vector<std::uint32_t> m_triangles;  // face by face
  std::vector<std::size_t> m_faceStarts{0};
  std::vector<std::uint32_t> m_segments;  // edge by edge
  std::vector<std::size_t> m_edgeStarts{0};
  std::vector<std::uint32_t> m_edgeOf;  // by piece
  std::vector<std::uint32_t> m_corners;
};

}  // namespace qd::workbench

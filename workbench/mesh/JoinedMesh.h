#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/mesh/Point3.h"

namespace qd::workbench {

/// Several meshes looked at as one: their nodes once each, and their elements by the places of their corners.
class JoinedMesh {
 public:
  /// The elements of one block.
  struct Part {
    std::size_t mesh;  ///< place of the mesh among those that were joined
    const MeshData::Block* block;
    const ElementTopology* topology;
    std::vector<std::uint32_t> places;  ///< of corners
    std::uint32_t first;                ///< number of its first element, counted through all parts

    std::size_t Count() const { return block->elementIds.size(); }
    const std::uint32_t* Corners(std::size_t element) const {
      return &places[element * static_cast<std::size_t>(topology->corners)];
    }
  };
  static constexpr std::size_t kMostCorners = 8;
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  /// The meshes stay until this goes; null ones have nothing.
  explicit JoinedMesh(const std::vector<MeshPtr>& meshes);

  const std::vector<std::uint64_t>& NodeIds() const { return m_nodes.nodeIds; }
  std::size_t NodeCount() const { return m_nodes.nodeIds.size(); }
  Point3 NodeAt(std::size_t place) const { return Point3::At(&m_nodes.coordinates[place * 3]); }
  const std::vector<Part>& Parts() const { return m_parts; }
  std::uint32_t ElementCount() const { return m_elements; }
  /// The part of an element that is counted through all parts.
  const Part& PartOf(std::uint32_t element) const;
  std::array<Point3, kMostCorners> CornersOf(const Part& part, std::size_t element) const;

 private:
  MeshData m_nodes;  // without elements
  std::vector<Part> m_parts;
  std::uint32_t m_elements = 0;
};

}  // namespace qd::workbench

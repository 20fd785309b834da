#include "workbench/mesh/JoinedMesh.h"

#include <algorithm>
#include <utility>

namespace qd::workbench {

namespace {

/// The nodes of all meshes once each, in ascending order.
MeshData JoinNodes(const std::vector<MeshPtr>& meshes) {
  MeshData joined;
  std::size_t count = 0;
  std::size_t withNodes = 0;
  for (const MeshPtr& mesh : meshes) {
    count += mesh->nodeIds.size();
    withNodes += mesh->nodeIds.empty() ? 0 : 1;
  }
  joined.nodeIds.reserve(count);
  if (withNodes <= 1) {
    for (const MeshPtr& mesh : meshes) {
      if (mesh->nodeIds.empty()) continue;
      joined.nodeIds = mesh->nodeIds;
      joined.coordinates = mesh->coordinates;
    }
    return joined;
  }
  std::vector<std::pair<std::uint64_t, const double*>> all;
  all.reserve(count);
  for (const MeshPtr& mesh : meshes) {
    for (std::size_t i = 0; i < mesh->nodeIds.size(); ++i) {
      all.emplace_back(mesh->nodeIds[i], &mesh->coordinates[i * 3]);
    }
  }
  std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const auto& [node, at] : all) {
    if (!joined.nodeIds.empty() && joined.nodeIds.back() == node) continue;
    joined.nodeIds.push_back(node);
    joined.coordinates.insert(joined.coordinates.end(), at, at + 3);
  }
  return joined;
}

}  // namespace

JoinedMesh::JoinedMesh(const std::vector<MeshPtr>& given) {
  std::vector<MeshPtr> meshes = given;
  std::erase(meshes, nullptr);
  m_nodes = JoinNodes(meshes);
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (given[i] == nullptr) continue;
    for (const MeshData::Block& block : given[i]->blocks) {
      const ElementType* type = FindElementType(block.elementType);
      if (type == nullptr || block.elementIds.empty()) continue;
      const ElementTopology& topology = TopologyOf(type->shape);
      m_parts.push_back({i, &block, &topology, CornerPlaces(m_nodes, block, topology.corners), m_elements});
      m_elements += static_cast<std::uint32_t>(block.elementIds.size());
    }
  }
}

const JoinedMesh::Part& JoinedMesh::PartOf(std::uint32_t element) const {
  const auto after = std::upper_bound(m_parts.begin(), m_parts.end(), element,
                                      [](std::uint32_t number, const Part& part) { return number < part.first; });
  return *std::prev(after);
}

std::array<Point3, JoinedMesh::kMostCorners> JoinedMesh::CornersOf(const Part& part, std::size_t element) const {
  std::array<Point3, kMostCorners> corners{};
  const std::uint32_t* places = part.Corners(element);
  for (std::size_t i = 0; i < static_cast<std::size_t>(part.topology->corners); ++i) {
    corners[i] = NodeAt(places[i]);
  }
  return corners;
}

}  // namespace qd::workbench

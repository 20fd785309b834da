#include "workbench/exchange/formats/MeshGather.h"

#include <algorithm>
#include <numeric>

#include "workbench/mesh/NumberHash.h"

namespace qd::workbench {

void MeshGather::Node(std::uint64_t number, const double (&at)[3]) {
  m_nodesAscend = m_nodesAscend && (m_nodes.empty() || m_nodes.back() < number);
  m_nodes.push_back(number);
  m_coordinates.insert(m_coordinates.end(), at, at + 3);
}

void MeshGather::Element(const Group& group, int elementType, std::uint64_t number,
                         std::span<const std::uint64_t> nodes) {
  m_elementsAscend = m_elementsAscend && m_lastElement < number;
  m_lastElement = number;
  m_dimension = std::max(m_dimension, group.dimension);
  auto& blocks = m_groups[group].blocks;
  auto block = std::find_if(blocks.rbegin(), blocks.rend(),
                            [&](const MeshData::Block& one) { return one.elementType == elementType; });
  if (block == blocks.rend()) {
    blocks.emplace_back();
    block = blocks.rbegin();
    block->elementType = elementType;
    block->nodesPerElement = static_cast<int>(nodes.size());
  }
  block->elementIds.push_back(number);
  block->nodeIds.insert(block->nodeIds.end(), nodes.begin(), nodes.end());
}

std::string MeshGather::NameOf(const Group& group) const {
  if (group.bare) return "Mesh " + std::to_string(group.number);
  // Files of an early version name groups without their dimension.
  for (const int dimension : {group.dimension, -1}) {
    const auto name = m_names.find({dimension, group.number});
    if (name != m_names.end() && !name->second.empty()) return name->second;
  }
  return "Group " + std::to_string(group.number);
}

void MeshGather::SortNodes() {
  if (m_nodesAscend) return;
  std::vector<std::size_t> order(m_nodes.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [this](std::size_t a, std::size_t b) { return m_nodes[a] < m_nodes[b]; });
  std::vector<std::uint64_t> nodes;
  std::vector<double> coordinates;
  nodes.reserve(m_nodes.size());
  coordinates.reserve(m_coordinates.size());
  for (const std::size_t place : order) {
    const double* at = &m_coordinates[place * 3];
    if (nodes.empty() || nodes.back() != m_nodes[place]) {
      nodes.push_back(m_nodes[place]);
      coordinates.insert(coordinates.end(), at, at + 3);
    } else if (!std::equal(at, at + 3, coordinates.end() - 3)) {
      throw ImportError{"IDS_WB_IMPORT_INP_TWICE", std::to_string(nodes.back())};
    }
  }
  m_nodes.swap(nodes);
  m_coordinates.swap(coordinates);
}

void MeshGather::DropRepeated() {
  if (m_elementsAscend) return;
  NumberMap<std::pair<int, const std::uint64_t*>> seen;
  std::map<Group, MeshData> groups;
  for (auto& [group, mesh] : m_groups) {
    for (MeshData::Block& block : mesh.blocks) {
      const auto width = static_cast<std::size_t>(block.nodesPerElement);
      MeshData::Block left{block.elementType, block.nodesPerElement, {}, {}};
      for (std::size_t i = 0; i < block.elementIds.size(); ++i) {
        const std::uint64_t* nodes = &block.nodeIds[i * width];
        const auto [first, isNew] = seen.try_emplace(block.elementIds[i], block.elementType, nodes);
        if (isNew) {
          left.elementIds.push_back(block.elementIds[i]);
          left.nodeIds.insert(left.nodeIds.end(), nodes, nodes + width);
        } else if (first->second.first == block.elementType &&
                   std::equal(nodes, nodes + width, first->second.second)) {
          m_shared.insert(group);
        } else {
          throw ImportError{"IDS_WB_IMPORT_INP_TWICE", std::to_string(block.elementIds[i])};
        }
      }
      if (!left.elementIds.empty()) groups[group].blocks.push_back(std::move(left));
    }
  }
  m_groups.swap(groups);
}

void MeshGather::AddNodes(MeshData& mesh) const {
  for (const MeshData::Block& block : mesh.blocks) {
    mesh.nodeIds.insert(mesh.nodeIds.end(), block.nodeIds.begin(), block.nodeIds.end());
  }
  std::sort(mesh.nodeIds.begin(), mesh.nodeIds.end());
  mesh.nodeIds.erase(std::unique(mesh.nodeIds.begin(), mesh.nodeIds.end()), mesh.nodeIds.end());
  mesh.coordinates.reserve(mesh.nodeIds.size() * 3);
  auto at = m_nodes.begin();
  for (const std::uint64_t node : mesh.nodeIds) {
    at = std::lower_bound(at, m_nodes.end(), node);
    if (at == m_nodes.end() || *at != node) throw ImportError{"IDS_WB_IMPORT_NODE", std::to_string(node)};
    const double* point = &m_coordinates[static_cast<std::size_t>(at - m_nodes.begin()) * 3];
    mesh.coordinates.insert(mesh.coordinates.end(), point, point + 3);
  }
}

ImportedModel MeshGather::Take(bool hasSides) {
  SortNodes();
  DropRepeated();
  ImportedModel model;
  for (auto& [group, mesh] : m_groups) {
    if (hasSides && group.bare && group.dimension < m_dimension) continue;
    ImportedMeshSet& set = model.meshSets.emplace_back();
    set.name = NameOf(group);
    set.mesh = std::move(mesh);
    AddNodes(set.mesh);
  }
  for (const Group& group : m_shared) model.notes.push_back({"IDS_WB_NOTE_SHARED_SET", NameOf(group)});
  return model;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/MeshGather.h"

#include <algorithm>
#include <numeric>

#include "workbench/mesh/ElementTypes.h"
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

std::size_t MeshGather::PlaceOf(std::uint64_t node) const {
  const auto at = std::lower_bound(m_nodes.begin(), m_nodes.end(), node);
  return at != m_nodes.end() && *at == node ? static_cast<std::size_t>(at - m_nodes.begin()) : m_nodes.size();
}

bool MeshGather::IsSide(const Group& group, const MeshData& mesh) const {
  const auto isTaken = [this](std::uint64_t node) {
    const std::size_t place = PlaceOf(node);
    return place == m_nodes.size() || m_nodeTaken[place];
  };
  return group.dimension == 0 || std::all_of(mesh.blocks.begin(), mesh.blocks.end(), [&](const auto& block) {
           return std::all_of(block.nodeIds.begin(), block.nodeIds.end(), isTaken);
         });
}

ImportedMeshSet MeshGather::SetOf(const Group& group, MeshData mesh) {
  for (const MeshData::Block& block : mesh.blocks) {
    mesh.nodeIds.insert(mesh.nodeIds.end(), block.nodeIds.begin(), block.nodeIds.end());
  }
  std::sort(mesh.nodeIds.begin(), mesh.nodeIds.end());
  mesh.nodeIds.erase(std::unique(mesh.nodeIds.begin(), mesh.nodeIds.end()), mesh.nodeIds.end());
  mesh.coordinates.reserve(mesh.nodeIds.size() * 3);
  for (const std::uint64_t node : mesh.nodeIds) {
    const std::size_t place = PlaceOf(node);
    if (place == m_nodes.size()) throw ImportError{"IDS_WB_IMPORT_NODE", std::to_string(node)};
    m_nodeTaken[place] = true;
    mesh.coordinates.insert(mesh.coordinates.end(), &m_coordinates[place * 3], &m_coordinates[place * 3] + 3);
  }
  ImportedMeshSet set;
  set.name = NameOf(group);
  set.mesh = std::move(mesh);
  return set;
}

void MeshGather::NoteLooseNodes() {
  for (std::size_t place = 0; place < m_nodes.size(); ++place) {
    if (!m_nodeTaken[place]) m_notes.Add("IDS_WB_NOTE_LOOSE_NODES", std::to_string(m_nodes[place]));
  }
}

void MeshGather::NoteEmptyGroups(const std::map<Group, ImportedMeshSet>& sets) {
  std::set<std::pair<int, std::int64_t>> filled;
  const auto fill = [&filled](const Group& group) {
    if (!group.bare) filled.insert({{group.dimension, group.number}, {-1, group.number}});
  };
  for (const auto& [group, set] : sets) fill(group);
  for (const Group& group : m_shared) fill(group);
  for (const auto& [group, name] : m_names) {
    if (!filled.contains(group)) m_notes.Add("IDS_WB_NOTE_EMPTY_GROUPS", name);
  }
}

ImportedModel MeshGather::Take(bool hasSides) {
  SortNodes();
  DropRepeated();
  m_nodeTaken.assign(m_nodes.size(), false);
  std::map<Group, ImportedMeshSet> sets;
  const auto mayBeSide = [&](const Group& group) {
    return hasSides && group.bare && group.dimension < m_dimension;
  };
  for (auto& [group, mesh] : m_groups) {
    if (!mayBeSide(group)) sets[group] = SetOf(group, std::move(mesh));
  }
  // The higher ones come first, since they have the others as their sides.
  for (auto at = m_groups.rbegin(); at != m_groups.rend(); ++at) {
    auto& [group, mesh] = *at;
    if (!mayBeSide(group)) continue;
    if (!IsSide(group, mesh)) {
      sets[group] = SetOf(group, std::move(mesh));
      continue;
    }
    for (const MeshData::Block& block : mesh.blocks) {
      const ElementType* type = FindElementType(block.elementType);
      m_notes.Add("IDS_WB_NOTE_SIDES", std::string(type->name), block.elementIds.size());
    }
  }
  NoteLooseNodes();
  NoteEmptyGroups(sets);
  ImportedModel model;
  for (auto& [group, set] : sets) model.meshSets.push_back(std::move(set));
  model.notes = m_notes.Notes();
  for (const Group& group : m_shared) model.notes.push_back({"IDS_WB_NOTE_SHARED_SET", NameOf(group)});
  return model;
}

}  // namespace qd::workbench

#include "workbench/mesh/ElementPlaces.h"

#include <algorithm>

namespace qd::workbench {

ElementPlaces::ElementPlaces(const MeshData& mesh) : m_sorted(mesh.blocks.size()) {
  for (std::size_t block = 0; block < mesh.blocks.size(); ++block) {
    const auto& ids = mesh.blocks[block].elementIds;
    if (std::is_sorted(ids.begin(), ids.end())) continue;
    Sorted& sorted = m_sorted[block];
    sorted.reserve(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i) sorted.emplace_back(ids[i], i);
    std::sort(sorted.begin(), sorted.end());
  }
}

std::optional<ElementPlaces::Place> ElementPlaces::Find(const MeshData& mesh, std::uint64_t element) const {
  for (std::size_t block = 0; block < m_sorted.size(); ++block) {
    const Sorted& sorted = m_sorted[block];
    if (!sorted.empty()) {
      const auto found = std::lower_bound(sorted.begin(), sorted.end(), std::pair(element, std::size_t{0}));
      if (found != sorted.end() && found->first == element) return Place{block, found->second};
      continue;
    }
    const auto& ids = mesh.blocks[block].elementIds;
    const auto found = std::lower_bound(ids.begin(), ids.end(), element);
    if (found != ids.end() && *found == element)
      return Place{block, static_cast<std::size_t>(found - ids.begin())};
  }
  return std::nullopt;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/InpDeckMesh.h"

#include <algorithm>

#include "workbench/exchange/formats/MeshWriters.h"

namespace qd::workbench {

InpDeckMesh::InpDeckMesh(const ExportModel& model, TextFile& file)
    : m_model(model), m_file(file), m_tree(model), m_nodes(NodesOf(model)), m_marks(model.sets.size()) {
  for (std::uint32_t set = 0; set < model.sets.size(); ++set) {
    if (model.sets[set].mesh == nullptr) continue;
    const auto& blocks = model.sets[set].mesh->blocks;
    for (std::uint32_t block = 0; block < blocks.size(); ++block) {
      for (std::uint64_t i = 0; i < blocks[block].elementIds.size(); ++i) {
        m_places.push_back({blocks[block].elementIds[i], set, block, i});
      }
    }
  }
  std::sort(m_places.begin(), m_places.end(), [](const Place& a, const Place& b) { return a.id < b.id; });
  for (std::size_t set = model.sets.size(); set-- > 0;) {
    if (model.sets[set].mesh != nullptr) m_marks[set] += MarkOf(*model.sets[set].mesh);
    const std::int32_t parent = model.sets[set].parent;
    if (parent >= 0) m_marks[static_cast<std::size_t>(parent)] += m_marks[set];
  }
}

std::pair<std::size_t, std::size_t> InpDeckMesh::Range(std::uint64_t first, std::uint64_t last) const {
  Look();
  const auto from = std::lower_bound(m_places.begin(), m_places.end(), first,
                                     [](const Place& place, std::uint64_t id) { return place.id < id; });
  const auto to = std::upper_bound(from, m_places.end(), last,
                                   [](std::uint64_t id, const Place& place) { return id < place.id; });
  return {static_cast<std::size_t>(from - m_places.begin()), static_cast<std::size_t>(to - m_places.begin())};
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/MeshWriters.h"

#include <algorithm>
#include <sstream>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::workbench {

std::map<std::uint64_t, const double*> NodesOf(const ExportModel& model) {
  std::map<std::uint64_t, const double*> nodes;
  for (const ExportSet& set : model.sets) {
    if (set.mesh == nullptr) continue;
    auto hint = nodes.begin();
    for (std::size_t place = 0; place < set.mesh->nodeIds.size(); ++place) {
      hint = nodes.emplace_hint(hint, set.mesh->nodeIds[place], &set.mesh->coordinates[place * 3]);
    }
  }
  return nodes;
}

std::uint64_t CountElements(const ExportModel& model) {
  std::uint64_t count = 0;
  for (const ExportSet& set : model.sets) count += set.mesh != nullptr ? ElementCountOf(*set.mesh) : 0;
  return count;
}

std::uint64_t CountFilledSets(const ExportModel& model) {
  return static_cast<std::uint64_t>(std::count_if(model.sets.begin(), model.sets.end(), [](const ExportSet& set) {
    return set.mesh != nullptr && ElementCountOf(*set.mesh) > 0;
  }));
}

std::vector<std::size_t> OrderFromWords(int elementType, std::string_view words) {
  const ElementType& type = *FindElementType(elementType);
  const auto corners = static_cast<std::size_t>(TopologyOf(type.shape).corners);
  const auto middles = MiddleNodes(elementType);
  std::vector<std::size_t> order;
  std::istringstream in{std::string(words)};
  for (std::string word; in >> word;) {
    const int a = word[0] - '0';
    if (word.size() == 1) {
      order.push_back(static_cast<std::size_t>(a));
      continue;
    }
    const int b = word[1] - '0';
    const auto at = std::find_if(middles.begin(), middles.end(), [a, b](const std::array<int, 2>& edge) {
      return (edge[0] == a && edge[1] == b) || (edge[0] == b && edge[1] == a);
    });
    order.push_back(corners + static_cast<std::size_t>(at - middles.begin()));
  }
  return order;
}

}  // namespace qd::workbench

#include <algorithm>
#include <set>

#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

/// Each set is a physical group; a set with elements of several dimensions is one for each.
void WriteMsh(const ExportModel& model, TextFile& file, ExportReport& report) {
  std::set<std::pair<int, std::size_t>> groups;
  std::uint64_t elements = 0;
  for (std::size_t i = 0; i < model.sets.size(); ++i) {
    if (model.sets[i].mesh == nullptr) continue;
    for (const MeshData::Block& block : model.sets[i].mesh->blocks) {
      groups.emplace(TopologyOf(FindElementType(block.elementType)->shape).dimension, i);
      elements += block.elementIds.size();
    }
  }
  ExportNotes notes;
  for (auto group = groups.begin(); group != groups.end(); ++group) {
    const auto other =
        std::find_if(groups.begin(), group, [&group](const auto& one) { return one.second == group->second; });
    if (other != group) notes.Add("IDS_WB_EXPORT_SPLIT", model.sets[group->second].name);
  }
  notes.PutInto(report);
  report.elements = elements;
  report.groups = groups.size();
  file << "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$PhysicalNames\n" << groups.size() << "\n";
  for (const auto& [dimension, set] : groups) {
    file << dimension << " " << set + 1 << " \"" << model.sets[set].name << "\"\n";
  }
  const auto nodes = NodesOf(model);
  report.nodes = nodes.size();
  file << "$EndPhysicalNames\n$Nodes\n" << nodes.size() << "\n";
  for (const auto& [node, at] : nodes) {
    file << node << " " << at[0] << " " << at[1] << " " << at[2] << "\n";
    file.Step();
  }
  file << "$EndNodes\n$Elements\n" << elements << "\n";
  for (std::size_t i = 0; i < model.sets.size(); ++i) {
    if (model.sets[i].mesh == nullptr) continue;
    for (const MeshData::Block& block : model.sets[i].mesh->blocks) {
      const auto width = static_cast<std::size_t>(block.nodesPerElement);
      for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
        file << block.elementIds[element] << " " << block.elementType << " 2 " << i + 1 << " " << i + 1;
        for (std::size_t node = 0; node < width; ++node) file << " " << block.nodeIds[element * width + node];
        file << "\n";
        file.Step();
      }
    }
  }
  file << "$EndElements\n";
}

}  // namespace qd::workbench

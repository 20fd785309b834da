#include "workbench/model/CheckActs.h"

#include <algorithm>

#include "host/Act.h"
#include "workbench/model/MeshNumbers.h"

namespace qd::workbench {

namespace {

/// Nodes of some meshes, ascending, with their places.
void AddNodes(MeshData& to, std::vector<std::uint64_t> nodes, const std::vector<MeshPtr>& from) {
  std::sort(nodes.begin(), nodes.end());
  nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
  to.nodeIds = std::move(nodes);
  to.coordinates.resize(to.nodeIds.size() * 3);
  for (const MeshPtr& mesh : from) {
    if (mesh == nullptr) continue;
    for (std::size_t i = 0; i < to.nodeIds.size(); ++i) {
      const std::size_t place = PlaceOfNode(*mesh, to.nodeIds[i]);
      if (place == mesh->nodeIds.size()) continue;
      std::copy_n(&mesh->coordinates[place * 3], 3, &to.coordinates[i * 3]);
    }
  }
}

/// Found nodes, and found edges as lines.
MeshPtr MeshOf(const Database& database, const CheckResult& found, const std::vector<MeshPtr>& checked) {
  constexpr int kLine = 1;
  auto mesh = std::make_shared<MeshData>();
  std::vector<std::uint64_t> nodes = found.nodes;
  if (!found.edges.empty()) {
    std::uint64_t number = NextNumbers(database.GetMsetPool()).elements;
    MeshData::Block& lines = mesh->blocks.emplace_back();
    lines.elementType = kLine;
    lines.nodesPerElement = 2;
    for (const auto& edge : found.edges) {
      lines.elementIds.push_back(++number);
      lines.nodeIds.insert(lines.nodeIds.end(), edge.begin(), edge.end());
      nodes.insert(nodes.end(), edge.begin(), edge.end());
    }
  }
  AddNodes(*mesh, std::move(nodes), checked);
  return mesh;
}

}  // namespace

ActResult PutFound(Database& database, const std::vector<iterator>& sets, const std::vector<MeshPtr>& checked,
                   const CheckResult& found, const CString& name, const CString& title,
                   std::vector<iterator>& made) {
  MsetPool& pool = database.GetMsetPool();
  if (found.found == 0) return {0, "IDS_WB_CHECK_NOTHING"};
  for (std::size_t i = 0; i < sets.size(); ++i) {
    const tagTMset* set = pool.GetAtNU(sets[i]);
    if (set == nullptr || set->mesh != checked[i]) return {0, "IDS_WB_CHECK_GONE"};
  }
  std::vector<iterator> added;
  const auto add = [&](tagTMset record, MeshPtr mesh) {
    record.name = pool.GetNewCopyName(name);
    record.colour = pool.GetNewColor();
    PutMesh(record, std::move(mesh));
    added.push_back(pool.Add(record));
    return added.back() != 0;
  };
  const int done = RunAct(&database, title, [&] {
    if ((!found.nodes.empty() || !found.edges.empty()) && !add({}, MeshOf(database, found, checked))) return 0;
    for (std::size_t i = 0; i < sets.size(); ++i) {
      if (found.elements[i].empty()) continue;
      const std::vector<std::uint64_t>& numbers = found.elements[i];
      const SplitMesh split = SplitByElement(*checked[i], [&numbers](std::uint64_t element) {
        return std::binary_search(numbers.begin(), numbers.end(), element);
      });
      tagTMset from = *pool.GetAtNU(sets[i]);
      tagTMset nested;
      nested.parent = from.key & kMsetKeyMask;
      nested.property = from.property;
      PutMesh(from, split.left);
      if (pool.Modify(sets[i], from) == 0 || !add(nested, split.taken)) return 0;
    }
    return 1;
  });
  if (done == 0) return {0, "IDS_WB_CHECK_GONE"};
  made = std::move(added);
  return {found.found};
}

}  // namespace qd::workbench

#include "workbench/model/MeshNumbers.h"

#include <algorithm>
#include <utility>

#include "workbench/model/Values.h"

namespace qd::workbench {

MeshPtr Numbering::Apply(MeshPtr mesh) const {
  return nodes == 0 && elements == 0 ? mesh : Renumber(*mesh, nodes, elements);
}

void Numbering::Continue(const MeshData& mesh) {
  nodes = std::max(nodes, LastNode(mesh));
  elements = std::max(elements, LastElement(mesh));
}

Numbering NextNumbers(const MsetPool& pool) {
  Numbering next;
  for (const iterator itr : pool.GetItrList()) {
    const tagTMset& record = *pool.GetAtNU(itr);
    if (record.mesh != nullptr) next.Continue(*record.mesh);
  }
  return next;
}

namespace {

std::vector<std::uint64_t> Sorted(std::vector<std::uint64_t> numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

/// Puts in place of each number its place among all of them, from 1 on.
void Replace(std::vector<std::uint64_t>& numbers, const std::vector<std::uint64_t>& all) {
  for (std::uint64_t& number : numbers) {
    const auto at = std::lower_bound(all.begin(), all.end(), number);
    number = static_cast<std::uint64_t>(at - all.begin()) + 1;
  }
}

}  // namespace

bool NumberAnew(const std::vector<MeshData*>& meshes, const Numbering& before) {
  Numbering last;
  for (const MeshData* mesh : meshes) last.Continue(*mesh);
  const auto fits = [](std::uint64_t number, std::uint64_t behind) {
    return number <= kMostKeptNumber && number + behind <= kMostKeptNumber;
  };
  if (fits(last.nodes, before.nodes) && fits(last.elements, before.elements)) return false;
  std::vector<std::uint64_t> nodes;
  std::vector<std::uint64_t> elements;
  for (const MeshData* mesh : meshes) {
    nodes.insert(nodes.end(), mesh->nodeIds.begin(), mesh->nodeIds.end());
    for (const MeshData::Block& block : mesh->blocks) {
      elements.insert(elements.end(), block.elementIds.begin(), block.elementIds.end());
    }
  }
  nodes = Sorted(std::move(nodes));
  elements = Sorted(std::move(elements));
  for (MeshData* mesh : meshes) {
    Replace(mesh->nodeIds, nodes);
    for (MeshData::Block& block : mesh->blocks) {
      Replace(block.nodeIds, nodes);
      Replace(block.elementIds, elements);
    }
  }
  return true;
}

}  // namespace qd::workbench

#include "workbench/model/MeshNumbers.h"

#include <algorithm>

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

}  // namespace qd::workbench

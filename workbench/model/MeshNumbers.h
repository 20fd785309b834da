#pragma once

#include "workbench/mesh/MeshEdit.h"
#include "workbench/model/MsetPool.h"

namespace qd::workbench {

/// How the nodes and elements of new meshes are numbered so that no number of the document is given twice: as they
/// come into a document without meshes, behind the last ones otherwise.
struct Numbering {
  std::uint64_t nodes = 0;
  std::uint64_t elements = 0;
  MeshPtr Apply(MeshPtr mesh) const;
  /// The next mesh is numbered behind this one.
  void Continue(const MeshData& mesh);
};

Numbering NextNumbers(const MsetPool& pool);

}  // namespace qd::workbench

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

/// Numbers the nodes and elements of meshes that come in together from 1 on and without gaps, where behind
/// `before` their own numbers would be too large to be kept. What several of them share stays shared. False when
/// there was no need.
bool NumberAnew(const std::vector<MeshData*>& meshes, const Numbering& before);

}  // namespace qd::workbench

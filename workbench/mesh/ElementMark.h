#pragma once

#include <cstdint>

#include "host/Records.h"

namespace qd::workbench {

/// Tells which elements a mesh holds, whatever their order; those of meshes without common elements add up.
struct ElementMark {
  std::uint64_t count = 0;
  std::uint64_t sum = 0;
  ElementMark& operator+=(const ElementMark& other);
  bool operator==(const ElementMark&) const = default;
};

ElementMark MarkOf(const MeshData& mesh);

}  // namespace qd::workbench

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// Where the elements of a mesh stand, by their numbers. Blocks in the order of their numbers, as most are, are
/// searched as they stand.
class ElementPlaces {
 public:
  explicit ElementPlaces(const MeshData& mesh);

  struct Place {
    std::size_t block;
    std::size_t element;
  };
  /// Of the mesh that this was made for.
  std::optional<Place> Find(const MeshData& mesh, std::uint64_t element) const;

 private:
  using Sorted = std::vector<std::pair<std::uint64_t, std::size_t>>;
  std::vector<Sorted> m_sorted;  // by block; empty for those in order
};

}  // namespace qd::workbench

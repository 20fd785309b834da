#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qd::workbench {

/// A named group of a universal file.
struct UnvGroup {
  std::string name;
  std::vector<std::uint64_t> elements;
};

/// The groups of elements of a universal file. Anything that is no such group is passed over.
std::vector<UnvGroup> ReadUnvGroups(const std::string& path);

}  // namespace qd::workbench

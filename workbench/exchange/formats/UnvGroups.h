#pragma once

#include <filesystem>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// The groups of elements of a universal file. Anything that is no such group is passed over.
std::vector<NamedGroup> ReadUnvGroups(const std::filesystem::path& path);

}  // namespace qd::workbench

#pragma once

#include <filesystem>
#include <functional>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Reads a universal file: data sets between lines with "-1", of which nodes, elements and groups of elements are
/// read and all others passed over. Groups become mesh sets of their names; elements of no group become one set
/// for each number of a physical property. Throws an ImportError that names the line; `progress` gets the share
/// done, 0 to 1.
ImportedModel ReadUnvFile(const std::filesystem::path& path, const std::function<void(double)>& progress);

}  // namespace qd::workbench

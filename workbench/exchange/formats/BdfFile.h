#pragma once

#include <filesystem>
#include <functional>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Reads the nodes and elements of a bulk data file: what stands behind BEGIN BULK up to ENDDATA, or all of a file
/// that has no such lines. Elements become one mesh set for each number of a property and each dimension; those
/// without a property have the number 0. Other entries are passed over, which is noted. Throws an ImportError that
/// names the line; `progress` gets the share done, 0 to 1.
ImportedModel ReadBdfFile(const std::filesystem::path& path, const std::function<void(double)>& progress);

}  // namespace qd::workbench

#pragma once

#include <filesystem>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Looks through a bulk data file for what the reading library passes over without a word: entries of elements
/// that nobody knows or that have too few nodes, and a missing end. Throws an ImportError that names the line.
/// Returns notes about elements that are left out.
std::vector<ImportNote> CheckBdfFile(const std::filesystem::path& path);

}  // namespace qd::workbench

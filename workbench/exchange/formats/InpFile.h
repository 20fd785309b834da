#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Reads a solver input file: nodes, elements, element sets, sections, materials, parts with their instances and
/// included files. Every element set becomes a mesh set. An element belongs to one mesh set only: to the smallest
/// element set that lists it; a set that lies wholly in another one is nested in it. What belongs to no set goes
/// into one that is named after the file or the instance.
///
/// Included files must lie below the folder of the file that is read, or of `folders`, after all links.
///
/// Throws an ImportError that names file and line; `progress` gets the share done, 0 to 1.
ImportedModel ReadInpFile(const std::filesystem::path& path, const std::function<void(double)>& progress,
                          const std::vector<std::filesystem::path>& folders = {});

/// Likewise from a text in memory, which errors call by `name`.
ImportedModel ReadInpText(std::string text, const std::string& name);

}  // namespace qd::workbench

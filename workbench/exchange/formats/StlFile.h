#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Whether a file of triangles is in bytes: its size says so whatever its first bytes are, which many programs
/// begin with "solid" in either form. `head` holds at least the first 84 bytes, if there are so many.
bool IsBinaryStl(std::string_view head, std::uintmax_t size);

/// Reads a file of triangles, as text or in bytes. Each solid becomes a mesh set of its name; equal corners become
/// one node. Solids without triangles are left out. Throws an ImportError that names the line; `progress` gets the
/// share done, 0 to 1.
ImportedModel ReadStlFile(const std::filesystem::path& path, const std::function<void(double)>& progress);

}  // namespace qd::workbench

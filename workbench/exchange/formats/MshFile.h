#pragma once

#include <filesystem>
#include <functional>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Reads a mesh file of sections, "$Nodes" to "$EndNodes" and so on: versions 1, 2, 4.0 and 4.1, as text or as
/// bytes in either order. Named groups of elements become mesh sets, and so do entities that no group names. An
/// element of several groups comes into the first. Sections that are none of the mesh are passed over.
///
/// Memory follows from the size of the file: what it claims to hold is compared with what is left of it, and
/// nothing is laid out by the largest number. Throws an ImportError that names the line, or the number in bytes;
/// `progress` gets the share done, 0 to 1.
ImportedModel ReadMshFile(const std::filesystem::path& path, const std::function<void(double)>& progress);

}  // namespace qd::workbench

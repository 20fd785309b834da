#pragma once

#include <string>

#include "workbench/exchange/child/Sink.h"

namespace qd::workbench {

/// Reads a file by the mesh library, and sends one mesh set per group of the file, and one per entity that no
/// group names. Throws ImportError.
void ReadMeshFile(const std::string& path, Sink& sink);

}  // namespace qd::workbench

#pragma once

#include <string>

#include "workbench/exchange/child/Sink.h"
#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

/// Reads an MSH, UNV, BDF or STL file and sends one mesh set per physical group, or per entity of the highest
/// dimension where the file has no groups. Throws ImportError.
void ReadMeshFile(const std::string& path, const Format& format, Sink& sink);

}  // namespace qd::workbench

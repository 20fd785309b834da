#pragma once

#include <string>

#include "workbench/exchange/child/Sink.h"
#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

/// Reads a STEP, IGES or BREP file and sends one part per body, with name, colour and assembly path as the file
/// gives them, and with facets where they are drawn. Throws ImportError.
void ReadCadFile(const std::string& path, const Format& format, bool isDrawn, Sink& sink);

}  // namespace qd::workbench

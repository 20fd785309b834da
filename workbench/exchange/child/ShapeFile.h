#pragma once

#include "workbench/exchange/child/Sink.h"

namespace qd::workbench {

/// Writes parts as a file and sends its bytes. What cannot be written is left out and noted by name. Throws
/// ImportError when nothing is left.
void WriteShapes(ShapeExport wanted, Sink& sink);

}  // namespace qd::workbench

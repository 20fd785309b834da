#pragma once

#include "workbench/exchange/child/Sink.h"

namespace qd::workbench {

/// Does the work and sends the results. Throws ImportError with the reason when any operand cannot be worked on.
void RunOperation(const ShapeOperation& operation, Sink& sink);

/// The meshing operation: a tetrahedral mesh for each solid, a triangular one for each surface.
void MeshOperands(const ShapeOperation& operation, Sink& sink);

}  // namespace qd::workbench

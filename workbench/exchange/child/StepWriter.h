#pragma once

#include <Message_ProgressRange.hxx>
#include <cstddef>
#include <ostream>
#include <vector>

#include "workbench/exchange/child/StepStructure.h"
#include "workbench/exchange/pipe/NoteCounts.h"

namespace qd::workbench {

/// Writes parts as a STEP file: products with names and colours, and their uses in assemblies of any depth.
/// Returns how many parts stand in it; `notes` gets what does not. Throws ImportError when nothing could be
/// written.
std::size_t WriteStep(std::vector<SolidPart> parts, std::ostream& out, NoteCounts& notes,
                      const Message_ProgressRange& range);

}  // namespace qd::workbench

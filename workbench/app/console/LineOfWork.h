#pragma once

#include <string>
#include <vector>

#include "workbench/exchange/store/ApplyResults.h"

namespace qd::workbench {

/// The line of Python that does some work on the shapes of parts. Empty when none does, since the shape that took
/// part in it is not there any more.
std::string LineOfWork(const Database& data, const ShapeOperation& operation,
                       const std::vector<WorkedPart>& parts);

}  // namespace qd::workbench

#pragma once

#include <functional>

#include "workbench/exchange/formats/InpRead.h"

namespace qd::workbench {

/// Makes the model of a solver input file that was read to its end: finds what its elements, sets and sections
/// refer to, puts instances in their places and tells the deck without them. Throws an ImportError.
ImportedModel FinishInp(InpRead& read, const std::function<void(double)>& progress);

}  // namespace qd::workbench

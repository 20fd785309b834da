#pragma once

#include <Message_ProgressRange.hxx>
#include <string>

#include "workbench/exchange/child/CadModel.h"

namespace qd::workbench {

/// Reads a STEP file: one body for each use of a product, with the names, the colours and the structure of the
/// file. Takes little longer than the library needs to read the file and to make its shapes. Throws ImportError.
CadModel ReadStep(const std::string& path, const Message_ProgressRange& range);

}  // namespace qd::workbench

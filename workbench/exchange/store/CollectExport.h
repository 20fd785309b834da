#pragma once

#include <vector>

#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// Mesh sets, with all that is nested in them or without; the sets above them come as groups without elements.
/// Names are such as the programs that read files take, and none is there twice.
ExportModel CollectExport(const Database& database, const std::vector<iterator>& msets, bool withNested = true);

/// Adds parts to what is written, as they are called in the document; products and uses as they came.
void CollectParts(const Database& database, const std::vector<iterator>& parts, ExportModel& model);

}  // namespace qd::workbench

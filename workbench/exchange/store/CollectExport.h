#pragma once

#include <vector>

#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// Mesh sets, with all that is nested in them or without; the sets above them come as groups without elements.
/// Names are such as the programs that read files take, and none is there twice.
ExportModel CollectExport(const Database& database, const std::vector<iterator>& msets, bool withNested = true);

}  // namespace qd::workbench

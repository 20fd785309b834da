#pragma once

#include <vector>

#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// Mesh sets with all that is nested in them; the sets above them come as groups without elements.
ExportModel CollectExport(const Database& database, const std::vector<iterator>& msets);

}  // namespace qd::workbench

#pragma once

#include <filesystem>
#include <optional>

#include "host/IAppDB.h"
#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/ExportReport.h"

namespace qd::workbench {

/// Writes a mesh file; its ending tells the format, one that can be written and holds meshes. The file appears
/// when it is whole; a failure leaves what stood there before. Returns the reason of a failure, with an empty key
/// when `progress` stopped it. `report` gets what was written and what was not.
std::optional<ImportError> WriteMeshFile(const std::filesystem::path& path, const ExportModel& model,
                                         const ProgressCall& progress, ExportReport& report);

}  // namespace qd::workbench

#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "host/IAppDB.h"
#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/ExportReport.h"

namespace qd::workbench {

/// Who follows the writing of a file. All calls come from the thread that writes.
struct ExportWatch {
  ProgressCall progress;  ///< 0 to 1; called often; false cancels
  /// The exchange program seems to be lost, for a reason and its detail: true to wait, false to end it.
  std::function<bool(const std::string& key, const std::string& detail)> onStalled = nullptr;
  std::function<void()> onResumed = nullptr;
  std::function<bool()> waitsLonger = nullptr;  ///< the answer of one who waits; true once
};

/// Writes a file; its ending tells the format. Meshes are written here, shapes by the exchange program, in its
/// cell. The file appears when it is whole; a failure leaves what stood there before. Returns the reason of a
/// failure, with an empty key for a cancel. `report` gets what was written and what was not.
std::optional<ImportError> WriteExport(const std::filesystem::path& path, const ExportModel& model,
                                       const std::string& program, const ExportWatch& watch, ExportReport& report);

}  // namespace qd::workbench

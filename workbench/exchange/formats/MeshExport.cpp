#include "workbench/exchange/formats/MeshExport.h"

#include <system_error>

#include "workbench/exchange/formats/FitModel.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/TextFile.h"
#include "workbench/text/Paths.h"

namespace qd::workbench {

std::optional<ImportError> WriteMeshFile(const std::filesystem::path& path, const ExportModel& model,
                                         const ProgressCall& progress, ExportReport& report) {
  const Format* format = FormatOfPath(path);
  if (format == nullptr || !format->CanWrite() || format->Carry().shapes) {
    return ImportError{"IDS_WB_EXPORT_FORMAT", PathText(path.extension())};
  }
  std::error_code ignored;
  const std::filesystem::file_status there = std::filesystem::status(path, ignored);
  if (std::filesystem::exists(there) && !std::filesystem::is_regular_file(there)) {
    return ImportError{"IDS_WB_EXPORT_NO_FILE", ""};
  }
  try {
    const ExportModel fitted = FitModel(model, *format, report);
    std::uint64_t total = CountElements(fitted);
    for (const ExportSet& set : fitted.sets) total += set.mesh != nullptr ? set.mesh->nodeIds.size() : 0;
    TextFile file(path, total, progress);
    format->Write(fitted, file, report);
    file.Close();
    return std::nullopt;
  } catch (const ImportError& error) {
    return error;
  }
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/MeshExport.h"

#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/TextFile.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/text/Paths.h"

namespace qd::workbench {

std::optional<ImportError> WriteMeshFile(const std::filesystem::path& path, const ExportModel& model,
                                         const ProgressCall& progress) {
  const Format* format = FormatOfPath(path);
  if (format == nullptr || !format->CanWrite()) {
    return ImportError{"IDS_WB_EXPORT_FORMAT", PathText(path.extension())};
  }
  std::uint64_t total = 0;
  for (const ExportSet& set : model.sets) {
    if (set.mesh != nullptr) total += set.mesh->nodeIds.size() + ElementCountOf(*set.mesh);
  }
  if (total == 0) return ImportError{"IDS_WB_EXPORT_NOTHING", ""};
  try {
    TextFile file(path, total, progress);
    format->Write(model, file);
    file.Close();
    return std::nullopt;
  } catch (const ImportError& error) {
    return error;
  }
}

}  // namespace qd::workbench

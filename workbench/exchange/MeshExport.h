#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/IAppDB.h"
#include "workbench/exchange/Protocol.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// A mesh set as it is written. Texts are UTF-8.
struct ExportSet {
  std::string name;          ///< no other set has it, whatever the case of its letters
  std::int32_t parent = -1;  ///< an earlier set, by place; -1 at top level
  std::int32_t property = -1;
  std::shared_ptr<const MeshData> mesh;  ///< null for a set without nodes
};

/// What is written: a copy that other threads may read while the document changes.
struct ExportModel {
  std::vector<ImportedMaterial> materials;
  std::vector<ImportedProperty> properties;
  std::vector<ExportSet> sets;
};

/// Mesh sets with all that is nested in them; the sets above them come as groups without elements.
ExportModel CollectExport(const Database& database, const std::vector<iterator>& msets);

/// Writes a mesh file; its extension tells the format: msh, unv, bdf, nas, inp or stl. The file appears when it is
/// whole; a failure leaves what stood there before. Returns the reason of a failure, with an empty key when
/// `progress` stopped it.
std::optional<ImportError> WriteMeshFile(const std::filesystem::path& path, const ExportModel& model,
                                         const ProgressCall& progress);

}  // namespace qd::workbench

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

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
  std::vector<std::string> parts;    ///< names of the parts that are in the document beside the mesh
  std::vector<std::string> renamed;  ///< what is not called as in the document: both names
};

}  // namespace qd::workbench

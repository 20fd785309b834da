#pragma once

#include <memory>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/mesh/DeckRecord.h"

namespace qd::workbench {

/// A mesh set as it is written. Texts are UTF-8.
struct ExportSet {
  std::string name;          ///< no other set has it, whatever the case of its letters
  std::int32_t parent = -1;  ///< an earlier set, by place; -1 at top level
  std::int32_t property = -1;
  std::shared_ptr<const MeshData> mesh;  ///< null for a set without nodes
};

/// A kept deck as it is written: around the mesh.
struct ExportDeck {
  tagTDeck record;
  std::vector<std::int32_t> msets;  ///< beside the deck's sets: sets by place, -1 for what is gone or not written
  std::vector<std::string> setNames;           ///< likewise: how they are called now
  std::vector<std::int32_t> materials;         ///< beside the deck's materials, by place
  std::vector<std::int32_t> properties;        ///< beside the deck's sections, by place
  std::vector<std::int32_t> sectionMaterials;  ///< likewise: the materials that they came with
  std::int32_t rest = -1;                      ///< the set for what the deck has in no set
};

/// What is written: a copy that other threads may read while the document changes.
struct ExportModel {
  std::vector<ImportedMaterial> materials;
  std::vector<ImportedProperty> properties;
  std::vector<ExportSet> sets;
  std::vector<ExportDeck> decks;
  std::vector<ExportedPart> parts;
  std::vector<std::string> partMaterials;  ///< names of materials that parts are made of
  std::vector<std::string> partSets;       ///< names of geometry sets that are not the assemblies of their parts
  std::vector<std::string> renamed;        ///< what is not called as in the document: both names
};

}  // namespace qd::workbench

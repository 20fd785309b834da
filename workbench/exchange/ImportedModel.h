#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// One body of a CAD file. Texts are UTF-8.
struct ImportedPart {
  std::string name;
  std::string assembly;  ///< path of the assembly that holds it, names divided by "/"; empty at top level
  COLORREF colour = Rgb(0xB0, 0xB8, 0xC4);
  TopologyKind kind = TopologyKind::Solid;
  PartShape shape;
};

/// One group of elements of a mesh file.
struct ImportedMeshSet {
  std::string name;
  MeshData mesh;
};

struct ImportedModel {
  std::vector<ImportedPart> parts;
  std::vector<ImportedMeshSet> meshSets;
};

}  // namespace qd::workbench

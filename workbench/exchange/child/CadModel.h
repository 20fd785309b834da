#pragma once

#include <TopoDS_Shape.hxx>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/exchange/pipe/NoteCounts.h"

namespace qd::workbench {

/// One body of a file, in its place, and all that the file says of it; not yet faceted or measured.
struct CadBody {
  TopoDS_Shape shape;
  ImportedPart part;
};

/// What a CAD file holds.
struct CadModel {
  std::vector<CadBody> bodies;
  NoteCounts notes;  ///< what the library could not read or turn into shapes
};

}  // namespace qd::workbench

#pragma once

#include <TopoDS_Shape.hxx>

#include "host/Records.h"

namespace qd::workbench {

/// Triangles and edge lines of a shape, fine enough for its size.
PartFacets FacetsOf(const TopoDS_Shape& shape);

}  // namespace qd::workbench

#pragma once

#include <TopoDS_Shape.hxx>

#include "host/Records.h"

namespace qd::workbench {

/// How much of a shape the facets show.
enum class Drawn { All, Part, Nothing };

/// Triangles and edge lines of a shape, fine enough for its size. A shape that the library cannot facet, or only
/// in part, gives what there is, and `drawn` says so.
PartFacets FacetsOf(const TopoDS_Shape& shape, Drawn& drawn);

}  // namespace qd::workbench

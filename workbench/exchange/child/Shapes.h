#pragma once

#include <TopoDS_Shape.hxx>
#include <vector>

#include "host/Records.h"
#include "workbench/exchange/child/Facets.h"

namespace qd::workbench {

struct Body {
  TopoDS_Shape shape;
  TopologyKind kind;
};

/// The bodies of a shape: solids, and what does not belong to one, each at its own level.
std::vector<Body> BodiesOf(const TopoDS_Shape& shape);

/// A shape with its exchange form, its facets and its measures; `drawn` tells what the facets show of it.
PartShape PartShapeOf(const TopoDS_Shape& shape, Drawn& drawn);

/// The shape of an exchange form; null when it is none.
TopoDS_Shape ShapeOf(const std::string& brep);

}  // namespace qd::workbench

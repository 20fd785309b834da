#include "workbench/exchange/child/Shapes.h"

#include <BRepGProp.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <GProp_GProps.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <cmath>
#include <sstream>

#include "workbench/exchange/child/Facets.h"

namespace qd::workbench {

std::vector<Body> BodiesOf(const TopoDS_Shape& shape) {
  struct Level {
    TopAbs_ShapeEnum what;
    TopAbs_ShapeEnum notIn;
    TopologyKind kind;
  };
  constexpr Level kLevels[] = {
      {TopAbs_SOLID, TopAbs_SHAPE, TopologyKind::Solid},  {TopAbs_SHELL, TopAbs_SOLID, TopologyKind::Surface},
      {TopAbs_FACE, TopAbs_SHELL, TopologyKind::Surface}, {TopAbs_WIRE, TopAbs_FACE, TopologyKind::Curve},
      {TopAbs_EDGE, TopAbs_WIRE, TopologyKind::Curve},    {TopAbs_VERTEX, TopAbs_EDGE, TopologyKind::Point}};
  std::vector<Body> bodies;
  for (const Level& level : kLevels) {
    for (TopExp_Explorer at(shape, level.what, level.notIn); at.More(); at.Next()) {
      bodies.push_back({at.Current(), level.kind});
    }
  }
  return bodies;
}

namespace {

std::string BrepOf(const TopoDS_Shape& shape) {
  std::ostringstream out;
  BRepTools::Write(shape, out, false, false, TopTools_FormatVersion_CURRENT);
  return out.str();
}

}  // namespace

PartShape PartShapeOf(const TopoDS_Shape& shape) {
  PartShape result;
  result.facets = FacetsOf(shape);
  result.brep = BrepOf(shape);
  GProp_GProps lines;
  GProp_GProps faces;
  GProp_GProps volume;
  BRepGProp::LinearProperties(shape, lines, true);
  BRepGProp::SurfaceProperties(shape, faces, true);
  BRepGProp::VolumeProperties(shape, volume, true, true);
  result.length = lines.Mass();
  result.area = faces.Mass();
  result.volume = std::abs(volume.Mass());
  return result;
}

TopoDS_Shape ShapeOf(const std::string& brep) {
  TopoDS_Shape shape;
  std::istringstream in(brep);
  try {
    BRepTools::Read(shape, in, BRep_Builder());
  } catch (const Standard_Failure&) {
    shape.Nullify();
  }
  return shape;
}

}  // namespace qd::workbench

#include "workbench/exchange/child/Shapes.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepGProp.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <GProp_GProps.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <cmath>
#include <gp_Circ.hxx>
#include <gp_Cone.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Elips.hxx>
#include <gp_Sphere.hxx>
#include <gp_Torus.hxx>
#include <sstream>

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

namespace {

using Measures = std::vector<std::pair<std::string, double>>;

Measures GeometryOfFace(const TopoDS_Face& face) {
  const BRepAdaptor_Surface surface(face);
  switch (surface.GetType()) {
    case GeomAbs_Plane:
      return {{"IDS_QD_WRT_PROP_PLANE", 0}};
    case GeomAbs_Cylinder:
      return {{"IDS_QD_WRT_PROP_CYLINDER", 0}, {"IDS_QD_WRT_PROP_RADIUS", surface.Cylinder().Radius()}};
    case GeomAbs_Cone:
      return {{"IDS_QD_WRT_PROP_CONE", 0}, {"IDS_QD_WRT_PROP_RADIUS", surface.Cone().RefRadius()}};
    case GeomAbs_Sphere:
      return {{"IDS_QD_WRT_PROP_SPHERE", 0}, {"IDS_QD_WRT_PROP_RADIUS", surface.Sphere().Radius()}};
    case GeomAbs_Torus:
      return {{"IDS_QD_WRT_PROP_TORUS", 0},
              {"IDS_QD_WRT_PROP_RADIUS", surface.Torus().MajorRadius()},
              {"IDS_QD_WRT_PROP_MINOR_RADIUS", surface.Torus().MinorRadius()}};
    default:
      return {{"IDS_QD_WRT_PROP_FREE_FORM", 0}};
  }
}

Measures GeometryOfEdge(const TopoDS_Edge& edge) {
  const BRepAdaptor_Curve curve(edge);
  switch (curve.GetType()) {
    case GeomAbs_Line:
      return {{"IDS_QD_WRT_PROP_LINE", 0}};
    case GeomAbs_Circle:
      return {{"IDS_QD_WRT_PROP_CIRCLE", 0}, {"IDS_QD_WRT_PROP_RADIUS", curve.Circle().Radius()}};
    case GeomAbs_Ellipse:
      return {{"IDS_QD_WRT_PROP_ELLIPSE", 0},
              {"IDS_QD_WRT_PROP_RADIUS", curve.Ellipse().MajorRadius()},
              {"IDS_QD_WRT_PROP_MINOR_RADIUS", curve.Ellipse().MinorRadius()}};
    default:
      return {{"IDS_QD_WRT_PROP_FREE_FORM", 0}};
  }
}

/// Of a shape that is one face, or one edge without a face; nothing for any other.
Measures GeometryOf(const TopoDS_Shape& shape) {
  TopTools_IndexedMapOfShape faces;
  TopExp::MapShapes(shape, TopAbs_FACE, faces);
  if (faces.Extent() == 1) return GeometryOfFace(TopoDS::Face(faces(1)));
  TopTools_IndexedMapOfShape edges;
  TopExp::MapShapes(shape, TopAbs_EDGE, edges);
  if (faces.IsEmpty() && edges.Extent() == 1) return GeometryOfEdge(TopoDS::Edge(edges(1)));
  return {};
}

double NumberOr0(double value) {
  return std::isfinite(value) ? value : 0;
}

}  // namespace

PartShape PartShapeOf(const TopoDS_Shape& shape, Drawn& drawn) {
  PartShape result;
  result.facets = FacetsOf(shape, drawn);
  result.brep = BrepOf(shape);
  try {
    GProp_GProps lines;
    GProp_GProps faces;
    GProp_GProps volume;
    BRepGProp::LinearProperties(shape, lines, true);
    BRepGProp::SurfaceProperties(shape, faces, true);
    BRepGProp::VolumeProperties(shape, volume, true, true);
    result.length = NumberOr0(lines.Mass());
    result.area = NumberOr0(faces.Mass());
    result.volume = NumberOr0(std::abs(volume.Mass()));
    result.geometry = GeometryOf(shape);
  } catch (const Standard_Failure&) {
    // A shape without a size has no measures; it is a part nevertheless.
  }
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

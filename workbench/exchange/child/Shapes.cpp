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
#include <TopTools_LocationSet.hxx>
#include <TopoDS.hxx>
#include <cmath>
#include <gp_Circ.hxx>
#include <gp_Cone.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Elips.hxx>
#include <gp_Sphere.hxx>
#include <gp_Torus.hxx>
#include <gp_Trsf.hxx>
#include <locale>
#include <optional>
#include <sstream>

#include "workbench/exchange/child/CadNotes.h"

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

std::string BrepOf(const TopoDS_Shape& shape) {
  std::ostringstream out;
  BRepTools::Write(shape, out, false, false, TopTools_FormatVersion_CURRENT);
  return out.str();
}

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

PartShape PartShapeOf(const TopoDS_Shape& shape, Drawn* drawn) {
  PartShape result;
  if (drawn != nullptr) result.facets = FacetsOf(shape, *drawn);
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

namespace {

void Move(std::vector<float>& numbers, const gp_Trsf& motion, bool directions) {
  for (std::size_t i = 0; i + 2 < numbers.size(); i += 3) {
    gp_XYZ at(numbers[i], numbers[i + 1], numbers[i + 2]);
    if (directions) {
      at.Multiply(motion.HVectorialPart());
    } else {
      motion.Transforms(at);
    }
    for (int axis = 0; axis < 3; ++axis) {
      numbers[i + static_cast<std::size_t>(axis)] = static_cast<float>(at.Coord(axis + 1));
    }
  }
}

/// The exchange form of a shape in another place, from that of the shape in none; nothing where it has places
/// inside, as their numbers would change.
std::optional<std::string> Placed(const std::string& brep, const TopLoc_Location& place) {
  static const std::string kNoPlaces = "\nLocations 0\n";
  constexpr int kDigits = 15;
  const std::size_t at = brep.find(kNoPlaces);
  const std::size_t root = brep.find_last_of('0');
  if (at == std::string::npos || root == std::string::npos || root < at) return std::nullopt;
  TopTools_LocationSet places;
  const int number = places.Add(place);
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.precision(kDigits);
  out << brep.substr(0, at) << "\n";
  places.Write(out);
  const std::size_t rest = at + kNoPlaces.size();
  out << brep.substr(rest, root - rest) << number << brep.substr(root + 1);
  return out.str();
}

}  // namespace

PartShape PartShapes::Make(const TopoDS_Shape& shape, Drawn& drawn, bool& sound) {
  const TopLoc_Location& place = shape.Location();
  const gp_Trsf motion = place.Transformation();
  constexpr double kSame = 1e-12;
  const bool rigid = std::abs(motion.ScaleFactor() - 1) < kSame && !motion.IsNegative();
  if (m_uses[shape.TShape().get()] < 2 || !rigid) {
    sound = IsSoundShape(shape);
    drawn = Drawn::All;
    return PartShapeOf(shape, m_areDrawn ? &drawn : nullptr);
  }
  const auto [found, isNew] = m_made.try_emplace({shape.TShape().get(), shape.Orientation()});
  Made& made = found->second;
  if (isNew) {
    made.sound = IsSoundShape(shape);
    made.shape = PartShapeOf(shape.Located(TopLoc_Location()), m_areDrawn ? &made.drawn : nullptr);
  }
  drawn = made.drawn;
  sound = made.sound;
  PartShape result = made.shape;
  if (place.IsIdentity()) return result;
  Move(result.facets.points, motion, false);
  Move(result.facets.normals, motion, true);
  const std::optional<std::string> placed = Placed(made.shape.brep, place);
  result.brep = placed ? *placed : BrepOf(shape);
  return result;
}

COLORREF RgbOf(const Quantity_Color& colour) {
  double red = 0;
  double green = 0;
  double blue = 0;
  colour.Values(red, green, blue, Quantity_TOC_sRGB);
  const auto byte = [](double value) { return static_cast<unsigned>(std::lround(value * 255)); };
  return Rgb(byte(red), byte(green), byte(blue));
}

Quantity_Color ColourOf(COLORREF rgb) {
  const auto part = [rgb](unsigned place) { return (rgb >> place & 0xFFU) / 255.0; };
  return {part(0), part(8), part(16), Quantity_TOC_sRGB};
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

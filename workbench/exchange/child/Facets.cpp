#include "workbench/exchange/child/Facets.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Vertex.hxx>
#include <algorithm>
#include <cmath>

namespace qd::workbench {

namespace {

constexpr double kAngle = 0.35;  // radians between neighbouring facets
constexpr double kDeflectionPerSize = 0.002;
/// The library refuses finer ones, and what is smaller altogether is drawn as coarsely as that.
constexpr double kLeastDeflection = 1e-6;

double SizeOf(const TopoDS_Shape& shape) {
  Bnd_Box box;
  BRepBndLib::Add(shape, box, false);
  return box.IsVoid() ? 0 : std::sqrt(box.SquareExtent());
}

std::uint32_t AddPoint(PartFacets& facets, const gp_Pnt& point) {
  for (const double value : {point.X(), point.Y(), point.Z()}) facets.points.push_back(static_cast<float>(value));
  for (int i = 0; i < 3; ++i) facets.normals.push_back(0.0F);
  return static_cast<std::uint32_t>(facets.points.size() / 3 - 1);
}

/// Adds a triangle's normal, weighted by its area, to its corners.
void AddNormal(PartFacets& facets, const std::uint32_t* corner) {
  const auto at = [&](int k, int axis) { return facets.points[corner[k] * 3 + static_cast<std::uint32_t>(axis)]; };
  float edge[2][3];
  for (int axis = 0; axis < 3; ++axis) {
    edge[0][axis] = at(1, axis) - at(0, axis);
    edge[1][axis] = at(2, axis) - at(0, axis);
  }
  for (int axis = 0; axis < 3; ++axis) {
    const int b = (axis + 1) % 3;
    const int c = (axis + 2) % 3;
    const float normal = edge[0][b] * edge[1][c] - edge[0][c] * edge[1][b];
    for (int k = 0; k < 3; ++k) facets.normals[corner[k] * 3 + static_cast<std::uint32_t>(axis)] += normal;
  }
}

/// A face's points are its own, so shading is smooth within it and sharp at its edges.
bool AddFace(PartFacets& facets, const TopoDS_Face& face) {
  TopLoc_Location place;
  const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, place);
  if (mesh.IsNull() || mesh->NbTriangles() == 0) return false;
  const auto first = static_cast<std::uint32_t>(facets.points.size() / 3);
  for (int i = 1; i <= mesh->NbNodes(); ++i) AddPoint(facets, mesh->Node(i).Transformed(place.Transformation()));
  const bool reversed = face.Orientation() == TopAbs_REVERSED;
  for (int i = 1; i <= mesh->NbTriangles(); ++i) {
    int a = 0;
    int b = 0;
    int c = 0;
    mesh->Triangle(i).Get(a, b, c);
    if (reversed) std::swap(b, c);
    for (const int node : {a, b, c}) facets.triangles.push_back(first + static_cast<std::uint32_t>(node) - 1);
    AddNormal(facets, &facets.triangles[facets.triangles.size() - 3]);
  }
  return true;
}

void AddLine(PartFacets& facets, const std::vector<gp_Pnt>& points) {
  if (points.size() < 2) return;
  facets.lineSizes.push_back(static_cast<std::uint32_t>(points.size()));
  for (const gp_Pnt& point : points) facets.lines.push_back(AddPoint(facets, point));
}

/// An edge of a face runs along the face's triangles; a free one along its curve.
void AddEdge(PartFacets& facets, const TopoDS_Edge& edge, const TopTools_ListOfShape& faces, double deflection) {
  if (BRep_Tool::Degenerated(edge)) return;
  std::vector<gp_Pnt> points;
  if (!faces.IsEmpty()) {
    TopLoc_Location place;
    const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(TopoDS::Face(faces.First()), place);
    if (mesh.IsNull()) return;
    const Handle(Poly_PolygonOnTriangulation) polygon = BRep_Tool::PolygonOnTriangulation(edge, mesh, place);
    if (polygon.IsNull()) return;
    for (int i = 1; i <= polygon->NbNodes(); ++i) {
      points.push_back(mesh->Node(polygon->Node(i)).Transformed(place.Transformation()));
    }
  } else {
    const BRepAdaptor_Curve curve(edge);
    const GCPnts_TangentialDeflection sampled(curve, kAngle, deflection);
    for (int i = 1; i <= sampled.NbPoints(); ++i) points.push_back(sampled.Value(i));
  }
  AddLine(facets, points);
}

void Normalise(std::vector<float>& normals) {
  for (std::size_t i = 0; i + 2 < normals.size(); i += 3) {
    const float length =
        std::sqrt(normals[i] * normals[i] + normals[i + 1] * normals[i + 1] + normals[i + 2] * normals[i + 2]);
    if (length <= 0) continue;
    for (std::size_t k = 0; k < 3; ++k) normals[i + k] /= length;
  }
}

/// Leaves the triangles in the shape; what the library cannot facet stays without.
void Triangulate(const TopoDS_Shape& shape, double deflection) {
  try {
    const BRepMesh_IncrementalMesh mesher(shape, deflection, false, kAngle);
  } catch (const Standard_Failure&) {
    // told by the faces that have no triangles
  }
}

void AddEdges(PartFacets& facets, const TopoDS_Shape& shape, double deflection) {
  TopTools_IndexedDataMapOfShapeListOfShape facesOf;
  TopExp::MapShapesAndAncestors(shape, TopAbs_EDGE, TopAbs_FACE, facesOf);
  for (int i = 1; i <= facesOf.Extent(); ++i) {
    try {
      AddEdge(facets, TopoDS::Edge(facesOf.FindKey(i)), facesOf(i), deflection);
    } catch (const Standard_Failure&) {
      continue;  // an edge without a curve has no line
    }
  }
}

}  // namespace

PartFacets FacetsOf(const TopoDS_Shape& shape, Drawn& drawn) {
  PartFacets facets;
  const double deflection = std::max(SizeOf(shape) * kDeflectionPerSize, kLeastDeflection);
  bool whole = true;
  if (TopExp_Explorer(shape, TopAbs_FACE).More()) Triangulate(shape, deflection);
  for (TopExp_Explorer at(shape, TopAbs_FACE); at.More(); at.Next()) {
    if (!AddFace(facets, TopoDS::Face(at.Current()))) whole = false;
  }
  Normalise(facets.normals);
  AddEdges(facets, shape, deflection);
  for (TopExp_Explorer at(shape, TopAbs_VERTEX, TopAbs_EDGE); at.More(); at.Next()) {
    AddPoint(facets, BRep_Tool::Pnt(TopoDS::Vertex(at.Current())));
  }
  const bool any = !facets.triangles.empty() || !facets.lines.empty();
  drawn = !any ? Drawn::Nothing : whole ? Drawn::All : Drawn::Part;
  return facets;
}

}  // namespace qd::workbench

#include "workbench/exchange/child/Operation.h"

#include <BRepAlgoAPI_Defeaturing.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <BRepGProp.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepProj_Projection.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GProp_GProps.hxx>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <cmath>
#include <gp_Ax1.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>
#include <limits>
#include <numbers>
#include <vector>

#include "workbench/exchange/child/Shapes.h"

namespace qd::workbench {

namespace {

constexpr double kHalfTurn = 180;

gp_Pnt PointOf(const ShapeOperation& operation) {
  return {operation.point[0], operation.point[1], operation.point[2]};
}

gp_Vec VectorOf(const ShapeOperation& operation) {
  const gp_Vec vector(operation.vector[0], operation.vector[1], operation.vector[2]);
  if (!(vector.Magnitude() > 0)) throw ImportError{"IDS_WB_OPERATION_ZERO", ""};
  return vector;
}

gp_Trsf MotionOf(const ShapeOperation& operation) {
  gp_Trsf motion;
  switch (operation.kind) {
    case ShapeOperationKind::Rotate:
      motion.SetRotation(gp_Ax1(PointOf(operation), VectorOf(operation)),
                         operation.amount * std::numbers::pi / kHalfTurn);
      break;
    case ShapeOperationKind::Mirror:
      motion.SetMirror(gp_Ax2(PointOf(operation), VectorOf(operation)));
      break;
    case ShapeOperationKind::Scale:
      if (!(std::abs(operation.amount) > 0)) throw ImportError{"IDS_WB_OPERATION_ZERO", ""};
      motion.SetScale(PointOf(operation), operation.amount);
      break;
    default:
      motion.SetTranslation(VectorOf(operation));
      break;
  }
  return motion;
}

/// Takes out the faces that are smaller than the area, and joins faces and edges that continue each other.
TopoDS_Shape Simplify(const TopoDS_Shape& shape, double leastArea) {
  BRepAlgoAPI_Defeaturing defeaturing;
  defeaturing.SetShape(shape);
  bool any = false;
  for (TopExp_Explorer at(shape, TopAbs_FACE); at.More(); at.Next()) {
    GProp_GProps face;
    BRepGProp::SurfaceProperties(at.Current(), face);
    if (face.Mass() >= leastArea) continue;
    defeaturing.AddFaceToRemove(at.Current());
    any = true;
  }
  TopoDS_Shape result = shape;
  if (any) {
    defeaturing.Build();
    if (!defeaturing.IsDone()) return {};
    result = defeaturing.Shape();
  }
  ShapeUpgrade_UnifySameDomain unify(result);
  unify.Build();
  return unify.Shape();
}

TopoDS_Shape Project(const TopoDS_Shape& shape, const TopoDS_Shape& target, const gp_Vec& direction) {
  TopoDS_Compound lines;
  const BRep_Builder builder;
  builder.MakeCompound(lines);
  bool any = false;
  for (TopExp_Explorer at(shape, TopAbs_EDGE); at.More(); at.Next()) {
    for (BRepProj_Projection projected(at.Current(), target, gp_Dir(direction)); projected.More();
         projected.Next()) {
      builder.Add(lines, projected.Current());
      any = true;
    }
  }
  return any ? TopoDS_Shape(lines) : TopoDS_Shape();
}

TopologyKind SweptKind(TopologyKind kind) {
  switch (kind) {
    case TopologyKind::Point:
      return TopologyKind::Curve;
    case TopologyKind::Curve:
      return TopologyKind::Surface;
    default:
      return TopologyKind::Solid;
  }
}

TopoDS_Shape Work(const ShapeOperation& operation, const TopoDS_Shape& shape, const TopoDS_Shape& target,
                  TopologyKind& kind) {
  switch (operation.kind) {
    case ShapeOperationKind::Sweep:
      if (kind >= TopologyKind::Solid) return {};  // a solid has nothing to be swept into
      kind = SweptKind(kind);
      return BRepPrimAPI_MakePrism(shape, VectorOf(operation)).Shape();
    case ShapeOperationKind::Simplify:
      return Simplify(shape, operation.amount);
    case ShapeOperationKind::Project:
      kind = TopologyKind::Curve;
      return Project(shape, target, VectorOf(operation));
    default:
      return BRepBuilderAPI_Transform(shape, MotionOf(operation), true).Shape();
  }
}

/// The face, edge or vertex of a shape that is nearest to a place; null when there is none.
TopoDS_Shape NearestOf(const TopoDS_Shape& shape, TopologyKind kind, const gp_Pnt& place) {
  const TopAbs_ShapeEnum what = kind == TopologyKind::Surface ? TopAbs_FACE
                                : kind == TopologyKind::Curve ? TopAbs_EDGE
                                                              : TopAbs_VERTEX;
  TopTools_IndexedMapOfShape all;
  TopExp::MapShapes(shape, what, all);
  const TopoDS_Shape vertex = BRepBuilderAPI_MakeVertex(place).Shape();
  Bnd_Box at;
  at.Add(place);
  TopoDS_Shape nearest;
  double least = std::numeric_limits<double>::max();
  for (int i = 1; i <= all.Extent(); ++i) {
    if (what == TopAbs_EDGE && BRep_Tool::Degenerated(TopoDS::Edge(all(i)))) continue;
    Bnd_Box box;
    BRepBndLib::Add(all(i), box, false);
    if (box.IsVoid() || box.Distance(at) >= least) continue;
    const BRepExtrema_DistShapeShape distance(vertex, all(i));
    if (!distance.IsDone() || distance.Value() >= least) continue;
    least = distance.Value();
    nearest = all(i);
  }
  return nearest;
}

void TakeOut(const ShapeOperation& operation, Sink& sink) {
  std::vector<TopoDS_Shape> shapes;
  for (const ShapeOperation::Operand& operand : operation.operands) shapes.push_back(ShapeOf(operand.brep));
  double done = 0;
  for (const ShapeOperation::Taken& taken : operation.taken) {
    TopoDS_Shape result;
    try {
      const TopoDS_Shape& from = shapes[taken.operand];
      if (!from.IsNull()) result = NearestOf(from, taken.kind, {taken.at[0], taken.at[1], taken.at[2]});
    } catch (const Standard_Failure&) {
      result.Nullify();
    }
    if (result.IsNull()) throw ImportError{"IDS_WB_OPERATION_SHAPE", taken.name};
    ImportedPart part;
    part.name = taken.name;
    part.kind = taken.kind;
    Drawn drawn{};
    part.shape = PartShapeOf(result, &drawn);
    if (part.shape.facets.points.empty()) throw ImportError{"IDS_WB_OPERATION_EMPTY", taken.name};
    sink.Part(part);
    sink.Progress(++done / static_cast<double>(operation.taken.size()));
  }
}

}  // namespace

void RunOperation(const ShapeOperation& operation, Sink& sink) {
  if (operation.kind == ShapeOperationKind::Mesh) return MeshOperands(operation, sink);
  if (operation.kind == ShapeOperationKind::TakeOut) return TakeOut(operation, sink);
  const TopoDS_Shape target = operation.target.empty() ? TopoDS_Shape() : ShapeOf(operation.target);
  double done = 0;
  for (const ShapeOperation::Operand& operand : operation.operands) {
    const TopoDS_Shape shape = ShapeOf(operand.brep);
    ImportedPart part;
    part.name = operand.name;
    part.kind = operand.kind;
    TopoDS_Shape result;
    try {
      if (!shape.IsNull()) result = Work(operation, shape, target, part.kind);
    } catch (const Standard_Failure&) {
      result.Nullify();
    }
    if (result.IsNull()) throw ImportError{"IDS_WB_OPERATION_SHAPE", operand.name};
    Drawn drawn{};
    part.shape = PartShapeOf(result, &drawn);
    if (part.shape.facets.points.empty()) throw ImportError{"IDS_WB_OPERATION_EMPTY", operand.name};
    sink.Part(part);
    sink.Progress(++done / static_cast<double>(operation.operands.size()));
  }
}

}  // namespace qd::workbench

#include "workbench/exchange/child/Operation.h"

#include <BRepAlgoAPI_Defeaturing.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepGProp.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepProj_Projection.hxx>
#include <BRep_Builder.hxx>
#include <GProp_GProps.hxx>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <cmath>
#include <gp_Ax1.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>
#include <numbers>

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

}  // namespace

void RunOperation(const ShapeOperation& operation, Sink& sink) {
  if (operation.kind == ShapeOperationKind::Mesh) return MeshOperands(operation, sink);
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
    part.shape = PartShapeOf(result, drawn);
    if (part.shape.facets.points.empty()) throw ImportError{"IDS_WB_OPERATION_EMPTY", operand.name};
    sink.Part(part);
    sink.Progress(++done / static_cast<double>(operation.operands.size()));
  }
}

}  // namespace qd::workbench

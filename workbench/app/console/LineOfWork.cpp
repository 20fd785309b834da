#include "workbench/app/console/LineOfWork.h"

#include <algorithm>

#include "workbench/session/PythonText.h"
#include "workbench/session/ScriptWords.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

using Kind = ShapeOperationKind;

std::string Point(const double (&point)[3]) {
  return ScriptPoint({point[0], point[1], point[2]});
}

/// Solids are meshed by solid elements and surfaces by surface elements unless it is said otherwise.
std::string LineOfMesh(const Database& data, const ShapeOperation& operation, const std::vector<WorkedPart>& parts,
                       const std::string& listed) {
  const TopologyKind kind = operation.dimension == 3 ? TopologyKind::Solid : TopologyKind::Surface;
  const bool asTheyAre = std::all_of(parts.begin(), parts.end(), [&](const WorkedPart& part) {
    const tagTGeom* record = data.GetGeomPool().GetAtNU(part.itr);
    return record != nullptr && record->kind == kind;
  });
  return "doc.mesh(" + listed + ", size=" + PythonNumber(operation.amount) +
         (operation.secondOrder ? ", second_order=True" : "") + (operation.mapped ? ", mapped=True" : "") +
         (asTheyAre ? "" : ", dimension=" + std::to_string(operation.dimension)) + ")";
}

std::string LineOfProjection(const Database& data, const ShapeOperation& operation, const std::string& listed) {
  for (const iterator itr : data.GetGeomPool().GetItrList()) {
    const tagTGeom& part = *data.GetGeomPool().GetAtNU(itr);
    if (part.shape == nullptr || part.shape->brep != operation.target) continue;
    return "doc.project(" + listed + ", " + ScriptRecord(itr) + ", " + Point(operation.vector) + ")";
  }
  return {};
}

std::string LineOfPieces(const ShapeOperation& operation, const std::vector<WorkedPart>& parts) {
  std::string pieces;
  for (const ShapeOperation::Taken& taken : operation.taken) {
    const char* kind = taken.kind == TopologyKind::Surface ? "face"
                       : taken.kind == TopologyKind::Curve ? "edge"
                                                           : "point";
    pieces += (pieces.empty() ? "(" : ", (") + ScriptRecord(parts[taken.operand].itr) + ", \"" + kind + "\", " +
              Point(taken.at) + ", " + PythonText(FromUtf8(taken.name)) + ")";
  }
  return "doc.take_out([" + pieces + "])";
}

}  // namespace

std::string LineOfWork(const Database& data, const ShapeOperation& operation,
                       const std::vector<WorkedPart>& parts) {
  std::vector<iterator> records;
  records.reserve(parts.size());
  for (const WorkedPart& part : parts) records.push_back(part.itr);
  const std::string listed = ScriptRecords(records);
  const auto call = [&](const char* verb, const std::string& arguments) {
    return std::string("doc.") + verb + "(" + listed + ", " + arguments + ")";
  };
  switch (operation.kind) {
    case Kind::Translate:
      return call("translate", Point(operation.vector));
    case Kind::Rotate:
      return call("rotate",
                  Point(operation.point) + ", " + Point(operation.vector) + ", " + PythonNumber(operation.amount));
    case Kind::Mirror:
      return call("mirror", Point(operation.point) + ", " + Point(operation.vector));
    case Kind::Scale:
      return call("scale", Point(operation.point) + ", " + PythonNumber(operation.amount));
    case Kind::Sweep:
      return call("sweep", Point(operation.vector));
    case Kind::Simplify:
      return call("simplify", PythonNumber(operation.amount));
    case Kind::Project:
      return LineOfProjection(data, operation, listed);
    case Kind::Mesh:
      return LineOfMesh(data, operation, parts, listed);
    case Kind::TakeOut:
      return LineOfPieces(operation, parts);
  }
  return {};
}

}  // namespace qd::workbench

#include "workbench/exchange/child/Sewing.h"

#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeSolid.hxx>
#include <BRepBuilderAPI_Sewing.hxx>
#include <BRepLib.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Message_ProgressScope.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>

namespace qd::workbench {

namespace {

constexpr double kGapPerSize = 1e-5;  // of neighbouring faces, which a file writes with so many digits
constexpr double kLeastGap = 1e-6;

bool IsLooseFace(const CadBody& body) {
  return !body.shape.IsNull() && body.shape.ShapeType() == TopAbs_FACE;
}

double GapOf(const std::vector<std::size_t>& faces, const CadModel& model) {
  Bnd_Box box;
  for (const std::size_t face : faces) BRepBndLib::Add(model.bodies[face].shape, box, false);
  return box.IsVoid() ? kLeastGap : std::max(std::sqrt(box.SquareExtent()) * kGapPerSize, kLeastGap);
}

/// A solid and the places of the bodies that it is made of.
struct Sewn {
  TopoDS_Solid solid;
  std::vector<std::size_t> faces;
};

std::vector<Sewn> Sew(const std::vector<std::size_t>& faces, const CadModel& model,
                      const Message_ProgressRange& range) {
  BRepBuilderAPI_Sewing sewing(GapOf(faces, model));
  for (const std::size_t face : faces) sewing.Add(model.bodies[face].shape);
  sewing.Perform(range);
  std::unordered_map<const TopoDS_TShape*, std::size_t> from;  // what became of each face
  for (const std::size_t face : faces) {
    const TopoDS_Shape& before = model.bodies[face].shape;
    const TopoDS_Shape after = sewing.IsModified(before) ? sewing.Modified(before) : before;
    for (TopExp_Explorer at(after, TopAbs_FACE); at.More(); at.Next()) from[at.Current().TShape().get()] = face;
  }
  std::vector<Sewn> result;
  if (sewing.SewedShape().IsNull()) return result;
  for (TopExp_Explorer at(sewing.SewedShape(), TopAbs_SHELL); at.More(); at.Next()) {
    const TopoDS_Shell shell = TopoDS::Shell(at.Current());
    if (!BRep_Tool::IsClosed(shell)) continue;
    Sewn sewn{BRepBuilderAPI_MakeSolid(shell).Solid(), {}};
    if (sewn.solid.IsNull() || !BRepLib::OrientClosedSolid(sewn.solid)) continue;
    for (TopExp_Explorer face(shell, TopAbs_FACE); face.More(); face.Next()) {
      const auto found = from.find(face.Current().TShape().get());
      if (found != from.end()) sewn.faces.push_back(found->second);
    }
    std::sort(sewn.faces.begin(), sewn.faces.end());
    sewn.faces.erase(std::unique(sewn.faces.begin(), sewn.faces.end()), sewn.faces.end());
    if (!sewn.faces.empty()) result.push_back(std::move(sewn));
  }
  return result;
}

COLORREF CommonestColour(const std::vector<std::size_t>& faces, const CadModel& model) {
  std::map<COLORREF, int> counts;
  COLORREF commonest = model.bodies[faces.front()].part.colour;
  for (const std::size_t face : faces) {
    const COLORREF colour = model.bodies[face].part.colour;
    if (++counts[colour] > counts[commonest]) commonest = colour;
  }
  return commonest;
}

}  // namespace

namespace {

/// What all faces of a solid say of themselves; nothing where they differ.
void Name(ImportedPart& part, const std::vector<std::size_t>& faces, const CadModel& model) {
  const bool same = std::all_of(faces.begin(), faces.end(), [&](std::size_t face) {
    const ImportedPart& other = model.bodies[face].part;
    return other.product == part.product && other.instance == part.instance && other.use == part.use;
  });
  if (!same) {
    part.product.clear();
    part.instance.clear();
    part.use = 0;
  }
  part.name = part.product;
}

}  // namespace

void SewSolids(CadModel& model, const Message_ProgressRange& range) {
  constexpr std::size_t kMostFaces = 10'000;  // more take too long
  std::map<std::string, std::vector<std::size_t>> groups;
  std::size_t count = 0;
  for (std::size_t i = 0; i < model.bodies.size(); ++i) {
    if (!IsLooseFace(model.bodies[i])) continue;
    groups[AssemblyPath(model.bodies[i].part)].push_back(i);
    ++count;
  }
  if (count > kMostFaces) {
    for (std::size_t i = 0; i < count; ++i) model.notes.Add("IDS_WB_NOTE_NOT_SEWN", "");
    return;
  }
  std::vector<bool> gone(model.bodies.size(), false);
  Message_ProgressScope scope(range, "", static_cast<double>(std::max<std::size_t>(count, 1)));
  for (const auto& [path, faces] : groups) {
    std::vector<Sewn> solids;
    try {
      solids = Sew(faces, model, scope.Next(static_cast<double>(faces.size())));
    } catch (const Standard_Failure&) {
      solids.clear();  // they stay loose
    }
    for (const Sewn& sewn : solids) {
      // A face that two shells share would be missing from one of them.
      if (std::any_of(sewn.faces.begin(), sewn.faces.end(), [&gone](std::size_t face) { return gone[face]; })) {
        continue;
      }
      CadBody& body = model.bodies[sewn.faces.front()];
      body.part.colour = CommonestColour(sewn.faces, model);
      body.part.kind = TopologyKind::Solid;
      Name(body.part, sewn.faces, model);
      for (const std::size_t face : sewn.faces) gone[face] = true;
      body.shape = sewn.solid;
    }
  }
  std::vector<CadBody> left;
  for (std::size_t i = 0; i < model.bodies.size(); ++i) {
    CadBody& body = model.bodies[i];
    if (gone[i] && IsLooseFace(body)) continue;
    if (IsLooseFace(body)) model.notes.Add("IDS_WB_NOTE_OPEN", body.part.name);
    left.push_back(std::move(body));
  }
  model.bodies = std::move(left);
}

}  // namespace qd::workbench

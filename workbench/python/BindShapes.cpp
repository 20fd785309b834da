// Work on shapes, meshes and coordinate systems, for Python.

#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <variant>

#include "workbench/batch/RecordActs.h"
#include "workbench/model/MeshTransforms.h"
#include "workbench/python/Script.h"
#include "workbench/python/Words.h"
#include "workbench/session/RecordQuery.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench::script {

namespace {

using Point = std::array<double, 3>;
using Kind = ShapeOperationKind;

void Put(const Point& from, double (&to)[3]) {
  std::copy(from.begin(), from.end(), to);
}

Point Finite(const Point& point) {
  if (!std::all_of(point.begin(), point.end(), [](double each) { return std::isfinite(each); })) {
    throw py::value_error("numbers are wanted that are finite");
  }
  return point;
}

Point Direction(const Point& point) {
  if (std::hypot(Finite(point)[0], point[1], point[2]) == 0) throw py::value_error("a direction has a length");
  return point;
}

double Number(double value, bool good, const char* wanted) {
  if (!std::isfinite(value) || !good) throw py::value_error(wanted);
  return value;
}

void Require(const ActResult& result) {
  if (!result.IsDone()) throw Failure(ToUtf8(Sentence(result.errorKey, {result.detail})));
}

void WorkOn(const DocumentPtr& self, const std::vector<iterator>& parts, ShapeOperation operation,
            const char* title, const py::object& call) {
  Progress progress(*self, call);
  self->Finish(self->Batch().Work(parts, std::move(operation), Sentence(title), progress.Call()), &progress);
}

/// Parts go through an operation, mesh sets through a transform.
void Move(const DocumentPtr& self, const py::object& records, const ShapeOperation& operation,
          const Transform& transform, const char* title, const py::object& call) {
  const std::vector<iterator> meant = Unwrap(*self, records);
  const std::vector<iterator> parts = PartsAmong(self->Data(), meant);
  std::vector<iterator> sets = meant;
  std::erase_if(sets, [&](iterator itr) { return self->Data().GetDataType(itr) != kDataMset; });
  if (parts.empty() && sets.empty()) throw py::type_error("parts or mesh sets are wanted");
  if (!parts.empty()) WorkOn(self, parts, operation, title, call);
  if (!sets.empty()) Require(TransformMeshes(self->Data(), sets, transform, Sentence(title)));
}

void Translate(const DocumentPtr& self, const py::object& records, const Point& way, const py::object& call) {
  ShapeOperation operation;
  operation.kind = Kind::Translate;
  Put(Finite(way), operation.vector);
  Move(self, records, operation, Translation(way), "IDS_QD_WRT_TRANSFORM_TRANSLATE", call);
}

void Rotate(const DocumentPtr& self, const py::object& records, const Point& point, const Point& axis,
            double angle, const py::object& call) {
  ShapeOperation operation;
  operation.kind = Kind::Rotate;
  Put(Finite(point), operation.point);
  Put(Direction(axis), operation.vector);
  operation.amount = Number(angle, true, "an angle is a number of degrees");
  Move(self, records, operation, Rotation(point, axis, angle), "IDS_QD_WRT_TRANSFORM_ROTATE", call);
}

void Mirror(const DocumentPtr& self, const py::object& records, const Point& point, const Point& normal,
            const py::object& call) {
  ShapeOperation operation;
  operation.kind = Kind::Mirror;
  Put(Finite(point), operation.point);
  Put(Direction(normal), operation.vector);
  Move(self, records, operation, Reflection(point, normal), "IDS_QD_WRT_TRANSFORM_MIRROR", call);
}

void Scale(const DocumentPtr& self, const py::object& records, const Point& point, double factor,
           const py::object& call) {
  ShapeOperation operation;
  operation.kind = Kind::Scale;
  Put(Finite(point), operation.point);
  operation.amount = Number(factor, factor > 0, "a factor is more than 0");
  Move(self, records, operation, Scaling(point, factor), "IDS_QD_WRT_TRANSFORM_SCALE", call);
}

void Sweep(const DocumentPtr& self, const py::object& records, const Point& way, int layers,
           const py::object& call) {
  const std::vector<iterator> meant = Unwrap(*self, records);
  const std::vector<iterator> parts = PartsAmong(self->Data(), meant);
  std::vector<iterator> sets = meant;
  std::erase_if(sets, [&](iterator itr) { return self->Data().GetDataType(itr) != kDataMset; });
  constexpr int kMostLayers = 1000;
  if (layers < 1 || layers > kMostLayers) throw py::value_error("layers are 1 to 1000");
  ShapeOperation operation;
  operation.kind = Kind::Sweep;
  Put(Direction(way), operation.vector);
  if (!parts.empty()) WorkOn(self, parts, operation, "IDS_QD_WRT_TRANSFORM_SWEEP_TRANSLATE", call);
  if (!sets.empty())
    Require(SweepMeshes(self->Data(), sets, way, layers, Sentence("IDS_QDMESH_TAB_GENERATE_2D_TO_3D")));
}

void Simplify(const DocumentPtr& self, const py::object& parts, double area, const py::object& call) {
  ShapeOperation operation;
  operation.kind = Kind::Simplify;
  operation.amount = Number(area, area > 0, "an area is more than 0");
  WorkOn(self, PartsAmong(self->Data(), Unwrap(*self, parts)), operation, "IDS_QD_WRT_MODEL_SIMPLY", call);
}

/// The parts that an act adds, by the numbers that they get.
template <typename Work>
py::list MadeBy(const DocumentPtr& self, const Work& work) {
  const GeomPool& pool = self->Data().GetGeomPool();
  const int before = pool.NextNumber();
  work();
  std::vector<iterator> made;
  for (int number = before; number < pool.NextNumber(); ++number) made.push_back(pool.ItrOfNumber(number));
  return WrapAll(self, made);
}

py::list Project(const DocumentPtr& self, const py::object& parts, const Part& target, const Point& direction,
                 const py::object& call) {
  ShapeOperation operation;
  operation.kind = Kind::Project;
  Put(Direction(direction), operation.vector);
  const tagTGeom& onto = *self->Data().GetGeomPool().GetAtNU(Unwrap(*self, py::cast(target)).front());
  if (onto.shape != nullptr) operation.target = onto.shape->brep;
  const std::vector<iterator> meant = PartsAmong(self->Data(), Unwrap(*self, parts));
  return MadeBy(self, [&] { WorkOn(self, meant, operation, "IDS_WB_PROJECT", call); });
}

using Piece = std::tuple<Part, std::string, Point, py::str>;

py::list TakeOut(const DocumentPtr& self, const std::vector<Piece>& pieces, const py::object& call) {
  static constexpr std::array<const char*, 3> kKinds{"point", "edge", "face"};
  ShapeOperation operation;
  operation.kind = Kind::TakeOut;
  std::vector<iterator> parts;
  for (const auto& [part, kind, at, name] : pieces) {
    const iterator itr = Unwrap(*self, py::cast(part)).front();
    const auto known = std::find(parts.begin(), parts.end(), itr);
    ShapeOperation::Taken& taken = operation.taken.emplace_back();
    taken.operand = static_cast<std::uint32_t>(known - parts.begin());
    if (known == parts.end()) parts.push_back(itr);
    taken.kind = static_cast<TopologyKind>(PlaceOf(kKinds, kind, "pieces"));
    Put(Finite(at), taken.at);
    taken.name = name.cast<std::string>();
  }
  return MadeBy(self, [&] { WorkOn(self, parts, operation, "IDS_WB_PICKED_TAKE_OUT", call); });
}

// ---- meshes ---------------------------------------------------------------------------------------------

iterator SetOrDefault(const DocumentPtr& self, const std::optional<MeshSet>& set) {
  return set ? Unwrap(*self, py::cast(*set)).front() : 0;
}

std::uint64_t NewNode(const DocumentPtr& self, const Point& at, const std::optional<MeshSet>& set) {
  const ActResult result =
      AddNode(self->Data(), SetOrDefault(self, set), Finite(at), Sentence("IDS_MENU_WRT_MESH_ADD_NODE"));
  Require(result);
  return result.number;
}

std::uint64_t NewElement(const DocumentPtr& self, int type, const std::vector<std::uint64_t>& nodes,
                         const std::optional<MeshSet>& set) {
  const ActResult result =
      AddElement(self->Data(), SetOrDefault(self, set), type, nodes, Sentence("IDS_MENU_WRT_MESH_ADD_ELEM"));
  Require(result);
  return result.number;
}

using Elements = std::variant<std::string, std::vector<std::uint64_t>>;

NumberRuns RunsIn(const Elements& elements) {
  if (const auto* numbers = std::get_if<1>(&elements)) return RunsOf(*numbers);
  NumberRuns runs;
  const auto& text = std::get<0>(elements);
  if (!ParseRuns(text, runs)) throw Failure(ToUtf8(Sentence("IDS_WB_MESH_BAD_NUMBERS", {text})));
  return runs;
}

std::uint64_t Include(const DocumentPtr& self, const Elements& elements, const MeshSet& into,
                      const std::optional<MeshSet>& from) {
  const ActResult result = MoveElements(self->Data(), RunsIn(elements), Unwrap(*self, py::cast(into)).front(),
                                        SetOrDefault(self, from), Sentence("IDS_QD_WRT_MESH_INCLUDE_EXCLUDE"));
  Require(result);
  return result.number;
}

py::object MakeMeshSet(const DocumentPtr& self, const py::str& name, const std::optional<Elements>& elements,
                       const std::optional<MeshSet>& beside) {
  Database& data = self->Data();
  iterator made = 0;
  if (elements.has_value() != beside.has_value()) {
    throw py::value_error("elements go into a set beside another one, and a set without any stands beside none");
  }
  if (!elements) {
    self->Require(NewMeshSet(data, FromPython(name), made));
    return Wrap(self, made);
  }
  const iterator other = Unwrap(*self, py::cast(*beside)).front();
  made = data.GetMsetPool().ItrOfNumber(data.GetMsetPool().NextNumber());
  Require(MoveElementsToNew(data, RunsIn(*elements), other, FromPython(name), Sentence("IDS_QD_TRANS_Add_Mset")));
  return Wrap(self, made);
}

// ---- coordinate systems ---------------------------------------------------------------------------------

const tagTCord& At(const CoordinateSystem& system) {
  system.Need();
  return *system.Data().GetCordPool().GetAtNU(system.itr);
}

py::object MakeCord(const DocumentPtr& self, const py::str& name, const std::string& kind, const Point& origin,
                    const Point& xAxis, const Point& xyPlane, const std::optional<CoordinateSystem>& parent) {
  tagTCord record;
  record.SetName(FromPython(name));
  record.kind = static_cast<CordKind>(PlaceOf(kCordKindNames, kind, "kinds"));
  record.origin = origin;
  record.xAxis = xAxis;
  record.xyPlane = xyPlane;
  record.parent = parent ? Unwrap(*self, py::cast(*parent)).front() : self->Data().GetCordPool().GetDefaultCord();
  iterator made = 0;
  self->Require(StoreCord(self->Data(), made, record));
  return Wrap(self, made);
}

void PlaceSystem(const CoordinateSystem& self, const std::optional<std::string>& kind,
                 const std::optional<Point>& origin, const std::optional<Point>& xAxis,
                 const std::optional<Point>& xyPlane, const std::optional<CoordinateSystem>& parent) {
  tagTCord record = At(self);
  if (kind) record.kind = static_cast<CordKind>(PlaceOf(kCordKindNames, *kind, "kinds"));
  if (origin) record.origin = *origin;
  if (xAxis) record.xAxis = *xAxis;
  if (xyPlane) record.xyPlane = *xyPlane;
  if (parent) record.parent = Unwrap(*self.document, py::cast(*parent)).front();
  iterator itr = self.itr;
  self.document->Require(StoreCord(self.Data(), itr, record));
}

template <Point tagTCord::*kMember>
std::tuple<double, double, double> PointOf(const CoordinateSystem& self) {
  const Point& point = At(self).*kMember;
  return {point[0], point[1], point[2]};
}

}  // namespace

void BindSystems(py::module_& module) {
  using namespace py::literals;
  py::class_<CoordinateSystem, Record>(module, "CoordinateSystem",
                                       "A coordinate system, in the straight axes of another one.")
      .def_property_readonly(
          "kind",
          [](const CoordinateSystem& self) { return kCordKindNames[static_cast<std::size_t>(At(self).kind)]; },
          "'rectangular', 'cylindrical' or 'spherical'.")
      .def_property_readonly(
          "parent", [](const CoordinateSystem& self) { return Wrap(self.document, At(self).parent); },
          "The system that it stands in; None for the global one.")
      .def_property_readonly("origin", &PointOf<&tagTCord::origin>, "Where it stands.")
      .def_property_readonly("x_axis", &PointOf<&tagTCord::xAxis>, "The direction of the first axis.")
      .def_property_readonly("xy_plane", &PointOf<&tagTCord::xyPlane>, "A direction on the second axis' side.")
      .def("place", &PlaceSystem, "kind"_a = py::none(), "origin"_a = py::none(), "x_axis"_a = py::none(),
           "xy_plane"_a = py::none(), "parent"_a = py::none(),
           "Changes what is given, all of it at once, as one act.");
}

void BindShapes(py::class_<ScriptDocument, DocumentPtr>& document) {
  using namespace py::literals;
  document
      .def("translate", &Translate, "records"_a, "way"_a, "progress"_a = py::none(),
           "Moves parts and mesh sets along a way.")
      .def("rotate", &Rotate, "records"_a, "point"_a, "axis"_a, "angle"_a, "progress"_a = py::none(),
           "Turns them by degrees about an axis through a point.")
      .def("mirror", &Mirror, "records"_a, "point"_a, "normal"_a, "progress"_a = py::none(),
           "Mirrors them at the plane through a point with a normal.")
      .def("scale", &Scale, "records"_a, "point"_a, "factor"_a, "progress"_a = py::none(),
           "Scales them about a point.")
      .def("sweep", &Sweep, "records"_a, "way"_a, "layers"_a = 1, "progress"_a = py::none(),
           "Sweeps parts along a way, and makes solids, in layers, of surfaces of mesh sets.")
      .def("simplify", &Simplify, "parts"_a, "area"_a, "progress"_a = py::none(),
           "Takes faces out of parts that are smaller than an area.")
      .def("project", &Project, "parts"_a, "target"_a, "direction"_a, "progress"_a = py::none(),
           "Projects parts onto another one. Returns the new parts.")
      .def("take_out", &TakeOut, "pieces"_a, "progress"_a = py::none(),
           "Takes pieces of parts out as new parts. A piece is the part, 'point', 'edge' or 'face', a place that "
           "it is "
           "the nearest to, and the name of what it becomes. Returns the new parts.")
      .def("add_node", &NewNode, "at"_a, "mesh_set"_a = py::none(),
           "Adds a node to a mesh set, or to that of what has none. Returns its number.")
      .def("add_element", &NewElement, "type"_a, "nodes"_a, "mesh_set"_a = py::none(),
           "Adds an element of a type, see Block.type, between nodes. Returns its number.")
      .def("move_elements", &Include, "elements"_a, "into"_a, "out_of"_a = py::none(),
           "Moves elements, by their numbers or a text such as '1-20, 25', into a mesh set, wherever they are or "
           "out of "
           "one set only. Returns how many.")
      .def("mesh_set", &MakeMeshSet, "name"_a, "elements"_a = py::none(), "beside"_a = py::none(),
           "Moves elements, by their numbers or a text such as '1-20, 25', into a new mesh set beside another "
           "one; or, "
           "without any, makes one with nothing in it.")
      .def("coordinate_system", &MakeCord, "name"_a, "kind"_a = "rectangular", "origin"_a = Point{0, 0, 0},
           "x_axis"_a = Point{1, 0, 0}, "xy_plane"_a = Point{0, 1, 0}, "parent"_a = py::none(),
           "Makes a coordinate system of the kind 'rectangular', 'cylindrical' or 'spherical' in another one, or "
           "in the "
           "global one.");
}

}  // namespace qd::workbench::script

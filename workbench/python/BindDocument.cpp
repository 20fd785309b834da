// Documents as objects of Python.

#include <pybind11/numpy.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "workbench/batch/ModelInfo.h"
#include "workbench/batch/RecordActs.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/mesh/MeshChecks.h"
#include "workbench/model/CheckActs.h"
#include "workbench/python/Script.h"
#include "workbench/python/Words.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::workbench::script {

namespace {

namespace fs = std::filesystem;
using Path = fs::path;

/// An act of a script: kept when its block ends, taken back when that ends with an exception.
struct Act {
  DocumentPtr document;
  std::string title;
};

const UnitSystem& UnitsOf(const std::string& length) {
  const UnitSystem& units = FindUnitSystem(FromUtf8(length));
  if (ToUtf8(units.length) != length) throw py::value_error("units are 'mm', 'm' or 'in'");
  return units;
}

std::vector<iterator> AllOrSome(const ScriptDocument& document, const py::object& records,
                                const std::vector<iterator>& all) {
  return records.is_none() ? all : Unwrap(document, records);
}

void CheckEnding(const Path& path) {
  const Format* format = FormatOfPath(path);
  if (format != nullptr && format->CanWrite()) return;
  throw Failure(path.string() + ": " + ToUtf8(Sentence("IDS_WB_EXPORT_FORMAT", {path.extension().string()})));
}

// ---- files ----------------------------------------------------------------------------------------------

py::list Import(const DocumentPtr& self, const Path& path, const py::object& call) {
  Database& data = self->Data();
  if (data.IsInTransaction()) throw Failure("files are imported outside of an act");
  const int firstPart = data.GetGeomPool().NextNumber();
  const int firstSet = data.GetMsetPool().NextNumber();
  Progress progress(*self, call);
  const bool isFirst = data.GetGeomPool().Count() + data.GetMsetPool().Count() == 0;
  IScriptWindow* window = self->Window();
  const auto beforeStore = [&] {
    if (window != nullptr) window->BeforeImport(path.string());
  };
  self->Finish(self->Batch().Import(path.string(), progress.Call(), beforeStore), &progress);
  if (window != nullptr) {
    window->AfterImport(path.string());
  } else if (isFirst) {
    self->Batch().SetName(path.string());
  }
  std::vector<iterator> made;
  for (int number = firstPart; number < data.GetGeomPool().NextNumber(); ++number) {
    made.push_back(data.GetGeomPool().ItrOfNumber(number));
  }
  for (int number = firstSet; number < data.GetMsetPool().NextNumber(); ++number) {
    made.push_back(data.GetMsetPool().ItrOfNumber(number));
  }
  return WrapAll(self, made);
}

DocumentPtr Open(const Path& path, const py::object& call) {
  auto document = std::make_shared<ScriptDocument>();
  if (path.extension() != ".qdw") {
    Import(document, path, call);
    return document;
  }
  Progress progress(*document, call);
  document->Finish(document->Batch().Open(path.string(), progress.Call()), &progress);
  return document;
}

py::dict Export(const DocumentPtr& self, const Path& path, const py::object& records,
                const std::optional<std::string>& units, const py::object& call) {
  CheckEnding(path);
  BatchDocument& batch = self->Batch();
  if (units && FormatOfPath(path)->Carry().shapes) {
    throw Failure(path.string() + ": " + ToUtf8(Sentence("IDS_WB_BATCH_UNITS_OF_MESHES")));
  }
  const std::vector<iterator> some = AllOrSome(*self, records, {});
  ExportModel model = batch.Collect(records.is_none() ? nullptr : &some);
  if (units) ConvertUnits(model, batch.Units(), UnitsOf(*units));
  Progress progress(*self, call);
  ExportReport report;
  const auto error = batch.Export(path.string(), model, progress.Call(), report);
  Outcome outcome;
  if (error) {
    outcome.cancelled = error->key.empty();
    outcome.fault = outcome.cancelled ? Sentence("IDS_WB_EXPORT_CANCELLED", {path.string()})
                                      : FromUtf8(path.string()) + L": " + Sentence(error->key, {error->detail});
  }
  for (const ImportNote& note : report.notes) {
    outcome.notes.push_back(FromUtf8(path.string()) + L": " + Sentence(note.key, {note.detail}));
  }
  self->Finish(outcome, &progress);
  py::dict written;
  written["parts"] = report.parts;
  written["nodes"] = report.nodes;
  written["elements"] = report.elements;
  written["groups"] = report.groups;
  return written;
}

/// The workbench draws it: a script needs neither a display nor the libraries that draw.
void Screenshot(const DocumentPtr& self, const Path& path, const std::optional<std::tuple<int, int>>& size,
                const std::optional<std::string>& view, const std::optional<std::string>& hide,
                const std::optional<std::string>& section) {
  const py::object folder = py::module_::import("tempfile").attr("TemporaryDirectory")();
  struct Cleaning {
    const py::object& folder;
    ~Cleaning() {
      try {
        folder.attr("cleanup")();
      } catch (py::error_already_set& error) {
        error.discard_as_unraisable("screenshot");
      }
    }
  };
  const Cleaning cleaning{folder};
  const Path document = Path(folder.attr("name").cast<std::string>()) / "picture.qdw";
  Place().Run([&] { self->Finish(self->Batch().Save(document.string())); });
  py::list command;
  command.append(Path(Surroundings().ExchangeProgram()).parent_path() / "workbench");
  command.append("--screenshot");
  command.append(fs::absolute(path));
  const auto add = [&command](const char* option, const std::optional<std::string>& value) {
    if (!value) return;
    command.append(std::string(option) + "=" + *value);
  };
  if (size) add("--size", std::to_string(std::get<0>(*size)) + "x" + std::to_string(std::get<1>(*size)));
  add("--view", view);
  add("--hide", hide);
  add("--section", section);
  command.append("--");
  command.append(document);
  using py::literals::operator""_a;
  const py::object ended = py::module_::import("subprocess").attr("run")(command, "capture_output"_a = true);
  if (ended.attr("returncode").cast<int>() == 0) return;
  const auto said = ended.attr("stderr").attr("decode")("utf-8", "replace").cast<std::string>();
  throw Failure(said.substr(0, said.find_last_not_of('\n') + 1));
}

// ---- looking --------------------------------------------------------------------------------------------

py::list Find(const DocumentPtr& self, const py::str& query) {
  std::vector<iterator> records;
  self->Finish(self->Batch().Find(FromPython(query), records));
  return WrapAll(self, records);
}

py::object At(const DocumentPtr& self, const std::string& kind, int id) {
  Database& data = self->Data();
  const std::map<std::string, iterator> places{{"part", data.GetGeomPool().ItrOfNumber(id)},
                                               {"mesh_set", data.GetMsetPool().ItrOfNumber(id)},
                                               {"group", data.GetGsetPool().ItrOfNumber(id)},
                                               {"material", data.GetMaterialPool().ItrOfNumber(id)},
                                               {"coordinate_system", data.GetCordPool().ItrOfNumber(id)}};
  const auto found = places.find(kind);
  if (found == places.end()) throw py::value_error("there are no records of the kind " + kind);
  if (id < 1 || data.GetDataType(found->second) == 0) throw Gone("there is no " + kind + " " + std::to_string(id));
  return Wrap(self, found->second);
}

py::tuple ToTuple(const Point3& at) {
  return py::make_tuple(at.x, at.y, at.z);
}

py::dict Info(const DocumentPtr& self, const py::object& records, const std::optional<std::string>& units,
              const py::object& call) {
  BatchDocument& batch = self->Batch();
  const std::vector<iterator> some = AllOrSome(*self, records, {});
  Progress progress(*self, call);
  ModelInfo info;
  const bool done = LookAt(batch, records.is_none() ? nullptr : &some, units ? UnitsOf(*units) : batch.Units(),
                           progress.Call(), info);
  if (!done) progress.Rethrow();
  py::dict parts;
  for (std::size_t kind = 0; kind < info.parts.size(); ++kind) {
    if (info.parts[kind] != 0) parts[kPartKindNames[kind]] = info.parts[kind];
  }
  py::dict quality;
  for (const ModelInfo::Quality& found : info.quality) {
    py::dict one;
    one["looked"] = found.looked;
    one["bad"] = found.bad;
    one["worst"] = found.worst;
    one["mean"] = found.mean;
    quality[kQualityNames[static_cast<std::size_t>(found.measure)]] = one;
  }
  py::dict all;
  all["units"] = py::make_tuple(ToPython(info.units->length), ToPython(info.units->mass));
  all["parts"] = parts;
  all["mesh_sets"] = info.sets;
  all["nodes"] = info.nodes;
  all["elements"] = info.elements;
  all["element_types"] = info.types;
  all["materials"] = info.materials;
  if (!info.box.IsEmpty()) all["box"] = py::make_tuple(ToTuple(info.box.least), ToTuple(info.box.greatest));
  for (const InfoNumber& number : NumbersOf(info)) all[number.name] = number.value;
  all["centre"] = ToTuple(info.centre);
  all["inertia"] = info.inertia;
  all["quality"] = quality;
  return all;
}

/// Rows of a tree from top to bottom: level, title and record, which rows that only gather others do not have.
py::list Walk(const DocumentPtr& self, const std::string& which) {
  if (which != "model" && which != "sets") throw py::value_error("trees are 'model' and 'sets'");
  const CQDTreeListCtrl& tree = self->Batch().Tree(which == "model" ? kModelTree : kGeometrySetTree).GetTreeCtrl();
  py::list rows;
  ForEachRow(tree, [&](HTREEITEM row, int level) {
    const CQDTreeItem* node = tree.NodeOf(row);
    const iterator itr = node != nullptr ? node->GetRecord() : 0;
    rows.append(py::make_tuple(level, ToPython(tree.GetItemText(row, 0)), Wrap(self, itr)));
  });
  return rows;
}

std::string TreeText(const DocumentPtr& self) {
  std::string text;
  for (const TreeType tree : {kModelTree, kGeometrySetTree}) {
    text += PrintTree(self->Batch().Tree(tree).GetTreeCtrl());
  }
  return text;
}

// ---- meshes ---------------------------------------------------------------------------------------------

py::list Mesh(const DocumentPtr& self, const py::object& parts, double size, bool secondOrder, bool mapped,
              const std::optional<int>& dimension, const py::object& call) {
  if (dimension && *dimension != 2 && *dimension != 3) throw py::value_error("dimensions are 2 and 3");
  if (!std::isfinite(size) || size < 0)
    throw py::value_error("a size of elements is above 0, or 0 for one that suits");
  Database& data = self->Data();
  const std::vector<iterator> meant = PartsAmong(data, AllOrSome(*self, parts, data.GetGeomPool().GetItrList()));
  Progress progress(*self, call);
  const MeshWish wish{size, secondOrder, mapped, dimension.value_or(0)};
  self->Finish(self->Batch().Mesh(meant, wish, progress.Call()), &progress);
  return WrapAll(self, MeshSetsAmong(data, meant));
}

/// What a check of meshes has found.
struct Check {
  CheckResult result;
  DocumentPtr document;
  std::vector<iterator> sets;
  std::vector<MeshPtr> looked;  // of the sets
  CString title;
};

template <typename Value>
py::array_t<Value> Copied(const std::vector<Value>& values) {
  return py::array_t<Value>(static_cast<py::ssize_t>(values.size()), values.data());
}

Check RunCheck(const DocumentPtr& self, const std::string& what, const py::object& sets,
               const std::string& measure, const std::optional<double>& limit, double tolerance,
               const py::object& call) {
  Database& data = self->Data();
  if (limit && !std::isfinite(*limit)) throw py::value_error("a limit is a finite number");
  if (!std::isfinite(tolerance) || tolerance < 0) throw py::value_error("a tolerance is 0 or above");
  CheckRequest request;
  request.check = static_cast<MeshCheck>(PlaceOf(kCheckNames, what, "checks"));
  request.measure = static_cast<QualityMeasure>(PlaceOf(kQualityNames, measure, "measures"));
  request.limit = limit.value_or(RuleOf(request.measure).limit);
  request.tolerance = tolerance;
  const std::vector<iterator> all = data.GetMsetPool().GetItrList();
  const std::vector<iterator> meant = MeshSetsAmong(data, AllOrSome(*self, sets, all));
  std::vector<MeshPtr> looked;
  std::vector<MeshPtr> others;
  looked.reserve(meant.size());
  for (const iterator itr : meant) looked.push_back(data.GetMsetPool().GetAtNU(itr)->mesh);
  const std::unordered_set<iterator> isMeant(meant.begin(), meant.end());
  for (const iterator itr : all) {
    if (!isMeant.contains(itr)) others.push_back(data.GetMsetPool().GetAtNU(itr)->mesh);
  }
  Progress progress(*self, call);
  Check check{CheckMeshes(looked, others, request, progress.Call()), self, meant, looked,
              Sentence("IDS_WB_CHECK_TITLE")};
  if (!check.result.done) progress.Rethrow();
  return check;
}

// ---- acts -----------------------------------------------------------------------------------------------

py::list MakeSets(const Check& check, const py::str& name) {
  Database& data = check.document->Data();
  std::vector<iterator> made;
  const ActResult result =
      PutFound(data, check.sets, check.looked, check.result, FromPython(name), check.title, made);
  if (!result.IsDone()) throw Failure(ToUtf8(Sentence(result.errorKey, {result.detail})));
  return WrapAll(check.document, made);
}

py::object NewGroup(const DocumentPtr& self, const py::str& name, const py::object& parts) {
  iterator made = 0;
  const std::vector<iterator> meant = PartsAmong(self->Data(), Unwrap(*self, parts));
  self->Require(GroupParts(self->Data(), meant, FromPython(name), made));
  return Wrap(self, made);
}

py::object NewMaterial(const DocumentPtr& self, const py::str& name, double youngsModulus, double poissonsRatio,
                       double density) {
  tagTMaterial record;
  record.name = CutName(FromPython(name));
  record.youngsModulus = youngsModulus;
  record.poissonsRatio = poissonsRatio;
  record.density = density;
  iterator itr = 0;
  self->Require(StoreMaterial(self->Data(), itr, record));
  return Wrap(self, itr);
}

void ShowOrHide(const DocumentPtr& self, const py::object& records, bool shown) {
  ShowRecords(self->Batch().Document(), Unwrap(*self, records), shown);
}

void BindFiles(py::class_<ScriptDocument, DocumentPtr>& document) {
  using namespace py::literals;
  document
      .def("import_file", &Import, "path"_a, "progress"_a = py::none(),
           "Adds what stands in a file as one act. Returns the new parts and mesh sets. What is to be known "
           "beside is "
           "warned of as Note.")
      .def(
          "save",
          [](const DocumentPtr& self, const Path& path) {
            if (path.extension() != ".qdw") throw py::value_error("names of documents end with .qdw");
            if (IScriptWindow* window = self->Window()) return self->Require(window->Save(path.string()) ? 1 : 0);
            self->Finish(self->Batch().Save(path.string()));
          },
          "path"_a, "Writes the document, complete or not at all. That of a window goes on there.")
      .def("export", &Export, "path"_a, "records"_a = py::none(), "units"_a = py::none(),
           "progress"_a = py::none(),
           "Writes a file in the format of its ending: all, or some records with what is nested in them. Returns "
           "how "
           "many parts, nodes, elements and groups stand in it.")
      .def("screenshot", &Screenshot, "path"_a, "size"_a = std::make_tuple(1280, 960), "view"_a = py::none(),
           "hide"_a = py::none(), "section"_a = py::none(),
           "Writes a picture of what is shown as PNG; the words are those of the command line. Without a size it "
           "is "
           "one of the window.")
      .def("close", &ScriptDocument::Close, "Closes the document. Its records are gone.")
      .def("__enter__", [](const DocumentPtr& self) { return self; })
      .def("__exit__", [](const DocumentPtr& self, const py::args&) { self->Close(); });
}

void BindLooking(py::class_<ScriptDocument, DocumentPtr>& document) {
  using namespace py::literals;
  const auto list = [&document](const char* name, auto pool, const char* help) {
    document.def_property_readonly(
        name, [pool](const DocumentPtr& self) { return WrapAll(self, pool(self->Data()).GetItrList()); }, help);
  };
  list(
      "parts", [](Database& data) -> GeomPool& { return data.GetGeomPool(); }, "All parts.");
  list(
      "mesh_sets", [](Database& data) -> MsetPool& { return data.GetMsetPool(); }, "All mesh sets.");
  list(
      "groups", [](Database& data) -> GsetPool& { return data.GetGsetPool(); }, "All geometry sets.");
  list(
      "materials", [](Database& data) -> MaterialPool& { return data.GetMaterialPool(); }, "All materials.");
  list(
      "coordinate_systems", [](Database& data) -> CordPool& { return data.GetCordPool(); },
      "All coordinate systems.");
  document
      .def_property_readonly(
          "name", [](const DocumentPtr& self) { return ToPython(self->Batch().Document().GetPathName()); },
          "What the trees call the document.")
      .def_property(
          "units", [](const DocumentPtr& self) { return ToPython(self->Batch().Units().length); },
          [](const DocumentPtr& self, const std::string& length) { self->SetUnits(UnitsOf(length)); },
          "The unit of length that numbers are meant in: 'mm', 'm' or 'in'. They are not converted.")
      .def("at", &At, "kind"_a, "id"_a,
           "The record of a kind, 'part', 'mesh_set', 'group', 'material' or 'coordinate_system', with a number.")
      .def("find", &Find, "query"_a, "The records that a query of the find bar matches.")
      .def("walk", &Walk, "tree"_a = "model",
           "Rows of a tree, 'model' or 'sets', from top to bottom: level, title, and record or None.")
      .def("tree", &TreeText, "Both trees as text.")
      .def("info", &Info, "records"_a = py::none(), "units"_a = py::none(), "progress"_a = py::none(),
           "Counts, box, masses and quality of all records, or of some.")
      .def("check", &RunCheck, "what"_a = "quality", "sets"_a = py::none(), "measure"_a = "aspect_ratio",
           "limit"_a = py::none(), "tolerance"_a = 0.0, "progress"_a = py::none(),
           "Looks through meshes for 'quality', 'free_edges', 'duplicate_nodes', 'unconnected_nodes', "
           "'turned_shells', "
           "'negative_volumes' or 'duplicate_elements'.");
}

void BindActs(py::class_<ScriptDocument, DocumentPtr>& document) {
  using namespace py::literals;
  document
      .def(
          "act",
          [](const DocumentPtr& self, std::string title) {
            return Act{self, std::move(title)};
          },
          "title"_a,
          "A block of acts that undo takes back as one. One that ends with an exception changes nothing.")
      .def(
          "undo", [](const DocumentPtr& self) { self->Require(self->Data().Undo()); }, "Takes the last act back.")
      .def(
          "redo", [](const DocumentPtr& self) { self->Require(self->Data().Redo()); }, "Does it again.")
      .def_property_readonly(
          "undo_title",
          [](const DocumentPtr& self) -> py::object {
            if (!self->Data().CanUndo()) return py::none();
            return ToPython(self->Data().UndoTitle());
          },
          "The title of the act that undo takes back, or None.")
      .def("mesh", &Mesh, "parts"_a = py::none(), "size"_a = 0.0, "second_order"_a = false, "mapped"_a = false,
           "dimension"_a = py::none(), "progress"_a = py::none(),
           "Meshes solids and surfaces, all or some, in elements of a size or of one that suits them; with a "
           "dimension "
           "of 2 the faces of solids, too. Returns the mesh sets.")
      .def("group", &NewGroup, "name"_a, "parts"_a, "Puts parts into a new geometry set.")
      .def("material", &NewMaterial, "name"_a, "youngs_modulus"_a = 0.0, "poissons_ratio"_a = 0.0,
           "density"_a = 0.0, "Makes a material.")
      .def(
          "show", [](const DocumentPtr& self, const py::object& records) { ShowOrHide(self, records, true); },
          "records"_a, "Shows parts, mesh sets and what is in geometry sets.")
      .def(
          "hide", [](const DocumentPtr& self, const py::object& records) { ShowOrHide(self, records, false); },
          "records"_a, "Hides them.")
      .def(
          "delete",
          [](const DocumentPtr& self, const py::object& records) {
            self->Require(self->Data().Delete(Unwrap(*self, records)));
          },
          "records"_a, "Deletes records as one act.");
}

}  // namespace

void BindDocument(py::module_& module) {
  using namespace py::literals;
  py::class_<Check>(module, "Check", "What a check of meshes has found.")
      .def_property_readonly(
          "looked", [](const Check& self) { return self.result.looked; }, "How much was looked at.")
      .def_property_readonly(
          "found", [](const Check& self) { return self.result.found; }, "How much of it was found.")
      .def_property_readonly(
          "worst", [](const Check& self) { return self.result.worst; }, "The worst quality.")
      .def_property_readonly(
          "mean", [](const Check& self) { return self.result.mean; }, "The mean quality.")
      .def_property_readonly(
          "elements",
          [](const Check& self) {
            std::vector<std::uint64_t> all;
            for (const auto& some : self.result.elements) all.insert(all.end(), some.begin(), some.end());
            return Copied(all);
          },
          "Numbers of the elements that were found.")
      .def_property_readonly(
          "nodes", [](const Check& self) { return Copied(self.result.nodes); },
          "Numbers of the nodes that were found.")
      .def_property_readonly(
          "edges", [](const Check& self) { return self.result.edges; },
          "Edges that were found, by the numbers of their nodes.")
      .def("make_sets", &MakeSets, "name"_a,
           "Makes mesh sets of what was found, as the dialog does. Returns them.");
  py::class_<Act>(module, "Act", "A block of acts, as Document.act makes it.")
      .def("__enter__",
           [](const Act& self) {
             self.document->Begin(self.title);
             return self.document;
           })
      .def("__exit__", [](const Act& self, const py::object& type, const py::object&, const py::object&) {
        self.document->End(type.is_none());
        return false;
      });
  py::class_<ScriptDocument, DocumentPtr> document(
      module, "Document", "An open document: parts, meshes, materials and what is shown.");
  document.def(py::init<>());
  BindFiles(document);
  BindLooking(document);
  BindActs(document);
  BindShapes(document);
  BindDocumentLooks(document);
  module.def(
      "current", [] { return Place().Current(); },
      "The document of the window that the script runs in; None without a window.");
  module.def("open", &Open, "path"_a, "progress"_a = py::none(),
             "Opens a document, or a new one with what stands in another file. The file stays as it is.");
}

}  // namespace qd::workbench::script

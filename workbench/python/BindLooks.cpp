// How records are shown, for Python.

#include <pybind11/stl.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>

#include "workbench/batch/LookActs.h"
#include "workbench/python/Script.h"
#include "workbench/python/Words.h"
#include "workbench/session/RecordQuery.h"

namespace qd::workbench::script {

namespace {

WorkDocument& DocumentOf(const Record& record) {
  record.Need();
  return record.document->Batch().Document();
}

std::uint32_t BitsOf(const std::set<std::string>& marks) {
  std::uint32_t bits = 0;
  for (const std::string& mark : marks) bits |= 1U << static_cast<unsigned>(PlaceOf(kMarkNames, mark, "marks"));
  return bits;
}

std::set<std::string> NamesOf(std::uint32_t bits) {
  std::set<std::string> names;
  for (std::size_t i = 0; i < kMarkNames.size(); ++i) {
    if ((bits >> i & 1U) != 0) names.insert(kMarkNames[i]);
  }
  return names;
}

template <typename Class, typename Names>
void AddLook(Class& bound, const Names& names, const char* help) {
  using Of = typename Class::type;
  bound.def_property(
      "mode", [&names](const Of& record) { return names[ModeOf(DocumentOf(record), record.itr)]; },
      [&names](const Of& record, const std::string& mode) {
        SetMode(DocumentOf(record), record.itr, static_cast<unsigned>(PlaceOf(names, mode, "modes")));
      },
      help);
  bound.def_property(
      "opacity", [](const Of& record) { return OpacityOf(DocumentOf(record), record.itr); },
      [](const Of& record, double opacity) {
        if (!(opacity >= 0 && opacity <= 1)) throw py::value_error("an opacity is 0 to 1");
        SetOpacity(DocumentOf(record), record.itr, opacity);
      },
      "How much hides what is behind, from 0 for nothing to 1.");
}

void ColourBy(const DocumentPtr& self, const std::string& by, const std::optional<double>& least,
              const std::optional<double>& greatest) {
  MeshDisplay::Colouring colouring = self->Batch().Document().GetDisplay().Meshes().GetColouring();
  if (least.has_value() != greatest.has_value() || (least && !(*least < *greatest))) {
    throw py::value_error("a range has a least and a greatest value");
  }
  const auto known = std::find(kMeshColourNames.begin(), kMeshColourNames.end(), by);
  if (known != kMeshColourNames.end()) {
    if (least) throw py::value_error("only qualities have a range");
    colouring.mode = static_cast<unsigned>(known - kMeshColourNames.begin());
  } else {
    colouring.mode = MeshDisplay::Colouring::kByQuality;
    colouring.quality = {.measure = static_cast<QualityMeasure>(PlaceOf(kQualityNames, by, "measures"))};
    if (least) {
      colouring.quality.isTyped = true;
      colouring.quality.least = *least;
      colouring.quality.greatest = *greatest;
    }
  }
  ColourMeshes(self->Batch().Document(), colouring);
}

/// A row of the model tree by what its branch lists, and the group or the kind of parts that it gathers.
void SetTick(const DocumentPtr& self, const std::string& branch, bool checked, const std::optional<Group>& group,
             const std::optional<std::string>& kind) {
  RowBox box;
  for (const std::uint16_t type : {kDataGeom, kDataGset, kDataMset, kDataCord, kDataMaterial}) {
    if (branch == ScriptKindOf(type)) box.branch = type;
  }
  if (box.branch == 0) throw py::value_error("no branch lists " + branch);
  if (group) box.itr = Unwrap(*self, py::cast(*group)).front();
  if (kind) box.kind = PlaceOf(kPartKindNames, *kind, "kinds");
  SetBox(self->Batch().Document(), box, checked);
}

}  // namespace

void BindLooks(py::class_<Part, Record>& part, py::class_<MeshSet, Record>& set) {
  AddLook(part, kPartModeNames, "How it is drawn: 'shading', 'edges', 'wireframe' or 'box'.");
  AddLook(set, kMeshModeNames,
          "How it is drawn: 'shading', 'edges', 'wireframe', 'free_faces', 'feature_edges', 'feature_shading' or "
          "'box'.");
  set.def_property(
      "shrunk", [](const MeshSet& self) { return MeshLookOf(DocumentOf(self), self.itr).shrink; },
      [](const MeshSet& self, bool shrunk) { SetShrunk(DocumentOf(self), self.itr, shrunk); },
      "Whether elements are drawn smaller, each by itself.");
  set.def_property(
      "marks", [](const MeshSet& self) { return NamesOf(MeshLookOf(DocumentOf(self), self.itr).addOns); },
      [](const MeshSet& self, const std::set<std::string>& marks) {
        SetMarks(DocumentOf(self), self.itr, BitsOf(marks));
      },
      "What is drawn beside elements, a set of 'nodes', 'node_ids', 'element_ids', 'nodal_systems', "
      "'element_systems' and 'material_systems'.");
}

void BindDocumentLooks(py::class_<ScriptDocument, DocumentPtr>& document) {
  using namespace py::literals;
  document
      .def(
          "mark_all",
          [](const DocumentPtr& self, const std::set<std::string>& marks) {
            SetMarks(self->Batch().Document(), 0, BitsOf(marks));
          },
          "marks"_a, "What is drawn beside elements of all mesh sets, those to come too; see MeshSet.marks.")
      .def(
          "isolate",
          [](const DocumentPtr& self, const py::object& records) {
            std::vector<iterator> meant = Unwrap(*self, records);
            const std::vector<iterator> parts = PartsAmong(self->Data(), meant);
            meant.insert(meant.end(), parts.begin(), parts.end());
            Isolate(self->Batch().Document(), meant);
          },
          "records"_a, "Shows some parts and mesh sets only, and keeps what was shown before.")
      .def(
          "leave_isolation", [](const DocumentPtr& self) { LeaveIsolation(self->Batch().Document()); },
          "Shows again what was shown before isolate, and what has come since.")
      .def("tick", &SetTick, "branch"_a, "on"_a, "group"_a = py::none(), "kind"_a = py::none(),
           "Ticks the box of a row that only gathers others, or takes the tick out, and shows or hides nothing: "
           "the "
           "row of the branch that lists 'part', 'group', 'mesh_set' or 'coordinate_system', of a group, or of a "
           "kind of "
           "parts in it.")
      .def("colour_meshes", &ColourBy, "by"_a, "least"_a = py::none(), "greatest"_a = py::none(),
           "Colours all meshes by 'set', 'property', 'material', 'type' or 'top_set', or by a measure of quality, "
           "as "
           "check has them, from one value to another or, without any, over what there is.")
      .def(
          "colour_parts",
          [](const DocumentPtr& self, const std::string& by) {
            if (by != "own" && by != "material")
              throw py::value_error("parts are coloured by 'own' or 'material'");
            ColourParts(self->Batch().Document(), by == "material");
          },
          "by"_a, "Shows all parts in their 'own' colours, or in those of their 'material'.")
      .def_property(
          "fades_meshed",
          [](const DocumentPtr& self) { return self->Batch().Document().GetDisplay().Parts().FadesMeshed(); },
          [](const DocumentPtr& self, bool fades) { FadeMeshed(self->Batch().Document(), fades); },
          "Whether parts fade whose own mesh is shown.")
      .def_property(
          "current_group",
          [](const DocumentPtr& self) { return Wrap(self, self->Data().GetGsetPool().GetCurrentSet()); },
          [](const DocumentPtr& self, const Group& group) {
            const iterator itr = Unwrap(*self, py::cast(group)).front();
            GsetPool& pool = self->Data().GetGsetPool();
            if (self->Data().IsInTransaction()) return self->Require(pool.SetCurrentSet(itr));
            pool.PutCurrentSet(itr);
          },
          "The geometry set that new parts go into.");
}

}  // namespace qd::workbench::script

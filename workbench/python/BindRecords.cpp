// Records as objects of Python.

#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>

#include "workbench/batch/ModelInfo.h"
#include "workbench/batch/RecordActs.h"
#include "workbench/python/Script.h"
#include "workbench/session/RecordColour.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench::script {

namespace {

std::string ColourText(COLORREF colour) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "#%02X%02X%02X", colour & 0xFFU, colour >> 8U & 0xFFU,
                colour >> 16U & 0xFFU);
  return text.data();
}

/// "#RRGGBB", or three numbers of 0 to 1.
COLORREF ColourFrom(const py::object& value) {
  if (!py::isinstance<py::str>(value)) {
    const auto parts = value.cast<std::array<double, 3>>();
    const auto byte = [](double part) {
      if (!(part >= 0 && part <= 1)) throw py::value_error("parts of colours are 0 to 1");
      return static_cast<unsigned>(std::lround(part * 255));
    };
    return Rgb(byte(parts[0]), byte(parts[1]), byte(parts[2]));
  }
  const auto text = value.cast<std::string>();
  constexpr std::size_t kLetters = 7;
  if (text.size() != kLetters || text[0] != '#' ||
      text.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos) {
    throw py::value_error("a colour is a text such as #FF8000, or three numbers of 0 to 1");
  }
  const unsigned long rgb = std::stoul(text.substr(1), nullptr, 16);
  return Rgb(rgb >> 16U & 0xFFU, rgb >> 8U & 0xFFU, rgb & 0xFFU);
}

const tagTGeom& At(const Part& part) {
  part.Need();
  return *part.Data().GetGeomPool().GetAtNU(part.itr);
}
const tagTMset& At(const MeshSet& set) {
  set.Need();
  return *set.Data().GetMsetPool().GetAtNU(set.itr);
}
const tagTMaterial& At(const Material& material) {
  material.Need();
  return *material.Data().GetMaterialPool().GetAtNU(material.itr);
}

std::string Shown(const py::object& self) {
  const std::string kind = py::str(py::type::of(self).attr("__name__"));
  const auto& record = self.cast<const Record&>();
  if (!record.Exists()) return "<qd." + kind + ", gone>";
  const std::string name = py::repr(ToPython(NameOfRecord(record.Data(), record.itr)));
  return "<qd." + kind + " " + std::to_string(record.Data().GetRecordID(record.itr)) + " " + name + ">";
}

void SetShown(const Record& record, bool shown) {
  record.Need();
  ShowRecords(record.document->Batch().Document(), {record.itr}, shown);
}

/// Stores a material with one number changed.
template <double tagTMaterial::*kMember>
void SetNumber(const Material& material, double value) {
  tagTMaterial record = At(material);
  record.*kMember = value;
  iterator itr = material.itr;
  material.document->Require(StoreMaterial(material.Data(), itr, record));
}

template <double PartShape::*kMember>
double Measure(const Part& part) {
  const tagTGeom& record = At(part);
  return record.shape != nullptr ? (*record.shape).*kMember : 0;
}

template <typename Class>
void AddColour(Class& bound) {
  using Of = typename Class::type;
  bound.def_property(
      "colour", [](const Of& record) { return ColourText(At(record).colour); },
      [](const Of& record, const py::object& value) {
        record.Need();
        const COLORREF colour = ColourFrom(value);
        if (At(record).colour != colour) record.document->Require(Recolour(record.Data(), record.itr, colour));
      },
      "The colour as '#RRGGBB'. Takes three numbers of 0 to 1 too.");
}

void BindParts(py::class_<Part, Record>& part) {
  AddColour(part);
  part.def_property_readonly(
      "kind", [](const Part& self) { return kPartKindNames[static_cast<std::size_t>(At(self).kind)]; },
      "'point', 'curve', 'surface', 'solid' or 'compound'.");
  part.def_property_readonly("volume", &Measure<&PartShape::volume>, "Volume, 0 for what has none.");
  part.def_property_readonly("area", &Measure<&PartShape::area>, "Area of all faces.");
  part.def_property_readonly("length", &Measure<&PartShape::length>, "Length of all edges.");
  part.def_property(
      "flexible", [](const Part& self) { return At(self).flexible; },
      [](const Part& self, bool flexible) {
        if (At(self).flexible != flexible) self.document->Require(SetFlexible(self.Data(), {self.itr}, flexible));
      },
      "Whether a solid is a flexible body, or a rigid one.");
  part.def_property(
      "material", [](const Part& self) { return Wrap(self.document, At(self).material); },
      [](const Part& self, const std::optional<Material>& material) {
        self.Need();
        const iterator itr = material ? Unwrap(*self.document, py::cast(*material)).front() : 0;
        self.document->Require(SetMaterial(self.Data(), {self.itr}, itr));
      },
      "What the part is made of, a Material or None.");
  part.def_property(
      "group", [](const Part& self) { return Wrap(self.document, At(self).gset); },
      [](const Part& self, const Group& group) {
        self.Need();
        const iterator itr = Unwrap(*self.document, py::cast(group)).front();
        self.document->Require(MoveParts(self.Data(), {self.itr}, itr));
      },
      "The geometry set that the part is in.");
  part.def_property_readonly(
      "assemblies",
      [](const Part& self) {
        std::vector<std::string> names;
        const tagTGeom& record = At(self);
        if (record.origin == nullptr) return names;
        for (const AssemblyUse& use : record.origin->assemblies) names.push_back(ToUtf8(use.product));
        return names;
      },
      "Names of the assemblies of the file that hold the part, the outermost first.");
  part.def_property_readonly(
      "mesh",
      [](const Part& self) {
        self.Need();
        return Wrap(self.document, self.Data().GetMsetPool().GetItrByGeomItr(self.itr));
      },
      "The mesh set that meshes the part, or None.");
}

void BindMeshSets(py::class_<MeshSet, Record>& set) {
  AddColour(set);
  set.def_property(
      "parent",
      [](const MeshSet& self) {
        return Wrap(self.document, self.Data().GetMsetPool().GetItrByKey(At(self).parent & kMsetKeyMask));
      },
      [](const MeshSet& self, const std::optional<MeshSet>& parent) {
        self.Need();
        const iterator itr = parent ? Unwrap(*self.document, py::cast(*parent)).front() : 0;
        self.document->Require(NestMeshSet(self.Data(), self.itr, itr));
      },
      "The mesh set that this one is nested in, or None.");
  set.def_property_readonly(
      "children",
      [](const MeshSet& self) {
        TArray<iterator> below;
        self.Data().GetMsetPool().GetItrListByParentMsetK(At(self).key & kMsetKeyMask, below);
        return WrapAll(self.document, {below.begin(), below.end()});
      },
      "The mesh sets that are nested in this one.");
  set.def(
      "merge",
      [](const MeshSet& self, const py::object& sets) {
        self.Need();
        const std::vector<iterator> others = Unwrap(*self.document, sets);
        const bool fit = std::all_of(others.begin(), others.end(),
                                     [&](iterator itr) { return self.Data().GetDataType(itr) == kDataMset; });
        if (!fit) throw py::type_error("mesh sets are wanted");
        self.document->Require(MergeMeshSets(self.Data(), self.itr, others));
      },
      py::arg("sets"), "Takes other mesh sets into this one.");
  set.def_property_readonly(
      "part", [](const MeshSet& self) { return Wrap(self.document, At(self).geom); },
      "The part that the set meshes, or None.");
  set.def_property_readonly(
      "node_count", [](const MeshSet& self) { return At(self).nodeCount; }, "How many nodes the set holds.");
  set.def_property_readonly(
      "element_count", [](const MeshSet& self) { return At(self).elementCount; },
      "How many elements the set holds, without those of nested sets.");
}

void BindOthers(py::module_& module) {
  py::class_<Group, Record>(module, "Group", "A geometry set: a named group of parts.")
      .def_property_readonly(
          "parts",
          [](const Group& self) {
            self.Need();
            return WrapAll(self.document, self.Data().GetGeomPool().PartsOf(self.itr));
          },
          "The parts in the set.");
  py::class_<Material, Record> material(module, "Material", "A material. Numbers are in units of the document.");
  AddColour(material);
  material
      .def_property(
          "youngs_modulus", [](const Material& self) { return At(self).youngsModulus; },
          &SetNumber<&tagTMaterial::youngsModulus>, "Young's modulus.")
      .def_property(
          "poissons_ratio", [](const Material& self) { return At(self).poissonsRatio; },
          &SetNumber<&tagTMaterial::poissonsRatio>, "Poisson's ratio.")
      .def_property(
          "density", [](const Material& self) { return At(self).density; }, &SetNumber<&tagTMaterial::density>,
          "Mass per volume.");
  BindSystems(module);
}

}  // namespace

void BindRecords(py::module_& module) {
  py::class_<Record>(
      module, "Record",
      "A record of a document. It is looked up at each use: what was deleted raises GoneError, and is "
      "there again when that is taken back.")
      .def_property_readonly("exists", &Record::Exists, "Whether the record is there.")
      .def_property_readonly(
          "document", [](const Record& self) { return self.document; }, "The document that the record is in.")
      .def_property_readonly(
          "id",
          [](const Record& self) {
            self.Need();
            return self.Data().GetRecordID(self.itr);
          },
          "The number that the trees show.")
      .def_property(
          "name",
          [](const Record& self) {
            self.Need();
            return ToPython(NameOfRecord(self.Data(), self.itr));
          },
          [](const Record& self, const py::str& name) {
            self.Need();
            self.document->Require(RenameRecord(self.Data(), self.itr, FromPython(name)));
          },
          "The name. Raises Error for one that the record may not have.")
      .def_property(
          "shown",
          [](const Record& self) {
            self.Need();
            return IsShown(self.document->Batch().Document(), self.itr);
          },
          &SetShown, "Whether a part or a mesh set is shown.")
      .def(
          "delete",
          [](const Record& self) {
            self.Need();
            self.document->Require(self.Data().Delete({self.itr}));
          },
          "Deletes the record.")
      .def("__eq__", [](const Record& self, const Record& other) { return self == other; })
      .def("__eq__", [](const Record&, const py::object&) { return false; })
      .def("__hash__",
           [](const Record& self) {
             return std::hash<iterator>()(self.itr) ^ std::hash<const void*>()(self.document.get());
           })
      .def("__repr__", &Shown);
  py::class_<Part, Record> part(module, "Part", "A part: a body with its exact shape and its facets.");
  py::class_<MeshSet, Record> meshSet(module, "MeshSet", "A mesh set: nodes and elements under a name.");
  BindOthers(module);
  BindParts(part);
  BindMeshSets(meshSet);
  BindMeshes(module, part, meshSet);
  BindLooks(part, meshSet);
}

}  // namespace qd::workbench::script

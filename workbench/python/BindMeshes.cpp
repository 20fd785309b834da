// Nodes, elements and triangles as arrays of NumPy, which look into the records themselves: nothing is copied, and
// nothing can be written to.

#include <pybind11/numpy.h>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/python/Script.h"

namespace qd::workbench::script {

namespace {

/// An array over values that stand as long as `owner` does.
template <typename Value, typename Owner>
py::array View(const std::vector<Value>& values, std::vector<py::ssize_t> shape,
               const std::shared_ptr<Owner>& owner) {
  auto held = std::make_unique<std::shared_ptr<Owner>>(owner);
  const py::capsule keeper(held.release(), [](void* pointer) {
    std::unique_ptr<std::shared_ptr<Owner>>(static_cast<std::shared_ptr<Owner>*>(pointer));
  });
  py::array_t<Value> array(std::move(shape), values.data(), keeper);
  array.attr("flags").attr("writeable") = false;
  return array;
}

template <typename Value, typename Owner>
py::array Table(const std::vector<Value>& values, std::size_t columns, const std::shared_ptr<Owner>& owner) {
  const auto wide = static_cast<py::ssize_t>(columns);
  return View(values, {wide > 0 ? static_cast<py::ssize_t>(values.size()) / wide : 0, wide}, owner);
}

template <typename Value, typename Owner>
py::array Column(const std::vector<Value>& values, const std::shared_ptr<Owner>& owner) {
  return View(values, {static_cast<py::ssize_t>(values.size())}, owner);
}

/// Elements of one kind of a mesh set, as they were when they were asked for.
struct Block {
  std::shared_ptr<const MeshData> mesh;
  std::size_t place = 0;
  const MeshData::Block& Data() const { return mesh->blocks[place]; }
};

std::shared_ptr<const PartShape> ShapeOf(const Part& part) {
  static const auto kNone = std::make_shared<const PartShape>();
  part.Need();
  const auto& shape = part.Data().GetGeomPool().GetAtNU(part.itr)->shape;
  return shape != nullptr ? shape : kNone;
}

std::shared_ptr<const MeshData> MeshOf(const MeshSet& set) {
  static const auto kNone = std::make_shared<const MeshData>();
  set.Need();
  const auto& mesh = set.Data().GetMsetPool().GetAtNU(set.itr)->mesh;
  return mesh != nullptr ? mesh : kNone;
}

}  // namespace

void BindMeshes(py::module_& module, py::class_<Part, Record>& part, py::class_<MeshSet, Record>& meshSet) {
  constexpr std::size_t kSpace = 3;
  py::class_<Block>(module, "Block", "Elements of one kind of a mesh set.")
      .def_property_readonly(
          "type", [](const Block& self) { return self.Data().elementType; }, "The number of the kind of element.")
      .def_property_readonly(
          "type_name",
          [](const Block& self) {
            const ElementType* type = FindElementType(self.Data().elementType);
            return type != nullptr ? std::string(type->name) : std::string();
          },
          "The name of the kind of element.")
      .def_property_readonly(
          "element_ids", [](const Block& self) { return Column(self.Data().elementIds, self.mesh); },
          "Numbers of the elements.")
      .def_property_readonly(
          "node_ids",
          [](const Block& self) {
            const MeshData::Block& data = self.Data();
            return Table(data.nodeIds, static_cast<std::size_t>(data.nodesPerElement), self.mesh);
          },
          "Numbers of the nodes of each element, a row each.")
      .def("__len__", [](const Block& self) { return self.Data().elementIds.size(); });

  part.def_property_readonly(
      "points",
      [](const Part& self) {
        const auto shape = ShapeOf(self);
        return Table(shape->facets.points, kSpace, shape);
      },
      "Points of the facets, a row each.");
  part.def_property_readonly(
      "triangles",
      [](const Part& self) {
        const auto shape = ShapeOf(self);
        return Table(shape->facets.triangles, kSpace, shape);
      },
      "Triangles of the facets, a row of three rows of `points` each.");
  part.def_property_readonly(
      "brep", [](const Part& self) { return py::bytes(ShapeOf(self)->brep); },
      "The exact shape, in the exchange form of the geometry kernel.");
  meshSet.def_property_readonly(
      "node_ids",
      [](const MeshSet& self) {
        const auto mesh = MeshOf(self);
        return Column(mesh->nodeIds, mesh);
      },
      "Numbers of the nodes, ascending.");
  meshSet.def_property_readonly(
      "coordinates",
      [](const MeshSet& self) {
        const auto mesh = MeshOf(self);
        return Table(mesh->coordinates, kSpace, mesh);
      },
      "Places of the nodes, a row beside each of `node_ids`.");
  meshSet.def_property_readonly(
      "blocks",
      [](const MeshSet& self) {
        const auto mesh = MeshOf(self);
        py::list blocks;
        for (std::size_t place = 0; place < mesh->blocks.size(); ++place) blocks.append(Block{mesh, place});
        return blocks;
      },
      "The elements, kind by kind.");
}

}  // namespace qd::workbench::script

#include <gmsh.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <sstream>

#include "workbench/exchange/child/Operation.h"
#include "workbench/exchange/child/Shapes.h"
#include "workbench/mesh/ElementSize.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/NumberHash.h"

namespace qd::workbench {

namespace {

/// The library, from start to end.
class Session {
 public:
  Session() {
    gmsh::initialize(0, nullptr, false);  // settings of the user's are not the file's
    // What it prints goes nowhere, but shows that it gets on.
    gmsh::option::setNumber("General.Terminal", 1);
    gmsh::option::setNumber("General.AbortOnError", 2);
  }
  ~Session() { gmsh::finalize(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};

using Coordinates = NumberMap<std::array<double, 3>>;

Coordinates AllNodes() {
  std::vector<std::size_t> tags;
  std::vector<double> coordinates;
  std::vector<double> parameters;
  gmsh::model::mesh::getNodes(tags, coordinates, parameters);
  Coordinates nodes;
  nodes.reserve(tags.size());
  for (std::size_t i = 0; i < tags.size(); ++i) {
    nodes[tags[i]] = {coordinates[3 * i], coordinates[3 * i + 1], coordinates[3 * i + 2]};
  }
  return nodes;
}

/// Adds the elements of one entity, one block per element type.
void AddElements(int dimension, int entity, MeshData& mesh) {
  std::vector<int> types;
  std::vector<std::vector<std::size_t>> elements;
  std::vector<std::vector<std::size_t>> nodes;
  gmsh::model::mesh::getElements(types, elements, nodes, dimension, entity);
  for (std::size_t i = 0; i < types.size(); ++i) {
    if (elements[i].empty()) continue;
    MeshData::Block& block = mesh.blocks.emplace_back();
    block.elementType = types[i];
    block.nodesPerElement = static_cast<int>(nodes[i].size() / elements[i].size());
    block.elementIds.assign(elements[i].begin(), elements[i].end());
    block.nodeIds.assign(nodes[i].begin(), nodes[i].end());
  }
}

/// Gives the mesh the nodes that its elements use, in ascending order.
void AddUsedNodes(const Coordinates& nodes, MeshData& mesh) {
  for (const MeshData::Block& block : mesh.blocks) {
    mesh.nodeIds.insert(mesh.nodeIds.end(), block.nodeIds.begin(), block.nodeIds.end());
  }
  std::sort(mesh.nodeIds.begin(), mesh.nodeIds.end());
  mesh.nodeIds.erase(std::unique(mesh.nodeIds.begin(), mesh.nodeIds.end()), mesh.nodeIds.end());
  for (const std::uint64_t node : mesh.nodeIds) {
    const auto found = nodes.find(node);
    if (found == nodes.end()) throw ImportError{"IDS_WB_IMPORT_NODE", std::to_string(node)};
    mesh.coordinates.insert(mesh.coordinates.end(), found->second.begin(), found->second.end());
  }
}

void CheckElementTypes(const MeshData& mesh) {
  for (const MeshData::Block& block : mesh.blocks) {
    if (FindElementType(block.elementType) == nullptr) {
      throw ImportError{"IDS_WB_IMPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
    }
  }
}

/// Refuses a size of which more elements would come than the program can hold: the library would work until all
/// memory is taken.
void CheckSize(double size, int dimension) {
  std::array<double, 3> amounts{};  // length, area, volume
  for (int i = 1; i <= dimension; ++i) {
    gmsh::vectorpair entities;
    gmsh::model::getEntities(entities, i);
    for (const auto& [entityDimension, tag] : entities) {
      double mass = 0;
      gmsh::model::occ::getMass(entityDimension, tag, mass);
      amounts[static_cast<std::size_t>(i) - 1] += std::abs(mass);
    }
  }
  const double least = LeastSize(amounts[0], amounts[1], amounts[2]);
  if (size >= least) return;
  std::ostringstream text;
  text << least;
  throw ImportError{"IDS_WB_OPERATION_FINE", text.str()};
}

/// Meshes one shape and sends its elements of the wanted dimension.
void MeshOne(const ShapeOperation& operation, const ShapeOperation::Operand& operand, Sink& sink) {
  const TopoDS_Shape shape = ShapeOf(operand.brep);
  if (shape.IsNull()) throw std::string("no shape");
  gmsh::model::add(operand.name);
  gmsh::vectorpair entities;
  gmsh::model::occ::importShapesNativePointer(&shape, entities);
  gmsh::model::occ::synchronize();
  const int dimension = std::min(gmsh::model::getDimension(), static_cast<int>(operation.dimension));
  CheckSize(operation.amount, dimension);
  gmsh::option::setNumber("Mesh.MeshSizeMin", operation.amount / 2);
  gmsh::option::setNumber("Mesh.MeshSizeMax", operation.amount);
  gmsh::option::setNumber("Mesh.ElementOrder", operation.secondOrder ? 2 : 1);
  gmsh::option::setNumber("Mesh.SecondOrderIncomplete", 1);
  if (operation.mapped) gmsh::model::mesh::setTransfiniteAutomatic();
  gmsh::model::mesh::generate(dimension);
  ImportedMeshSet set;
  set.name = operand.name;
  gmsh::model::getEntities(entities, dimension);
  for (const auto& [entityDimension, tag] : entities) AddElements(entityDimension, tag, set.mesh);
  CheckElementTypes(set.mesh);
  AddUsedNodes(AllNodes(), set.mesh);
  gmsh::model::remove();
  if (set.mesh.blocks.empty()) throw std::string("no elements");
  const auto isMapped = [](const MeshData::Block& block) {
    const ElementShape kind = FindElementType(block.elementType)->shape;
    return kind == ElementShape::Quadrangle || kind == ElementShape::Hexahedron;
  };
  if (operation.mapped && !std::all_of(set.mesh.blocks.begin(), set.mesh.blocks.end(), isMapped)) {
    throw ImportError{"IDS_WB_OPERATION_UNMAPPED", operand.name};
  }
  sink.MeshSet(set);
}

}  // namespace

void MeshOperands(const ShapeOperation& operation, Sink& sink) {
  if (!(operation.amount > 0)) throw ImportError{"IDS_WB_OPERATION_ZERO", ""};
  const Session session;
  double done = 0;
  for (const ShapeOperation::Operand& operand : operation.operands) {
    try {
      MeshOne(operation, operand, sink);
    } catch (const std::string& reason) {
      throw ImportError{"IDS_WB_OPERATION_MESH", operand.name + ": " + reason};
    } catch (int) {
      throw ImportError{"IDS_WB_OPERATION_MESH", operand.name};
    }
    sink.Progress(++done / static_cast<double>(operation.operands.size()));
  }
}

}  // namespace qd::workbench

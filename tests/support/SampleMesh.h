#pragma once

#include <cmath>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/model/Database.h"

namespace qd::test {

/// One element of a kind in the unit cube, shifted along x; its middle nodes lie in the middle of its edges, and
/// all its numbers follow `last`.
inline workbench::MeshPtr OneElement(int elementType, double shift, std::uint64_t last) {
  using workbench::ElementShape;
  const workbench::ElementType& type = *workbench::FindElementType(elementType);
  const auto corners = [&]() -> std::vector<std::array<double, 3>> {
    switch (type.shape) {
      case ElementShape::Point:
        return {{0, 0, 0}};
      case ElementShape::Line:
        return {{0, 0, 0}, {1, 0, 0}};
      case ElementShape::Triangle:
        return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
      case ElementShape::Quadrangle:
        return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
      case ElementShape::Tetrahedron:
        return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
      case ElementShape::Hexahedron:
        return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
      case ElementShape::Prism:
        return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
      case ElementShape::Pyramid:
        return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.5, 1}};
    }
    return {};
  }();
  auto mesh = std::make_shared<MeshData>();
  MeshData::Block block;
  block.elementType = elementType;
  block.nodesPerElement = type.nodes;
  block.elementIds = {last + 1};
  const auto add = [&](const std::array<double, 3>& at) {
    mesh->nodeIds.push_back(last + mesh->nodeIds.size() + 1);
    mesh->coordinates.insert(mesh->coordinates.end(), {at[0] + shift, at[1], at[2]});
    block.nodeIds.push_back(mesh->nodeIds.back());
  };
  for (const auto& corner : corners) add(corner);
  for (const auto& edge : workbench::MiddleNodes(elementType)) {
    std::array<double, 3> middle{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      middle[axis] =
          (corners[static_cast<std::size_t>(edge[0])][axis] + corners[static_cast<std::size_t>(edge[1])][axis]) /
          2;
    }
    add(middle);
  }
  while (block.nodeIds.size() < static_cast<std::size_t>(type.nodes)) add({0.5, 0.5, 0});
  mesh->blocks.push_back(block);
  return mesh;
}

/// Where the middle nodes of all elements of a mesh are not in the middle of their edges.
inline int CountBentEdges(const MeshData& mesh) {
  int bent = 0;
  for (const MeshData::Block& block : mesh.blocks) {
    const auto middles = workbench::MiddleNodes(block.elementType);
    const auto width = static_cast<std::size_t>(block.nodesPerElement);
    const auto corners = width - middles.size();
    for (std::size_t first = 0; first < block.nodeIds.size(); first += width) {
      for (std::size_t i = 0; i < middles.size(); ++i) {
        const auto at = [&](std::size_t node, std::size_t axis) {
          return mesh.coordinates[workbench::PlaceOfNode(mesh, block.nodeIds[first + node]) * 3 + axis];
        };
        for (std::size_t axis = 0; axis < 3; ++axis) {
          const double middle = (at(static_cast<std::size_t>(middles[i][0]), axis) +
                                 at(static_cast<std::size_t>(middles[i][1]), axis)) /
                                2;
          if (std::abs(middle - at(corners + i, axis)) > 1e-6) ++bent;
        }
      }
    }
  }
  return bent;
}

}  // namespace qd::test

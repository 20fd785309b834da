#pragma once

#include <array>
#include <span>
#include <string_view>

namespace qd::workbench {

/// What elements look like, whatever the order of their shape functions.
enum class ElementShape { Point, Line, Triangle, Quadrangle, Tetrahedron, Hexahedron, Prism, Pyramid };

/// One side of an element, by corner; the last corner of a triangle is -1. Seen from outside the corners go round
/// against the clock.
using ElementFace = std::array<int, 4>;

/// Topology of a shape by its corners.
struct ElementTopology {
  ElementShape shape;
  int dimension;
  int corners;
  std::span<const ElementFace> faces;              ///< of solids; the element itself for surfaces
  std::span<const std::array<int, 2>> edges;       ///< of surfaces and solids; the element itself for lines
  std::span<const std::array<int, 4>> tetrahedra;  ///< that fill a solid
};

/// A kind of element: shape and order. Corner nodes come first among its nodes.
struct ElementType {
  int number;             ///< of the mesh file library, which records use
  std::string_view name;  ///< as solver users know it
  ElementShape shape;
  int nodes;
};

/// All kinds that the workbench knows, in ascending number.
std::span<const ElementType> ElementTypes();
/// Null for a kind that it does not know.
const ElementType* FindElementType(int number);
const ElementTopology& TopologyOf(ElementShape shape);
/// The edges, by their corners, in whose middle the nodes behind the corners lie; nothing for kinds of first order
/// and for those that have nodes in faces or inside.
std::span<const std::array<int, 2>> MiddleNodes(int number);

}  // namespace qd::workbench

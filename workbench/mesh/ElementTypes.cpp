#include "workbench/mesh/ElementTypes.h"

#include <algorithm>

namespace qd::workbench {

namespace {

using Edge = std::array<int, 2>;
using Tet = std::array<int, 4>;

constexpr std::array<Edge, 1> kLineEdges{{{0, 1}}};
constexpr std::array<ElementFace, 1> kTriangleFaces{{{0, 1, 2, -1}}};
constexpr std::array<Edge, 3> kTriangleEdges{{{0, 1}, {1, 2}, {2, 0}}};
constexpr std::array<ElementFace, 1> kQuadrangleFaces{{{0, 1, 2, 3}}};
constexpr std::array<Edge, 4> kQuadrangleEdges{{{0, 1}, {1, 2}, {2, 3}, {3, 0}}};
constexpr std::array<ElementFace, 4> kTetFaces{{{0, 2, 1, -1}, {0, 1, 3, -1}, {0, 3, 2, -1}, {1, 2, 3, -1}}};
constexpr std::array<Edge, 6> kTetEdges{{{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}}};
constexpr std::array<Tet, 1> kTetTets{{{0, 1, 2, 3}}};
constexpr std::array<ElementFace, 6> kHexFaces{
    {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}};
constexpr std::array<Edge, 12> kHexEdges{
    {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}}};
// Around the diagonal from corner 0 to corner 6.
constexpr std::array<Tet, 6> kHexTets{
    {{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}}};
constexpr std::array<ElementFace, 5> kPrismFaces{
    {{0, 2, 1, -1}, {3, 4, 5, -1}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}}};
constexpr std::array<Edge, 9> kPrismEdges{
    {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}}};
constexpr std::array<Tet, 3> kPrismTets{{{0, 1, 2, 5}, {0, 1, 5, 4}, {0, 4, 5, 3}}};
constexpr std::array<ElementFace, 5> kPyramidFaces{
    {{0, 3, 2, 1}, {0, 1, 4, -1}, {1, 2, 4, -1}, {2, 3, 4, -1}, {3, 0, 4, -1}}};
constexpr std::array<Edge, 8> kPyramidEdges{{{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}}};
constexpr std::array<Tet, 2> kPyramidTets{{{0, 1, 2, 4}, {0, 2, 3, 4}}};

constexpr std::array<ElementTopology, 8> kTopologies{
    {{ElementShape::Point, 0, 1, {}, {}, {}},
     {ElementShape::Line, 1, 2, {}, kLineEdges, {}},
     {ElementShape::Triangle, 2, 3, kTriangleFaces, kTriangleEdges, {}},
     {ElementShape::Quadrangle, 2, 4, kQuadrangleFaces, kQuadrangleEdges, {}},
     {ElementShape::Tetrahedron, 3, 4, kTetFaces, kTetEdges, kTetTets},
     {ElementShape::Hexahedron, 3, 8, kHexFaces, kHexEdges, kHexTets},
     {ElementShape::Prism, 3, 6, kPrismFaces, kPrismEdges, kPrismTets},
     {ElementShape::Pyramid, 3, 5, kPyramidFaces, kPyramidEdges, kPyramidTets}}};

constexpr std::array<ElementType, 19> kTypes{{{1, "Line 2", ElementShape::Line, 2},
                                              {2, "Tria 3", ElementShape::Triangle, 3},
                                              {3, "Quad 4", ElementShape::Quadrangle, 4},
                                              {4, "Tetra 4", ElementShape::Tetrahedron, 4},
                                              {5, "Hexa 8", ElementShape::Hexahedron, 8},
                                              {6, "Penta 6", ElementShape::Prism, 6},
                                              {7, "Pyra 5", ElementShape::Pyramid, 5},
                                              {8, "Line 3", ElementShape::Line, 3},
                                              {9, "Tria 6", ElementShape::Triangle, 6},
                                              {10, "Quad 9", ElementShape::Quadrangle, 9},
                                              {11, "Tetra 10", ElementShape::Tetrahedron, 10},
                                              {12, "Hexa 27", ElementShape::Hexahedron, 27},
                                              {13, "Penta 18", ElementShape::Prism, 18},
                                              {14, "Pyra 14", ElementShape::Pyramid, 14},
                                              {15, "Point", ElementShape::Point, 1},
                                              {16, "Quad 8", ElementShape::Quadrangle, 8},
                                              {17, "Hexa 20", ElementShape::Hexahedron, 20},
                                              {18, "Penta 15", ElementShape::Prism, 15},
                                              {19, "Pyra 13", ElementShape::Pyramid, 13}}};

}  // namespace

std::span<const ElementType> ElementTypes() {
  return kTypes;
}

const ElementType* FindElementType(int number) {
  const bool known = number >= 1 && static_cast<std::size_t>(number) <= kTypes.size();
  return known ? &kTypes[static_cast<std::size_t>(number) - 1] : nullptr;
}

std::span<const std::array<int, 2>> MiddleNodes(int number) {
  static constexpr std::array<Edge, 6> kTet{{{0, 1}, {1, 2}, {0, 2}, {0, 3}, {2, 3}, {1, 3}}};
  static constexpr std::array<Edge, 12> kHex{
      {{0, 1}, {0, 3}, {0, 4}, {1, 2}, {1, 5}, {2, 3}, {2, 6}, {3, 7}, {4, 5}, {4, 7}, {5, 6}, {6, 7}}};
  static constexpr std::array<Edge, 9> kPrism{
      {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 4}, {2, 5}, {3, 4}, {3, 5}, {4, 5}}};
  static constexpr std::array<Edge, 8> kPyramid{{{0, 1}, {0, 3}, {0, 4}, {1, 2}, {1, 4}, {2, 3}, {2, 4}, {3, 4}}};
  switch (number) {
    case 8:
      return kLineEdges;
    case 9:
      return kTriangleEdges;
    case 11:
      return kTet;
    case 16:
      return kQuadrangleEdges;
    case 17:
      return kHex;
    case 18:
      return kPrism;
    case 19:
      return kPyramid;
    default:
      return {};
  }
}

const ElementTopology& TopologyOf(ElementShape shape) {
  return kTopologies[static_cast<std::size_t>(shape)];
}

}  // namespace qd::workbench

// What a plane cuts out of solids and meshes: areas that are known.

#include <cmath>
#include <numbers>

#include "support/ManyParts.h"
#include "workbench/display/Sections.h"
#include "workbench/mesh/SectionCut.h"

namespace qd::test {
namespace {

using namespace workbench;

double AreaOf(const SectionCut& cut) {
  double area = 0;
  for (std::size_t i = 0; i < cut.triangles.size(); i += 3) {
    Vector3 corner[3];
    for (std::size_t c = 0; c < 3; ++c) {
      const float* at = &cut.points[cut.triangles[i + c] * 3];
      corner[c] = {at[0], at[1], at[2]};
    }
    area += Length(Cross(corner[1] - corner[0], corner[2] - corner[0])) / 2;
  }
  return area;
}

CutPlane Plane(const Vector3& point, const Vector3& normal) {
  return {point, normal * (1 / Length(normal))};
}

/// A tube without ends, of quadrilaterals round the z axis, from -1 to 1.
void AddTube(PartFacets& facets, double radius, int sides, double x = 0, double y = 0) {
  const auto first = static_cast<std::uint32_t>(facets.points.size() / 3);
  for (int i = 0; i < sides; ++i) {
    const double angle = 2 * std::numbers::pi * i / sides;
    for (const float z : {-1.0F, 1.0F}) {
      facets.points.insert(facets.points.end(), {static_cast<float>(x + radius * std::cos(angle)),
                                                 static_cast<float>(y + radius * std::sin(angle)), z});
    }
  }
  const auto count = static_cast<std::uint32_t>(2 * sides);
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t a = first + i;
    const std::uint32_t b = first + (i + 2) % count;
    facets.triangles.insert(facets.triangles.end(), {a, b, b + 1, a, b + 1, a + 1});
  }
}

TEST(SectionCut, OfABlockIsItsCrossSection) {
  const PartFacets block = SmallBlock(2, 3, 4)->facets;
  const Vector3 middle{2.35, 3.35, 4.35};
  EXPECT_NEAR(AreaOf(CutSolid(block, Plane(middle, {0, 0, 1}))), 0.49, 1e-5);
  EXPECT_NEAR(AreaOf(CutSolid(block, Plane(middle, {0, -1, 0}))), 0.49, 1e-5);
  EXPECT_NEAR(AreaOf(CutSolid(block, Plane(middle, {1, 1, 0}))), 0.49 * std::sqrt(2.0), 1e-5);
  EXPECT_NEAR(AreaOf(CutSolid(block, Plane(middle, {1, 1, 1}))), 0.49 * 3 * std::sqrt(3.0) / 4, 1e-5)
      << "a hexagon";
  // In the plane of a face: from one side the block is cut, from the other it is not.
  const double low = AreaOf(CutSolid(block, Plane({2, 3, 4}, {0, 0, 1})));
  const double high = AreaOf(CutSolid(block, Plane({2, 3, 4}, {0, 0, -1})));
  EXPECT_NEAR(low + high, 0.49, 1e-5);
  EXPECT_EQ(AreaOf(CutSolid(block, Plane({2, 3, 9}, {0, 0, 1}))), 0);
  EXPECT_EQ(AreaOf(CutSolid({}, Plane(middle, {0, 0, 1}))), 0);
}

TEST(SectionCut, HolesStayOpenAndAGapCostsAStripOnly) {
  constexpr int kSides = 400;
  const auto disk = [](double radius) {
    return kSides / 2.0 * radius * radius * std::sin(2 * std::numbers::pi / kSides);
  };
  PartFacets pipe;
  AddTube(pipe, 1, kSides);
  AddTube(pipe, 0.5, kSides);
  const CutPlane across = Plane({0, 0, 0.1}, {0, 0, 1});
  EXPECT_NEAR(AreaOf(CutSolid(pipe, across)), disk(1) - disk(0.5), 1e-4);
  EXPECT_EQ(CutSolid(pipe, across).lines.size(), std::size_t{2 * 2 * 2 * kSides}) << "two triangles to each side";
  pipe.triangles.resize(pipe.triangles.size() - 6);
  EXPECT_NEAR(AreaOf(CutSolid(pipe, across)), disk(1) - disk(0.5), 0.05);
}

TEST(SectionCut, OfAPlateWithManyHolesGrowsWithTheirSidesOnly) {
  constexpr int kSides = 32;
  constexpr int kRows = 60;
  PartFacets plate;
  AddTube(plate, 100, 4, 30, 30);
  // No two holes stand at one height.
  for (int i = 0; i < kRows * kRows; ++i) AddTube(plate, 0.4, kSides, i % kRows, i / kRows + 1e-3 * (i % kRows));
  const SectionCut cut = CutSolid(plate, Plane({0, 0, 0.1}, {0, 0, 1}));
  const double hole = kSides / 2.0 * 0.16 * std::sin(2 * std::numbers::pi / kSides);
  EXPECT_NEAR(AreaOf(cut), 20'000 - kRows * kRows * hole, 1);
  EXPECT_LT(cut.triangles.size() / 3, std::size_t{2 * 3 * kRows * kRows * kSides});
}

TEST(SectionCut, WhatLiesTwiceInASolidThatCrossesItselfIsOpen) {
  PartFacets facets;
  AddTube(facets, 1, 4);
  AddTube(facets, 1, 4, 1);
  EXPECT_NEAR(AreaOf(CutSolid(facets, Plane({0, 0, 0.1}, {0, 0, 1}))), 2 + 2 - 2 * 0.5, 1e-5);
}

TEST(SectionCut, OfATangleWithoutEndIsItsOutline) {
  PartFacets tangle;
  constexpr int kMany = 1500;
  for (int i = 0; i < kMany; ++i) AddTube(tangle, 1000 + i % 7, 4, i % 31, i % 37);
  const SectionCut cut = CutSolid(tangle, Plane({0, 0, 0.1}, {0, 0, 1}));
  EXPECT_TRUE(cut.triangles.empty());
  EXPECT_EQ(cut.lines.size(), std::size_t{2} * 8 * kMany);
}

TEST(SectionCut, OfAMeshIsThatOfItsElements) {
  // A brick of 2 by 1 by 1 and a wedge on it; a quadrangle beside them; numbers with gaps.
  MeshData mesh;
  const std::vector<Vector3> nodes{{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0}, {0, 0, 1}, {2, 0, 1}, {2, 1, 1},
                                   {0, 1, 1}, {0, 0, 2}, {2, 0, 2}, {5, 0, 0}, {5, 0, 2}, {5, 1, 2}, {5, 1, 0}};
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    mesh.nodeIds.push_back(10 + i * (i < 5 ? 1 : 7));
    mesh.coordinates.insert(mesh.coordinates.end(), nodes[i].begin(), nodes[i].end());
  }
  const auto add = [&mesh](int type, const std::vector<std::size_t>& corners) {
    MeshData::Block block{type, static_cast<int>(corners.size()), {1}, {}};
    for (const std::size_t corner : corners) block.nodeIds.push_back(mesh.nodeIds[corner]);
    mesh.blocks.push_back(block);
  };
  add(5, {0, 1, 2, 3, 4, 5, 6, 7});
  add(6, {4, 7, 8, 5, 6, 9});
  add(3, {10, 11, 12, 13});
  EXPECT_NEAR(AreaOf(CutMesh(mesh, Plane({0, 0, 0.5}, {0, 0, 1}))), 2, 1e-6);
  EXPECT_NEAR(AreaOf(CutMesh(mesh, Plane({0, 0, 1.5}, {0, 0, 1}))), 1, 1e-6);
  const SectionCut along = CutMesh(mesh, Plane({1, 0, 0}, {1, 0, 0}));
  EXPECT_NEAR(AreaOf(along), 1.5, 1e-6);
  EXPECT_EQ(along.lines.size(), 2U * (4 + 3));
  const SectionCut flat = CutMesh(mesh, Plane({0, 0.5, 0}, {0, 1, 0}));
  EXPECT_EQ(flat.lines.size(), 2U * (4 + 4 + 1)) << "a surface is cut in a line";
  // Nodes that are not there, as in a damaged file.
  mesh.blocks[0].nodeIds[3] = 99999;
  EXPECT_NEAR(AreaOf(CutMesh(mesh, Plane({1, 0, 0}, {1, 0, 0}))), 0.5, 1e-6);
}

TEST(Sections, AreMadeTurnedMovedAndTaken) {
  Sections sections;
  int told = 0;
  const Subscription follower = sections.Subscribe([&](const Sections&) { ++told; });
  sections.FlipLast();
  sections.Clear();
  sections.MoveBy(0, 1);
  EXPECT_EQ(told, 0);
  sections.ToggleAxis(2, {1, 2, 3});
  sections.ToggleAxis(0, {1, 2, 3});
  sections.MoveBy(0, 2);
  EXPECT_EQ(sections.Planes()[0].point, (Vector3{1, 2, 5}));
  sections.FlipLast();
  EXPECT_EQ(sections.Planes()[1].normal, (Vector3{-1, 0, 0}));
  sections.ToggleAxis(2, {});
  EXPECT_FALSE(sections.HasAxis(2));
  EXPECT_EQ(told, 5);
  for (int i = 0; i < 20; ++i) sections.Add({});
  EXPECT_EQ(sections.Planes().size(), Sections::kMost);
  sections.Clear();
  EXPECT_TRUE(sections.Planes().empty());
}

}  // namespace
}  // namespace qd::test

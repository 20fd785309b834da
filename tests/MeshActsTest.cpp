// Acts on nodes and elements, and what is seen of a mesh.

#include <gmock/gmock.h>

#include "support/MeshFiles.h"
#include "workbench/mesh/MeshSkin.h"
#include "workbench/model/MeshActs.h"

namespace qd::test {
namespace {

using namespace workbench;

class MeshActs : public MeshFiles {};

TEST_F(MeshActs, NodesAndElementsGoIntoASetOrTheDefaultOne) {
  const iterator a = AddElementSet(L"A", 0, {2});
  EXPECT_EQ(AddNode(Data(), a, {5, 6, 7}, L"node").number, 4U);
  EXPECT_EQ(AddNode(Data(), 0, {8, 9, 10}, L"node").number, 5U);
  const iterator other = Pool().GetDefaultMset();
  ASSERT_NE(other, 0U);
  EXPECT_EQ(Mset(other).nodeCount, 1U);
  EXPECT_EQ(AddElement(Data(), other, 2, {1, 4, 5}, L"element").number, 2U);
  EXPECT_EQ(Mset(other).nodeCount, 3U);
  EXPECT_EQ(Mset(other).mesh->coordinates[3], 5);  // of node 4, which comes from the other set
  const auto before = Data().Snapshot();
  EXPECT_STREQ(AddElement(Data(), a, 2, {1, 4}, L"element").errorKey, "IDS_WB_MESH_NODE_COUNT");
  EXPECT_STREQ(AddElement(Data(), a, 99, {1, 4}, L"element").errorKey, "IDS_WB_MESH_NODE_COUNT");
  EXPECT_STREQ(AddElement(Data(), a, 2, {1, 4, 4}, L"element").errorKey, "IDS_WB_MESH_NODE_TWICE");
  EXPECT_STREQ(AddElement(Data(), a, 2, {1, 4, 77}, L"element").errorKey, "IDS_WB_MESH_NO_NODE");
  EXPECT_FALSE(AddNode(Data(), 12345, {0, 0, 0}, L"node").IsDone());
  EXPECT_EQ(Data().Snapshot(), before);
}

TEST_F(MeshActs, RunsOfNumbersAreReadOrRefused) {
  NumberRuns runs;
  EXPECT_TRUE(ParseRuns(" 5-9, 1 ,7-12,20", runs));
  EXPECT_EQ(runs, (NumberRuns{{1, 1}, {5, 12}, {20, 20}}));
  EXPECT_TRUE(ParseRuns("5-9,9-12,14-30,15-16,30", runs));
  EXPECT_EQ(runs, (NumberRuns{{5, 12}, {14, 30}}));
  for (const char* bad : {"", "a", "1-", "3-1", "1,,2", "1;2", "-4", "99999999999999999999999"}) {
    EXPECT_FALSE(ParseRuns(bad, runs)) << bad;
  }
}

TEST_F(MeshActs, ElementsMoveBetweenSetsAndNoneIsLost) {
  const iterator a = AddElementSet(L"A", 0, {2, 3, 4});
  const iterator b = AddElementSet(L"B", a, {5, 6});
  ASSERT_TRUE(AddElement(Data(), a, 2, {1, 2, 4}, L"with a node of one that goes").IsDone());
  const auto elements = Elements();
  NumberRuns runs;
  const auto first = Mset(a).mesh->blocks[1].elementIds[0];
  const auto last = Mset(b).mesh->blocks[0].elementIds[0];
  ASSERT_TRUE(ParseRuns(std::to_string(first) + "-" + std::to_string(last), runs));
  const iterator c = AddElementSet(L"C", 0, {});
  EXPECT_EQ(MoveElements(Data(), runs, c, 0, L"include").number, 3U);
  EXPECT_EQ(Mset(c).elementCount, 3U);
  EXPECT_EQ(Mset(a).elementCount, 2U);
  EXPECT_EQ(Elements(), elements);
  EXPECT_EQ(MoveElements(Data(), runs, a, c, L"exclude").number, 3U);
  EXPECT_EQ(Elements(), elements);
  // What is in the target already stays there once, and is not counted.
  ASSERT_TRUE(ParseRuns("1-1000", runs));
  EXPECT_EQ(MoveElements(Data(), runs, a, 0, L"include").number, 1U);
  EXPECT_EQ(Mset(a).elementCount, elements.size());
  EXPECT_EQ(Elements(), elements);
  EXPECT_STREQ(MoveElements(Data(), runs, a, 0, L"again").errorKey, "IDS_WB_MESH_NO_ELEMENTS");
  EXPECT_FALSE(MoveElements(Data(), runs, 77, 0, L"nowhere").IsDone());
}

TEST_F(MeshActs, TransformsMoveSharedNodesAndMirroringTurnsElements) {
  std::vector<int> types;
  for (const ElementType& type : ElementTypes()) {
    if (type.shape >= ElementShape::Tetrahedron && type.number != 12 && type.number != 13 && type.number != 14) {
      types.push_back(type.number);
    }
  }
  const iterator a = AddElementSet(L"A", 0, types);
  const iterator b = AddElementSet(L"B", 0, {});
  ASSERT_TRUE(AddElement(Data(), b, 1, {1, 2}, L"line").IsDone());
  const double before = Mset(b).mesh->coordinates[0];
  const Transform mirror{{{-1, 0, 0, 100}, {0, 1, 0, 0}, {0, 0, 1, 0}}};
  EXPECT_EQ(TransformMeshes(Data(), {a}, mirror, L"mirror").number, Mset(a).nodeCount);
  EXPECT_DOUBLE_EQ(Mset(b).mesh->coordinates[0], 100 - before);
  EXPECT_EQ(CountBentEdges(*Mset(a).mesh), 0);
  // What only hangs on it keeps the order of its nodes, and so does all that is moved without being mirrored.
  const iterator c = AddElementSet(L"C", 0, {});
  const std::vector<std::uint64_t> corners(Mset(a).mesh->blocks[0].nodeIds.begin(),
                                           Mset(a).mesh->blocks[0].nodeIds.begin() + 3);
  ASSERT_TRUE(AddElement(Data(), c, 2, corners, L"triangle").IsDone());
  ASSERT_TRUE(TransformMeshes(Data(), {a}, mirror, L"mirror").IsDone());
  EXPECT_EQ(Mset(c).mesh->blocks[0].nodeIds, corners);
  ASSERT_TRUE(TransformMeshes(Data(), {a}, mirror, L"mirror").IsDone());
  const Transform move{{{1, 0, 0, 7}, {0, 1, 0, 0}, {0, 0, 1, 0}}};
  EXPECT_EQ(TransformMeshes(Data(), {c, a}, move, L"move").number, Mset(a).nodeCount);
  EXPECT_EQ(Mset(c).mesh->blocks[0].nodeIds, corners);
  // Faces of mirrored solids still look out: every element's signed volume stays positive.
  for (const MeshData::Block& block : Mset(a).mesh->blocks) {
    const ElementTopology& topology = TopologyOf(FindElementType(block.elementType)->shape);
    for (const auto& tet : topology.tetrahedra) {
      std::array<std::array<double, 3>, 4> p{};
      for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t place = PlaceOfNode(*Mset(a).mesh, block.nodeIds[static_cast<std::size_t>(tet[i])]);
        for (std::size_t k = 0; k < 3; ++k)
          p[i][k] = Mset(a).mesh->coordinates[place * 3 + k] - (i > 0 ? p[0][k] : 0);
      }
      const double volume = p[1][0] * (p[2][1] * p[3][2] - p[2][2] * p[3][1]) -
                            p[1][1] * (p[2][0] * p[3][2] - p[2][2] * p[3][0]) +
                            p[1][2] * (p[2][0] * p[3][1] - p[2][1] * p[3][0]);
      EXPECT_GT(volume, 0) << block.elementType;
    }
  }
}

TEST_F(MeshActs, SweepingMakesSolidsOfSurfaces) {
  const iterator a = AddElementSet(L"A", 0, {2, 3, 4});
  EXPECT_EQ(SweepMeshes(Data(), {a}, {0, 0, 3}, 3, L"sweep").number, 6U);
  const tagTMset& made = Mset(Pool().GetItrList().back());
  EXPECT_EQ(made.name, L"A 2");
  EXPECT_EQ(made.nodeCount, 28U);
  IAppDB::MassCentre centre;
  ASSERT_EQ(SumMass(*made.mesh, nullptr, 1, centre, kGoOn), 1);
  EXPECT_NEAR(centre.mass, 4.5, 1e-12);
  EXPECT_NEAR(centre.centre[2], 1.5, 1e-12);
  EXPECT_EQ(made.colour, Mset(a).colour);
  EXPECT_EQ(Data().GetMGInfoPool().GetAtNU(Data().GetMGInfoPool().GetItrByKey(made.mgInfo))->method,
            tagMGInfo::k2D3D);
  // Several at once: each gets a set beside its own, and numbers that no other one has.
  const iterator b = AddElementSet(L"B", a, {3});
  EXPECT_EQ(SweepMeshes(Data(), {a, b}, {1, 0, 0}, 2, L"sweep").number, 6U);
  EXPECT_EQ(Mset(Pool().GetItrList().back()).parent, Mset(a).key);
  EXPECT_EQ(Mset(Pool().GetItrList().back()).name, L"B 5");
  std::vector<std::uint64_t> nodes;
  for (const iterator itr : Pool().GetItrList()) {
    nodes.insert(nodes.end(), Mset(itr).mesh->nodeIds.begin(), Mset(itr).mesh->nodeIds.end());
  }
  std::sort(nodes.begin(), nodes.end());
  EXPECT_EQ(std::adjacent_find(nodes.begin(), nodes.end()), nodes.end());
  const auto all = Elements();
  EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
  EXPECT_STREQ(SweepMeshes(Data(), {AddElementSet(L"T", 0, {4})}, {0, 0, 1}, 1, L"sweep").errorKey,
               "IDS_WB_MESH_NO_SURFACES");
}

TEST(MassOfMeshes, IsThatOfTheirLengthsAreasAndVolumes) {
  tagTProperty property;
  property.size = 0.5;
  IAppDB::MassCentre centre;
  for (const auto& [type, mass] : {std::pair(1, 1.5), std::pair(2, 0.75), std::pair(3, 9.0), std::pair(5, 3.0)}) {
    MeshData mesh = *OneElement(type, 0, 0);
    if (type == 3) mesh.coordinates = {0, 0, 0, 4, 0, 0, 3, 2, 0, 1, 2, 0};  // no parallelogram
    ASSERT_EQ(SumMass(mesh, &property, 3, centre, kGoOn), 1);
    EXPECT_NEAR(centre.mass, mass, 1e-12) << type;
    EXPECT_NEAR(centre.centre[0], type == 3 ? 2 : type == 2 ? 1. / 3 : 0.5, 1e-12) << type;
  }
}

TEST(NumbersOfElements, ContinueBehindTheGreatestInAnyOrder) {
  MeshData mesh = *OneElement(2, 0, 8);
  for (const std::uint64_t id : {12, 3}) mesh.blocks.front().elementIds.push_back(id);
  EXPECT_EQ(LastElement(mesh), 12U);
}

// ---- what is seen of a mesh -----------------------------------------------------------------------------

TEST_F(MeshActs, SkinsShowFreeFacesAndTheWantedLines) {
  const std::atomic<bool> stop = false;
  // Two hexahedra side by side, made by sweeping two squares.
  auto squares = std::make_shared<MeshData>();
  squares->nodeIds = {1, 2, 3, 4, 5, 6};
  squares->coordinates = {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0, 1, 1, 0, 2, 1, 0};
  squares->blocks.push_back({3, 4, {1, 2}, {1, 2, 5, 4, 2, 3, 6, 5}});
  iterator a = 0;
  Act([&] {
    a = PutMset(L"A", 0, 0);
    tagTMset record = Mset(a);
    PutMesh(record, squares);
    ASSERT_EQ(Pool().Modify(a, record), 1);
  });
  ASSERT_TRUE(SweepMeshes(Data(), {a}, {0, 0, 1}, 1, L"sweep").IsDone());
  const MeshData& solid = *Mset(Pool().GetItrList().back()).mesh;
  const auto skin = [&](MeshLines lines, bool shrink) { return MakeSkin(solid, {true, lines, shrink}, stop); };
  EXPECT_EQ(skin(MeshLines::None, false).TriangleCount(), 20U);  // ten of twelve sides are free
  EXPECT_EQ(skin(MeshLines::None, false).LineCount(), 0U);
  EXPECT_EQ(skin(MeshLines::FreeFaces, false).LineCount(), 20U);
  EXPECT_EQ(skin(MeshLines::AllElements, false).LineCount(), 20U);
  EXPECT_EQ(skin(MeshLines::Features, false).LineCount(), 16U);  // not those across flat sides
  EXPECT_EQ(skin(MeshLines::FreeFaces, true).TriangleCount(), 24U);
  const MeshSkin whole = skin(MeshLines::None, false);
  EXPECT_FLOAT_EQ(whole.bounds[1], 2);
  EXPECT_FLOAT_EQ(skin(MeshLines::None, true).bounds[1], 1.9F);
  EXPECT_EQ(MakeSkin(*OneElement(1, 0, 0), {}, stop).LineCount(), 1U);
}

}  // namespace
}  // namespace qd::test

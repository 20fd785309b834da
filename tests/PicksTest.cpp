// What of parts and meshes can be picked, and what becomes of picks when their records change.

#include "support/ManyParts.h"
#include "support/Mesh.h"
#include "workbench/display/PickedShape.h"

namespace qd::test {
namespace {

using namespace workbench;

TEST(FacetPartsTest, ABlockHasSixFacesTwelveEdgesAndEightCorners) {
  const PartFacets block = SmallBlock(-3, 4, 5)->facets;
  const FacetParts parts(block);
  EXPECT_EQ(parts.FaceCount(), 6U);
  EXPECT_EQ(parts.EdgeCount(), 12U);
  EXPECT_EQ(parts.CornerCount(), 8U);
  for (std::uint64_t face = 1; face <= 6; ++face) {
    ASSERT_EQ(parts.TrianglesOf(face).size(), 2U);
    for (const std::uint32_t triangle : parts.TrianglesOf(face)) EXPECT_EQ(parts.FaceOf(triangle), face);
    EXPECT_EQ(parts.OutlineOf(block, face).size(), 8U) << "without the diagonal";
  }
  EXPECT_EQ(parts.EdgeOf(11), 12U);
  EXPECT_TRUE(parts.TrianglesOf(7).empty());
  EXPECT_TRUE(parts.SegmentsOf(0).empty());
}

TEST(ElementPlacesTest, ElementsAreFoundInAnyOrderOfTheirNumbers) {
  MeshData mesh;
  mesh.blocks = {{1, 2, {4, 6, 9}, {}}, {1, 2, {30, 7, 12}, {}}};
  const ElementPlaces places(mesh);
  for (std::size_t block = 0; block < 2; ++block) {
    for (std::size_t i = 0; i < 3; ++i) {
      const auto place = places.Find(mesh, mesh.blocks[block].elementIds[i]);
      ASSERT_TRUE(place);
      EXPECT_EQ(place->block, block);
      EXPECT_EQ(place->element, i);
    }
  }
  EXPECT_FALSE(places.Find(mesh, 5));
}

class PicksTest : public MeshTest {
 protected:
  Picks& All() { return m_doc.GetPicks(); }
  iterator AddBlock(float x) {
    iterator part = 0;
    Act([&] {
      tagTGeom record;
      record.name = L"block " + std::to_wstring(x);
      record.gset = Data().GetGsetPool().GetCurrentSet();
      record.cadItem = Data().GetGeomPool().NextNumber();
      record.shape = SmallBlock(x, 0, 0);
      part = Data().GetGeomPool().Add(std::move(record));
    });
    return part;
  }
};

TEST_F(PicksTest, ArePickedOnceAndTurnedRound) {
  const Picked one{PickFilter::Faces, 1, 1};
  const Picked other{PickFilter::Edges, 1, 1};
  const Picked third{PickFilter::Faces, 1, 2};
  int told = 0;
  const Subscription follower = All().Subscribe([&told](const Picks&) { ++told; });
  All().Add({one, other, one});
  EXPECT_EQ(All().All(), (std::vector{one, other}));
  All().Add({other});
  EXPECT_EQ(told, 1);
  All().Toggle({one, third, third, one});  // what is listed twice is meant once
  EXPECT_EQ(All().All(), (std::vector{other, third}));
  EXPECT_FALSE(All().Contains(one));
  EXPECT_EQ(All().OfKind(PickFilter::Faces), std::vector{third});
  All().SetFilter(PickFilter::Nodes);
  All().SetFilter(PickFilter::Nodes);
  All().Clear();
  EXPECT_EQ(told, 4);
}

TEST_F(PicksTest, GoWithTheirPartAndWithItsShapeOnly) {
  const iterator part = AddBlock(0);
  const iterator other = AddBlock(2);
  const Picked face{PickFilter::Faces, part, 3};
  const Picked edge{PickFilter::Edges, other, 12};
  All().Set({face, edge});
  ChangePart(part, [](tagTGeom& record) { record.colour = 5; });
  EXPECT_EQ(All().All().size(), 2U);
  ChangePart(part, [](tagTGeom& record) { record.shape = SmallBlock(1, 1, 1); });
  EXPECT_EQ(All().All(), std::vector{edge});
  m_doc.DeleteData(kDeleteModelData, {other});
  EXPECT_TRUE(All().IsEmpty());
}

TEST_F(PicksTest, HaveThePlaceOfWhatTheyAre) {
  const iterator part = AddBlock(2);
  const auto box = [&](PickFilter kind, std::uint64_t number) {
    return BoxOf(Data(), All(), {kind, part, number}).value_or(ViewBox{});
  };
  EXPECT_EQ(box(PickFilter::Faces, 1).greatest, (Vector3{2, 0.7F, 0.7F}));
  EXPECT_EQ(box(PickFilter::Edges, 1).greatest, (Vector3{2.7F, 0, 0}));
  const auto corner = PlaceOf(Data(), All(), {PickFilter::Points, part, 2});
  EXPECT_EQ(corner, (Vector3{2.7F, 0, 0}));
  EXPECT_FALSE(PlaceOf(Data(), All(), {PickFilter::Points, part, 9}));
  EXPECT_FALSE(PlaceOf(Data(), All(), {PickFilter::Faces, part, 1}));
}

}  // namespace
}  // namespace qd::test

// What single points, edges, faces and elements measure, and two of them together, against geometry that is known.

#include <gmock/gmock.h>

#include <numbers>

#include "support/ManyParts.h"
#include "support/Mesh.h"
#include "workbench/mesh/Measures.h"
#include "workbench/session/MeasurePicks.h"

namespace qd::test {
namespace {

using namespace workbench;
using Kind = MeasuredEntity::Kind;

const ProgressCall kGoOn = [](double) { return true; };

Triangle3 Line(const Point3& a, const Point3& b) {
  return {a, b, b};
}

/// A part of a circle about an axis that stands askew, or of a spiral about it, of cylinder or cone.
struct Arc {
  double degrees = 90;
  int pieces = 6;
  double climb = 0;   // along the axis, from end to end
  double growth = 0;  // of the radius, likewise
  Point3 centre{1000, -20, 3};

  Point3 At(int piece, double up, double radius) const {
    const double share = static_cast<double>(piece) / pieces;
    const double angle = share * degrees * std::numbers::pi / 180;
    const Point3 u{0.6, 0, 0.8};
    const Point3 v{0, 1, 0};
    const Point3 axis{-0.8, 0, 0.6};
    const double r = radius + growth * share;
    const Point3 at = centre + u * (r * std::cos(angle)) + v * (r * std::sin(angle)) + axis * (up + climb * share);
    const auto rounded = [](double one) { return static_cast<double>(static_cast<float>(one)); };
    return {rounded(at.x), rounded(at.y), rounded(at.z)};
  }
  EntityMeasure Edge() const {
    MeasuredEntity edge{{}, Kind::Edge};
    for (int i = 0; i < pieces; ++i) edge.pieces.push_back(Line(At(i, 0, 5), At(i + 1, 0, 5)));
    return MeasureEntity(edge);
  }
  EntityMeasure Face(double top) const {
    MeasuredEntity face{{}, Kind::Face};
    for (int i = 0; i < pieces; ++i) {
      face.pieces.push_back({At(i, 0, 5), At(i + 1, 0, 5), At(i + 1, 8, top)});
      face.pieces.push_back({At(i, 0, 5), At(i + 1, 8, top), At(i, 8, top)});
    }
    return MeasureEntity(face);
  }
};

TEST(EntityMeasureTest, ArcsAndCylindersHaveARadius) {
  for (const double degrees : {40.0, 90.0, 360.0}) {
    const Arc arc{degrees, degrees > 180 ? 24 : 6};
    for (const EntityMeasure& one : {arc.Edge(), arc.Face(5)}) {
      ASSERT_TRUE(one.round) << degrees;
      EXPECT_NEAR(one.round->radius, 5, 2e-3) << degrees;
      EXPECT_LT(one.round->deviation, 1e-3) << degrees;
      EXPECT_NEAR(std::abs(Dot(one.round->axis, {-0.8, 0, 0.6})), 1, 1e-6);
      EXPECT_NEAR(Length(Cross(one.round->centre - arc.centre, one.round->axis)), 0, 2e-3);
      EXPECT_NEAR(Length(one.round->Foot() - one.round->rim), 5, 2e-3);
    }
    EXPECT_NEAR(arc.Edge().length, 5 * degrees * std::numbers::pi / 180, 0.1);
  }
  // Nearly round: how much it is not is said.
  const EntityMeasure egg = Arc{.degrees = 90, .growth = 0.2}.Edge();
  ASSERT_TRUE(egg.round);
  EXPECT_GT(egg.round->deviation, 1e-3);
}

TEST(EntityMeasureTest, OtherCurvesHaveNone) {
  EXPECT_TRUE((Arc{.degrees = 360, .pieces = 24, .climb = 6}.Edge().IsCurved())) << "a screw";
  EXPECT_TRUE((Arc{.degrees = 720, .pieces = 48, .growth = 6}.Edge().IsCurved())) << "a spiral";
  EXPECT_TRUE((Arc{.degrees = 360, .pieces = 24}.Face(3).IsCurved())) << "a cone";
  EXPECT_TRUE((Arc{.degrees = 360, .pieces = 4}.Edge().IsCurved())) << "a square";
  EXPECT_TRUE((Arc{.degrees = 360, .pieces = 4}.Face(5).IsCurved())) << "a square tube";
  EXPECT_TRUE((Arc{.degrees = 90, .pieces = 2}.Edge().IsCurved())) << "three points";
}

TEST(EntityMeasureTest, AnglesAreThoseOfWaysAndPlanes) {
  const Point3 o{1e4, 0, -7};
  const EntityMeasure along = MeasureEntity({{Line(o, o + Point3{2, 0, 0})}, Kind::Edge});
  const EntityMeasure back = MeasureEntity({{Line(o, o + Point3{-1, -std::numbers::sqrt3, 0})}, Kind::Edge});
  const EntityMeasure floor = MeasureEntity({{{o, o + Point3{1, 0, 0}, o + Point3{0, 3, 0}}}, Kind::Face});
  const EntityMeasure ramp = MeasureEntity({{{o, o + Point3{0, 1, 0}, o + Point3{1, 0, 1}}}, Kind::Face});
  EXPECT_NEAR(*AngleBetween(along, back), 60, 1e-4);
  EXPECT_NEAR(*AngleBetween(floor, ramp), 45, 1e-4);
  EXPECT_NEAR(*AngleBetween(along, floor), 0, 1e-4);
  EXPECT_NEAR(*AngleBetween(ramp, along), 45, 1e-4);
  EXPECT_FALSE(AngleBetween(along, Arc{}.Edge()));
  EXPECT_EQ(floor.normal, (Point3{0, 0, 1})) << "as its triangles are turned";
  EXPECT_LT(back.direction->x, 0) << "as it goes";
  EXPECT_DOUBLE_EQ(floor.area, 1.5);
  EXPECT_DOUBLE_EQ(*AngleAt({3, 0, 0}, {0, 0, 0}, {-1, 1, 0}), 135);
  EXPECT_FALSE(AngleAt({3, 0, 0}, {3, 0, 0}, {-1, 1, 0}));
}

class PicksMeasureTest : public MeshTest {
 protected:
  iterator AddBlock(float x, float y, float z) {
    iterator part = 0;
    Act([&] {
      tagTGeom record;
      record.gset = Data().GetGsetPool().GetCurrentSet();
      record.cadItem = Data().GetGeomPool().NextNumber();
      record.shape = SmallBlock(x, y, z);
      part = Data().GetGeomPool().Add(std::move(record));
    });
    return part;
  }
  PicksMeasure Measure(const std::vector<Picked>& picked) {
    m_doc.GetPicks().Set(picked);
    PicksMeasure measure;
    EXPECT_TRUE(MeasureAll(GatherPicks(m_doc), kGoOn, measure));
    return measure;
  }
};

TEST_F(PicksMeasureTest, TwoHaveADistanceWithItsPlaces) {
  const iterator one = AddBlock(0, 0, 0);
  const iterator other = AddBlock(3, 4, 0);
  const auto face = [](iterator part, std::uint64_t number) { return Picked{PickFilter::Faces, part, number}; };
  const auto distance = Measure({face(one, 2), face(other, 1)}).distance;  // those that look at each other in x
  ASSERT_TRUE(distance);
  EXPECT_NEAR(distance->distance, std::hypot(2.3, 3.3), 1e-5);
  EXPECT_NEAR(distance->other.x - distance->one.x, 2.3, 1e-6);
  EXPECT_NEAR(distance->other.y - distance->one.y, 3.3, 1e-6);
  const PicksMeasure point = Measure({{PickFilter::Points, one, 1}, face(other, 1)});
  EXPECT_NEAR(point.distance->distance, 5, 1e-5) << "to its nearest corner";
  EXPECT_FALSE(point.angle);
  EXPECT_FALSE(point.noAngle) << "a point has none anyway";
  EXPECT_NEAR(*Measure({face(one, 2), {PickFilter::Edges, one, 1}}).angle, 90, 1e-4);
  EXPECT_NEAR(Measure({face(one, 2), face(one, 1), {PickFilter::Edges, one, 1}}).sum.area, 0.98, 1e-6);
}

TEST_F(PicksMeasureTest, NodesAndElementsHaveTheirOwn) {
  MeshData mesh;
  mesh.nodeIds = {1, 2, 3, 4};
  mesh.coordinates = {0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0, 1e-3};
  mesh.blocks = {{4, 4, {9}, {1, 2, 3, 4}}};
  iterator set = 0;
  Act([&] {
    tagTMset record;
    PutMesh(record, std::make_shared<const MeshData>(mesh));
    set = Data().GetMsetPool().Add(record);
  });
  const auto node = [set](std::uint64_t number) { return Picked{PickFilter::Nodes, set, number}; };
  const PicksMeasure solid = Measure({{PickFilter::Elements, set, 9}});
  EXPECT_NEAR(solid.sum.volume, 2e-3, 1e-9);
  EXPECT_GT(solid.sum.area, 12);
  EXPECT_EQ(Measure({node(2)}).place, (Point3{3, 0, 0}));
  const PicksMeasure corner = Measure({node(2), node(1), node(3)});
  EXPECT_NEAR(*corner.angle, 90, 1e-9);
  EXPECT_EQ(corner.corners[1], (Point3{0, 0, 0}));
  EXPECT_DOUBLE_EQ(Measure({node(2), node(3)}).distance->distance, 5);
  EXPECT_TRUE(Measure({node(2), node(3)}).distance->other == (Point3{0, 4, 0}));
  std::vector<Picked> many;
  for (std::uint64_t i = 0; i <= MeasuredPicks::kMost; ++i) many.push_back(node(i));
  m_doc.GetPicks().Set(many);
  EXPECT_TRUE(GatherPicks(m_doc).tooMany);
}

}  // namespace
}  // namespace qd::test

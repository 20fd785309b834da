// Which parts touch each other, beside what a search of all pairs finds, and what they measure.

#include <gmock/gmock.h>

#include <random>

#include "workbench/mesh/Measures.h"
#include "workbench/mesh/PartContacts.h"
#include "workbench/mesh/TriangleDistance.h"

namespace qd::test {
namespace {

using namespace workbench;

const ProgressCall kGoOn = [](double) { return true; };

/// A block of twelve facets.
ShapePtr Brick(const Point3& at, const Point3& size) {
  auto shape = std::make_shared<PartShape>();
  for (int corner = 0; corner < 8; ++corner) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      shape->facets.points.push_back(static_cast<float>(at[axis] + ((corner >> axis & 1) != 0 ? size[axis] : 0)));
    }
  }
  shape->facets.triangles = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                             2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
  return shape;
}

PartContacts Find(const std::vector<ShapePtr>& parts, double tolerance) {
  return FindContacts(parts, std::vector<bool>(parts.size(), true), tolerance, kGoOn);
}

TEST(PartContactsFound, HaveTheDistanceAndTheAreaThatBlocksHaveInCommon) {
  const ShapePtr ground = Brick({0, 0, 0}, {10, 10, 1});
  const ShapePtr on = Brick({1, 2, 1}, {3, 4, 2});          // stands on it
  const ShapePtr above = Brick({6, 6, 1.25}, {2, 2, 2});    // a quarter above it
  const ShapePtr through = Brick({8, 0.5, -1}, {1, 1, 5});  // goes through it
  const ShapePtr far = Brick({100, 0, 0}, {1, 1, 1});
  PartContacts found = Find({ground, on, above, through, far, nullptr}, 0.01);
  ASSERT_TRUE(found.done && found.complete);
  ASSERT_EQ(found.pairs.size(), 2U);
  EXPECT_EQ(found.pairs[0].other, 1U);
  EXPECT_NEAR(found.pairs[0].area, 12, 1e-5);
  EXPECT_EQ(found.pairs[0].distance, 0);
  EXPECT_EQ(found.pairs[1].other, 3U);
  EXPECT_EQ(found.pairs[1].distance, 0);
  EXPECT_NEAR(found.pairs[1].area, 0, 1e-9);
  found = Find({ground, above}, 0.3);
  ASSERT_EQ(found.pairs.size(), 1U);
  EXPECT_NEAR(found.pairs[0].distance, 0.25, 1e-6);
  EXPECT_NEAR(found.pairs[0].area, 4, 1e-5);
  // Of pairs one is wanted.
  EXPECT_EQ(FindContacts({on, ground, through}, {true, false, false}, 0.01, kGoOn).pairs.size(), 1U);
  EXPECT_EQ(FindContacts({on, ground, through}, {false, false, true}, 0.01, kGoOn).pairs[0].one, 1U);
  EXPECT_FALSE(FindContacts({on, ground}, {true, true}, 0.01, [](double) { return false; }).done);
}

TEST(PartContactsFound, AreThoseOfAllPairs) {
  std::mt19937 random(3);
  for (int round = 0; round < 20; ++round) {
    std::vector<ShapePtr> parts;
    std::vector<Box3> boxes;
    for (int i = 0; i < 60; ++i) {
      const auto some = [&](int most) {
        return Point3{double(random() % most), double(random() % most), double(random() % most)};
      };
      const Point3 at = some(12);
      const Point3 size = some(3) + Point3{0.5, 0.5, 0.5};
      parts.push_back(Brick(at, size));
      boxes.emplace_back();
      boxes.back().Add(at);
      boxes.back().Add(at + size);
    }
    std::set<std::pair<std::uint32_t, std::uint32_t>> expected;
    for (std::uint32_t i = 0; i < parts.size(); ++i) {
      for (std::uint32_t k = i + 1; k < parts.size(); ++k) {
        // The faces of a block in another one may be far from the other's.
        const auto isIn = [](const Box3& inner, const Box3& outer) {
          bool in = true;
          for (std::size_t axis = 0; axis < 3; ++axis) {
            in = in && inner.least[axis] > outer.least[axis] && inner.greatest[axis] < outer.greatest[axis];
          }
          return in;
        };
        if (isIn(boxes[i], boxes[k]) || isIn(boxes[k], boxes[i])) continue;
        if (boxes[i].DistanceTo(boxes[k]) <= 0.25) expected.insert({i, k});
      }
    }
    std::set<std::pair<std::uint32_t, std::uint32_t>> pairs;
    for (const PartContact& contact : Find(parts, 0.25).pairs) {
      pairs.insert({contact.one, contact.other});
      EXPECT_LE(contact.distance, boxes[contact.one].DistanceTo(boxes[contact.other]) + 0.5);
    }
    EXPECT_EQ(pairs, expected);
  }
}

TEST(PartContactsFound, PassOverWhatIsNoNumberAndWhatHasNoExtent) {
  auto strange = std::make_shared<PartShape>(*Brick({0, 0, 0}, {1, 1, 1}));
  for (float& value : strange->facets.points) value = NAN;
  const ShapePtr flat = Brick({0, 0, 0}, {0, 0, 0});
  const PartContacts found = Find({Brick({0, 0, 0}, {1, 1, 1}), strange, flat}, 0);
  ASSERT_EQ(found.pairs.size(), 1U);
  EXPECT_EQ(found.pairs[0].other, 2U);
}

TEST(TriangleDistances, AreAsWorkedOutByHand) {
  const Triangle3 flat{Point3{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
  const auto to = [&](const Triangle3& other) { return DistanceBetween(flat, other).distance; };
  EXPECT_NEAR(to({Point3{1, 1, 2}, {9, 9, 9}, {8, 9, 9}}), 2, 1e-12);               // corner over the face
  EXPECT_NEAR(to({Point3{4, 4, 0}, {5, 5, 0}, {4, 6, 0}}), std::sqrt(8.0), 1e-12);  // corner and edge
  EXPECT_NEAR(to({Point3{-1, 2, 3}, {5, 2, 3}, {5, 2, 9}}), 3, 1e-12);              // edge over the face
  EXPECT_NEAR(to({Point3{-1, -2, -3}, {-1, -2, 3}, {-9, -2, 0}}), std::sqrt(5.0), 1e-12);
  EXPECT_EQ(to({Point3{1, 1, -1}, {1, 1, 1}, {2, 1, 1}}), 0);          // goes through
  EXPECT_NEAR(to({Point3{0, 0, 7}, {0, 0, 7}, {0, 0, 7}}), 7, 1e-12);  // a point
  EXPECT_NEAR(CommonArea(flat, {Point3{0, 0, 1}, {2, 0, 1}, {0, 2, 1}}), 2, 1e-12);
  EXPECT_NEAR(CommonArea(flat, {Point3{0, 2, 0}, {2, 0, 0}, {2, 2, 0}}), 2, 1e-12);
  EXPECT_EQ(CommonArea(flat, {Point3{0, 0, 0}, {0, 0, 4}, {0, 4, 0}}), 0);
}

TEST(MeasuresTaken, AreThoseOfABlockByPartAndByMesh) {
  // 2 x 3 x 4, far from the origin, with a density of 2.
  const Point3 at{100, -50, 7};
  auto part = std::make_shared<PartShape>(*Brick(at, {2, 3, 4}));
  part->volume = 24;
  part->area = 52;
  auto mesh = std::make_shared<MeshData>();
  mesh->blocks = {{5, 8, {1}, {1, 2, 4, 3, 5, 6, 8, 7}}};
  for (std::uint64_t node = 1; node <= 8; ++node) mesh->nodeIds.push_back(node);
  mesh->coordinates.assign(part->facets.points.begin(), part->facets.points.end());
  auto insideOut = std::make_shared<PartShape>(*part);
  for (std::size_t i = 0; i < 36; i += 3)
    std::swap(insideOut->facets.triangles[i], insideOut->facets.triangles[i + 1]);
  Measures all[3];
  all[0].AddPart(*part, 2);
  all[1].AddPart(*insideOut, 2);
  all[2].AddMesh(*mesh, 0, 2);
  for (const Measures& one : all) {
    EXPECT_NEAR(one.Volume(), 24, 1e-6);
    EXPECT_NEAR(one.Mass(), 48, 1e-6);
    EXPECT_NEAR(Length(one.Centre() - Point3{101, -48.5, 9}), 0, 1e-6);
    EXPECT_EQ(one.Box().greatest, (Point3{102, -47, 11}));
    const std::array<double, 6> expected{100, 80, 52, 0, 0, 0};  // 48 / 12 * (9 + 16) and so on
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(one.Inertia()[i], expected[i], 1e-5) << i;
  }
  // Two together: a second one beside the first turns the products of inertia on.
  all[0].AddPart(*Brick({0, 0, 0}, {1, 1, 1}), 2);  // without a volume of its own
  EXPECT_NEAR(all[0].Mass(), 48, 1e-6);
  auto second = std::make_shared<PartShape>(*Brick(at + Point3{2, 3, 0}, {2, 3, 4}));
  second->volume = 24;
  all[2].AddPart(*second, 2);
  EXPECT_NEAR(all[2].Inertia()[3], -2 * 48 * 1.0 * 1.5, 1e-5);
}

}  // namespace
}  // namespace qd::test

// What is wrong with meshes: measures by hand, and what is found beside what a simple search finds.

#include <gmock/gmock.h>

#include <limits>
#include <random>

#include "support/MeshFiles.h"
#include "workbench/mesh/ElementSize.h"
#include "workbench/model/CheckActs.h"

namespace qd::test {
namespace {

using namespace workbench;
using enum ElementShape;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kHeight = std::sqrt(3.0) / 2;  // of a triangle of length 1

struct Judged {
  const char* name;
  ElementShape shape;
  std::vector<Point3> corners;
  std::array<double, kQualityMeasures> values;  // NAN for none
};

void PrintTo(const Judged& judged, std::ostream* out) {
  *out << judged.name;
}

const std::vector<Point3> kCube{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
const double kFlatTet = std::sqrt(0.5);

const Judged kJudged[] = {
    {"equal triangle", Triangle, {{0, 0, 0}, {1, 0, 0}, {0.5, kHeight, 0}}, {1, 1, 0, NAN, 60, 60}},
    {"half square", Triangle, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {1.393847, 0.816497, 0.25, NAN, 45, 90}},
    {"square", Quadrangle, {{0, 0, 5}, {1, 0, 5}, {1, 1, 5}, {0, 1, 5}}, {1, 1, 0, 0, 90, 90}},
    {"long", Quadrangle, {{0, 0, 0}, {3, 0, 0}, {3, 1, 0}, {0, 1, 0}}, {3, 1, 0, 0, 90, 90}},
    {"rhombus",
     Quadrangle,
     {{0, 0, 0}, {1, 0, 0}, {1.5, kHeight, 0}, {0.5, kHeight, 0}},
     {1, 0.866025, 1.0 / 3, 0, 60, 120}},
    {"inward corner",
     Quadrangle,
     {{0, 0, 0}, {2, 0, 0}, {0.5, 0.5, 0}, {0, 2, 0}},
     {1.264911, -0.8, 1, 0, 18.434949, 233.130102}},
    {"one corner up",
     Quadrangle,
     {{0, 0, 0}, {1, 0, 0}, {1, 1, 1}, {0, 1, 0}},
     {1.414214, 0.816497, 1.0 / 3, 60, 60, 90}},
    {"equal tetrahedron", Tetrahedron, {{1, 1, 1}, {-1, 1, -1}, {1, -1, -1}, {-1, -1, 1}}, {1, 1, 0, NAN, 60, 60}},
    {"inside out", Tetrahedron, {{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}}, {1, -1, 0, NAN, 60, 60}},
    {"flat tetrahedron",
     Tetrahedron,
     {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
     {kInfinity, 0, 0.25, NAN, 45, 90}},
    {"cube", Hexahedron, kCube, {1, 1, 0, 0, 90, 90}},
    {"prism",
     Prism,
     {{0, 0, 0}, {1, 0, 0}, {0.5, kHeight, 0}, {0, 0, 2}, {1, 0, 2}, {0.5, kHeight, 2}},
     {2, 1, 0, 0, 60, 90}},
    {"pyramid", Pyramid, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.5, kFlatTet}}, {1, 1, 0, 0, 60, 90}},
    {"all in one place", Hexahedron, std::vector<Point3>(8, {3, 3, 3}), {kInfinity, -1, 1, 180, 0, 360}},
    {"no number", Triangle, {{0, 0, 0}, {1, NAN, 0}, {0, 1, 0}}, {kInfinity, -1, 1, NAN, 0, 360}},
    {"two in one place", Triangle, {{0, 0, 0}, {0, 0, 0}, {0, 1, 0}}, {kInfinity, 0, 1, NAN, 0, 360}},
    {"line", Line, {{0, 0, 0}, {1, 0, 0}}, {NAN, NAN, NAN, NAN, NAN, NAN}},
    {"point", Point, {{0, 0, 0}}, {NAN, NAN, NAN, NAN, NAN, NAN}}};

class Quality : public ::testing::TestWithParam<Judged> {};

/// In any size: the smallest and largest numbers that there are overflow when they are multiplied.
TEST_P(Quality, IsAsWorkedOutByHandInAnySizeAndPlace) {
  for (const double size : {1.0, 1e-300, 1e300}) {
    for (const double moved : {0.0, 8.0}) {
      std::vector<Point3> corners = GetParam().corners;
      for (Point3& corner : corners) corner = (corner + Point3{moved, -moved, moved}) * size;
      for (const QualityRule& rule : QualityRules()) {
        const double expected = GetParam().values[static_cast<std::size_t>(rule.measure)];
        const auto value = QualityOf(rule.measure, GetParam().shape, corners.data());
        ASSERT_EQ(value.has_value(), !std::isnan(expected)) << rule.key;
        if (!value) continue;
        if (std::isfinite(expected)) {
          EXPECT_NEAR(*value, expected, 1e-5) << rule.key << " in size " << size;
        } else {
          EXPECT_GT(*value, 1e9) << rule.key << " in size " << size;
        }
      }
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Shapes, Quality, ::testing::ValuesIn(kJudged));

// ---- what is found --------------------------------------------------------------------------------------

/// Quadrangles of length 1, numbered from 1 row by row; those of `turned` run round the other way.
MeshPtr Sheet(std::uint64_t side, const std::set<std::uint64_t>& turned = {}) {
  auto mesh = std::make_shared<MeshData>();
  MeshData::Block& block = mesh->blocks.emplace_back();
  block.elementType = 3;
  block.nodesPerElement = 4;
  for (std::uint64_t i = 0; i < (side + 1) * (side + 1); ++i) {
    mesh->nodeIds.push_back(i + 1);
    mesh->coordinates.insert(mesh->coordinates.end(), {double(i % (side + 1)), double(i / (side + 1)), 0});
  }
  for (std::uint64_t i = 0; i < side * side; ++i) {
    const std::uint64_t at = i / side * (side + 1) + i % side + 1;
    block.elementIds.push_back(i + 1);
    std::vector<std::uint64_t> nodes{at, at + 1, at + side + 2, at + side + 1};
    if (turned.contains(i + 1)) std::reverse(nodes.begin(), nodes.end());
    block.nodeIds.insert(block.nodeIds.end(), nodes.begin(), nodes.end());
  }
  return mesh;
}

CheckResult Find(const std::vector<MeshPtr>& meshes, const CheckRequest& request,
                 const std::vector<MeshPtr>& others = {}) {
  return CheckMeshes(meshes, others, request, [](double) { return true; });
}

TEST(MeshChecks, FindsEdgesThatOneSurfaceHasAcrossMeshes) {
  // The two halves of a sheet share the nodes between them.
  const MeshPtr whole = Sheet(6);
  const SplitMesh halves = SplitByElement(*whole, [](std::uint64_t element) { return element % 3 == 0; });
  const CheckResult found = Find({halves.taken, nullptr, halves.left}, {MeshCheck::FreeEdges});
  EXPECT_EQ(found.found, 24U);
  EXPECT_EQ(found.looked, 84U);
  for (const auto& [a, b] : found.edges) {
    const auto isOnRim = [](std::uint64_t node) { return (node - 1) % 7 % 6 == 0 || (node - 1) / 7 % 6 == 0; };
    EXPECT_TRUE(isOnRim(a) && isOnRim(b)) << a << " " << b;
  }
  EXPECT_EQ(Find({halves.taken}, {MeshCheck::FreeEdges}).found, 28U);
}

TEST(MeshChecks, FindsTheFewerOfSurfacesThatDoNotAgree) {
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    std::set<std::uint64_t> turned;
    for (std::uint64_t element = 1; element <= 100; ++element) {
      if (random() % 5 == 0) turned.insert(element);
    }
    const CheckResult found = Find({Sheet(10, turned)}, {MeshCheck::TurnedShells});
    EXPECT_THAT(found.elements[0], ::testing::ElementsAreArray(turned));
  }
  EXPECT_THAT(Find({Sheet(1, {1})}, {MeshCheck::TurnedShells}).elements[0], IsEmpty());
}

TEST(MeshChecks, FindsNodesThatStandTogetherAsASimpleSearchDoes) {
  std::mt19937 random(11);
  for (const double scale : {1.0, 1e-9, 1e12}) {
    for (const double distance : {0.0, 0.3, 1.0, 2.5, 40.0}) {
      std::vector<double> coordinates;
      for (int i = 0; i < 300 * 3; ++i) coordinates.push_back((random() % 4000 / 100.0 - 20) * scale);
      for (int i = 0; i < 20 * 3; ++i) coordinates.push_back(coordinates[static_cast<std::size_t>(i)]);
      coordinates.insert(coordinates.end(), {NAN, 0, 0, NAN, 0, 0, -0.0, 7e17, kInfinity});
      const double reach = distance * scale;
      std::vector<std::uint32_t> expected;
      for (std::uint32_t a = 0; a < coordinates.size() / 3; ++a) {
        for (std::uint32_t b = 0; b < coordinates.size() / 3; ++b) {
          const double* p = &coordinates[a * 3];
          const double* q = &coordinates[b * 3];
          if (a == b || !(std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]) <= reach)) continue;
          expected.push_back(a);
          break;
        }
      }
      EXPECT_EQ(NodesWithNeighbours(coordinates, reach, [](double) { return true; }), expected)
          << scale << " " << distance;
    }
  }
}

TEST(MeshChecks, AllNodesInOnePlaceCostNoMoreThanOthers) {
  constexpr std::size_t kMany = 200'000;
  std::vector<double> coordinates(kMany * 3, 5.0);
  for (std::size_t i = 0; i < kMany / 2; ++i) coordinates[i * 3] += 1.5 * double(i % 2);
  EXPECT_EQ(NodesWithNeighbours(coordinates, 1, [](double) { return true; }).size(), kMany);
}

TEST(MeshChecks, FindsElementsWithTheSameCornersAndThoseWithoutVolume) {
  auto mesh = std::make_shared<MeshData>();
  for (std::uint64_t i = 0; i < 8; ++i) {
    mesh->nodeIds.push_back(i + 1);
    mesh->coordinates.insert(mesh->coordinates.end(), {kCube[i].x, kCube[i].y, kCube[i].z});
  }
  mesh->blocks = {{5, 8, {1, 2, 3}, {1, 2, 3, 4, 5, 6, 7, 8, 5, 6, 7, 8, 1, 2, 3, 4, 1, 2, 3, 4, 1, 2, 3, 4}},
                  {4, 4, {4, 5, 6}, {1, 2, 3, 4, 1, 2, 4, 5, 5, 4, 2, 1}},
                  {3, 4, {7}, {1, 2, 3, 4}}};
  EXPECT_THAT(Find({mesh}, {MeshCheck::DuplicateElements}).elements[0], ElementsAre(2, 6));
  EXPECT_THAT(Find({mesh}, {MeshCheck::NegativeVolumes}).elements[0], ElementsAre(2, 3, 4));
  const auto found = Find({mesh}, {MeshCheck::Quality, QualityMeasure::ScaledJacobian, 0.5});
  EXPECT_THAT(found.elements[0], ElementsAre(2, 3, 4));
  EXPECT_EQ(found.looked, 7U);
  EXPECT_EQ(found.worst, -1);
}

TEST(MeshChecks, FindsNodesThatNoElementHasNotEvenOneElsewhere) {
  auto loose = std::make_shared<MeshData>(*Sheet(2));
  loose->blocks.clear();
  loose->nodeIds.push_back(77);
  loose->coordinates.insert(loose->coordinates.end(), {1, 2, 3});
  EXPECT_EQ(Find({loose}, {MeshCheck::UnconnectedNodes}).found, 10U);
  EXPECT_THAT(Find({loose}, {MeshCheck::UnconnectedNodes}, {Sheet(2), nullptr}).nodes, ElementsAre(77));
}

TEST(MeshChecks, StopsWhenItIsToldTo) {
  for (int check = 0; check < kMeshChecks; ++check) {
    const CheckRequest request{static_cast<MeshCheck>(check), QualityMeasure::Skewness, 0, 1};
    EXPECT_FALSE(CheckMeshes({Sheet(300)}, {}, request, [](double) { return false; }).done) << check;
  }
}

// ---- sizes ----------------------------------------------------------------------------------------------

PartShape Block(float x, float y, float z) {
  PartShape shape;
  shape.facets.points = {5, 5, 5, 5 + x, 5 + y, 5 + z};
  shape.volume = double{x} * y * z;
  shape.area = 2 * (double{x} * y + double{y} * z + double{x} * z);
  return shape;
}

TEST(OfferedSizes, SuitThePartsAndKeepTheNumberOfElementsInBounds) {
  const PartShape small = Block(1, 1.9F, 2);
  const PartShape plate = Block(100, 100, 2);
  const PartShape large = Block(9000, 9000, 9000);
  EXPECT_NEAR(OfferedSize({&small}, 3), 0.2, 1e-9);
  EXPECT_NEAR(OfferedSize({&plate}, 3), 2, 1e-9);  // 1.92 thick, as it seems
  EXPECT_NEAR(OfferedSize({&plate}, 2), 9.5, 1e-9);
  EXPECT_NEAR(OfferedSize({&large}, 3), 1100, 1e-9);
  EXPECT_NEAR(OfferedSize({&small, &small, &large}, 3), 190, 1e-9);  // a million in the large one, not a billion
  PartShape hollow;
  PartShape strange = Block(1, 1, 1);
  strange.facets.points[3] = NAN;
  strange.volume = NAN;
  EXPECT_EQ(OfferedSize({}, 3), 0);
  EXPECT_EQ(OfferedSize({&hollow, &strange}, 3), 0);
}

// ---- acts -----------------------------------------------------------------------------------------------

class CheckActs : public MeshFiles {
 protected:
  iterator Put(const MeshPtr& mesh) {
    iterator set = 0;
    Act([&] {
      tagTMset record;
      record.name = L"sheet";
      PutMesh(record, mesh);
      set = Pool().Add(record);
    });
    return set;
  }
};

TEST_F(CheckActs, WhatIsFoundBecomesASetThatUndoTakesBack) {
  const MeshPtr sheet = Sheet(10, {5, 6});
  const iterator set = Put(sheet);
  const auto before = Data().Snapshot();
  std::vector<iterator> made;
  const CheckResult turned = Find({sheet}, {MeshCheck::TurnedShells});
  EXPECT_EQ(PutFound(Data(), {set}, {sheet}, turned, L"turned", L"check", made).number, 2U);
  ASSERT_EQ(made.size(), 1U);
  EXPECT_EQ(Mset(made[0]).parent, Mset(set).key & kMsetKeyMask);
  EXPECT_EQ(Mset(made[0]).elementCount, 2U);
  EXPECT_EQ(Mset(set).elementCount, 98U);
  EXPECT_STREQ(PutFound(Data(), {set}, {sheet}, turned, L"turned", L"check", made).errorKey, "IDS_WB_CHECK_GONE");
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
  const CheckResult free = Find({sheet}, {MeshCheck::FreeEdges});
  EXPECT_EQ(PutFound(Data(), {set}, {sheet}, free, L"free", L"check", made).number, 40U);
  EXPECT_EQ(Mset(made[0]).nodeCount, 40U);
  EXPECT_EQ(Mset(made[0]).mesh->blocks[0].elementIds.front(), 101U);
  EXPECT_EQ(Mset(made[0]).mesh->coordinates[3 * 39], 10);  // of the last node
  EXPECT_STREQ(PutFound(Data(), {}, {}, {}, L"none", L"check", made).errorKey, "IDS_WB_CHECK_NOTHING");
}

}  // namespace
}  // namespace qd::test

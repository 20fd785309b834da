// How mesh sets are to be drawn: what the commands of the tree make of their looks.

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>

#include "support/Mesh.h"
#include "workbench/display/MeshLook.h"

namespace qd::test {
namespace {

using namespace workbench;

class MeshLookTest : public MeshTest {
 protected:
  MeshLookTest() {
    Act([&] {
      tagTMaterial steel;
      steel.name = L"Steel";
      tagTProperty plate;
      for (iterator& property : m_properties) {
        plate.material = Data().GetMaterialPool().Add(steel);
        property = Data().GetPropertyPool().Add(plate);
      }
      m_top = PutMset(L"top", 0, 1);
      m_middle = PutMset(L"middle", m_top, 2);
      m_low = PutMset(L"low", m_middle, 3);
    });
    Change(m_top, [&](tagTMset& set) { set.colour = Rgb(9, 8, 7); });
    Change(m_low, [&](tagTMset& set) { set.property = m_properties[0]; });
    for (HTREEITEM row : {Row(L"top"), Row(L"middle")}) Tree().Expand(row, ExpandAction::Expand);
  }
  void Change(iterator itr, const std::function<void(tagTMset&)>& change) { ChangeMset(itr, change); }
  SkinRequest Request(iterator itr) {
    return RequestFor(m_doc.GetDisplay().Meshes().GetLook(Mset(itr).key & kMsetKeyMask));
  }
  MsetLook Look(iterator itr, bool selected = false) {
    MeshSkin skin;
    for (const int type : {2, 3}) skin.pieces.emplace_back().elementType = type;
    return LookOf(Data(), m_doc.GetDisplay(), Mset(itr), itr, skin, selected);
  }
  COLORREF Colour(iterator itr) { return Look(itr).colours.at(0); }

  iterator m_top = 0, m_middle = 0, m_low = 0;
  iterator m_properties[2] = {};
};

struct Mode {
  unsigned command;
  bool faces;
  MeshLines lines;
  bool wire;
};
class MeshModes : public MeshLookTest, public ::testing::WithParamInterface<Mode> {};
TEST_P(MeshModes, SayWhatIsDrawn) {
  Select({L"middle"});
  Command(GetParam().command);
  EXPECT_EQ(Request(m_middle).faces, GetParam().faces);
  EXPECT_EQ(Request(m_middle).lines, GetParam().lines);
  EXPECT_EQ(Look(m_middle).wire, GetParam().wire);
  EXPECT_FALSE(Look(m_middle).box);
  MsetLook former;
  former.colours = {Mset(m_low).colour, Mset(m_low).colour};
  EXPECT_EQ(Look(m_low), former) << "others stay as they are";
}
INSTANTIATE_TEST_SUITE_P(Commands, MeshModes,
                         ::testing::Values(Mode{kCommandMeshSmooth, true, MeshLines::None, false},
                                           Mode{kCommandMeshShading, true, MeshLines::FreeFaces, false},
                                           Mode{kCommandMeshFeatureShading, true, MeshLines::Features, false},
                                           Mode{kCommandMeshWireframe, false, MeshLines::AllElements, true},
                                           Mode{kCommandMeshFreeFaces, false, MeshLines::FreeFaces, true},
                                           Mode{kCommandMeshFeatureEdges, false, MeshLines::Features, true}));

TEST_F(MeshLookTest, ABoxIsLinesOnly) {
  m_doc.GetDisplay().Meshes().SetRenderMode(std::vector<std::uint32_t>{Mset(m_top).key & kMsetKeyMask}, 6);
  Settle();
  EXPECT_TRUE(Look(m_top).box && Look(m_top).wire);
  EXPECT_FALSE(Request(m_top).faces);
}

TEST_F(MeshLookTest, ShrinkFollowsTheFirstOfTheSelected) {
  Select({L"middle"});
  Command(kCommandShrink);
  EXPECT_TRUE(Request(m_middle).shrink);
  Select({L"top", L"middle"});
  Command(kCommandShrink);
  EXPECT_TRUE(Request(m_top).shrink && Request(m_middle).shrink && !Request(m_low).shrink);
  Select({L"middle", L"low"});
  Command(kCommandShrink);
  EXPECT_TRUE(Request(m_top).shrink);
  EXPECT_FALSE(Request(m_middle).shrink || Request(m_low).shrink);
}

TEST_F(MeshLookTest, WhatIsOnForAllIsSwitchedOffForOne) {
  const auto run = [this](const CString& row, unsigned command) {
    Select({row});
    Command(command);
    return std::pair(Look(m_top).addOns, Look(m_middle).addOns);
  };
  using Shown = std::pair<std::uint32_t, std::uint32_t>;
  constexpr std::uint32_t kNodeIds = 2;
  constexpr std::uint32_t kElementIds = 4;
  constexpr std::uint32_t kBoth = kNodeIds | kElementIds;
  run(kMeshRoot, kCommandAllNodeIds);
  EXPECT_EQ(run(kMeshRoot, kCommandAllElementIds), Shown(kBoth, kBoth));
  EXPECT_EQ(run(L"middle", kCommandNodeIds), Shown(kBoth, kElementIds));
  EXPECT_EQ(run(L"middle", kCommandNodeIds), Shown(kBoth, kBoth));
  EXPECT_EQ(run(L"middle", kCommandElementIds), Shown(kBoth, kNodeIds));
  // Not on for all any more, so it is switched on for all, and then off.
  EXPECT_EQ(run(kMeshRoot, kCommandAllElementIds), Shown(kBoth, kBoth));
  EXPECT_EQ(run(kMeshRoot, kCommandAllElementIds), Shown(kNodeIds, kNodeIds)) << "the others stay";
}

TEST_F(MeshLookTest, ColoursGoBySetPropertyMaterialKindOrTopSet) {
  const auto mode = [this](unsigned command) {
    m_session->SendToMeshes(command);
    Settle();
  };
  EXPECT_EQ(Colour(m_low), Mset(m_low).colour);
  mode(kCommandMeshColourMode + 1);
  const COLORREF none = Colour(m_middle);
  const COLORREF first = Colour(m_low);
  EXPECT_NE(first, none);
  Change(m_middle, [&](tagTMset& set) { set.property = m_properties[1]; });
  Change(m_top, [&](tagTMset& set) { set.property = m_properties[0]; });
  EXPECT_NE(Colour(m_middle), none);
  EXPECT_NE(Colour(m_middle), first);
  EXPECT_EQ(Colour(m_top), first) << "of one property";
  mode(kCommandMeshColourMode + 2);
  EXPECT_NE(Colour(m_middle), Colour(m_top));
  Act([&] {
    tagTProperty property = *Data().GetPropertyPool().GetAtNU(m_properties[1]);
    property.material = Data().GetPropertyPool().GetAtNU(m_properties[0])->material;
    ASSERT_EQ(Data().GetPropertyPool().Change(m_properties[1], property), 1);
  });
  EXPECT_EQ(Colour(m_middle), Colour(m_top)) << "of one material";
  mode(kCommandMeshColourMode + 3);
  EXPECT_NE(Look(m_top).colours.at(0), Look(m_top).colours.at(1));
  EXPECT_EQ(Look(m_top).colours, Look(m_low).colours);
  mode(kCommandLastMeshColourMode);
  for (const iterator itr : {m_top, m_middle, m_low}) EXPECT_EQ(Colour(itr), Rgb(9, 8, 7));
  mode(kCommandMeshColourMode);
  EXPECT_EQ(Colour(m_low), Mset(m_low).colour);
  EXPECT_NE(Look(m_low, true).colours, Look(m_low).colours) << "what is selected stands out";
}

TEST_F(MeshLookTest, HiddenAndTransparentSetsAreDrawnSo) {
  Tree().EnsureVisible(Row(L"low"));
  ClickCheck(L"low");
  EXPECT_FALSE(Look(m_low).shown);
  EXPECT_TRUE(Look(m_middle).shown);
  Select({L"low"});
  Command(kCommandMeshTransparent);
  EXPECT_EQ(Look(m_low).opacity, 0);
  EXPECT_EQ(Look(m_top).opacity, 255);
}

TEST(MeshQualityColours, GoFromGoodToBad) {
  const COLORREF good = QualityColours::OfBadness(0);
  const COLORREF bad = QualityColours::OfBadness(1);
  EXPECT_NE(good, bad);
  const QualityColours low{QualityMeasure::ScaledJacobian, 0.2, 1};
  EXPECT_EQ(low.Of(1), good);
  EXPECT_EQ(low.Of(-1), bad) << "beyond the range";
  const QualityColours high{QualityMeasure::AspectRatio, 1, 5};
  EXPECT_EQ(high.Of(1), good);
  EXPECT_EQ(high.Of(std::numeric_limits<double>::infinity()), bad);
  EXPECT_DOUBLE_EQ(high.BadnessOf(2), 0.25);
  EXPECT_NE(high.Of(std::nan("")), good) << "no measure, no judgement";
  EXPECT_EQ((QualityColours{QualityMeasure::ScaledJacobian, 1, 1}.Of(1)), good) << "all alike";
}

TEST(MeshQualityColours, SkinsKnowTheQualityOfTheirElementsWhereItIsAskedFor) {
  // A square, a triangle with a right angle beside it, and a line.
  MeshData mesh;
  mesh.nodeIds = {1, 2, 3, 4, 5};
  mesh.coordinates = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0, 0};
  mesh.blocks = {{3, 4, {7}, {1, 2, 3, 4}}, {2, 3, {8}, {2, 5, 3}}, {1, 2, {9}, {1, 5}}};
  const std::atomic<bool> stop = false;
  SkinRequest request;
  EXPECT_TRUE(MakeSkin(mesh, request, stop).pieces[0].quality.empty());
  request.quality = QualityMeasure::LeastAngle;
  const MeshSkin skin = MakeSkin(mesh, request, stop);
  EXPECT_EQ(skin.pieces[0].quality, (std::vector<float>{90, 90})) << "of both triangles";
  ASSERT_EQ(skin.pieces[1].quality.size(), 1U);
  EXPECT_NEAR(skin.pieces[1].quality[0], 45, 1e-4);
  EXPECT_TRUE(skin.pieces[2].quality.empty());
  EXPECT_NEAR(skin.leastQuality, 45, 1e-4);
  EXPECT_EQ(skin.greatestQuality, 90);
}

}  // namespace
}  // namespace qd::test

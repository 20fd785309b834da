// How many parts, elements and nodes there are and are shown, kept up by what changes.

#include <gtest/gtest.h>

#include <deque>

#include "support/SampleMesh.h"
#include "support/SessionModel.h"
#include "workbench/session/ModelCounts.h"

namespace qd::test {
namespace {

using namespace workbench;
using Counts = ModelCounts::Counts;

class Counted : public SessionTest {
 protected:
  void SetMesh(iterator set, int elementType, std::uint64_t last) {
    CTransaction transaction(&Data());
    transaction.Begin(L"mesh");
    tagTMset record = *Data().GetMsetPool().GetAtNU(set);
    record.mesh = OneElement(elementType, 0, last);
    record.nodeCount = record.mesh->nodeIds.size();
    record.elementCount = 1;
    ASSERT_NE(Data().GetMsetPool().Modify(set, record), 0);
    ASSERT_NE(transaction.Commit(1), 0);
  }
  /// What a count from the beginning says.
  Counts Anew() {
    return ModelCounts(
               m_doc, [](const auto&) {}, [] {})
        .Now();
  }
};

TEST_F(Counted, FollowsRecordsAndWhatIsShown) {
  int told = 0;
  ModelCounts counts(
      m_doc, [](const auto&) {}, [&told] { ++told; });
  const Counts before = counts.Now();
  EXPECT_EQ(before.parts, 3U);
  EXPECT_EQ(before.partsShown, 3U);
  constexpr int kTetrahedron = 4;
  SetMesh(m_outer, kTetrahedron, 100'000);
  SetMesh(m_inner, kTetrahedron, 100'002);  // two of its nodes are those of the other
  EXPECT_EQ(counts.Now().nodes, 6U);
  EXPECT_EQ(counts.Now(), Anew());
  const int sofar = told;
  m_doc.GetDisplay().Parts().SetShowHide(Data().GetGeomPool().GetAtNU(m_a)->cadItem, 0);
  m_doc.GetDisplay().Meshes().ShowHideMset(m_inner, 0);
  Settle();
  EXPECT_GT(told, sofar);
  EXPECT_EQ(counts.Now().partsShown, 2U);
  EXPECT_EQ(counts.Now().elementsShown, 1U);
  for (int step = 0; step < 2; ++step) Data().Undo();
  EXPECT_EQ(counts.Now(), Anew());
  Data().Delete({m_b, m_inner});
  EXPECT_EQ(counts.Now().parts, 2U);
  EXPECT_EQ(counts.Now(), Anew());
}

TEST_F(Counted, MuchIsCountedInSlices) {
  std::deque<std::function<void()>> later;
  ModelCounts counts(
      m_doc, [&later](auto what) { later.push_back(std::move(what)); }, [] {});
  CTransaction transaction(&Data());
  transaction.Begin(L"much");
  auto mesh = std::make_shared<MeshData>();
  for (std::uint64_t i = 1; i <= 300'000; ++i) mesh->nodeIds.push_back(1'000'000 + i);
  mesh->coordinates.resize(mesh->nodeIds.size() * 3);
  for (const iterator set : {m_outer, m_inner}) {
    tagTMset record = *Data().GetMsetPool().GetAtNU(set);
    record.mesh = mesh;
    record.nodeCount = mesh->nodeIds.size();
    record.elementCount = 0;
    ASSERT_NE(Data().GetMsetPool().Modify(set, record), 0);
  }
  ASSERT_NE(transaction.Commit(1), 0);
  EXPECT_FALSE(counts.IsWhole());
  while (!later.empty()) {
    const auto next = std::move(later.front());
    later.pop_front();
    next();
  }
  EXPECT_TRUE(counts.IsWhole());
  EXPECT_EQ(counts.Now().nodes, 300'000U);
}

}  // namespace
}  // namespace qd::test

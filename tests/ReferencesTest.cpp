// What records name is there: after every act, after undo and redo, and in the document on disk.

#include <gtest/gtest.h>

#include "qd_wrt/mesh/CQDTreeItemMeshData.h"
#include "support/Mesh.h"

namespace qd::test {
namespace {

using namespace workbench;

/// A model of every type of record that is kept in a document.
class ReferencesTest : public MeshTest {
 protected:
  iterator AddProperty(iterator material) {
    iterator itr = 0;
    Act([&] {
      tagTProperty property;
      property.material = material;
      itr = Data().GetPropertyPool().Add(property);
    });
    return itr;
  }
  /// Records of how meshes of parts were made.
  iterator AddGeneration(const std::vector<iterator>& targets, const std::vector<iterator>& sets) {
    iterator itr = 0;
    Act([&] {
      tagMGInfo generation;
      generation.targets = targets;
      itr = Data().GetMGInfoPool().Add(generation);
      for (const iterator set : sets) {
        tagTMset record = Mset(set);
        record.mgInfo = MGInfoPool::KeyOf(itr);
        ASSERT_EQ(Pool().Modify(set, record), 1);
      }
    });
    return itr;
  }
  bool Stands(iterator itr) { return Data().GetDataType(itr) != 0; }
};

TEST_F(ReferencesTest, ASetForgetsItsPartAndAGenerationItsTarget) {
  const auto parts = AddParts({L"a", L"b"});
  const iterator set = AddMset(L"A", 0, 2, parts[0]);
  const iterator other = AddMset(L"B", 0, 2, parts[0]);
  const iterator generation = AddGeneration({parts[0], parts[1], parts[0]}, {set});
  ExpectOneAct({}, [&] { return Data().GetGeomPool().TR_Del({parts[0]}); });
  EXPECT_EQ(Mset(set).geom, 0U);
  EXPECT_EQ(Mset(other).geom, 0U);
  EXPECT_EQ(Data().GetMGInfoPool().GetAtNU(generation)->targets, std::vector<iterator>{parts[1]});
}

TEST_F(ReferencesTest, PartsAndPropertiesForgetTheirMaterialAndSetsTheirProperty) {
  const auto parts = AddParts({L"a", L"b"});
  const iterator steel = AddMaterial(L"Steel");
  for (const iterator part : parts) ChangePart(part, [&](tagTGeom& record) { record.material = steel; });
  const iterator property = AddProperty(steel);
  const iterator set = AddMset(L"A");
  ChangeMset(set, [&](tagTMset& record) { record.property = property; });
  ExpectOneAct({}, [&] { return Data().GetMaterialPool().TR_Del({steel}); });
  EXPECT_EQ(Part(parts[0]).material, 0U);
  EXPECT_EQ(Part(parts[1]).material, 0U);
  EXPECT_EQ(Data().GetPropertyPool().GetAtNU(property)->material, 0U);
  ExpectOneAct({}, [&] { return Data().GetPropertyPool().TR_Del({property}); });
  EXPECT_EQ(Mset(set).property, 0U);
}

TEST_F(ReferencesTest, AGenerationGoesWithTheLastSetThatUsesIt) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B");
  const iterator generation = AddGeneration({}, {a, b});
  ExpectOneAct({}, [&] { return Pool().TR_Del({a}); });
  EXPECT_TRUE(Stands(generation)) << "another set uses it";
  ExpectOneAct({}, [&] {
    CTransaction transaction(&Data());
    transaction.Begin(L"forget");
    tagTMset record = Mset(b);
    record.mgInfo = 0;
    return Pool().Modify(b, record) != 0 ? transaction.Commit(1) : 0;
  });
  EXPECT_FALSE(Stands(generation));
  const iterator again = AddGeneration({}, {b});
  ExpectOneAct({}, [&] { return Data().Delete({again}); });
  EXPECT_EQ(Mset(b).mgInfo, 0U) << "a set whose generation goes forgets it";
}

TEST_F(ReferencesTest, MergingGeneratedSetsLeavesNoGeneration) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B");
  const iterator below = AddMset(L"below", b);
  const iterator ofA = AddGeneration({}, {a});
  const iterator ofB = AddGeneration({}, {b});
  ExpectOneAct({}, [&] { return static_cast<CQDTreeItemMeshData&>(*Node(L"A")).MergeMeshSet(a, {b}); });
  EXPECT_EQ(Mset(a).mgInfo, 0U);
  EXPECT_FALSE(Stands(ofA));
  EXPECT_FALSE(Stands(ofB));
  EXPECT_EQ(Mset(below).parent, Mset(a).key);
}

TEST_F(ReferencesTest, NestedSetsMoveToTheNearestAncestorThatStays) {
  const iterator top = AddMset(L"top");
  const iterator a = AddMset(L"a", top);
  const iterator b = AddMset(L"b", a);
  const iterator c = AddMset(L"c", b);
  ExpectOneAct({}, [&] { return Data().Delete({b, a}); });
  EXPECT_EQ(Mset(c).parent, Mset(top).key);
  ExpectOneAct({}, [&] { return Pool().TR_Del({top}); });
  EXPECT_EQ(Mset(c).parent, 0U);
}

TEST_F(ReferencesTest, PartsGoToTheDefaultSetAndTheCurrentSetFallsToIt) {
  const iterator first = AddSet(L"first");
  const iterator second = AddSet(L"second");
  const iterator third = AddSet(L"third");
  const auto parts = AddParts({L"a"});
  ChangePart(parts[0], [&](tagTGeom& record) { record.gset = second; });
  Act([&] { ASSERT_EQ(Data().GetGsetPool().SetCurrentSet(third), 1); });
  ExpectOneAct({}, [&] { return Data().GetGsetPool().TR_Del({second}); });
  EXPECT_EQ(Part(parts[0]).gset, third);
  ExpectOneAct({}, [&] {
    CTransaction transaction(&Data());
    transaction.Begin(L"delete");
    return Data().GetGsetPool().Delete(third) != 0 ? transaction.Commit(1) : 0;
  });
  EXPECT_EQ(Part(parts[0]).gset, first);
  EXPECT_EQ(Data().GetGsetPool().GetCurrentSet(), first);
  const auto before = Data().Snapshot();
  EXPECT_EQ(Data().GetGsetPool().TR_Del({first}), 0) << "the last set stays";
  EXPECT_EQ(Data().Snapshot(), before);
}

TEST_F(ReferencesTest, ACurrentSetThatWasPutIsKeptAndFallsWhenUndoTakesItAway) {
  AddSet(L"first");
  const iterator second = AddSet(L"second");
  Data().GetGsetPool().PutCurrentSet(second);
  m_kept.Check(true);
  EXPECT_EQ(Data().GetGsetPool().GetCurrentSet(), second);
  Undo();
  m_kept.Check(true);
  EXPECT_NE(Data().GetGsetPool().GetCurrentSet(), second);
  Redo();
  m_kept.Check(true);
  Data().GetGsetPool().PutCurrentSet(4711);
}

TEST_F(ReferencesTest, TheDefaultMeshSetStays) {
  iterator set = 0;
  Act([&] { set = Pool().NeedDefaultMset(); });
  const iterator other = AddMset(L"A");
  const auto before = Data().Snapshot();
  EXPECT_EQ(Pool().TR_Del({other, set}), 0);
  EXPECT_EQ(Data().Delete({other, set}), 0);
  EXPECT_EQ(Pool().Merge(other, {set}), 0);
  EXPECT_EQ(Data().Snapshot(), before);
}

TEST_F(ReferencesTest, SettingsThatAreMadeAgainAfterUndoOpen) {
  for (int times = 0; times < 2; ++times) {
    Act([&] { ASSERT_NE(Pool().NeedDefaultMset(), 0U); });
    m_kept.Check(true);
    Undo();
    m_kept.Check(true);
  }
  Redo();
}

TEST_F(ReferencesTest, SystemsStayWhereTheyAreInSpace) {
  CordPool& systems = Data().GetCordPool();
  std::vector<iterator> chain{systems.GetDefaultCord()};
  Act([&] {
    for (int i = 0; i < 4; ++i) {
      tagTCord record;
      record.SetName(L"system " + std::to_wstring(i));
      record.parent = chain.back();
      record.origin = {1.0 + i, 2, 3};
      record.xAxis = {0, 1, 0.5};
      record.xyPlane = {0, 0, 1};
      chain.push_back(systems.Add(record));
    }
  });
  const Placement before = systems.GlobalPlacement(chain[4]);
  ExpectOneAct({}, [&] { return Data().Delete({chain[1], chain[3]}); });
  EXPECT_EQ(systems.GetAtNU(chain[4])->parent, chain[2]);
  ExpectOneAct({}, [&] {
    CTransaction transaction(&Data());
    transaction.Begin(L"one by one");
    if (systems.Delete(chain[2]) == 0 || systems.UpdateAfterDeletion() == 0) return 0;
    return transaction.Commit(1);
  });
  const Placement after = systems.GlobalPlacement(chain[4]);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(after.origin[i], before.origin[i], 1e-12);
    for (std::size_t axis = 0; axis < 3; ++axis) EXPECT_NEAR(after.axes[axis][i], before.axes[axis][i], 1e-12);
  }
}

TEST_F(ReferencesTest, AnActThatRefersToNothingDoesNotHappen) {
  const auto parts = AddParts({L"a"});
  const iterator set = AddMset(L"A");
  const iterator steel = AddMaterial(L"Steel");
  const std::vector<std::function<int()>> kActs{
      [&] {
        tagTGeom record = Part(parts[0]);
        record.material = parts[0];  // stands, but is no material
        return Data().GetGeomPool().Change(parts[0], record);
      },
      [&] {
        tagTGeom record = Part(parts[0]);
        record.gset = ~iterator{0};
        return Data().GetGeomPool().Change(parts[0], record);
      },
      [&] {
        tagTMset record = Mset(set);
        record.geom = parts[0] + 7;
        return Pool().Modify(set, record);
      },
      [&] {
        tagTMset record = Mset(set);
        record.mgInfo = 3;
        return Pool().Modify(set, record);
      },
      [&] {
        tagMGInfo record;
        record.targets = {parts[0], steel};
        return Data().GetMGInfoPool().Add(record) != 0 ? 1 : 0;
      },
      [&] {
        tagTGeom record = Part(parts[0]);
        record.material = steel;
        return Data().GetMaterialPool().TR_Del({steel}) != 0 ? Data().GetGeomPool().Change(parts[0], record) : 0;
      },
  };
  const auto before = Data().Snapshot();
  const CString last = Data().UndoTitle();
  for (std::size_t i = 0; i < kActs.size(); ++i) {
    CTransaction transaction(&Data());
    ASSERT_EQ(transaction.Begin(L"broken"), 1);
    EXPECT_EQ(kActs[i](), 1) << i;
    EXPECT_EQ(transaction.Commit(1), 0) << i;
    EXPECT_FALSE(Data().IsInTransaction());
    EXPECT_EQ(Data().Snapshot(), before) << i;
    EXPECT_EQ(Data().UndoTitle(), last);
  }
}

}  // namespace
}  // namespace qd::test

// The model database: transactions, rollback, undo, redo and what is announced of them.

#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <sstream>

#include "host/CTransaction.h"
#include "support/KeptDocument.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/model/Database.h"

namespace qd::workbench {
namespace {

class DatabaseTest : public ::testing::Test, private IDatabaseListener {
 protected:
  DatabaseTest() { m_data.SetListener(this); }
  void TearDown() override { m_kept.Check(true); }
  iterator Add(const CString& name) {
    tagTGeom record;
    record.name = name;
    return m_data.GetGeomPool().Add(record);
  }
  template <typename Writes>
  int Act(const Writes& writes, const CString& title = L"act") {
    CTransaction transaction(&m_data);
    if (transaction.Begin(title) == 0) return 0;
    writes();
    return transaction.Commit(1);
  }
  int Rename(iterator itr, const CString& name) {
    tagTGeom record = *m_data.GetGeomPool().GetAtNU(itr);
    record.name = name;
    return m_data.GetGeomPool().Private_Modify(itr, record, 0, 1);
  }
  std::string TakeLog() { return std::exchange(m_log, {}); }

  Database m_data;
  test::KeptDocument m_kept{m_data};
  std::function<void(const CQDUpdateRecord&)> m_onChange;

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override {
    for (const tagTRNotify& change : record.changes) {
      m_log += std::to_string(change.dataType) + ":" + std::to_string(change.kind) + ":" +
               std::to_string(change.itr & 0xFFFFFFFF) + " ";
    }
    if (m_onChange) m_onChange(record);
  }
  std::string m_log;
};

TEST_F(DatabaseTest, WritesOutsideATransactionAreRefused) {
  EXPECT_EQ(Add(L"x"), 0U);
  EXPECT_EQ(m_data.GetGeomPool().Count(), 0U);
  iterator itr = 0;
  Act([&] { itr = Add(L"x"); });
  EXPECT_EQ(Rename(itr, L"y"), 0);
  EXPECT_EQ(m_data.GetGeomPool().GetAtNU(itr)->name, L"x");
  EXPECT_EQ(m_data.BeginTransaction(L"a"), 1);
  EXPECT_EQ(m_data.BeginTransaction(L"b"), 0);
  EXPECT_EQ(m_data.Undo(), 0);
  m_data.RollbackTransaction();
}

TEST_F(DatabaseTest, ANoticeTellsTheNetChangesInTheOrderOfFirstTouch) {
  iterator a = 0;
  Act([&] {
    a = Add(L"a");
    Add(L"b");
  });
  EXPECT_EQ(TakeLog(), "9:100:1 9:100:2 ");
  Act([&] {
    const iterator fleeting = Add(L"c");
    Rename(a, L"A");
    m_data.GetGeomPool().TR_Del({fleeting});
    Rename(a, L"AA");
    Add(L"d");
  });
  EXPECT_EQ(TakeLog(), "9:102:1 9:100:4 ");
  Act([] {});
  EXPECT_EQ(TakeLog(), "");  // nothing changed: no act and no notice
  EXPECT_EQ(m_data.Undo(), 1);
  EXPECT_EQ(TakeLog(), "9:102:1 9:101:4 ");
}

TEST_F(DatabaseTest, ADeletedRecordIsReadableUntilTheNoticeHasBeenHandled) {
  iterator itr = 0;
  Act([&] { itr = Add(L"last words"); });
  CString seen;
  m_onChange = [&](const CQDUpdateRecord& record) {
    if (record.changes[0].kind == kChangeDeleted) seen = m_data.GetGeomPool().GetAtNU(itr)->name;
    EXPECT_EQ(m_data.GetDataType(itr) == 0, record.changes[0].kind == kChangeDeleted);
  };
  EXPECT_EQ(m_data.GetGeomPool().TR_Del({itr}), 1);
  EXPECT_EQ(seen, L"last words");
  EXPECT_EQ(m_data.GetGeomPool().GetAtNU(itr), nullptr);
}

TEST_F(DatabaseTest, IteratorsAreNeverGivenOutTwiceAndNameTheirPool) {
  iterator first = 0;
  Act([&] { first = Add(L"a"); });
  m_data.Undo();
  iterator second = 0;
  Act([&] { second = Add(L"b"); });
  EXPECT_NE(first, second);
  EXPECT_EQ(m_data.GetDataType(second), kDataGeom);
  EXPECT_EQ(m_data.GetDataType(first), 0);
  EXPECT_EQ(m_data.GetDataType(0), 0);
  EXPECT_EQ(m_data.GetDataType(~iterator{0}), 0);
  EXPECT_EQ(m_data.GetGeomPool().GetAtNU(0), nullptr);
  EXPECT_FALSE(m_data.CanRedo());  // a new act ends what could be done again
}

/// Random acts of several writes to records of all kinds, some taken back at once, with undo and redo between
/// them. What there is, what is announced and what the pools say of it is what a plain look at all records gives.
class RandomModels : public DatabaseTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  using Records = std::map<iterator, std::shared_ptr<const tagTRecord>>;

  Records Now() const {
    Records now;
    for (const JournalEntry& entry : m_data.AllRecords()) now[entry.itr] = entry.after;
    return now;
  }
  std::size_t Roll(std::size_t sides) { return m_random() % sides; }
  template <typename PoolType>
  iterator Any(const PoolType& pool) {
    const std::vector<iterator> all = pool.GetItrList();
    return all.empty() ? 0 : all[Roll(all.size())];
  }
  CString Name() { return CString(1, static_cast<wchar_t>(L'a' + Roll(5))); }

  void WritePart() {
    GeomPool& pool = m_data.GetGeomPool();
    const iterator itr = Roll(3) == 0 ? 0 : Any(pool);
    tagTGeom part = itr != 0 ? *pool.GetAtNU(itr) : tagTGeom();
    part.name = Name();
    part.kind = static_cast<TopologyKind>(Roll(5));
    part.gset = Any(m_data.GetGsetPool());
    part.material = Roll(2) == 0 ? 0 : Any(m_data.GetMaterialPool());
    itr != 0 ? pool.Change(itr, part) : static_cast<int>(pool.Add(part));
  }
  void WriteMset() {
    MsetPool& pool = m_data.GetMsetPool();
    const iterator itr = Roll(2) == 0 ? 0 : Any(pool);
    tagTMset set = itr != 0 ? *pool.GetAtNU(itr) : tagTMset();
    const iterator parent = Roll(2) == 0 ? 0 : Any(pool);
    set.name = Name();
    set.parent = parent != 0 ? pool.GetAtNU(parent)->key : 0;  // may stand below the set: refused
    set.geom = Roll(2) == 0 ? 0 : Any(m_data.GetGeomPool());
    set.property = Roll(2) == 0 ? 0 : Any(m_data.GetPropertyPool());
    if (Roll(3) == 0) {
      tagMGInfo generation;
      for (auto count = Roll(3); count > 0; --count) generation.targets.push_back(Any(m_data.GetGeomPool()));
      std::erase(generation.targets, iterator{0});
      set.mgInfo = MGInfoPool::KeyOf(m_data.GetMGInfoPool().Add(generation));
    }
    if (Roll(2) == 0) {
      auto mesh = std::make_shared<MeshData>();
      mesh->nodeIds = {1, 2};
      mesh->coordinates = {0, 0, 0, 1, 1, 1};
      if (Roll(2) == 0) mesh->blocks = {{1, 2, {static_cast<std::uint64_t>(pool.NextNumber())}, {1, 2}}};
      PutMesh(set, mesh);
    }
    itr != 0 ? pool.Modify(itr, set) : static_cast<int>(pool.Add(set));
  }
  void WriteSystem() {
    CordPool& pool = m_data.GetCordPool();
    const iterator itr = Roll(2) == 0 ? 0 : Any(pool);
    tagTCord system;
    system.SetName(Name());
    system.parent = Any(pool);
    system.origin = {1.0 * static_cast<double>(Roll(9)), 0, 0};
    itr != 0 ? pool.Modify(itr, system) : static_cast<int>(pool.Add(system));
  }
  void Step() {
    MsetPool& msets = m_data.GetMsetPool();
    GsetPool& gsets = m_data.GetGsetPool();
    switch (Roll(12)) {
      case 0:
      case 1:
      case 2:
        return WritePart();
      case 3:
      case 4:
        return WriteMset();
      case 5:
        return WriteSystem();
      case 6: {
        tagTGset set;
        set.name = Name();
        const iterator itr = Roll(2) == 0 ? 0 : Any(gsets);
        itr != 0 ? gsets.Change(itr, set) : static_cast<int>(gsets.Add(set));
        return;
      }
      case 7: {
        tagTMaterial material;
        tagTProperty property;
        property.material = m_data.GetMaterialPool().Add(material);
        m_data.GetPropertyPool().Add(property);
        return;
      }
      case 8:
        gsets.SetCurrentSet(Any(gsets));
        return;
      case 9:
        Roll(3) == 0 ? static_cast<int>(msets.NeedDefaultMset())
                     : msets.Merge(Any(msets), {Any(msets), Any(msets)});
        return;
      case 10:
        if (Roll(4) == 0) Roll(3) == 0 ? msets.TR_Del_All() : msets.TR_Del_EmptyMset();
        return;
      default: {
        const Records now = Now();
        std::vector<iterator> gone;
        for (auto count = 1 + Roll(3); count > 0; --count) {
          gone.push_back(std::next(now.begin(), static_cast<std::ptrdiff_t>(Roll(now.size())))->first);
        }
        if (std::set<iterator>(gone.begin(), gone.end()).size() == gone.size()) m_data.Delete(gone);
      }
    }
  }

  /// What is heard of a change is what has changed, once each.
  void ExpectHeard(const Records& before, const Records& after) {
    std::multiset<std::string> expected;
    const auto note = [&expected](iterator itr, ChangeKind kind) {
      expected.insert(std::to_string(TypeOf(itr)) + ":" + std::to_string(kind) + ":" +
                      std::to_string(itr & 0xFFFFFFFF));
    };
    for (const auto& [itr, record] : before) {
      const auto found = after.find(itr);
      if (found == after.end()) note(itr, kChangeDeleted);
      if (found != after.end() && found->second != record) note(itr, kChangeModified);
    }
    for (const auto& [itr, record] : after) {
      if (!before.contains(itr)) note(itr, kChangeAdded);
    }
    std::istringstream heard(TakeLog());
    EXPECT_EQ(std::multiset<std::string>(std::istream_iterator<std::string>(heard), {}), expected);
  }
  template <typename T>
  std::vector<std::pair<iterator, const T*>> Of(std::uint16_t type, const Records& now) {
    std::vector<std::pair<iterator, const T*>> records;
    for (const auto& [itr, record] : now) {
      if (TypeOf(itr) == type) records.emplace_back(itr, static_cast<const T*>(record.get()));
    }
    return records;
  }
  template <typename T>
  static bool Named(const std::vector<std::pair<iterator, const T*>>& records, const CString& name) {
    return std::any_of(records.begin(), records.end(), [&](const auto& one) {
      if constexpr (std::is_same_v<T, tagTCord>)
        return one.second->GetName() == name;
      else
        return one.second->name == name;
    });
  }
  void ExpectIndexes() {
    const Records now = Now();
    const auto parts = Of<tagTGeom>(kDataGeom, now);
    const auto gsets = Of<tagTGset>(kDataGset, now);
    const auto msets = Of<tagTMset>(kDataMset, now);
    const auto systems = Of<tagTCord>(kDataCord, now);
    const auto settings = Of<tagTSettings>(kDataSettings, now);
    EXPECT_EQ(m_data.GetGeomPool().Count(), parts.size());
    EXPECT_EQ(m_data.GetMsetPool().Count(), msets.size());
    std::vector<iterator> sets{0};
    for (const auto& [itr, set] : gsets) sets.push_back(itr);
    for (const iterator set : sets) {
      std::vector<iterator> all;
      int exists[5];
      m_data.GetGeomPool().GetTypeExist(set, exists);
      for (int kind = 0; kind < 5; ++kind) {
        std::vector<iterator> expected;
        for (const auto& [itr, part] : parts) {
          if (part->gset == set && static_cast<int>(part->kind) == kind) expected.push_back(itr);
        }
        std::vector<iterator> found;
        m_data.GetGeomPool().GetItrGsetTypeList(set, kind, found);
        EXPECT_EQ(found, expected);
        EXPECT_EQ(exists[kind], expected.empty() ? 0 : 1);
        all.insert(all.end(), expected.begin(), expected.end());
      }
      EXPECT_EQ(m_data.GetGeomPool().PartsOf(set), all);
    }
    for (const wchar_t* text : {L"a", L"b", L"c", L"d", L"e"}) {
      const CString name = text;
      EXPECT_EQ(m_data.GetGsetPool().Exist(name) != 0, Named(gsets, name));
      EXPECT_EQ(m_data.GetMsetPool().Exist(name) != 0, Named(msets, name));
      EXPECT_EQ(m_data.GetCordPool().Exist(name) != 0, Named(systems, name));
      EXPECT_FALSE(Named(gsets, m_data.GetGsetPool().GetNewCopyName(name)));
      EXPECT_FALSE(Named(msets, m_data.GetMsetPool().GetNewCopyName(name)));
      EXPECT_FALSE(Named(systems, m_data.GetCordPool().GetNewCopyName(name)));
    }
    for (const auto& [part, record] : parts) {
      iterator newest = 0;
      for (const auto& [itr, set] : msets) newest = set->geom == part ? itr : newest;
      EXPECT_EQ(m_data.GetMsetPool().GetItrByGeomItr(part), newest);
    }
    std::vector<std::uint32_t> keys{0};
    for (const auto& [itr, set] : msets) {
      EXPECT_EQ(m_data.GetMsetPool().GetItrByKey(set->key), itr);
      EXPECT_LT(set->key & kMsetKeyMask, m_data.GetMsetPool().GetNewKey());
      keys.push_back(set->key & kMsetKeyMask);
    }
    for (const std::uint32_t key : keys) {
      std::vector<iterator> expected;
      for (const auto& [itr, set] : msets) {
        if (set->parent == key) expected.push_back(itr);
      }
      std::vector<iterator> found;
      m_data.GetMsetPool().GetItrListByParentMsetK(key, found);
      EXPECT_EQ(found, expected);
    }
    for (const auto& [system, record] : systems) {
      std::vector<iterator> expected;
      for (const auto& [itr, other] : systems) {
        if (other->parent == system) expected.push_back(itr);
      }
      EXPECT_EQ(m_data.GetCordPool().ChildrenOf(system), expected);
    }
    const iterator chosen = settings.empty() ? 0 : settings.front().second->currentGset;
    EXPECT_EQ(m_data.GetGsetPool().GetCurrentSet(), now.contains(chosen) ? chosen : sets.size() > 1 ? sets[1] : 0);
    const iterator usual = settings.empty() ? 0 : settings.front().second->defaultMset;
    EXPECT_EQ(m_data.GetMsetPool().GetDefaultMset(), now.contains(usual) ? usual : 0);
  }

  std::mt19937 m_random{GetParam()};
};

TEST_P(RandomModels, AreWhatAPlainLookAtTheRecordsGives) {
  std::vector<Records> states{Now()};
  std::size_t at = 0;
  for (int act = 0; act < 150; ++act) {
    const Records before = Now();
    const std::size_t way = Roll(8);
    if (way < 2) {
      const bool undoes = way == 0;
      const bool may = undoes ? at > 0 : at + 1 < states.size();
      ASSERT_EQ(undoes ? m_data.Undo() : m_data.Redo(), may ? 1 : 0) << "act " << act;
      if (may) at = undoes ? at - 1 : at + 1;
      ASSERT_TRUE(Now() == states[at]) << "act " << act;
    } else {
      ASSERT_EQ(m_data.BeginTransaction(L"act"), 1);
      for (auto steps = 1 + Roll(6); steps > 0; --steps) Step();
      ExpectIndexes();
      if (way == 2) {
        m_data.RollbackTransaction();
      } else if (m_data.CommitTransaction(1) != 0 && Now() != before) {
        states.resize(at + 1);
        states.push_back(Now());
        ++at;
      }
      ASSERT_TRUE(Now() == states[at]) << "act " << act;
      ASSERT_EQ(m_data.CanRedo(), at + 1 < states.size());
    }
    ExpectHeard(before, Now());
    ExpectIndexes();
    m_kept.Check(false);
    ASSERT_FALSE(HasFailure()) << "act " << act;
  }
  EXPECT_GT(states.size(), 10U) << "not everything is refused";
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomModels, ::testing::Range(1U, 9U));

/// How much is kept of acts, by a plain list of their sizes.
TEST_F(DatabaseTest, TheHistoryKeepsAsManyActsAsItsBoundAllows) {
  constexpr std::size_t kUnit = 10'000;
  constexpr std::size_t kUnits = 8;
  m_data.SetHistoryLimit(kUnits * kUnit + kUnit / 2);  // what records take beside their shapes is far below
  std::mt19937 random(11);
  std::vector<std::size_t> undo;
  std::vector<std::size_t> redo;
  iterator part = 0;
  const auto write = [&](std::size_t units) {
    Act([&] {
      tagTGeom record = part != 0 ? *m_data.GetGeomPool().GetAtNU(part) : tagTGeom();
      record.name = std::to_wstring(random());
      auto shape = std::make_shared<PartShape>();
      shape->brep.assign(units * kUnit, 'x');
      if (units != 0) record.shape = shape;
      part = units != 0 ? m_data.GetGeomPool().Add(record) : (m_data.GetGeomPool().Change(part, record), part);
    });
  };
  struct Look final : IUndoableChange {
    void Restore(bool) override {}
    std::size_t Bytes() const override { return kUnit; }
  };
  const auto remember = [&](std::size_t units) {
    undo.back() += units;
    const auto sum = [&undo] { return std::accumulate(undo.begin(), undo.end(), std::size_t{0}); };
    while (sum() > kUnits && undo.size() > 1) undo.erase(undo.begin());
  };
  for (int step = 0; step < 300; ++step) {
    if (random() % 3 == 0 && !undo.empty()) {
      ASSERT_EQ(m_data.Undo(), 1);
      redo.push_back(undo.back());
      undo.pop_back();
      part = 0;
    } else if (random() % 4 == 0 && !redo.empty()) {
      ASSERT_EQ(m_data.Redo(), 1);
      undo.push_back(redo.back());
      redo.pop_back();
      part = 0;
    } else {
      // Another name costs next to nothing, however large the part is.
      const std::size_t units = part != 0 && random() % 4 == 0 ? 0 : 1 + random() % 10;
      const std::uint64_t since = m_data.ActNumber();
      write(units);
      redo.clear();
      undo.push_back(0);
      remember(units);
      // What is changed beside the records counts to the act that it belongs to.
      if (random() % 3 != 0) continue;
      m_data.AddChange(L"look", std::make_shared<Look>(), since);
      remember(1);
    }
    ASSERT_EQ(m_data.CanUndo(), !undo.empty()) << step;
    ASSERT_EQ(m_data.CanRedo(), !redo.empty()) << step;
  }
  std::size_t undone = 0;
  while (m_data.Undo() != 0) ++undone;
  EXPECT_EQ(undone, undo.size());
  std::size_t redone = 0;
  while (m_data.Redo() != 0) ++redone;
  EXPECT_EQ(redone, undo.size() + redo.size());
}

TEST_F(DatabaseTest, TheDefaultMeshSetIsEmptiedWhereverItStands) {
  MsetPool& pool = m_data.GetMsetPool();
  iterator usual = 0;
  Act([&] {
    usual = pool.NeedDefaultMset();
    tagTMset record = *pool.GetAtNU(usual);
    record.parent = pool.GetAtNU(pool.Add({}))->key;
    EXPECT_EQ(pool.Modify(usual, record), 1);
  });
  EXPECT_EQ(pool.TR_Del_All(), 1);
  EXPECT_EQ(pool.GetItrList(), std::vector<iterator>{usual});
  EXPECT_EQ(pool.GetAtNU(usual)->parent, 0U);
}

TEST_F(DatabaseTest, OnlySolidsAreFlexibleBodies) {
  for (const auto kind : {TopologyKind::Point, TopologyKind::Curve, TopologyKind::Surface, TopologyKind::Solid,
                          TopologyKind::Compound}) {
    iterator part = 0;
    Act([&] {
      tagTGeom record;
      record.kind = kind;
      part = m_data.GetGeomPool().Add(record);
      EXPECT_EQ(m_data.SetBodyType({part}, 1), 1);
    });
    EXPECT_EQ(m_data.IsFlexibleBody(part) != 0, kind == TopologyKind::Solid);
    EXPECT_EQ(m_data.GetGeomPool().IsSolid(part) != 0, kind == TopologyKind::Solid);
    Act([&] { EXPECT_EQ(m_data.SetBodyType({part, part}, 0), 1); });
    EXPECT_EQ(m_data.IsFlexibleBody(part), 0);
    Act([&] { EXPECT_EQ(m_data.SetBodyType({4711, part}, 1), 0); });
  }
}

/// What elements are made of is told by their property; without one by the part that they mesh.
TEST_F(DatabaseTest, TheMassIsOfThePropertysMaterialOrElseOfTheParts) {
  auto mesh = std::make_shared<MeshData>();
  mesh->nodeIds = {1, 2, 3, 4};
  mesh->coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
  mesh->blocks = {{4, 4, {1}, {1, 2, 3, 4}}};
  for (const bool hasPart : {false, true}) {
    for (const bool hasProperty : {false, true}) {
      iterator set = 0;
      Act([&] {
        const auto material = [this](double density) {
          tagTMaterial made;
          made.density = density;
          return m_data.GetMaterialPool().Add(made);
        };
        tagTGeom part;
        part.material = material(12);
        tagTProperty property;
        property.material = material(18);
        tagTMset record;
        record.geom = hasPart ? m_data.GetGeomPool().Add(part) : 0;
        record.property = hasProperty ? m_data.GetPropertyPool().Add(property) : 0;
        PutMesh(record, mesh);
        set = m_data.GetMsetPool().Add(record);
      });
      IAppDB::MassCentre centre;
      ASSERT_EQ(m_data.GetMassCentre(set, centre, [](double) { return true; }), 1);
      EXPECT_NEAR(centre.mass, hasProperty ? 3 : hasPart ? 2 : 0, 1e-12);
    }
  }
}

}  // namespace
}  // namespace qd::workbench

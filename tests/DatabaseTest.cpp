// The model database: transactions, rollback, undo, redo and what is announced of them.

#include <gtest/gtest.h>

#include <random>

#include "host/CTransaction.h"
#include "support/CheckedStore.h"
#include "workbench/model/Database.h"

namespace qd::workbench {
namespace {

class DatabaseTest : public ::testing::Test, private IDatabaseListener {
 protected:
  DatabaseTest() { m_data.SetListener(this); }
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
  test::CheckedStore m_checked{m_data};
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

TEST_F(DatabaseTest, LeavingATransactionOrFailingInItRestoresEverything) {
  iterator itr = 0;
  Act([&] { itr = Add(L"a"); });
  const auto before = m_data.Snapshot();
  {
    CTransaction transaction(&m_data);
    transaction.Begin(L"left");
    Rename(itr, L"changed");
    Add(L"more");
    m_data.GetGeomPool().TR_Del({itr});
  }
  EXPECT_EQ(m_data.Snapshot(), before);
  EXPECT_EQ(m_data.GetGeomPool().TR_Del({itr, 4711}), 0);  // the second one fails: the first one stays
  EXPECT_EQ(m_data.Snapshot(), before);
  EXPECT_EQ(m_data.UndoTitle(), L"act");
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

TEST_F(DatabaseTest, MeshOfAPartIsFoundThroughUndo) {
  iterator geom = 0;
  iterator mset = 0;
  Act([&] { geom = Add(L"a"); });
  Act([&] {
    tagTMset record;
    record.geom = geom;
    mset = m_data.GetMsetPool().Add(record);
  });
  EXPECT_EQ(m_data.GetMsetPool().GetItrByGeomItr(geom), mset);
  m_data.Undo();
  EXPECT_EQ(m_data.GetMsetPool().GetItrByGeomItr(geom), 0U);
  m_data.Redo();
  EXPECT_EQ(m_data.GetMsetPool().GetItrByGeomItr(geom), mset);
}

TEST_F(DatabaseTest, RandomActsAreTakenBackAndRepeatedExactly) {
  std::mt19937 random(5);
  std::vector<std::vector<std::shared_ptr<const tagTRecord>>> states{m_data.Snapshot()};
  for (int act = 0; act < 60; ++act) {
    const bool commits = random() % 4 != 0;
    m_data.BeginTransaction(L"act");
    Add(L"always");  // every act changes something
    for (auto step = random() % 8; step > 0; --step) {
      const auto all = m_data.GetGeomPool().GetItrList();
      const iterator some = all[random() % all.size()];
      switch (random() % 3) {
        case 0:
          Add(L"new");
          break;
        case 1:
          Rename(some, std::to_wstring(random()));
          break;
        default:
          m_data.GetGeomPool().TR_Del({some});
      }
    }
    if (m_data.GetGeomPool().Count() == 0) Add(L"never empty");
    if (!commits) {
      m_data.RollbackTransaction();
      ASSERT_EQ(m_data.Snapshot(), states.back());
      continue;
    }
    m_data.CommitTransaction();
    if (m_data.Snapshot() != states.back()) states.push_back(m_data.Snapshot());
  }
  for (std::size_t at = states.size() - 1; at > 0; --at) {
    ASSERT_EQ(m_data.Undo(), 1);
    ASSERT_EQ(m_data.Snapshot(), states[at - 1]);
  }
  ASSERT_EQ(m_data.Undo(), 0);
  for (std::size_t at = 1; at < states.size(); ++at) {
    ASSERT_EQ(m_data.Redo(), 1);
    ASSERT_EQ(m_data.Snapshot(), states[at]);
  }
}

TEST_F(DatabaseTest, TheHistoryIsBoundedAndGivesUpTheOldestActs) {
  const auto add = [this](std::size_t bytes) {
    auto shape = std::make_shared<PartShape>();
    shape->brep.assign(bytes, 'x');
    tagTGeom part;
    part.name = std::to_wstring(bytes);
    part.shape = shape;
    CTransaction transaction(&m_data);
    transaction.Begin(L"add");
    m_data.GetGeomPool().Add(part);
    transaction.Commit(1);
  };
  m_data.SetHistoryLimit(10'000);
  for (int i = 0; i < 5; ++i) add(3000);
  int undone = 0;
  while (m_data.Undo() != 0) ++undone;
  EXPECT_EQ(undone, 2);  // 3,400 bytes each
  EXPECT_EQ(m_data.GetGeomPool().Count(), 3U);
  add(50'000);  // larger than all that is allowed, but the last one
  EXPECT_FALSE(m_data.CanRedo());
  EXPECT_EQ(m_data.Undo(), 1);
  EXPECT_EQ(m_data.Undo(), 0);
}

}  // namespace
}  // namespace qd::workbench

// Records that are asked for by a query, as scripts and the command line do, beside what the find bar selects;
// what they measure together; acts that stay open between calls.

#include <gtest/gtest.h>

#include <set>

#include "host/Act.h"
#include "support/SessionModel.h"
#include "workbench/session/MeasureRecords.h"
#include "workbench/session/RecordQuery.h"

namespace qd::test {
namespace {

using namespace workbench;

class RecordQuery : public SessionTest {
 protected:
  std::set<iterator> Found(const CString& query) {
    const FoundRecords found = FindRecords(*m_session, query);
    EXPECT_EQ(found.fault.key, nullptr);
    const std::set<iterator> once(found.records.begin(), found.records.end());
    EXPECT_EQ(once.size(), found.records.size());
    return once;
  }
  /// What the user would select in both trees by their find bars.
  std::set<iterator> Selected(const CString& query) {
    std::set<iterator> all;
    for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) {
      bar->SetFind(query);
      m_toolkit.FinishSlices();
      m_doc.Select({});
      Settle();
      if (bar->SelectMatches() != 0) all.insert(m_doc.GetSelectBuffer().begin(), m_doc.GetSelectBuffer().end());
      bar->ClearFilter();
      Settle();
    }
    m_doc.Select({});
    return all;
  }
};

TEST_F(RecordQuery, FindsWhatTheFindBarSelects) {
  const iterator steel = AddMaterial(L"st\u00E9el");
  ChangePart(m_b, [&](tagTGeom& record) {
    record.material = steel;
    auto shape = std::make_shared<PartShape>();
    shape->volume = 12;
    record.shape = shape;
    record.colour = Rgb(255, 0, 0);
  });
  Settle();
  ShowRecords(m_doc, {m_second, m_inner}, false);
  Settle();
  for (const wchar_t* query :
       {L"b", L"steel", L"type:part", L"type:set", L"type:mesh -inner", L"material:steel", L"set:first",
        L"volume:>10", L"elements:>0", L"colour:red", L"hidden:", L"type:material", L"shown: type:part", L"id:1-2",
        L"in:outer", L"in:first type:part", L"assembly:x"}) {
    EXPECT_EQ(Found(query), Selected(query)) << ToUtf8(query);
  }
  EXPECT_EQ(Found(L"hidden:"), (std::set<iterator>{m_c, m_inner}));
  EXPECT_NE(FindRecords(*m_session, L"nothing:1").fault.key, nullptr);
  Undo();
  EXPECT_TRUE(workbench::IsShown(m_doc, m_c) && workbench::IsShown(m_doc, m_inner));
}

TEST_F(RecordQuery, PartsCountThemselvesAndMeshesWhereTheirPartDoesNot) {
  ChangePart(m_a, [](tagTGeom& record) {
    auto shape = std::make_shared<PartShape>();
    shape->area = 3;
    record.shape = shape;
  });
  const auto measured = [this](const std::vector<iterator>& parts) {
    Measures measures;
    EXPECT_TRUE(MeasureAll(
        GatherMeasured(Data(), parts, {m_outer, m_inner}), [](double) { return true; }, measures));
    return measures.Area();
  };
  const double alone = measured({m_b});  // two sets of two triangles of half a unit each
  EXPECT_DOUBLE_EQ(alone, 2);
  EXPECT_DOUBLE_EQ(measured({m_a}), 3 + alone / 2);
  Measures stopped;
  EXPECT_FALSE(MeasureAll(
      GatherMeasured(Data(), {m_a}, {}), [](double) { return false; }, stopped));
  EXPECT_FALSE(MeasureAll(
      GatherMeasured(Data(), {}, {m_outer}), [](double) { return false; }, stopped));
}

TEST_F(RecordQuery, AnOpenActTakesInWhatIsRunUntilItIsCommitted) {
  const auto part = [this](bool good) {
    return RunAct(&Data(), L"part", [&] {
      tagTMaterial record;
      record.name = L"m";
      return Data().GetMaterialPool().Add(record) != 0 && good ? 1 : 0;
    });
  };
  const std::size_t before = Data().GetMaterialPool().Count();
  {
    OpenAct act(&Data(), L"outer");
    OpenAct second(&Data(), L"second");
    EXPECT_FALSE(second.IsOpen());
    EXPECT_EQ(part(true) + part(true), 2);
    EXPECT_EQ(act.Commit(), 1);
    EXPECT_EQ(act.Commit(), 0);
  }
  EXPECT_EQ(Data().UndoTitle(), L"outer");
  EXPECT_EQ(Data().GetMaterialPool().Count(), before + 2);
  {
    OpenAct act(&Data(), L"fails");
    EXPECT_EQ(part(true), 1);
    EXPECT_EQ(part(false), 0);
    EXPECT_EQ(act.Commit(), 0);
  }
  auto dropped = std::make_unique<OpenAct>(&Data(), L"dropped");
  EXPECT_EQ(part(true), 1);
  dropped.reset();
  EXPECT_EQ(Data().GetMaterialPool().Count(), before + 2);
  Database other;
  auto first = std::make_unique<OpenAct>(&Data(), L"first");
  auto inner = std::make_unique<OpenAct>(&other, L"inner");
  EXPECT_EQ(part(true), 1) << "acts of two documents go on beside each other";
  first->Commit();
  first.reset();
  EXPECT_EQ(inner->Commit(), 1);
  EXPECT_EQ(part(true), 1) << "nothing was left open";
  EXPECT_EQ(Data().UndoTitle(), L"part");
}

}  // namespace
}  // namespace qd::test

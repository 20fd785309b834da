// Coordinate systems in the model tree, and what their pool takes and refuses.

#include <gtest/gtest.h>

#include <utility>

#include "host/ProductVariant.h"
#include "qd_wrt/coords/CQDTreeItemCord.h"
#include "qd_wrt/coords/CQDTreeItemCordData.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/Model.h"

namespace qd::test {
namespace {

using workbench::CordPool;

const CString kRoot = L"IDS_QD_WRT_Coordinate_System";
const CString kGlobal = L"IDS_WB_GLOBAL_CORD";

class CoordinatesTest : public ModelTest {
 protected:
  CoordinatesTest() { Open(); }
  ~CoordinatesTest() override { SetProductVariant(ProductVariant::Standard); }

  CordPool& Pool() { return Data().GetCordPool(); }
  iterator Add(const CString& name, iterator parent = 0, const workbench::Vector3& origin = {}) {
    iterator itr = 0;
    Act([&] {
      tagTCord record;
      record.SetName(name);
      record.parent = parent;
      record.origin = origin;
      itr = Pool().Add(record);
    });
    return itr;
  }
  void Change(iterator itr, const std::function<void(tagTCord&)>& change) {
    Act([&] {
      tagTCord record = *Pool().GetAtNU(itr);
      change(record);
      ASSERT_EQ(Pool().Modify(itr, record), 1);
    });
  }
  bool IsShown(iterator itr) {
    return m_doc.GetDisplay().Labels().GetShowHide(kLabelCord, Data().GetRecordID(itr)) != 0;
  }
  std::string Systems() {
    const std::string all = Cords();
    return all.substr(all.find('['));
  }
};

TEST_F(CoordinatesTest, AnswersOfTheRootForRecordsItDoesNotHold) {
  auto& root = static_cast<CQDTreeItemCord&>(*Node(kRoot));
  const iterator a = Add(L"A");
  EXPECT_EQ(root.DeleteChildItem(a + 5), 1);
  EXPECT_EQ(root.DeleteChildItem(a), 1);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD]");
  EXPECT_EQ(root.ModifyChildItem(a), 1);  // makes the node
  EXPECT_EQ(root.MakeChildItem(a), 1);    // it stands: nothing comes twice
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A]");
  root.PushUpdateInfo({kDataCord, kChangeDeleted, a});
  root.PushUpdateInfo({kDataCord, 99, a});
  root.Update();
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD]");
  root.MakeChildItem(a);
  EXPECT_EQ(root.GetItemType(), 2);
  EXPECT_EQ(root.GetCheckStatus(), 0);
}

TEST_F(CoordinatesTest, OneSystemOfTheUserPutsAllInOrderWhenTheTreeIsBuilt) {
  Add(L"z");
  Add(L"a");
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD z a]");
  Act([&] { Pool().UpdateAfterDeletion(); });
  Open();
  // Without numbers in column 1 the order of the pool stays.
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD z a]");
  Select({kRoot});
  Tree().SortItem(Row(kRoot), 0, 1);
  EXPECT_EQ(Systems(), "[a IDS_WB_GLOBAL_CORD z]");
}

// ---- visibility -----------------------------------------------------------------------------------------

TEST_F(CoordinatesTest, TheHostShowsAndHidesByRecord) {
  const iterator a = Add(L"A");
  const iterator part = AddParts({L"Part"}).front();
  TArray<iterator> some{a, part, a + 7};
  Heard();
  m_bar.ShowHideCordLabel(&m_doc, some, 0);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD -A]");
  EXPECT_EQ(Node(L"Part")->GetCheckStatus(), kChecked) << "only the branch of coordinate systems is asked";
  EXPECT_EQ(Redraws(), 1);
  EXPECT_FALSE(Node(L"A")->IsViewUpdate());
  Node(kRoot)->SetViewUpdate(0);
  m_bar.ShowHideCordLabel(&m_doc, some, 1);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A]");
  EXPECT_EQ(Redraws(), 0);
  m_bar.ShowHideManfLabel(&m_doc, some, 0);
  m_bar.ShowHideDatum(&m_doc, some, 0);
  EXPECT_EQ(State().find("-Part"), std::string::npos);
}

TEST_F(CoordinatesTest, BoxesFollowLabelsThatTheHostSwitches) {
  const iterator a = Add(L"A");
  m_bar.ShowHideLabel(&m_doc, kDataCord, a, 0);
  EXPECT_FALSE(IsShown(a));
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD -A]");
  m_doc.GetDisplay().Labels().SetShowHide(1, kLabelCord, Data().GetRecordID(a));
  m_bar.RestoreLabel(&m_doc);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A]");
}

TEST_F(CoordinatesTest, AllAreSwitchedInTheOrderOfTheirRecordsWhereverTheRowsStand) {
  const iterator a = Add(L"A");
  Add(L"B");
  Data().Delete({a});
  Settle();
  Undo();
  ASSERT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD B A]");
  Select({kRoot});
  Heard();
  Command(kCommandHideAll);
  std::string order;
  std::istringstream heard(Heard());
  for (std::string call; std::getline(heard, call);) {
    if (call.starts_with("labels.SetShowHide")) order += call.substr(call.find_last_of(' '));
  }
  EXPECT_EQ(order, " IDS_WB_GLOBAL_CORD) A) B)");
}

// ---- menus and commands ---------------------------------------------------------------------------------

TEST_F(CoordinatesTest, TheRootHasAMenuForItselfAlone) {
  Add(L"A");
  Select({kRoot, L"A"});
  Menu();
  EXPECT_TRUE(m_toolkit.ShownMenus().empty());
  Select({kGlobal});
  EXPECT_EQ(Menu(), "");
  EXPECT_EQ(m_toolkit.ShownMenus().size(), 1U) << "the default system opens an empty one";
}

// ---- what stands on what --------------------------------------------------------------------------------

TEST_F(CoordinatesTest, StandOnEachOther) {
  const iterator a = Add(L"A", 0, {10, 0, 0});
  Change(a, [](tagTCord& record) {
    record.xAxis = {0, 5, 0};
    record.xyPlane = {-3, 1, 0};
  });
  const iterator b = Add(L"B", a, {2, 0, 0});
  const iterator c = Add(L"C", b, {0, 1, 0});
  const workbench::Placement was = Pool().GlobalPlacement(c);
  EXPECT_NEAR(was.origin[0], 9, 1e-12);
  EXPECT_NEAR(was.origin[1], 2, 1e-12);
  EXPECT_NEAR(was.axes[0][1], 1, 1e-12);
}

TEST_F(CoordinatesTest, ThePoolRefusesWhatCannotStand) {
  const iterator a = Add(L"A");
  const iterator b = Add(L"B", a);
  const auto refused = [this](iterator itr, const std::function<void(tagTCord&)>& change) {
    tagTCord record = *Pool().GetAtNU(itr);
    change(record);
    CTransaction transaction(&Data());
    transaction.Begin(L"act");
    const bool modified = Pool().Modify(itr, record) != 0;
    return !modified && (Pool().IsDefaultCord(itr) != 0 || Pool().Add(record) == 0 || record.parent == itr);
  };
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(refused(b, [](tagTCord& record) { record.xAxis = {}; }));
  EXPECT_TRUE(refused(b, [](tagTCord& record) { record.xyPlane = {-4, 0, 0}; }));
  EXPECT_TRUE(refused(b, [](tagTCord& record) { record.xyPlane = {1, 1e-9, 0}; }));
  EXPECT_TRUE(refused(b, [](tagTCord& record) { record.origin[1] = kNone; }));
  EXPECT_TRUE(refused(b, [](tagTCord& record) { record.SetName(L""); }));
  EXPECT_TRUE(refused(b, [](tagTCord& record) { record.parent += 9; }));
  EXPECT_TRUE(refused(b, [&](tagTCord& record) { record.parent = b; }));
  EXPECT_TRUE(refused(Pool().GetDefaultCord(), [](tagTCord& record) { record.origin[0] = 1; }));
  tagTCord circle = *Pool().GetAtNU(a);
  circle.parent = b;
  Act([&] { EXPECT_EQ(Pool().Modify(a, circle), 0); });
  // Directions of any length will do.
  Change(b, [](tagTCord& record) {
    record.xAxis = {1e300, 0, 0};
    record.xyPlane = {0, 1e-300, 0};
  });
  EXPECT_NEAR(Pool().GlobalPlacement(b).axes[2][2], 1, 1e-12);
}

}  // namespace
}  // namespace qd::test

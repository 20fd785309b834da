// Coordinate systems in the model tree: rows, boxes, menus, commands, names, deletion.

#include <gtest/gtest.h>

#include <utility>

#include "host/ProductVariant.h"
#include "qd_wrt/coords/CQDTreeItemCord.h"
#include "qd_wrt/coords/CQDTreeItemCordData.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/AllOrNothing.h"
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
  CString NameOf(iterator itr) { return Pool().GetAtNU(itr)->GetName(); }
  bool IsShown(iterator itr) { return m_doc.GetDisplay().GetShowHide(kLabelCord, Data().GetRecordID(itr)) != 0; }
  std::string Systems() {
    const std::string all = Cords();
    return all.substr(all.find('['));
  }
  /// Edits a title in place.
  void Rename(const CString& title, const CString& text) {
    Select({title});
    Key(kKeyF2);
    ASSERT_NE(Tree().GetEditBox(), nullptr);
    auto& box = static_cast<CEdit&>(*m_toolkit.FocusWindow());
    box.SetText(text);
    m_toolkit.Key(box, kKeyEnter);
    m_toolkit.Pump();
  }
};

TEST_F(CoordinatesTest, TheBranchStandsFirstAndFollowsThePool) {
  EXPECT_EQ(Tree().NodeOf(Tree().GetChildItem(Tree().GetRootItem())), Node(kRoot));
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD]");
  const iterator a = Add(L"A");
  const iterator b = Add(L"B", a);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A B]");
  Change(a, [](tagTCord& record) { record.SetName(L"a"); });
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD a B]");
  Change(a, [](tagTCord& record) { record.origin[0] = 3; });  // nothing that the tree shows
  Act([&] { ASSERT_EQ(Pool().Delete(b), 1); });
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD a]");
  Data().Undo();
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD a B]");
  while (Data().Undo() != 0) {
  }
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD]");
  Data().Redo();
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A]");
}

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

TEST_F(CoordinatesTest, BoxesSwitchSymbols) {
  const iterator a = Add(L"A");
  const iterator b = Add(L"B");
  Node(kRoot)->Expand(1);
  m_toolkit.Pump();
  ClickCheck(L"A");
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD -A B]");
  EXPECT_FALSE(IsShown(a));
  EXPECT_TRUE(IsShown(b));
  Data().Delete({a});
  Data().Undo();  // made anew, the box tells what is shown
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD B -A]");
  Data().Delete({b});
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD -A]");
  Select({kRoot});
  Command(kCommandHideAll);
  EXPECT_EQ(Cords(), "*IDS_QD_WRT_Coordinate_System [-IDS_WB_GLOBAL_CORD -A]");
  Command(kCommandShowAll);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A]");
  EXPECT_TRUE(IsShown(a));
}

TEST_F(CoordinatesTest, ShowAllAndHideAllOfTheTreeReachTheSystems) {
  const iterator a = Add(L"A");
  Select({L"model.step"});
  Command(kCommandHideAll);
  EXPECT_EQ(Systems(), "[-IDS_WB_GLOBAL_CORD -A]");
  EXPECT_FALSE(IsShown(a));
  Command(kCommandShowAll);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A]");
}

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
  m_doc.GetDisplay().SetShowHide(1, kLabelCord, Data().GetRecordID(a));
  m_bar.RestoreLabel(&m_doc);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD A]");
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

TEST_F(CoordinatesTest, DeletesTheSelectedOnesOrNone) {
  Add(L"A");
  Add(L"B");
  AddParts({L"Part"});
  Select({L"A", L"B", L"Part"});
  Command(kCommandDelete);
  EXPECT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD]");
  EXPECT_TRUE(Row(L"Part"));
  EXPECT_EQ(Data().UndoTitle(), L"IDS_QD_TRANS_Delete_CORD");
  Data().Undo();
  Select({kGlobal, L"A"});
  const auto before = Data().Snapshot();
  Command(kCommandDelete);
  EXPECT_EQ(Data().Snapshot(), before) << "the pool refuses the default system";
  EXPECT_TRUE(Data().CanRedo());
}

TEST_F(CoordinatesTest, ARefusedWriteTakesTheWholeActBack) {
  const iterator a = Add(L"A", 0, {1, 0, 0});
  Add(L"on A", a, {0, 2, 0});
  Add(L"B");
  const auto rows = [this] { return Systems(); };
  Select({L"A", L"B"});
  EXPECT_EQ(ExpectAllOrNothing(Data(), rows, [this] { Command(kCommandDelete); }), 3);  // two go, one moves
  Data().Undo();
  Tree().ResetSelection(1);
  EXPECT_EQ(ExpectAllOrNothing(Data(), rows, [this] { Node(L"B")->OnEditChange(L"C"); }), 1);
}

// ---- what stands on what --------------------------------------------------------------------------------

TEST_F(CoordinatesTest, WhatStoodOnADeletedSystemStaysWhereItIs) {
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
  Select({L"A", L"B"});
  Command(kCommandDelete);
  ASSERT_EQ(Systems(), "[IDS_WB_GLOBAL_CORD C]");
  EXPECT_EQ(Pool().GetAtNU(c)->parent, Pool().GetDefaultCord());
  const workbench::Placement now = Pool().GlobalPlacement(c);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(now.origin[i], was.origin[i], 1e-12);
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(now.axes[i][k], was.axes[i][k], 1e-12);
  }
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

// ---- names ----------------------------------------------------------------------------------------------

struct NameCase {
  const char* name;
  CString typed;
  CString stored;
  const char* warning;
  bool writes;
};
class CoordinateNames : public CoordinatesTest, public ::testing::WithParamInterface<NameCase> {};

TEST_P(CoordinateNames, AreTakenOrRefused) {
  const NameCase& expected = GetParam();
  const iterator a = Add(L"A");
  Add(CString(63, L'o'));
  Add(L"other");
  Rename(L"A", expected.typed);
  EXPECT_EQ(NameOf(a), expected.stored);
  EXPECT_TRUE(Row(expected.stored)) << "the row shows the stored name";
  EXPECT_EQ(Warnings(), expected.warning);
  EXPECT_EQ(Data().UndoTitle() == L"IDS_QD_TRANS_Modify_CORD", expected.writes);
}
const CString kAccent = L"e\x301";
INSTANTIATE_TEST_SUITE_P(
    Names, CoordinateNames,
    ::testing::Values(NameCase{"New", L"B", L"B", "", true}, NameCase{"Same", L"A", L"A", "", false},
                      NameCase{"OtherCase", L"a", L"a", "", true},
                      NameCase{"Existing", L"other", L"A", "IDS_QD_DB_EXIST_NEW_DATA_NAME", false},
                      NameCase{"ExistingWhenCut", CString(70, L'o'), L"A", "IDS_QD_DB_EXIST_NEW_DATA_NAME", false},
                      NameCase{"Empty", L"", L"A", "IDS_QD_DB_NAME_EMPTY", false},
                      NameCase{"Long", CString(70, L'x'), CString(63, L'x'), "", true},
                      NameCase{"AccentAtTheEnd", CString(62, L'x') + kAccent + L"y", CString(62, L'x'), "", true},
                      NameCase{"Korean", L"\xC88C\xD45C\xACC4", L"\xC88C\xD45C\xACC4", "", true}),
    [](const auto& shape) { return std::string(shape.param.name); });

TEST_F(CoordinatesTest, TheDefaultSystemKeepsItsName) {
  Select({kGlobal});
  Key(kKeyF2);
  EXPECT_EQ(Tree().GetEditBox(), nullptr);
  Node(kGlobal)->OnEditChange(L"Mine");
  EXPECT_EQ(Systems(), "[*IDS_WB_GLOBAL_CORD]");
}

}  // namespace
}  // namespace qd::test

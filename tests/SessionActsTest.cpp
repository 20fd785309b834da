// The window's own commands, and what of the display can be undone.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/SessionModel.h"

namespace qd::test {
namespace {

using namespace workbench;
using Records = std::vector<iterator>;

/// Whatever is selected, in whichever tree.
TEST_F(SessionTest, DeletesWhatIsSelectedAndAsksForNestedMeshSets) {
  EXPECT_FALSE(m_session->CanDelete());
  m_session->Trees().Pick({m_a}, workbench::PickMode::Replace);
  m_session->Trees().Pick({m_outer}, workbench::PickMode::Toggle);
  m_toolkit.AnswerMessage(MessageAnswer::No);
  Run(&Session::Delete);
  EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>{L"IDS_QD_WRT_DELETE_SUB_MESHSET"});
  EXPECT_EQ(Data().GetDataType(m_a) + Data().GetDataType(m_outer), 0) << "both kinds in one act";
  EXPECT_NE(Data().GetDataType(m_inner), 0) << "a nested set was not chosen";
  Undo();
  // A part that was selected in the other tree before is not meant any more.
  Click(L"a");
  Show(kGeometrySetTree);
  Click(L"second");
  EXPECT_EQ(SelectedIn(m_bar), Records{}) << "the model tree has no row for a set";
  Run(&Session::Delete);
  EXPECT_EQ(Data().GetDataType(m_second), 0);
  EXPECT_NE(Data().GetDataType(m_a), 0);
  EXPECT_NE(Data().GetDataType(m_outer), 0);
  Undo();
  Show(kModelTree);
  Node(L"outer")->Expand(0);
  Click(L"a");
  Key(kKeyA, kMouseControl);
  m_toolkit.AnswerMessage(MessageAnswer::Yes);  // the row of the nested set is hidden
  Run(&Session::Delete);
  EXPECT_EQ(m_toolkit.TakeMessages().size(), 1U);
  EXPECT_EQ(Data().GetGeomPool().Count() + Data().GetMsetPool().Count(), 0U);
  EXPECT_EQ(Data().GetCordPool().Count(), 1U) << "the global system stays";
  Undo();
  Click(L"IDS_DB_DATA_NAME_GEOM");
  EXPECT_FALSE(m_session->CanDelete()) << "a root stands for nothing that could go";
  Run(&Session::Delete);
  EXPECT_EQ(Data().GetMsetPool().Count(), 2U);
  const std::pair<MessageAnswer, Records> cases[] = {
      {MessageAnswer::Cancel, {m_outer, m_inner}}, {MessageAnswer::No, {m_inner}}, {MessageAnswer::Yes, {}}};
  for (const auto& [answer, left] : cases) {
    Click(L"outer");
    m_toolkit.AnswerMessage(answer);
    Run(&Session::Delete);
    EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>{L"IDS_QD_WRT_DELETE_SUB_MESHSET"});
    EXPECT_EQ(Data().GetMsetPool().GetItrList(), left);
    if (answer != MessageAnswer::Cancel) Undo();
  }
}

TEST_F(SessionTest, ShowsAndHidesEverythingAsOneActEach) {
  Run(&Session::HideAll);
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Data().UndoTitle(), L"IDS_WB_ACT_VISIBILITY");
  EXPECT_EQ(m_displayActs, 1);
  Run(&Session::ShowAll);
  EXPECT_EQ(Shown(), "abc outer inner");
  Undo();
  EXPECT_EQ(Shown(), "");
  Undo();
  EXPECT_EQ(Shown(), "abc outer inner");
  EXPECT_EQ(m_displayActs, 2);
}

TEST_F(SessionTest, MeshingAgainTakesWhatIsMeantAndNothingElse) {
  const auto said = [this] {
    Heard();
    m_session->MeshAgain();
    const std::string heard = Heard();
    Settle();
    return heard;
  };
  using ::testing::HasSubstr;
  Click(L"inner");
  EXPECT_THAT(said(), HasSubstr("IDS_WB_MESH_BY_HAND"));
  Act([&] {
    const iterator generation = Data().GetMGInfoPool().Add(tagMGInfo());
    tagTMset record = Mset(m_outer);
    record.mgInfo = MGInfoPool::KeyOf(generation);
    ASSERT_EQ(Pool().Modify(m_outer, record), 1);
  });
  EXPECT_THAT(said(), HasSubstr("IDS_WB_MESH_BY_HAND"));
  for (const CString& row : {CString(L"outer"), CString(L"a"), CString(L"IDS_QD_WRT_MESH")}) {
    Click(row);
    EXPECT_THAT(said(), HasSubstr("DoModeless(CQDMeshGen3DDlg")) << workbench::ToUtf8(row);
  }
  for (const CString& row : {CString(L"b"), CString(L"IDS_QD_WRT_Coordinate_System")}) {
    Click(row);
    EXPECT_THAT(said(), HasSubstr("IDS_WB_WHY_NO_MESH_SET")) << workbench::ToUtf8(row);
  }
  Tree().ResetSelection(1);
  EXPECT_THAT(said(), HasSubstr("IDS_WB_WHY_NO_MESH_SET"));
  Undo();
}

TEST_F(SessionTest, ColourModesOfMeshesAreUndone) {
  m_session->SendToMeshes(kCommandLastMeshColourMode);
  Settle();
  EXPECT_EQ(m_doc.GetDisplay().Meshes().GetMeshColorMode(), 4U);
  for (const QualityMeasure measure : {QualityMeasure::Skewness, QualityMeasure::LeastAngle}) {
    m_session->ColourBy({.measure = measure});
    Settle();
    EXPECT_EQ(m_doc.GetDisplay().Meshes().ColouringQuality()->measure, measure);
  }
  Undo();
  EXPECT_EQ(m_doc.GetDisplay().Meshes().ColouringQuality()->measure, QualityMeasure::Skewness);
  Undo();
  EXPECT_EQ(m_doc.GetDisplay().Meshes().GetMeshColorMode(), 4U);
  Undo();
  EXPECT_EQ(m_doc.GetDisplay().Meshes().GetMeshColorMode(), 0U);
}

TEST_F(SessionTest, ShowingOnlyOneSetCanBeLeftAlthoughHiddenOnesWereDeleted) {
  const iterator gone = AddMset(L"gone");
  Settle();
  m_doc.GetDisplay().Meshes().ShowHideMset(gone, 0);
  Settle();
  Data().Delete({gone});
  Settle();
  Select({L"inner"});
  Command(kCommandShowMeshOnly);
  EXPECT_EQ(Shown(), "abc inner");
  EXPECT_NE(m_doc.GetDisplay().Isolation(), nullptr);
  Undo();
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
  m_session->SendToMeshes(kCommandHideAllMeshes);
  Settle();
  EXPECT_EQ(Shown(), "abc");
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr) << "hiding all is no showing of some";
}

TEST_F(SessionTest, HidingIsAnActOfItsOwnUnlessItComesWithAnother) {
  AddPartTo(m_first, L"later");
  ClickCheck(L"b");
  EXPECT_EQ(Data().UndoTitle(), L"IDS_WB_ACT_VISIBILITY");
  Undo();
  EXPECT_EQ(Data().UndoTitle(), L"act");
  EXPECT_EQ(Shown(), "abc outer inner");
  // Both in one go, as a command does that deletes and hides.
  m_doc.GetDisplay().Meshes().ShowHideMset(m_inner, 0);
  AddPartTo(m_first, L"together");
  EXPECT_EQ(Data().UndoTitle(), L"act");
  Undo();
  EXPECT_TRUE(IsShown(m_inner));
}

struct Isolating {
  const char* name;
  const wchar_t* row;
  unsigned command;
  const char* shown;
};
class Isolation : public SessionTest, public ::testing::WithParamInterface<Isolating> {};
TEST_P(Isolation, IsLeftWithWhatWasShownBefore) {
  ClickCheck(L"c");
  const std::string before = Shown();
  Select({GetParam().row});
  Command(GetParam().command);
  EXPECT_EQ(Shown(), GetParam().shown);
  ASSERT_NE(m_doc.GetDisplay().Isolation(), nullptr);
  // Another one inside it, and something else hidden: the former visibility stays the first one.
  Select({L"b"});
  Command(kCommandShowOnly);
  m_doc.GetDisplay().Meshes().ShowHideMset(m_outer, IsShown(m_outer) ? 0 : 1);
  Settle();
  Run(&Session::LeaveIsolation);
  EXPECT_EQ(Shown(), before);
  EXPECT_TRUE(m_doc.GetDisplay().Boxes().States().empty()) << "boxes of sets and groups come back, too";
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
  // Taken back to inside of it and to before it, and done again.
  Undo();
  EXPECT_NE(m_doc.GetDisplay().Isolation(), nullptr);
  for (int acts = 3; acts > 0; --acts) Undo();
  EXPECT_EQ(Shown(), before);
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
  Redo();
  EXPECT_EQ(Shown(), GetParam().shown);
  Run(&Session::LeaveIsolation);
  EXPECT_EQ(Shown(), before);
  // What is hidden afterwards isolates nothing.
  ClickCheck(L"a");
  EXPECT_EQ(m_doc.GetDisplay().Isolation(), nullptr);
}
INSTANTIATE_TEST_SUITE_P(Commands, Isolation,
                         ::testing::Values(Isolating{"part", L"a", kCommandShowOnly, "a outer inner"},
                                           Isolating{"mesh_set", L"inner", kCommandShowMeshOnly, "ab inner"}),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_F(SessionTest, TheDocumentGoesOnWithoutItsTrees) {
  m_session.reset();
  m_checked = false;
  Data().Delete({m_a});
  m_doc.GetDisplay().Meshes().ShowHideMset(m_inner, 0);
  m_toolkit.Pump();
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(m_bar.GetTreeCtrl().RowCount(), 0U);
}

/// While the user thinks about a merge, an undo elsewhere may take its target or its sources.
TEST_F(SessionTest, AMergeLooksAgainAtWhatThereIsBehindItsQuestion) {
  for (const iterator gone : {m_first, m_second}) {
    Show(kGeometrySetTree);
    m_toolkit.WhileMessage([this, gone] { Data().GetGsetPool().TR_Del({gone}); });
    m_toolkit.AnswerMessage(MessageAnswer::Yes);
    const std::uint64_t acts = Data().ActNumber();
    Drag({L"second"}, L"first");
    m_toolkit.TakeMessages();
    EXPECT_EQ(Data().ActNumber(), acts + 1) << "only the deletion";
    EXPECT_EQ(Data().GetGsetPool().Count(), 1U);
    Undo();
    EXPECT_EQ(Data().GetGsetPool().Count(), 2U);
  }
}

}  // namespace
}  // namespace qd::test

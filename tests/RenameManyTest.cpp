// Many rows renamed at once: the dialog, and what becomes of rows and records of several kinds.

#include <gtest/gtest.h>

#include "host/Act.h"
#include "qd_wrt/core/RenameDialog.h"
#include "qd_wrt/properties/PartEdits.h"
#include "support/Mesh.h"
#include "support/Model.h"
#include "workbench/session/WindowCommands.h"

namespace qd::test {
namespace {

using Step = HeadlessToolkit::DialogStep;

class RenameMany : public MeshTest {
 protected:
  /// F2 on the selected rows, and what the user does in the dialog; how it looked at its end.
  std::string Rename(std::vector<Step> steps) {
    m_toolkit.WorkDialog(std::move(steps));
    Key(kKeyF2);
    Settle();
    const std::vector<std::string> dialogs = m_toolkit.TakeDialogs();
    return dialogs.empty() ? "" : dialogs.back();
  }
  std::string NamesOf(const std::vector<iterator>& records) {
    std::string names;
    for (const iterator itr : records) names += workbench::ToUtf8(Tree().FindNode(itr)->GetName()) + "|";
    return names;
  }
};

TEST_F(RenameMany, RecordsOfAllKindsAreOneAct) {
  std::vector<iterator> records = AddParts({L"Bolt", L"Bolt"});
  const iterator steel = AddMaterial(L"steel");
  ChangePart(records[1], [steel](tagTGeom& part) { part.material = steel; });
  records.push_back(AddMset(L"mesh"));
  Act([&] {
    tagTCord system;
    system.SetName(L"system");
    records.push_back(Data().GetCordPool().Add(system));
  });
  m_bar.ChangeGeomTitle(&m_doc, 1);
  m_materialsInTitles = true;
  Settle();
  const std::string before = NamesOf(records);
  // One of the rows cannot be renamed, and is left out.
  SelectRows(L"Bolt|Bolt (steel)|steel|mesh|system");
  const auto renameByAll = [this] {
    Rename({{RenameDialog::kPattern, L"{n:02} {name}"},
            {RenameDialog::kSought, L"/o|e/"},
            {RenameDialog::kReplacement, L"()"},
            {RenameDialog::kFirst, L"5"},
            {RenameDialog::kStep, L"-2"},
            {RenameDialog::kCapitals},
            {kDialogOk}});
  };
  renameByAll();
  EXPECT_EQ(NamesOf(records), "03 B()LT|01 B()LT|-01 M()SH|05 SYST()M|");
  EXPECT_EQ(workbench::ToUtf8(Tree().FindNode(records[1])->GetTitle()), "01 B()LT (steel)");
  EXPECT_EQ(Data().UndoTitle(), L"IDS_QD_TRANS_RENAME");
  Undo();
  EXPECT_EQ(NamesOf(records), before);
  // What looks like the material is the end of a name here.
  SelectRows(L"Bolt|Bolt (steel)");
  Rename({{RenameDialog::kPattern, L"{name} (steel)"}, {kDialogOk}});
  EXPECT_EQ(NamesOf({records[0], records[1]}), "Bolt (steel)|Bolt (steel)|");
  Undo();
  Redo();
  Undo();
  SelectRows(L"Bolt|Bolt (steel)|mesh|system");
  renameByAll();
  EXPECT_EQ(NamesOf(records), "03 B()LT|01 B()LT|-01 M()SH|05 SYST()M|");
  m_bar.ChangeGeomTitle(&m_doc, 0);  // rows that are made anew do not have it
  m_materialsInTitles = false;
}

TEST_F(RenameMany, WhatCannotBeGivenIsMarkedAndNothingHappens) {
  const std::vector<iterator> sets{AddMset(L"a"), AddMset(L"b"), AddMset(L"other")};
  SelectRows(L"a|b");
  const std::string end =
      Rename({{RenameDialog::kSought, L"b"}, {RenameDialog::kReplacement, L"other"}, {kDialogOk}});
  EXPECT_NE(end.find("|[! b ? other (IDS_QD_WRT_RENAME_TAKEN)][a]|IDS_QD_WRT_RENAME_CONFLICTS|(-) "),
            std::string::npos)
      << end;
  EXPECT_EQ(NamesOf(sets), "a|b|other|");
  const std::string wrong = Rename({{RenameDialog::kPattern, L"{"}, {kDialogOk}});
  EXPECT_NE(wrong.find("|IDS_QD_WRT_RENAME_BRACES|"), std::string::npos) << wrong;
  // Names are passed on from one to the other.
  Rename({{RenameDialog::kSought, L"/^(a|b)$/"},
          {RenameDialog::kPattern, L"b{name}"},
          {RenameDialog::kReplacement, L""},
          {0}});
  EXPECT_EQ(NamesOf(sets), "a|b|other|") << "closed without OK";
}

TEST_F(RenameMany, AWrongRuleShowsNoNames) {
  AddParts({L"a", L"b"});
  SelectRows(L"a|b");
  EXPECT_EQ(Rename({{RenameDialog::kPattern, L"{name}1"}, {RenameDialog::kFirst, L"one"}, {0}}).find('['),
            std::string::npos);
  EXPECT_NE(Rename({{RenameDialog::kPattern, L"{n:064}"}, {RenameDialog::kPattern, L"{n:063}"}, {0}})
                .find("[a ? " + std::string(62, '0') + "1]"),
            std::string::npos);
}

TEST_F(RenameMany, OneThatMayBeRenamedIsEditedInItsRow) {
  const std::vector<iterator> parts = AddParts({L"a"});
  AddMaterial(L"steel");
  SelectRows(L"steel|a");
  Key(kKeyF2);
  CWnd* box = m_toolkit.FindChild(Tree(), 1);
  ASSERT_NE(box, nullptr);
  m_toolkit.Type(*box, L"b");
  m_toolkit.Key(*box, kKeyEnter);
  Settle();
  EXPECT_EQ(NamesOf(parts), "b|");
}

TEST_F(RenameMany, IsInTheMenusOfSeveralRows) {
  using namespace workbench;
  const std::vector<iterator> parts = AddParts({L"a", L"b"});
  AddMaterial(L"steel");
  AddMaterial(L"wood");
  const WindowCommand& command = *FindWindowCommand(kRenameRows);
  const std::pair<const wchar_t*, std::pair<bool, bool>> cases[] = {
      {L"a", {true, false}}, {L"a|b", {true, true}}, {L"steel|a", {true, true}}, {L"steel|wood", {false, false}}};
  for (const auto& [rows, possible] : cases) {
    SelectRows(rows);
    EXPECT_EQ(IsPossible(command, *m_session), possible.first);
    EXPECT_EQ(Menu().find("IDS_QD_WRT_RENAME...") != std::string::npos, possible.second) << Menu();
  }
  SelectRows(L"a|b");
  m_toolkit.AnswerMenu(kRenameRows);
  m_toolkit.WorkDialog({{RenameDialog::kPattern, L"{name}{n}"}, {kDialogOk}});
  Menu();
  EXPECT_EQ(NamesOf(parts), "a1|b2|");
}

TEST_F(RenameMany, NamesArePassedOn) {
  const std::vector<iterator> sets{AddMset(L"1"), AddMset(L"2"), AddMset(L"3")};
  SelectRows(L"1|2|3");
  Rename({{RenameDialog::kPattern, L"{n}"}, {RenameDialog::kFirst, L"2"}, {kDialogOk}});
  EXPECT_EQ(NamesOf(sets), "2|3|4|");
  Undo();
  SelectRows(L"1|3");
  Rename(
      {{RenameDialog::kPattern, L"{n}"}, {RenameDialog::kFirst, L"3"}, {RenameDialog::kStep, L"-2"}, {kDialogOk}});
  EXPECT_EQ(NamesOf(sets), "3|2|1|");
}

TEST_F(RenameMany, OneThatIsRefusedTakesAllBack) {
  const std::vector<iterator> parts = AddParts({L"a", L"b", L"c"});
  SelectRows(L"a|b|c");
  Heard();
  Data().SetWriteGuard([&parts](iterator itr) { return itr != parts[2]; });
  Rename({{RenameDialog::kPattern, L"{name}1"}, {kDialogOk}});
  Data().SetWriteGuard(nullptr);
  EXPECT_EQ(NamesOf(parts), "a|b|c|");
  EXPECT_NE(Warnings().find("IDS_QD_WRT_RENAME_REFUSED"), std::string::npos);
  // So it is with any act that runs others.
  EXPECT_EQ(RunAct(&Data(), L"outer",
                   [&] {
                     EXPECT_EQ(RenamePart(&Data(), parts[0], L"x"), 1);
                     EXPECT_EQ(RunAct(&Data(), L"inner", [] { return 0; }), 0);
                     return 1;
                   }),
            0);
  EXPECT_EQ(Part(parts[0]).name, L"a");
}

TEST_F(RenameMany, RowsThatGoMeanwhileEndIt) {
  const std::vector<iterator> parts = AddParts({L"a", L"b"});
  SelectRows(L"a|b");
  Rename({{RenameDialog::kPattern, L"{name}1", [&] { EXPECT_EQ(Data().Delete({parts[1]}), 1); }}, {kDialogOk}});
  EXPECT_EQ(NamesOf({parts[0]}), "a|");
  EXPECT_NE(Warnings().find("IDS_QD_WRT_RENAME_REFUSED"), std::string::npos);
}

}  // namespace
}  // namespace qd::test

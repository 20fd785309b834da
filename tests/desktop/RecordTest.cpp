// A user's acts are recorded, and the script that comes of them makes an equal document where there is no window.

#include "Recorded.h"
#include "workbench/app/console/ConsoleInput.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/batch/RecordActs.h"

namespace qd::test {
namespace {

using namespace workbench;

TEST_F(Recorded, TheScriptOfADayMakesTheSameDocument) {
  const QString input = m_files.Make({"pump"}, "pump \"1\".step");
  Trigger("IDS_WB_RECORD_ACTS");
  Open(input);
  Rename(L"Shaft", "Axle 7");
  Rename(L"Cover", "\"\\import os");
  constexpr int kCheckBox = -30;
  Click(L"Axle 7", kCheckBox);
  EXPECT_EQ(Row(L"Axle 7")->GetCheckStatus(), kUnchecked);
  Click(L"Impeller", kCheckBox);
  Display({"key", "ctrl+z"});
  EXPECT_EQ(Row(L"Impeller")->GetCheckStatus(), kChecked);
  Click(L"Impeller", 10);
  Tree().OnMenuEvent(kCommandRandomColour);
  Click(L"Housing", 10);
  MeshSelected(12);
  Click(L"Seal ring Ø20", 10);
  Display({"key", "Delete"});
  EXPECT_EQ(Row(L"Seal ring Ø20"), nullptr);
  Display({"key", "ctrl+z"});
  Display({"key", "ctrl+y"});
  EXPECT_EQ(Row(L"Seal ring Ø20"), nullptr);
  // What dialogs and drops do: several records in one act.
  Database& data = Data();
  iterator made = 0;
  const std::vector<iterator> parts = data.GetGeomPool().GetItrList();
  ASSERT_EQ(GroupParts(data, {parts[5], parts[6], parts[7]}, L"Bolts", made), 1);
  iterator steel = 0;
  ASSERT_EQ(StoreMaterial(data, steel, {{}, L"Steel", 210000, 0.3, 7.85e-9, 0x203040}), 1);
  ASSERT_EQ(SetMaterial(data, parts, steel), 1);
  // What is typed in the console is recorded too, but not what failed.
  m_window->Console().Come();
  for (const char* line : {"doc.parts[0].name = 'By hand'", "doc.parts[0].name = ''"}) {
    emit m_window->Console().Input().Entered(line);
    ASSERT_TRUE(WaitUntil([this] { return !m_window->Scripts().IsBusy(); }));
    Wait(50);
  }
  ASSERT_TRUE(data.GetGeomPool().GetAtNU(parts[0])->name == L"By hand")
      << m_window->Console().Output().toPlainText().toStdString();
  Click(L"Axle 7", kCheckBox);
  Replay("day");
  EXPECT_NE(m_script.find("# ended with an error"), std::string::npos) << m_script;
}

}  // namespace
}  // namespace qd::test

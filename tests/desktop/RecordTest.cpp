// A user's acts are recorded, and the script that comes of them makes an equal document where there is no window.

#include <QFile>
#include <QProcess>

#include "Dialogs.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/RecordText.h"
#include "workbench/app/NumberField.h"
#include "workbench/app/console/ConsoleInput.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/batch/RecordActs.h"
#include "workbench/display/DisplayBytes.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/store/KeptViews.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

using namespace workbench;

class Recorded : public InWindow {
 protected:
  void SetUp() override {
    const QString library = QCoreApplication::applicationDirPath() + "/qd_interpreter.so";
    if (!QFile::exists(library)) GTEST_SKIP() << "built without Python";
  }
  CQDTreeItem* Row(const CString& title) {
    CQDTreeItem* found = nullptr;
    Tree().GetQDRootItem()->ForEachBelow([&](CQDTreeItem* node) {
      if (found == nullptr && node->GetTitle() == title) found = node;
    });
    return found;
  }
  void Click(const CString& title, int right, int button = 1) {
    CQDTreeItem* node = Row(title);
    ASSERT_NE(node, nullptr) << PrintTree(Tree());
    CRect area;
    Tree().EnsureVisible(node->GetTreeItemHandle());
    ASSERT_TRUE(Tree().GetItemRect(node->GetTreeItemHandle(), area, true));
    const CPoint at = Tree().ClientToScreen({area.left + right, (area.top + area.bottom) / 2});
    Display(QStringList{"mousemove"} << At(at) << QStringList{"click", QString::number(button)});
  }
  void Rename(const CString& title, const QString& name) {
    Click(title, 10);
    Display({"key", "F2"});
    Display({"type", "--delay", "5", name});
    Display({"key", "Return"});
    ASSERT_NE(Row(FromQt(name)), nullptr) << PrintTree(Tree());
  }
  void Trigger(const char* key) {
    for (QAction* action : m_window->findChildren<QAction*>()) {
      if (action->text() == Text(key)) return action->trigger();
    }
    FAIL() << key;
  }
  void MeshSelected(double size) {
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshAuto3D);
    QDialog* dialog = Dialog("operation");
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<NumberField*>()->SetValue(size);
    dialog->findChild<QPushButton*>("apply")->click();
    EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking() && m_window->IsUpToDate(); }));
    dialog->close();
    Wait(50);
  }
  /// All that a document file holds: records, and what is shown and how.
  static std::string Everything(const QString& path) {
    Database data;
    DocumentError error;
    const auto file = DocumentFile::View(path.toStdString(), data, error);
    EXPECT_NE(file, nullptr) << path.toStdString();
    return file != nullptr ? Contents(data) + file->View(kDisplayName) + file->View(kUnitsName) : std::string();
  }
  std::string Read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll().toStdString();
  }
};

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
  const QString path = Path("day.qdw");
  ASSERT_TRUE(m_window->SaveAs(path));
  AnswerFileName(Path("day.py"));
  Trigger("IDS_WB_RECORD_ACTS");
  const std::string script = Read(Path("day.py"));
  EXPECT_EQ(script.find("no line"), std::string::npos) << script;
  EXPECT_NE(script.find("# ended with an error"), std::string::npos) << script;
  m_window.reset();
  ASSERT_TRUE(QFile::rename(path, Path("hand.qdw")));

  QProcess replay;
  replay.start(QCoreApplication::applicationDirPath() + "/workbench", {"--script", Path("day.py")});
  ASSERT_TRUE(WaitUntil([&replay] { return replay.state() == QProcess::NotRunning; }));
  ASSERT_EQ(replay.exitCode(), 0) << replay.readAllStandardError().toStdString() << script;
  EXPECT_EQ(Everything(path), Everything(Path("hand.qdw"))) << script;
}

}  // namespace
}  // namespace qd::test

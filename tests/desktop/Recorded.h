#pragma once

#include <QFile>
#include <QProcess>

#include "Dialogs.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/RecordText.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/NumberField.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/store/KeptViews.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {

/// A window whose acts are recorded, and whose script makes an equal document where there is no window.
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
    ASSERT_NE(node, nullptr) << workbench::PrintTree(Tree());
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
    ASSERT_NE(Row(FromQt(name)), nullptr) << workbench::PrintTree(Tree());
  }
  void Trigger(const char* key) {
    for (QAction* action : m_window->findChildren<QAction*>()) {
      if (action->text() == workbench::Text(key)) return action->trigger();
    }
    FAIL() << key;
  }
  void MeshSelected(double size) {
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshAuto3D);
    QDialog* dialog = Dialog("operation");
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<workbench::NumberField*>()->SetValue(size);
    dialog->findChild<QPushButton*>("apply")->click();
    EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking() && m_window->IsUpToDate(); }));
    dialog->close();
    Wait(50);
  }
  /// All that a document file holds: records, and what is shown and how.
  static std::string Everything(const QString& path) {
    workbench::Database data;
    workbench::DocumentError error;
    const auto file = workbench::DocumentFile::View(path.toStdString(), data, error);
    EXPECT_NE(file, nullptr) << path.toStdString();
    return file != nullptr
               ? Contents(data) + file->View(workbench::kDisplayName) + file->View(workbench::kUnitsName)
               : std::string();
  }
  std::string Read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll().toStdString();
  }
  /// Saves the document and the script, ends the window and runs the script without one.
  void Replay(const QString& name) {
    const QString path = Path(name + ".qdw");
    ASSERT_TRUE(m_window->SaveAs(path));
    AnswerFileName(Path(name + ".py"));
    Trigger("IDS_WB_RECORD_ACTS");
    m_script = Read(Path(name + ".py"));
    EXPECT_EQ(m_script.find("no line"), std::string::npos) << m_script;
    m_window.reset();
    ASSERT_TRUE(QFile::rename(path, Path("hand.qdw")));
    QProcess replay;
    replay.start(QCoreApplication::applicationDirPath() + "/workbench", {"--script", Path(name + ".py")});
    ASSERT_TRUE(WaitUntil([&replay] { return replay.state() == QProcess::NotRunning; }));
    ASSERT_EQ(replay.exitCode(), 0) << replay.readAllStandardError().toStdString() << m_script;
    EXPECT_EQ(Everything(path), Everything(Path("hand.qdw"))) << m_script;
  }

  std::string m_script;
};

}  // namespace qd::test

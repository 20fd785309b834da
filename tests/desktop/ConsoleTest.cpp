// The console of Python in the window: lines that are typed, scripts, stopping, and what is left when one ends.

#include <QMenu>
#include <QPlainTextEdit>
#include <QToolButton>

#include "Dialogs.h"
#include "workbench/app/console/ConsoleInput.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/session/WindowCommands.h"

namespace qd::test {
namespace {

using namespace workbench;

class Console : public Dialogs {
 protected:
  void SetUp() override {
    const QString library = QCoreApplication::applicationDirPath() + "/qd_interpreter.so";
    if (!QFile::exists(library)) GTEST_SKIP() << "built without Python";
  }
  ConsolePane& Pane() { return m_window->Console(); }
  QString Said() { return Pane().Output().toPlainText(); }
  void Come() {
    m_window->activateWindow();
    ASSERT_TRUE(WaitUntil([this] { return m_window->isActiveWindow(); }));
    Action(QKeySequence("Ctrl+Shift+K"))->trigger();
    ASSERT_TRUE(
        WaitUntil([this] { return Pane().isVisible() && QApplication::focusWidget() == &Pane().Input(); }));
  }
  void Run(const QString& lines) {
    m_window->activateWindow();
    ASSERT_TRUE(WaitUntil([this] { return m_window->isActiveWindow(); }));
    if (!Pane().isVisible()) Come();
    Pane().Input().setFocus();
    ASSERT_EQ(QApplication::focusWidget(), &Pane().Input());
    Pane().Input().setPlainText(lines);
    Pane().Input().moveCursor(QTextCursor::End);
    Press(Qt::Key_Return);
  }
  bool Ends() {
    return WaitUntil([this] { return !m_window->Scripts().IsBusy() && !QuietTime::IsNow(); }, 20) &&
           WaitUntil([this] { return !Pane().StopButton().isEnabled(); }, 20);
  }
  QString Answer(const QString& lines) {
    const auto before = Said().size();
    Run(lines);
    EXPECT_TRUE(Ends());
    Wait(50);
    return Said().mid(before);
  }
  CString NameOf(std::size_t part) { return Data().GetGeomPool().GetAtNU(Parts()[part])->name; }
};

TEST_F(Console, LinesAreActsOfTheWindowsDocument) {
  EXPECT_EQ(Answer("doc.parts[0].name = 'First'"), ">>> doc.parts[0].name = 'First'\n");
  EXPECT_EQ(NameOf(0), L"First");
  EXPECT_EQ(Tree().FindGeomNode(Parts()[0])->GetTitle(), L"First");
  Answer("doc.hide(doc.parts[1])");
  EXPECT_EQ(Tree().FindGeomNode(Parts()[1])->GetCheckStatus(), kUnchecked);
  m_window->activateWindow();
  Action(QKeySequence("Ctrl+Z"))->trigger();
  EXPECT_TRUE(WaitUntil([this] { return Tree().FindGeomNode(Parts()[1])->GetCheckStatus() == kChecked; }));
  EXPECT_EQ(NameOf(0), L"First");
  Action(QKeySequence("Ctrl+Z"))->trigger();
  EXPECT_NE(NameOf(0), L"First");

  EXPECT_TRUE(Answer("len(doc.parts), qd.current() is doc").contains("(4, True)"));
  // Errors have the program's sentence and the way to them, and none of the program's own lines.
  const QString error = Answer("def f():\n    doc.parts[0].name = ''\n\nf()\n");
  EXPECT_TRUE(error.contains("in f\n    doc.parts[0].name")) << error.toStdString();
  EXPECT_TRUE(error.contains("qd.Error: ")) << error.toStdString();
  EXPECT_FALSE(error.contains("<console>")) << error.toStdString();
  EXPECT_TRUE(Answer("import numpy; type(doc.parts[0].triangles).__name__").contains("'ndarray'"));
  Keep("console");
}

/// Such calls do not go to the window's thread and back.
TEST_F(Console, ManyRecordsAreChangedInOneActOrNone) {
  const QString said = Answer(
      "with doc.act('Many'):\n"
      "    for turn in range(2000):\n"
      "        for part in doc.parts: part.name = f'{part.id} in turn {turn}'\n");
  EXPECT_FALSE(said.contains("Error")) << said.toStdString();
  EXPECT_EQ(NameOf(1), L"2 in turn 1999");
  EXPECT_EQ(Tree().FindGeomNode(Parts()[1])->GetTitle(), L"2 in turn 1999");
  Data().Undo();
  EXPECT_NE(NameOf(1), L"2 in turn 1999") << "one act";
  const CString before = NameOf(0);
  Answer(
      "with doc.act('None'):\n"
      "    doc.parts[0].name = 'kept'\n"
      "    doc.parts[1].name = ''\n");
  EXPECT_EQ(NameOf(0), before);
  EXPECT_FALSE(Data().IsInTransaction());
}

TEST_F(Console, BlocksHistoryAndCompletionByKeys) {
  Come();
  Type("for n in (1, 2):");
  Press(Qt::Key_Return);
  ASSERT_TRUE(Ends());  // Python has been loaded
  Type("print('no', n)");
  Press(Qt::Key_Return);
  EXPECT_EQ(Pane().Input().toPlainText(), "for n in (1, 2):\n    print('no', n)\n    ");
  Press(Qt::Key_Return);
  ASSERT_TRUE(Ends() && WaitUntil([this] { return Said().contains("no 1\nno 2\n"); })) << Said().toStdString();
  Press(Qt::Key_Up);
  EXPECT_TRUE(Pane().Input().toPlainText().startsWith("for n in"));
  Press(Qt::Key_Down);
  EXPECT_EQ(Pane().Input().toPlainText(), "");
  // What a property is only a call could tell: no call is made for a list of names.
  Answer("class Trap:\n    @property\n    def deep(self):\n        raise SystemError\n\ntrap = Trap()\n\n");
  Type("trap.de");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Pane().Input().toPlainText(), "trap.deep");
  Type(".x");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Pane().Input().toPlainText(), "trap.deep.x");
  Pane().Input().clear();
  Type("doc.undo_t");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Pane().Input().toPlainText(), "doc.undo_title");
  EXPECT_FALSE(Pane().Input().accessibleName().isEmpty());
  Press(Qt::Key_Backtab, {}, Qt::ShiftModifier);
  EXPECT_NE(QApplication::focusWidget(), &Pane().Input());
}

TEST_F(Console, WhatRunsIsStoppedAndLeavesNoActOpen) {
  // Whatever it does, the window goes on, and its user presses the button.
  for (const char* lines : {"while True: pass", "import time; time.sleep(600)", "while True: len(doc.parts)",
                            "while True: print('again')", "doc.mesh(size=0.06)",
                            "import subprocess; subprocess.run(['sleep', '600'])"}) {
    SCOPED_TRACE(lines);
    int turns = 0;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
      if (++turns > 12 && Pane().StopButton().isEnabled()) Pane().StopButton().click();
    });
    user.start(50);
    Run(lines);
    EXPECT_TRUE(Ends());
    EXPECT_GT(turns, 12);
    EXPECT_TRUE(Said().contains("KeyboardInterrupt")) << Said().toStdString();
    Pane().Output().clear();
  }
  // What a script does after it was stopped is not stopped again.
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, [&] {
    if (Pane().StopButton().isEnabled() && QuietTime::IsNow()) {
      user.stop();
      Pane().StopButton().click();
    }
  });
  user.start(50);
  Run("try:\n    doc.mesh(size=0.06)\nexcept KeyboardInterrupt:\n    doc.mesh(size=4)\n\n");
  EXPECT_TRUE(Ends());
  EXPECT_FALSE(Said().contains("Traceback")) << Said().toStdString();
  EXPECT_EQ(Data().GetMsetPool().Count(), Parts().size());
}

TEST_F(Console, AMenuThatIsOpenDoesNotLockTheWindowOut) {
  Come();
  QMenu menu(m_window.get());
  menu.addAction("open");
  emit Pane().Input().Entered("import time\ntime.sleep(1)\nwith doc.act('Long'):\n    time.sleep(600)\n");
  menu.popup(m_window->mapToGlobal(QPoint(5, 5)));
  ASSERT_TRUE(WaitUntil([&menu] { return menu.isVisible(); }));
  ASSERT_TRUE(WaitUntil([] { return QuietTime::IsNow(); }));
  EXPECT_FALSE(menu.isVisible());
  Pane().StopButton().click();
  EXPECT_TRUE(Ends());
}

TEST_F(Console, AFileThatCannotBeReadLeavesTheTitle) {
  const CString title = Tree().GetQDRootItem()->GetTitle();
  Answer("doc.delete(doc.parts)");
  EXPECT_TRUE(Answer("doc.import_file('/nothing.step')").contains("does not exist"));
  EXPECT_EQ(Tree().GetQDRootItem()->GetTitle(), title);
}

TEST_F(Console, NoActIsLeftOpenAndNobodyElseWorksInOne) {
  const CString before = NameOf(0);
  const QString left = Answer("doc.act('Left').__enter__(); doc.parts[0].name = 'Gone'");
  EXPECT_TRUE(left.contains("taken back")) << left.toStdString();
  EXPECT_EQ(NameOf(0), before);
  EXPECT_FALSE(Data().IsInTransaction());
  // Nobody else works on the document while an act is open.
  Run("import time\nwith doc.act('Slow'):\n    doc.parts[0].name = 'Slow'\n    time.sleep(1)\n\n");
  ASSERT_TRUE(WaitUntil([] { return QuietTime::IsNow(); }));
  m_window->ModelTreePane().Bar().GetTreeCtrl().SetFocus();
  Press(Qt::Key_Delete);
  EXPECT_FALSE(m_window->close());
  ASSERT_TRUE(Ends());
  EXPECT_EQ(NameOf(0), L"Slow");
  EXPECT_EQ(Parts().size(), 4U);
}

TEST_F(Console, AWindowThatClosesEndsItsScripts) {
  Run("import time\nkept = doc.parts[0]\nwhile True: doc.parts[0].name; time.sleep(0.001)\n\n");
  Wait(300);
  m_window.reset();
  m_window = std::make_unique<MainWindow>(m_messages);
  m_window->show();
  Open(Path("grid.step"));
  // Another window begins anew, and its scripts find it.
  EXPECT_TRUE(Answer("'kept' in globals(), len(doc.parts)").contains("(False, 4)")) << Said().toStdString();
}

TEST_F(Console, AScriptHasItsArgumentsAndItsOwnSpace) {
  QFile script(Path("act.py"));
  ASSERT_TRUE(script.open(QIODevice::WriteOnly));
  script.write(
      "import qd, sys\nmine = 1\nprint(sys.argv[1:])\nqd.current().parts[2].name = "
      "sys.argv[1]\nsys.exit('over')\n");
  script.close();
  m_window->RunScript(script.fileName(), {"Named", "ü"});
  ASSERT_TRUE(Ends());
  EXPECT_EQ(NameOf(2), L"Named");
  EXPECT_TRUE(WaitUntil([this] { return Said().contains("['Named', 'ü']\nover"); })) << Said().toStdString();
  EXPECT_TRUE(Answer("mine").contains("NameError"));
}

}  // namespace
}  // namespace qd::test

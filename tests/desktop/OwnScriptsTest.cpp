// Scripts of the user's folder in the menu, what they add to the menus of rows, and what may run unasked.

#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTextStream>
#include <QToolButton>

#include "Dialogs.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/OwnScripts.h"
#include "workbench/app/console/ScriptEngine.h"

namespace qd::test {
namespace {

using namespace workbench;

class InScripts : public Dialogs {
 protected:
  void SetUp() override {
    if (!QFile::exists(QCoreApplication::applicationDirPath() + "/qd_interpreter.so")) GTEST_SKIP() << "no Python";
    m_before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", Path("data").toUtf8());
    ASSERT_TRUE(QDir().mkpath(OwnScripts::Folder()));
  }
  void TearDown() override {
    m_before.isEmpty() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", m_before);
  }
  static QString Put(const QString& name, const QString& text) {
    QFile file(OwnScripts::Folder() + "/" + name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return file.fileName();
  }
  QMenu& Menu() {
    for (QAction* action : m_window->menuBar()->actions()) {
      if (action->text().remove('&') == Text("IDS_WB_MENU_SCRIPTS").remove('&')) return *action->menu();
    }
    ADD_FAILURE();
    return *m_window->menuBar()->actions().first()->menu();
  }
  /// What the menu lists behind the commands that are always there, as it is read.
  QStringList Listed() {
    emit Menu().aboutToShow();
    QStringList texts;
    for (const QAction* action : Menu().actions()) {
      if (action->isSeparator()) {
        texts.clear();
      } else {
        QString text = action->text();
        static const QRegularExpression kMark("&(?!&)(?<!&&)");
        texts << text.replace("&&", QString(QChar(1)))
                     .remove('&')
                     .replace(QChar(1), '&')
                     .remove(QRegularExpression("\\([A-Za-z]\\)$"));
      }
    }
    return texts;
  }
  void Choose(const QString& name) {
    const QStringList listed = Listed();
    const qsizetype place = listed.indexOf(name);
    ASSERT_GE(place, 0) << listed.join("|").toStdString();
    Menu().actions()[Menu().actions().size() - listed.size() + place]->trigger();
    ASSERT_TRUE(WaitUntil([this] { return m_window->Scripts().IsBusy(); }) || true);
    Ends();
  }
  void Ends() {
    Wait(100);
    ASSERT_TRUE(WaitUntil([this] { return !m_window->Scripts().IsBusy(); }, 20));
    Wait(100);
  }
  QMessageBox* Question() {
    for (auto* box : m_window->findChildren<QMessageBox*>("scriptStart")) {
      if (box->isVisible()) return box;
    }
    return nullptr;
  }
  void AnswerStart(const char* key) {
    ASSERT_NE(Question(), nullptr);
    for (QAbstractButton* button : Question()->buttons()) {
      if (button->text() == Text(key)) button->click();
    }
    Wait(50);
  }
  QString Said() { return m_window->Console().Output().toPlainText(); }
  CString NameOf(std::size_t part) { return Data().GetGeomPool().GetAtNU(Parts()[part])->name; }

  QByteArray m_before;
};

constexpr const char* kAdds =
    "import qd\n"
    "def named(records):\n"
    "    for part in records:\n"
    "        part.name = 'Chosen %d' % part.id\n"
    "qd.menu('Name & number', named, ['part'])\n"
    "qd.menu('Only sets', named, ['mesh_set'])\n";

TEST_F(InScripts, TheMenuListsWhatTheUserHasPutThere) {
  const QString none = Text("IDS_WB_SCRIPTS_NONE");
  EXPECT_EQ(Listed().value(0), none);
  Put("b & c.py", "print('ran', __file__)");
  Put("A.py", "raise KeyError('wrong')");
  Put("no.txt", "");
  Put(".hidden.py", "");
  Put("big.py", QString(1 << 20, '#') + "#");
  QFile(Put("others.py", "")).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::WriteOther);
  QFile outside(Path("outside.py"));
  ASSERT_TRUE(outside.open(QIODevice::WriteOnly));
  outside.close();
  ASSERT_TRUE(QFile::link(outside.fileName(), OwnScripts::Folder() + "/link.py"));
  QStringList listed = Listed();
  ASSERT_EQ(listed.size(), 3) << listed.join("|").toStdString();
  EXPECT_EQ(listed[0], "A");
  EXPECT_EQ(listed[1], "b & c");
  Choose("b & c");
  EXPECT_TRUE(Said().contains("ran " + OwnScripts::Folder() + "/b & c.py")) << Said().toStdString();
  Choose("A");
  EXPECT_TRUE(Said().contains("KeyError: 'wrong'")) << Said().toStdString();
  for (int i = 0; i < 60; ++i) Put(QString("s%1.py").arg(i), "");
  listed = Listed();
  EXPECT_EQ(listed.size(), 52);
  EXPECT_EQ(listed[50], Text("IDS_WB_SCRIPTS_MORE", {"12"}));
  // A folder that others may write is nobody's.
  QFile(OwnScripts::Folder()).setPermissions(QFile::Permissions(0x7777));
  EXPECT_EQ(Listed().value(0), none);
}

TEST_F(InScripts, OneThatRunsForEverIsStopped) {
  Put("ever.py", "while True: pass");
  emit Menu().aboutToShow();
  for (QAction* action : Menu().actions()) {
    if (action->text().remove('&') == "ever") action->trigger();
  }
  ASSERT_TRUE(WaitUntil([this] { return m_window->Scripts().IsBusy(); }));
  Wait(300);
  m_window->Console().StopButton().click();
  Ends();
  EXPECT_TRUE(Said().contains("KeyboardInterrupt")) << Said().toStdString();
}

TEST_F(InScripts, EntriesOfRowsAndTheStartThatIsAgreedTo) {
  const QString path = Put("adds.py", kAdds);
  m_window->RunOwnScripts();
  EXPECT_FALSE(m_window->Scripts().IsLoaded()) << "nothing runs that nobody agreed to";
  Choose("adds");
  ASSERT_NE(Question(), nullptr);
  EXPECT_TRUE(Question()->text().contains("adds.py"));
  AnswerStart("IDS_WB_SCRIPT_START");
  // By the mouse: the entry stands in the menu of a row, for the records that it is for.
  Tree().SelectCTItem(Tree().FindGeomNode(Parts()[1]));
  CRect area;
  ASSERT_TRUE(Tree().GetItemRect(Tree().FindGeomNode(Parts()[1])->GetTreeItemHandle(), area, true));
  bool seen = false;
  QTimer::singleShot(1500, m_window.get(), [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) return;
    Keep("script-entry");
    Keep("script-entry-menu", menu);
    QAction* entry = nullptr;
    for (QAction* action : menu->actions()) {
      EXPECT_FALSE(action->text().contains("Only sets"));
      if (action->text() == "Name && number") entry = action;
    }
    seen = entry != nullptr;
    if (entry != nullptr) menu->setActiveAction(entry);
    Display({"key", entry != nullptr ? "Return" : "Escape"});
  });
  const CPoint at = Tree().ClientToScreen({area.left + 10, (area.top + area.bottom) / 2});
  Display(QStringList{"mousemove"} << QString::number(at.x) << QString::number(at.y) << "click"
                                   << "3");
  ASSERT_TRUE(WaitUntil([&] { return seen; }));
  Ends();
  EXPECT_EQ(NameOf(1), L"Chosen 2") << Said().toStdString();
  EXPECT_NE(NameOf(0), L"Chosen 1");
  // It is not asked for again, and runs at the next start; not any more when it is something else.
  Choose("adds");
  EXPECT_EQ(Question(), nullptr);
  Restart();
  EXPECT_TRUE(m_window->Scripts().Entries().empty());
  m_window->RunOwnScripts();
  Ends();
  EXPECT_EQ(m_window->Scripts().Entries().size(), 2U);
  Put("adds.py", QString(kAdds) + "# another one\n");
  Restart();
  m_window->RunOwnScripts();
  Ends();
  EXPECT_TRUE(m_window->Scripts().Entries().empty());
  EXPECT_TRUE(Messages().contains(Text("IDS_WB_SCRIPT_CHANGED", {path}))) << Messages().toStdString();
}

TEST_F(InScripts, ThoseOfTheStartRunOneAfterAnotherAndTheirErrorsAreSeen) {
  const QString late =
      "import os, qd\nqd.menu(__file__, print)\nif os.path.exists('" + Path("late") + "'): 1 / 0\n";
  for (const char* name : {"a", "b"}) {
    Put(QString(name) + ".py", QString(name) == "a" ? late : "import qd\nqd.menu(__file__, print)\n");
    Choose(name);
    AnswerStart("IDS_WB_SCRIPT_START");
  }
  QFile flag(Path("late"));
  ASSERT_TRUE(flag.open(QIODevice::WriteOnly));
  Restart();
  int failed = 0;
  m_window->connect(m_window->findChild<OwnScripts*>(), &OwnScripts::Failed, [&failed] { ++failed; });
  m_window->RunOwnScripts();
  Ends();
  EXPECT_EQ(failed, 1);
  EXPECT_EQ(m_window->Scripts().Entries().size(), 2U) << Said().toStdString();
}

TEST_F(InScripts, ARefusalIsOfTheScriptAsItWas) {
  Put("adds.py", kAdds);
  Choose("adds");
  AnswerStart("IDS_WB_SCRIPT_NO_START");
  Restart();
  Choose("adds");
  EXPECT_EQ(Question(), nullptr);
  Restart();
  Put("adds.py", QString(kAdds) + "# mended\n");
  m_window->RunOwnScripts();
  EXPECT_FALSE(m_window->Scripts().IsLoaded());
  Choose("adds");
  EXPECT_NE(Question(), nullptr);
}

TEST_F(InScripts, ARecordingThatNobodyHasSavedIsAskedForWhenTheWindowCloses) {
  ASSERT_TRUE(m_window->SaveAs(Path("saved.qdw")));
  ActionOf("IDS_WB_RECORD_ACTS")->trigger();
  Wait(50);
  Tree().SelectCTItem(Tree().FindGeomNode(Parts()[0]));
  Tree().OnMenuEvent(41120);  // another colour
  Wait(100);
  Answer("closing", QMessageBox::RejectRole);
  m_window->close();
  EXPECT_EQ(m_asked, Text("IDS_WB_ASK_RECORDING"));
  EXPECT_TRUE(m_window->isVisible());
  AnswerFileName(Path("kept.py"));
  Answer("closing", QMessageBox::AcceptRole);
  m_window->close();
  EXPECT_FALSE(m_window->isVisible());
  QFile kept(Path("kept.py"));
  ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
  EXPECT_TRUE(kept.readAll().contains(".colour = "));
}

}  // namespace
}  // namespace qd::test

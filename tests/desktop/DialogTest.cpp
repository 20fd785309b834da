// Dialogs that stand open while the model, the selection, the language and the units change, and what the window
// says beside them.

#include <QAction>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>

#include "Dialogs.h"
#include "platform/CDialog.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/Places.h"
#include "workbench/app/NumberField.h"

namespace qd::test {
namespace {

using namespace workbench;

// ---- the window -----------------------------------------------------------------------------------------

TEST_F(Dialogs, WhatIsSelectedStaysInSightBesideAMessage) {
  m_window->Document().Select({{Parts()[0], Parts()[1]}});
  const auto* count = m_window->findChild<QLabel*>("selection");
  EXPECT_EQ(count->text(), "Selected: Parts: 2");
  EXPECT_TRUE(m_window->findChild<QLabel*>("counts")->text().startsWith("Parts: 4"));
  m_window->statusBar()->showMessage("something");
  EXPECT_TRUE(count->isVisible());
  Wait(200);
  EXPECT_GE(count->width(), count->sizeHint().width());
  Keep("status-message");
}

TEST_F(Dialogs, ManyRowsAreRenamedByARule) {
  m_window->Document().Select({{Parts()[0], Parts()[1]}});
  Tree().SetFocus();
  const auto before = Data().Snapshot();
  QStringList lines;
  QString said;
  QTimer::singleShot(500, [&] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    auto* pattern = dialog->findChild<QLineEdit*>("101");
    EXPECT_EQ(QApplication::focusWidget(), pattern);
    pattern->selectAll();
    for (const QChar sign : QString("Part {n:03}")) {
      QKeyEvent typed(QEvent::KeyPress, 0, Qt::NoModifier, sign);
      QApplication::sendEvent(pattern, &typed);
    }
    const QAbstractItemModel& list = *dialog->findChild<QListView*>()->model();
    for (int row = 0; row < list.rowCount(); ++row) lines << list.data(list.index(row, 0)).toString();
    said = dialog->findChild<QLabel*>("110")->text();
    Wait(100);
    Keep("rename-many", dialog);
    dialog->findChild<QPushButton*>("1")->click();
  });
  Display({"key", "F2"});
  WaitUntil([] { return QApplication::activeModalWidget() == nullptr; });
  ASSERT_EQ(lines.size(), 2);
  EXPECT_TRUE(lines[1].endsWith(QString(" \u2192 Part 002"))) << lines[1].toStdString();
  EXPECT_EQ(said, "2 of 2 rows get another name.");
  EXPECT_EQ(Data().GetGeomPool().GetAtNU(Parts()[1])->name, L"Part 002");
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
}

TEST_F(Dialogs, ADocumentThatWasOpenedShowsItsDeckAtOnce) {
  Restart();
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  ASSERT_GT(Data().GetDeckPool().Count(), 0U);
  ASSERT_TRUE(m_window->SaveAs(Path("bracket.qdw")));
  Restart();
  ASSERT_TRUE(m_window->OpenDocument(Path("bracket.qdw")));
  Wait(200);
  EXPECT_FALSE(m_window->Properties().Lines().isEmpty());
}

TEST_F(Dialogs, QuestionsAndChoicesOfFilesHaveTitlesForPeople) {
  for (const QString language : {"en", "de", "ja", "ko", "zh"}) {
    m_window->SetLanguage(language);
    const QString question = TitleOfNext([] { AfxMessageBox(L"?", MessageButtons::YesNo); });
    EXPECT_TRUE(question.contains(Text("IDS_WB_APP"))) << question.toStdString();
    for (const int key : {Qt::Key_O, Qt::Key_I}) {
      const Qt::KeyboardModifiers held =
          key == Qt::Key_I ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier;
      const QString title =
          TitleOfNext([&] { Action(QKeySequence(QKeyCombination(held, static_cast<Qt::Key>(key))))->trigger(); });
      EXPECT_FALSE(title.isEmpty() || title.contains('&') || title.contains('(') || title.contains(QChar(0x2026)))
          << title.toStdString();
    }
  }
}

TEST_F(Dialogs, BothKeysDoAgainWhatWasUndone) {
  const auto before = Data().Snapshot();
  m_window->activateWindow();
  m_window->View().setFocus();
  for (const Qt::KeyboardModifiers held :
       {Qt::KeyboardModifiers(Qt::ControlModifier), Qt::ControlModifier | Qt::ShiftModifier}) {
    Data().Undo();
    Wait(50);
    EXPECT_NE(Data().Snapshot(), before);
    const int key = held == Qt::ControlModifier ? Qt::Key_Y : Qt::Key_Z;
    QKeyEvent event(QEvent::ShortcutOverride, key, held);
    QApplication::sendEvent(m_window.get(), &event);
    QAction* action = Action(QKeySequence(QKeyCombination(held, static_cast<Qt::Key>(key))));
    ASSERT_NE(action, nullptr);
    action->trigger();
    EXPECT_EQ(Data().Snapshot(), before);
  }
}

TEST_F(Dialogs, WhatCannotBeDoneNowSaysWhy) {
  m_window->Document().Select({});
  Wait(50);
  const QAction* again = ActionOf("IDS_WB_MESH_AGAIN");
  ASSERT_NE(again, nullptr);
  EXPECT_FALSE(again->isEnabled());
  EXPECT_FALSE(again->statusTip().isEmpty());
  const QAction* fit = ActionOf("IDS_WB_FIT");
  EXPECT_TRUE(fit->isEnabled() && fit->statusTip().isEmpty());
}

// ---- the records ----------------------------------------------------------------------------------------

TEST_F(Dialogs, TheDialogOfCoordinateSystemsFollowsTheirRecords) {
  QDialog* dialog = Ask("cord", Branch(), kCommandAddCord);
  const auto fields = dialog->findChildren<NumberField*>();
  for (const auto& [field, value] : {std::pair(3, 1), {7, 1}}) fields[field]->SetValue(value);
  auto* name = dialog->findChild<QLineEdit*>("name");
  auto* apply = dialog->findChild<QPushButton*>("apply");
  apply->click();
  EXPECT_EQ(TextOf(*dialog, "outcome"), "System 1: stored");
  EXPECT_EQ(name->text(), "System 2");
  Data().Undo();
  Wait(50);
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
  EXPECT_EQ(name->text(), "System 1");
  Data().Redo();
  Wait(50);
  EXPECT_EQ(name->text(), "System 2");
  auto* parents = dialog->findChild<QComboBox*>("parent");
  EXPECT_GE(parents->findText("System 1"), 0);
  name->setText("typed");
  Data().Undo();
  Wait(50);
  EXPECT_EQ(name->text(), "typed");
  EXPECT_EQ(parents->findText("System 1"), -1);
  Data().Redo();
  dialog->close();
  Wait(50);
  dialog = Ask("cord", Branch()->GetChild(1), kCommandEditCord);
  name = dialog->findChild<QLineEdit*>("name");
  apply = dialog->findChild<QPushButton*>("apply");
  name->setText("A");
  apply->click();
  EXPECT_EQ(TextOf(*dialog, "outcome"), "A: stored");
  Data().Undo();
  Wait(50);
  EXPECT_EQ(name->text(), "System 1");
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
  Data().Undo();  // it was never made
  Wait(50);
  EXPECT_FALSE(apply->isEnabled());
  EXPECT_NE(TextOf(*dialog, "outcome"), "");
  Keep("cord-gone", dialog);
  Data().Redo();
  Wait(50);
  EXPECT_TRUE(apply->isEnabled());
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
}

TEST_F(Dialogs, DialogsOnPartsMeshesAndMaterialsFollowTheirRecords) {
  const QString first = ToQt(Data().GetGeomPool().GetAtNU(Parts()[0])->name);
  QDialog* move = AskPart("operation", 0, kCommandGenerateMesh);
  EXPECT_TRUE(TextOf(*move, "parts").contains(first));
  Rename(Parts()[0], L"Renamed");
  EXPECT_TRUE(TextOf(*move, "parts").contains("Renamed")) << TextOf(*move, "parts").toStdString();
  QDialog* materials = AskPart("materials", 0, kCommandMaterialDialog);
  EXPECT_TRUE(TextOf(*materials, "parts").contains("Renamed")) << TextOf(*materials, "parts").toStdString();
  materials->findChild<QLineEdit*>("name")->setText("Steel");
  materials->findChild<QPushButton*>("apply")->click();
  const auto* list = materials->findChild<QComboBox*>();
  EXPECT_EQ(list->currentText(), "Steel");
  Data().Undo();
  Wait(50);
  EXPECT_EQ(list->findText("Steel"), -1);
  Data().Undo();  // of the name
  Wait(50);
  EXPECT_TRUE(TextOf(*materials, "parts").contains(first)) << TextOf(*materials, "parts").toStdString();
  materials->close();

  m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshNode);
  Wait(50);
  QDialog* node = Dialog("mesh");
  ASSERT_NE(node, nullptr);
  node->findChild<QPushButton*>("apply")->click();
  EXPECT_NE(TextOf(*node, "outcome"), "");
  Data().Undo();
  Wait(50);
  EXPECT_EQ(TextOf(*node, "outcome"), "");
}

TEST_F(Dialogs, TheListsOfASetFollowItsParts) {
  CQDTreeListCtrl& sets = m_window->SetTreePane().Bar().GetTreeCtrl();
  sets.SelectCTItem(sets.GetQDRootItem()->GetChild(0)->GetChild(0));
  sets.OnMenuEvent(kCommandIncludeExclude);
  Wait(50);
  QDialog* dialog = Dialog("sets");
  ASSERT_NE(dialog, nullptr);
  const auto lists = dialog->findChildren<QListWidget*>();
  EXPECT_EQ(lists[1]->count(), 4);
  Rename(Parts()[0], L"Renamed");
  EXPECT_EQ(lists[1]->findItems("Renamed", Qt::MatchExactly).size(), 1);
  Data().Undo();
  Data().Undo();  // of the import
  Wait(50);
  EXPECT_EQ(lists[1]->count(), 0);
  Data().Redo();
  Wait(50);
  EXPECT_EQ(lists[1]->count(), 4);
}

// ---- numbers --------------------------------------------------------------------------------------------

/// The dialog that moves mesh sets wants another vector than zeros.
TEST_F(Dialogs, ALineOfNumbersIsJudgedWhenItIsLeft) {
  QDialog* dialog = Ask("cord", Branch(), kCommandAddCord);
  dialog->close();
  CQDTreeListCtrl& sets = m_window->SetTreePane().Bar().GetTreeCtrl();
  m_window->Document().Select({{Parts()[0]}});
  sets.OnMenuEvent(kCommandTranslate);
  ASSERT_TRUE(WaitUntil([this] { return Dialog("operation") != nullptr; }));
  dialog = Dialog("operation");
  dialog->activateWindow();
  Wait(100);
  const auto fields = dialog->findChildren<NumberField*>();
  ASSERT_EQ(fields.size(), 3);
  fields[0]->setFocus(Qt::TabFocusReason);
  Type("0");
  Press(Qt::Key_Tab, "\t");
  EXPECT_EQ(QApplication::focusWidget(), fields[1]);
  EXPECT_EQ(fields[1]->selectedText(), fields[1]->text()) << "what is typed takes its place";
  EXPECT_EQ(Fault(*dialog), "") << "the others come yet";
  Press(Qt::Key_Tab, "\t");
  EXPECT_EQ(Fault(*dialog), "");
  Press(Qt::Key_Tab, "\t");
  EXPECT_NE(Fault(*dialog), "");
  Keep("number-row-left", dialog);
  fields[0]->setFocus(Qt::TabFocusReason);
  Type("1x");
  Press(Qt::Key_Tab, "\t");
  Press(Qt::Key_Backtab, {}, Qt::ShiftModifier);
  // Who comes back from another window goes on where they were.
  Type("12");
  fields[0]->deselect();
  QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
  QApplication::sendEvent(fields[0], &back);
  EXPECT_FALSE(fields[0]->hasSelectedText());
}

/// A text that means nothing in one language does not become a number by a switch to another.
TEST_F(Dialogs, AnAmbiguousNumberStaysOneInAnotherLanguage) {
  m_window->SetLanguage("de");
  QDialog* dialog = AskPart("operation", 0, kCommandGenerateMesh);
  auto* field = dialog->findChild<NumberField*>();
  EXPECT_EQ(QApplication::focusWidget(), field);
  EXPECT_EQ(field->selectedText(), field->text()) << "what is typed takes its place";
  Type("1.500");
  EXPECT_FALSE(field->Reading().IsGood());
  m_window->SetLanguage("en");
  EXPECT_EQ(field->text(), "1.500");
  EXPECT_FALSE(field->Reading().IsGood());
  field->selectAll();
  Type("1.500");
  EXPECT_TRUE(field->Reading().IsGood()) << "typed in this language";
  EXPECT_EQ(field->Value(), 1.5);
}

TEST_F(Dialogs, UnitsFollowInOpenDialogsAndPages) {
  QDialog* dialog = AskPart("operation", 0, kCommandGenerateMesh);
  QDialog* materials = AskPart("materials", 0, kCommandMaterialDialog);
  const auto units = [](const QDialog& open) {
    QStringList texts;
    for (const NumberRow* row : open.findChildren<NumberRow*>()) {
      for (const QLabel* label : row->findChildren<QLabel*>()) {
        if (label->objectName() != "fault" && !label->isHidden()) texts << label->text();
      }
    }
    return texts.join(" ");
  };
  EXPECT_EQ(units(*dialog), "mm");
  EXPECT_EQ(units(*materials), "MPa t/mm³");
  // A text with its unit means the same in others, also one that is still being typed.
  QDialog* moving = AskPart("operation", 1, kCommandTranslate);
  auto* way = moving->findChild<NumberField*>();
  way->setFocus();
  way->selectAll();
  Type("50 cm");
  // What was worked out for a page is in units, too.
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  Tree().SelectCTItem(Tree().FindMeshNode(Data().GetMsetPool().GetItr(L"PLATE")));
  m_window->Properties().ShowNow();
  auto* grid = m_window->Properties().findChild<QTreeWidget*>();
  for (QTreeWidgetItemIterator at(grid); *at != nullptr; ++at) emit grid->itemClicked(*at, 1);
  EXPECT_EQ(m_window->Properties().Lines().filter(QRegularExpression(" mm$")).size(), 3);
  ActionOf("m, kg")->trigger();
  Wait(50);
  EXPECT_EQ(units(*dialog), "m");
  EXPECT_EQ(way->Value(), 0.5);
  EXPECT_EQ(units(*materials), "Pa kg/m³");
  EXPECT_EQ(m_window->Properties().Lines().filter(QRegularExpression(" mm$")).size(), 0);
  Keep("units-page");
}

}  // namespace
}  // namespace qd::test

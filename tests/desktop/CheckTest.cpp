// What the window finds: faults of meshes, what came of meshing, contacts of parts.

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

#include "Dialogs.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/Places.h"
#include "workbench/app/NumberField.h"
#include "workbench/session/WindowCommands.h"

namespace qd::test {
namespace {

using namespace workbench;

class Checks : public Dialogs {
 protected:
  Checks() { Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp"); }
  QDialog* AskCheck(const char* key) {
    ActionOf(key)->trigger();
    EXPECT_TRUE(WaitUntil([this] { return Dialog("check") != nullptr; }));
    return Dialog("check");
  }
  QPushButton* Button(const QString& name) { return Dialog("check")->findChild<QPushButton*>(name); }
  bool IsDone() {
    return WaitUntil([this] { return !Button("stop")->isEnabled(); });
  }
  QString Outcome() { return TextOf(*Dialog("check"), "outcome"); }
};

TEST_F(Checks, FollowWhatIsAskedForAndMakeASet) {
  QDialog* dialog = AskCheck("IDS_WB_CHECK_QUALITY");
  ASSERT_TRUE(IsDone());
  Keep("check-quality");
  Keep("check-quality-dialog", dialog);
  EXPECT_FALSE(TextOf(*dialog, "range").isEmpty());
  auto* limit = dialog->findChild<QWidget*>("limit")->findChild<QLineEdit*>();
  limit->setText("1000");
  ASSERT_TRUE(WaitUntil([this] { return Outcome().startsWith("Elements found: 0 of"); }))
      << Outcome().toStdString();
  EXPECT_FALSE(Button("apply")->isEnabled());
  limit->setText("1");
  ASSERT_TRUE(WaitUntil([this] { return Button("apply")->isEnabled(); }));
  const int sets = Data().GetMsetPool().Count();
  Button("apply")->click();
  EXPECT_GT(Data().GetMsetPool().Count(), sets);
  EXPECT_TRUE(Messages().contains("Aspect Ratio > 1")) << Messages().toStdString();
  ASSERT_TRUE(IsDone());
  Keep("check-made");
  Data().Undo();
  EXPECT_EQ(Data().GetMsetPool().Count(), sets);
  dialog->findChild<QComboBox*>("what")->setCurrentIndex(1);
  ASSERT_TRUE(IsDone());
  EXPECT_TRUE(Outcome().startsWith("Edges found")) << Outcome().toStdString();
  m_window->SetLanguage("de");
  dialog->findChild<QComboBox*>("what")->setCurrentIndex(2);
  ASSERT_TRUE(IsDone());
  EXPECT_TRUE(Outcome().startsWith("Gefundene Knoten")) << Outcome().toStdString();
  Keep("check-nodes-german", dialog);
}

TEST_F(Checks, WorkOnWhatIsSelectedNow) {
  AskCheck("IDS_WB_CHECK_UNCONNECTED");
  ASSERT_TRUE(IsDone());
  const QString all = Outcome();
  const iterator first = Data().GetMsetPool().GetItrList().back();
  m_window->Document().Select({{first}});
  ASSERT_TRUE(WaitUntil([&] { return Outcome() != all && Outcome().startsWith("Nodes found"); }));
}

/// The grid of blocks of 10 x 10 x 10.
class AfterMeshing : public Dialogs {};

TEST_F(AfterMeshing, TheMeshIsSeenAndToldAndItsSizeCameFromThePart) {
  QDialog* dialog = AskPart("operation", 0, kCommandGenerateMesh);
  ASSERT_NE(dialog, nullptr);
  auto* size = dialog->findChild<NumberField*>();
  const double offered = size->Value();
  EXPECT_GT(offered, 0.3);
  EXPECT_LT(offered, 3.5);
  dialog->findChild<QPushButton*>("apply")->click();
  ASSERT_TRUE(WaitUntil([this] { return Messages().contains("scaled Jacobian"); })) << Messages().toStdString();
  EXPECT_TRUE(Messages().contains("elements: "));
  dialog->close();
  const auto picture = [this] {
    WaitUntil([this] { return m_window->IsUpToDate(); });
    Wait(100);
    return m_window->View().grabFramebuffer();
  };
  m_window->Document().GetLooking().FitAll();
  const QImage faded = picture();
  Keep("mesh-faded");
  QAction* fade = ActionOf("IDS_WB_FADE_MESHED");
  EXPECT_TRUE(fade->isChecked());
  fade->trigger();
  EXPECT_NE(picture(), faded);
  Keep("mesh-not-faded");
  Data().Undo();
  EXPECT_EQ(picture(), faded);
}

/// The four blocks of the grid stand apart from each other; the pump's parts touch.
class Contacts : public Dialogs {
 protected:
  QDialog* AskContacts() {
    ActionOf("IDS_WB_CONTACTS")->trigger();
    EXPECT_TRUE(WaitUntil([this] { return Dialog("contacts") != nullptr; }));
    return Dialog("contacts");
  }
  void Find(QDialog* dialog) {
    dialog->findChild<QPushButton*>("find")->click();
    ASSERT_TRUE(WaitUntil([=] { return !dialog->findChild<QPushButton*>("stop")->isEnabled(); }));
  }
};

TEST_F(Contacts, OfAnAssemblyAreListedSelectedShownAndCopied) {
  QDialog* dialog = AskContacts();
  auto* list = dialog->findChild<QTreeWidget*>("pairs");
  Find(dialog);
  EXPECT_EQ(list->topLevelItemCount(), 0);
  Open(QString::fromStdString(SourceFolder()) + "/examples/pump.step");
  Find(dialog);
  ASSERT_GT(list->topLevelItemCount(), 2);
  const int all = list->topLevelItemCount();
  list->setCurrentItem(list->topLevelItem(1));
  EXPECT_EQ(m_window->Document().GetSelection().records.size(), 2U);
  EXPECT_EQ(list->topLevelItemCount(), all) << "the pair is no work of its own";
  Keep("contacts", dialog);
  dialog->findChild<QPushButton*>("zoom")->click();
  dialog->findChild<QPushButton*>("show")->click();
  Wait(100);
  Keep("contacts-shown");
  EXPECT_EQ(m_window->Document().GetDisplay().Parts().Hidden().size(), Parts().size() - 2);
  dialog->findChild<QPushButton*>("copy")->click();
  const QStringList lines = QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
  EXPECT_EQ(lines.size(), all + 1);
  EXPECT_EQ(lines[1].split('\t').size(), 7);
  m_window->SetLanguage("ja");
  Keep("contacts-japanese", dialog);
}

class MeasuresShown : public Dialogs {};

TEST_F(MeasuresShown, FollowTheSelection) {
  m_window->Document().Select({{Parts()[0]}});
  ActionOf("IDS_WB_MEASURE")->trigger();
  ASSERT_TRUE(WaitUntil([this] { return Dialog("measure") != nullptr; }));
  auto* list = Dialog("measure")->findChild<QTreeWidget*>("values");
  const auto has = [list](const QString& name) {
    return WaitUntil([&] { return !list->findItems(name, Qt::MatchExactly).isEmpty(); });
  };
  EXPECT_TRUE(has("Volume"));
  EXPECT_TRUE(list->findItems("Distance", Qt::MatchExactly).isEmpty());
  m_window->Document().Select({{Parts()[0], Parts()[1]}});
  EXPECT_TRUE(has("Distance"));
  Keep("measure", Dialog("measure"));
  m_window->SetLanguage("de");
  EXPECT_TRUE(has("Schwerpunkt"));
  Keep("measure-german", Dialog("measure"));
  m_window->Document().Select({});
  EXPECT_TRUE(WaitUntil([=] { return list->topLevelItemCount() == 0; }));
}

}  // namespace
}  // namespace qd::test

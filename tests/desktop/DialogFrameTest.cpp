// What all dialogs have in common: they tell what is wrong whole and where it is wrong, and keys lose no entry.

#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>

#include "Dialogs.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/NumberField.h"

namespace qd::test {
namespace {

using namespace workbench;

class DialogFrames : public Dialogs {};

/// All labels that show less than their text.
QStringList CutTexts(const QWidget& dialog) {
  QStringList cut;
  for (const QLabel* label : dialog.findChildren<QLabel*>()) {
    if (!label->isVisible() || label->text().isEmpty()) continue;
    const int wanted = label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
    if (label->height() < wanted || (!label->wordWrap() && label->width() < label->sizeHint().width())) {
      cut << label->text();
    }
  }
  return cut;
}

TEST_F(DialogFrames, WhatIsWrongIsToldWholeWhereItIsWrong) {
  for (const QString language : {"en", "de", "ja", "ko", "zh"}) {
    m_window->SetLanguage(language);
    for (const QString name : {"materials", "operation"}) {
      QDialog* dialog = AskPart(name, 0, name == "materials" ? kCommandMaterialDialog : kCommandGenerateMesh);
      const auto fields = dialog->findChildren<NumberField*>();
      fields.back()->setText("some words that are no number, and more of them than a line holds");
      dialog->findChild<QPushButton*>("apply")->click();
      Wait(100);
      EXPECT_NE(Fault(*dialog), "");
      EXPECT_EQ(QApplication::focusWidget(), fields.back());
      EXPECT_EQ(CutTexts(*dialog), QStringList()) << language.toStdString() << " " << name.toStdString();
      Keep("fault-" + name + "-" + language, dialog);
      dialog->close();
      Wait(50);
    }
  }
}

TEST_F(DialogFrames, KeysLoseNoEntry) {
  QDialog* dialog = AskPart("materials", 0, kCommandMaterialDialog);
  EXPECT_EQ(QApplication::focusWidget(), dialog->findChild<QLineEdit*>("name")) << "the first field to fill in";
  Type("Steel");
  dialog->findChildren<NumberField*>().back()->setFocus(Qt::TabFocusReason);
  Press(Qt::Key_Tab, "\t");
  Press(Qt::Key_Return, "\r");
  Wait(50);
  EXPECT_TRUE(dialog->isVisible());
  ASSERT_EQ(Data().GetMaterialPool().Count(), 1U);
}

TEST_F(DialogFrames, AMaterialIsFilledInFromTheLibrary) {
  QDialog* dialog = AskPart("materials", 0, kCommandMaterialDialog);
  auto* library = dialog->findChild<QComboBox*>("library");
  ASSERT_GT(library->count(), 10);
  const int steel = library->findText("Structural Steel");
  library->setCurrentIndex(steel);
  emit library->activated(steel);
  const auto fields = dialog->findChildren<NumberField*>();
  fields[0]->setText("0.2 TPa");
  dialog->findChild<QPushButton*>("apply")->click();
  EXPECT_TRUE(Fault(*dialog).contains("MPa")) << Fault(*dialog).toStdString();
  fields[0]->setText("205 GPa");
  dialog->findChild<QPushButton*>("apply")->click();
  ASSERT_EQ(Data().GetMaterialPool().Count(), 1U);
  const tagTMaterial& made = *Data().GetMaterialPool().GetAtNU(Data().GetMaterialPool().GetItrList().front());
  EXPECT_EQ(made.name, L"Structural Steel");
  EXPECT_EQ(made.youngsModulus, 205000);
  EXPECT_EQ(made.density, 7.85e-9);
  EXPECT_EQ(Data().GetGeomPool().GetAtNU(Parts()[0])->material, Data().GetMaterialPool().GetItrList().front());
  Keep("material-library", dialog);
}

}  // namespace
}  // namespace qd::test

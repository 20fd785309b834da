// Dialogs whose record, base, target, work or units go while they stand open: they say so, and nothing else takes
// the place of what was meant.

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

#include "Dialogs.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/Places.h"
#include "workbench/app/NumberField.h"
#include "workbench/tree/MaterialNodes.h"

namespace qd::test {
namespace {

using namespace workbench;

class OpenDialogs : public Dialogs {
 protected:
  static bool CanApply(const QDialog& dialog, const char* name = "apply") {
    return dialog.findChild<QPushButton*>(name)->isEnabled();
  }
  static bool IsAllSeen(const QDialog& dialog, const QString& name) {
    Wait(100);
    const auto* label = dialog.findChild<QLabel*>(name);
    return label->isVisible() && label->height() >= label->heightForWidth(label->width()) &&
           label->width() >= label->minimumSizeHint().width();
  }
  /// Runs writes as an act of their own.
  void Act(const std::function<void()>& writes) {
    CTransaction transaction(&Data());
    transaction.Begin(L"act");
    writes();
    transaction.Commit(1);
    Wait(50);
  }
  void Undo() {
    Data().Undo();
    Wait(50);
  }
  void Redo() {
    Data().Redo();
    Wait(50);
  }
  iterator AddMaterial(const CString& name, double young) {
    tagTMaterial record;
    record.name = name;
    record.youngsModulus = young;
    iterator material = 0;
    Act([&] { material = Data().GetMaterialPool().Add(record); });
    return material;
  }
  QDialog* AskMaterial(iterator material) {
    m_window->Document().Select({{material}});
    Wait(50);
    Tree().OnMenuEvent(kCommandEditMaterial);
    EXPECT_TRUE(WaitUntil([&] { return Dialog("materials") != nullptr; }));
    return Dialog("materials");
  }
};

TEST_F(OpenDialogs, TheMaterialOfTheRowIsEdited) {
  AddMaterial(L"Steel", 210000);
  const iterator brass = AddMaterial(L"Brass", 100000);
  QDialog* dialog = AskMaterial(brass);
  EXPECT_EQ(dialog->findChild<QLineEdit*>("name")->text(), "Brass");
  auto* young = dialog->findChild<NumberField*>();
  EXPECT_EQ(young->Value(), 100000);
  young->SetValue(90000);
  dialog->findChild<QPushButton*>("apply")->click();
  EXPECT_EQ(Data().GetMaterialPool().Count(), 2U);
  EXPECT_EQ(Data().GetMaterialPool().GetAtNU(brass)->youngsModulus, 90000);
  // It goes, and comes back.
  Act([&] { Data().GetMaterialPool().TR_Del({brass}); });
  EXPECT_FALSE(CanApply(*dialog));
  EXPECT_EQ(dialog->findChild<QComboBox*>()->currentIndex(), -1);
  EXPECT_NE(TextOf(*dialog, "outcome"), "");
  EXPECT_TRUE(IsAllSeen(*dialog, "outcome"));
  Keep("material-gone", dialog);
  Undo();
  EXPECT_TRUE(CanApply(*dialog));
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
  EXPECT_EQ(dialog->findChild<QComboBox*>()->currentText(), "Brass");
}

TEST_F(OpenDialogs, AMeshSetThatIsGoneIsSaid) {
  iterator first = 0, second = 0;
  Act([&] {
    tagTMset set;
    set.name = CString(80, L'n');
    first = Data().GetMsetPool().Add(set);
    set.name = L"other";
    second = Data().GetMsetPool().Add(set);
    set.name = L"third";
    Data().GetMsetPool().Add(set);
  });
  QDialog* dialog = Ask("mesh", Tree().FindMeshNode(first), kCommandMeshIncludeExclude);
  auto* other = dialog->findChild<QComboBox*>();
  other->setCurrentIndex(other->findText("other"));
  Act([&] { Data().GetMsetPool().TR_Del({second}); });
  EXPECT_EQ(other->currentIndex(), -1) << "another one was not chosen";
  EXPECT_FALSE(CanApply(*dialog, "exclude"));
  Undo();
  EXPECT_EQ(other->currentText(), "other");
  EXPECT_TRUE(CanApply(*dialog, "exclude"));
  Act([&] { Data().GetMsetPool().TR_Del({first}); });
  for (const char* name : {"include", "exclude"}) EXPECT_FALSE(CanApply(*dialog, name));
  EXPECT_EQ(TextOf(*dialog, "outcome"), "The mesh set was deleted meanwhile.");
  Undo();
  EXPECT_TRUE(CanApply(*dialog, "include"));
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
  // What is told is seen to its end.
  dialog->findChild<QLineEdit*>()->setText(QString("x ").repeated(200));
  dialog->findChild<QPushButton*>("include")->click();
  Wait(100);
  EXPECT_GT(Fault(*dialog).size(), 200);
  for (const QLabel* label : dialog->findChildren<QLabel*>("fault")) {
    EXPECT_TRUE(!label->isVisible() || label->height() >= label->heightForWidth(label->width()));
  }
  Keep("mesh-outcome", dialog);
}

TEST_F(OpenDialogs, AMeshSetStaysChosenWhateverComesBackBesideIt) {
  constexpr int kSets = 10'010;  // more than are listed
  std::vector<iterator> sets;
  tagTMset set;
  Act([&] {
    for (int i = 0; i < kSets; ++i) {
      set.name = L"set " + std::to_wstring(i);
      sets.push_back(Data().GetMsetPool().Add(set));
    }
  });
  QDialog* dialog = Ask("mesh", Tree().FindMeshNode(sets[0]), kCommandMeshIncludeExclude);
  auto* other = dialog->findChild<QComboBox*>();
  const auto chosen = [&] { return other->currentData().value<iterator>(); };
  Act([&] { Data().GetMsetPool().TR_Del({sets.begin() + 1, sets.end() - 2}); });
  other->setCurrentIndex(1);
  EXPECT_EQ(chosen(), sets.back());
  Act([&] { Data().GetMsetPool().TR_Del({sets.end() - 2, sets.end()}); });
  EXPECT_EQ(other->count(), 0);
  EXPECT_FALSE(CanApply(*dialog, "exclude"));
  Undo();
  EXPECT_EQ(chosen(), sets.back()) << "no other one took its place meanwhile";
  Undo();
  EXPECT_EQ(chosen(), sets.back()) << "behind those that are listed";
  EXPECT_TRUE(CanApply(*dialog, "exclude"));
  EXPECT_LT(other->count(), kSets);
}

TEST_F(OpenDialogs, AGeometrySetThatIsGoneIsSaid) {
  iterator second = 0;
  Act([&] {
    tagTGset record;
    record.name = L"second";
    second = Data().GetGsetPool().Add(record);
  });
  CQDTreeListCtrl& sets = m_window->SetTreePane().Bar().GetTreeCtrl();
  sets.SelectCTItem(sets.GetQDRootItem()->GetChild(0)->GetChild(1));
  sets.OnMenuEvent(kCommandIncludeExclude);
  Wait(50);
  QDialog* dialog = Dialog("sets");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QListWidget*>()->selectAll();
  EXPECT_TRUE(CanApply(*dialog, "include"));
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
  Undo();
  EXPECT_FALSE(CanApply(*dialog, "include"));
  EXPECT_EQ(TextOf(*dialog, "outcome"), "The geometry set was deleted meanwhile.");
  Redo();
  EXPECT_TRUE(CanApply(*dialog, "include"));
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
}

TEST_F(OpenDialogs, ABaseThatIsGoneIsSaidAndNoOtherTaken) {
  tagTCord record;
  record.SetName(L"A");
  record.origin = {10, 0, 0};
  iterator a = 0, b = 0;
  Act([&] { a = Data().GetCordPool().Add(record); });
  QDialog* dialog = Ask("cord", Branch(), kCommandAddCord);
  auto* bases = dialog->findChild<QComboBox*>("parent");
  bases->setCurrentIndex(bases->findText("A"));
  Undo();
  EXPECT_EQ(bases->currentIndex(), -1);
  EXPECT_FALSE(CanApply(*dialog));
  EXPECT_NE(TextOf(*dialog, "outcome"), "");
  EXPECT_TRUE(IsAllSeen(*dialog, "outcome"));
  Keep("cord-base-gone", dialog);
  Redo();
  EXPECT_EQ(bases->currentText(), "A");
  EXPECT_TRUE(CanApply(*dialog));
  EXPECT_EQ(TextOf(*dialog, "outcome"), "");
  Undo();
  bases->setCurrentIndex(0);
  EXPECT_TRUE(CanApply(*dialog)) << "somebody has chosen another one";
  Redo();
  dialog->close();
  Wait(50);
  // One that is edited stays where it is, in the axes of the next.
  record.SetName(L"B");
  record.parent = a;
  Act([&] { b = Data().GetCordPool().Add(record); });
  dialog = Ask("cord", Branch()->GetChild(2), kCommandEditCord);
  bases = dialog->findChild<QComboBox*>("parent");
  EXPECT_EQ(bases->currentText(), "A");
  Act([&] { Data().GetCordPool().TR_Del({a}); });
  EXPECT_EQ(bases->currentIndex(), 0);
  EXPECT_EQ(dialog->findChild<NumberField*>()->Value(), 20);
  EXPECT_TRUE(TextOf(*dialog, "outcome").contains("Global")) << TextOf(*dialog, "outcome").toStdString();
  EXPECT_TRUE(CanApply(*dialog));
}

TEST_F(OpenDialogs, ATargetThatIsGoneIsSaid) {
  m_window->Document().Select({{Parts()[0]}});
  m_window->SetTreePane().Bar().GetTreeCtrl().OnMenuEvent(kCommandAttach);
  ASSERT_TRUE(WaitUntil([this] { return Dialog("operation") != nullptr; }));
  QDialog* dialog = Dialog("operation");
  const QString before = TextOf(*dialog, "parts");
  dialog->findChild<QComboBox*>("target")->setCurrentIndex(1);
  Act([this] { Data().GetGeomPool().TR_Del({Parts()[1]}); });
  EXPECT_FALSE(CanApply(*dialog));
  EXPECT_EQ(TextOf(*dialog, "parts"), "The target was deleted meanwhile: choose another one.");
  Undo();
  EXPECT_EQ(TextOf(*dialog, "parts"), before);
  const iterator chosen = Parts()[1];
  Act([this] { Data().GetGeomPool().TR_Del(Parts()); });
  Undo();
  EXPECT_EQ(dialog->findChild<QComboBox*>("target")->currentData().value<iterator>(), chosen);
}

TEST_F(OpenDialogs, WhatIsSelectedIsDeletedAndNothingElseMeant) {
  m_window->Document().Select({{Parts()[0]}});
  m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshAuto3D);
  ASSERT_TRUE(WaitUntil([this] { return Dialog("operation") != nullptr; }));
  QDialog* dialog = Dialog("operation");
  EXPECT_TRUE(CanApply(*dialog));
  ActionOf("IDS_WB_DELETE")->trigger();
  Wait(50);
  ASSERT_EQ(Parts().size(), 3U);
  EXPECT_FALSE(CanApply(*dialog));
  EXPECT_EQ(TextOf(*dialog, "parts"), Text("IDS_WB_NO_SOLIDS"));
  Keep("work-gone", dialog);
}

/// Numbers of the model are meant in the units on show; what was typed or proposed keeps what it means.
TEST_F(OpenDialogs, TypedNumbersKeepTheirMeaningInOtherUnits) {
  const iterator steel = AddMaterial(L"Steel", 210000);
  QDialog* materials = AskMaterial(steel);
  QDialog* dialog = AskPart("operation", 0, kCommandGenerateMesh);
  auto* size = dialog->findChild<NumberField*>();
  size->setFocus(Qt::TabFocusReason);
  Type("2.7");
  auto* list = materials->findChild<QComboBox*>();
  const auto of = [materials] {
    QStringList texts;
    for (const auto* field : materials->findChildren<NumberField*>()) texts << field->text();
    return texts.join(" ");
  };
  const QString stored = of();
  ActionOf("m, kg")->trigger();
  Wait(50);
  EXPECT_EQ(size->text(), "0.0027");
  EXPECT_EQ(of(), stored) << "a record's numbers are as they were";
  EXPECT_TRUE(Messages().contains("Units: m, kg.")) << Messages().toStdString();
  list->setCurrentIndex(0);
  EXPECT_EQ(of(), "210000000000 0.3 7850") << "steel";
  ActionOf("in, lb")->trigger();
  ActionOf("mm, t")->trigger();
  Wait(50);
  EXPECT_EQ(size->text(), "2.7");
  EXPECT_EQ(of(), "210000 0.3 7.85e-09");
  // What is no number stays as it was typed.
  size->selectAll();
  Type("2x");
  ActionOf("in, lb")->trigger();
  Wait(50);
  EXPECT_EQ(size->text(), "2x");
}

/// A page hears of a choice at once, before the change itself, so that rows that depend on it can follow.
TEST_F(OpenDialogs, APageHearsOfAChoiceBeforeTheChange) {
  struct Page final : IPropertySet {
    Page(CQDDocBase* doc, QStringList& calls) : IPropertySet(doc, 0, 0), m_calls(calls) {}
    void ShowProperty() override {
      RemoveAllProperties();
      AddGeneralPropertyWithOption(AddTitle(nullptr, L"title"), L"name", {L"one", L"two"}, 0, L"", 7, 0);
      AdjustLayout();
    }
    void OnSelChangeComboBox(CBCGPProp* row) override { m_calls << "chosen " + ToQt(row->value); }
    void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) override {
      m_calls << "changed " + ToQt(row->value) + " " + QString::number(data);
    }
    QStringList& m_calls;
  };
  QStringList heard;
  m_window->Properties().SetPropertySet(std::make_unique<Page>(&m_window->Document(), heard));
  m_window->Properties().ShowNow();
  auto* box = m_window->Properties().findChild<QComboBox*>();
  ASSERT_NE(box, nullptr);
  box->setCurrentIndex(1);
  emit box->activated(1);
  EXPECT_EQ(heard.join(", ").toStdString(), "chosen two, changed two 7");
  m_window->Properties().SetPropertySet(nullptr);
}

}  // namespace
}  // namespace qd::test

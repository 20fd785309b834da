// What is done with picks: they are measured, and fill places in dialogs; with the display's own mouse and keys.

#include <QClipboard>
#include <QTreeWidget>

#include "EntityPick.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/NumberField.h"

namespace qd::test {
namespace {

using namespace workbench;

class PickUse : public EntityPick {
 protected:
  /// The dialogs stand beside the window, which is clicked at.
  static void PutAside(QDialog* dialog) {
    dialog->move(1010, 20);
    Wait(100);
  }
  QAction* ActionOf(const char* key) {
    for (QAction* action : m_window->findChildren<QAction*>()) {
      if (action->text() == Text(key)) return action;
    }
    return nullptr;
  }
  QString ValueOf(const char* key) {
    const auto found = m_list->findItems(Text(key), Qt::MatchExactly);
    return found.isEmpty() ? QString() : found.front()->text(1);
  }
  QTreeWidget* m_list = nullptr;  // of the dialog that measures
};

TEST_F(PickUse, PicksAreMeasuredAndShownWhere) {
  AddBlock(0, 0, 0);
  AddBlock(1.7F, 0, 0);
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+0"});
  Display({"key", "ctrl+shift+d"});
  ASSERT_TRUE(WaitUntil([this] { return Dialog("measure") != nullptr; }));
  QDialog* dialog = Dialog("measure");
  PutAside(dialog);
  m_list = dialog->findChild<QTreeWidget*>("values");
  auto* note = dialog->findChild<QLabel*>("note");
  m_window->activateWindow();
  Display({"key", "ctrl+shift+5"});
  Click({0.7, 0, 0.7}, {}, "1", {-2, 2});
  EXPECT_TRUE(WaitUntil([this] { return ValueOf("IDS_WB_MEASURE_PLACE") == "0.7; 0; 0.7 mm"; }));
  const QColor before = Pixel({1.2, 0, 0.52});
  Click({1.7, 0, 0}, {"shift"}, "1", {2, -2});
  EXPECT_TRUE(WaitUntil([this] { return ValueOf("IDS_WB_MEASURE_DISTANCE") == "1.220656 mm"; }))
      << ValueOf("IDS_WB_MEASURE_DISTANCE").toStdString();
  EXPECT_EQ(ValueOf("IDS_WB_MEASURE_WAY"), "1; 0; -0.7 mm");
  const auto* lines = View().findChild<QWidget*>("measured");
  EXPECT_TRUE(lines->isVisible());
  Wait(200);
  Keep("measured-points");
  Keep("measured-points-dialog", dialog);
  const QImage picture = View().Render(View().size());
  const QColor drawn = picture.pixelColor(SeenAt({0.9, 0, 0.56}).toPoint());
  EXPECT_LT(drawn.lightness(), 120) << "the line, between the blocks, in pictures too "
                                    << before.name().toStdString();
  dialog->findChild<QAbstractButton*>("copy")->click();
  EXPECT_TRUE(QApplication::clipboard()->text().contains("1.220656 mm"));
  // Faces that look at each other: parallel, so there is an angle of 0.
  Display({"key", "ctrl+shift+3"});
  Click({0.35, 0, 0.35});
  EXPECT_TRUE(WaitUntil([this] { return ValueOf("IDS_WB_MEASURE_AREA").startsWith("0.49"); }));
  EXPECT_EQ(ValueOf("IDS_WB_NORMAL"), "0; 1; 0") << "as the triangles of this block are turned";
  Click({2, 0, 0.35}, {"shift"});
  EXPECT_TRUE(WaitUntil([this] { return ValueOf("IDS_WB_MEASURE_DISTANCE") == "1 mm"; }));
  Display({"key", "ctrl+shift+5"});
  Click({0, 0, 0.7}, {"shift"}, "1", {2, 2});
  EXPECT_TRUE(WaitUntil([=] { return note->isVisible() && note->text() == Text("IDS_WB_MEASURE_MANY"); }));
  Keep("measured-many-dialog", dialog);
  dialog->close();
  EXPECT_FALSE(lines->isVisible());
}

/// The numbers of a line of a dialog, in their order; lines are counted from 0.
QStringList NumbersOf(const QDialog& dialog, int line) {
  QStringList numbers;
  for (const NumberField* field : dialog.findChildren<NumberRow*>().at(line)->findChildren<NumberField*>()) {
    numbers << field->text();
  }
  return numbers;
}

TEST_F(PickUse, PlacesAndWaysOfDialogsComeFromTheView) {
  const iterator part = AddBlock(0, 0, 0);
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+0"});
  const auto ask = [&](unsigned command) {
    Tree().SelectCTItem(Tree().FindGeomNode(part));
    Tree().OnMenuEvent(command);
    EXPECT_TRUE(WaitUntil([this] { return Dialog("operation") != nullptr; }));
    PutAside(Dialog("operation"));
    return Dialog("operation");
  };
  const auto press = [this](QDialog* dialog, int line) {
    auto* button = dialog->findChildren<NumberRow*>().at(line)->findChild<QAbstractButton*>("pick");
    button->click();
    m_window->activateWindow();
    Wait(100);
    return button;
  };
  QDialog* dialog = ask(kCommandTranslate);
  const QAbstractButton* button = press(dialog, 0);
  EXPECT_EQ(Picked().Filter(), PickFilter::Points);
  Click({0, 0, 0.7}, {}, "1", {2, 2});
  EXPECT_TRUE(button->isChecked()) << "one point is no way";
  Keep("picked-way", dialog);
  Click({0.7, 0, 0}, {}, "1", {-2, -2});
  EXPECT_EQ(NumbersOf(*dialog, 0), (QStringList{"0.7", "0", "-0.7"}));
  EXPECT_FALSE(button->isChecked());
  EXPECT_TRUE(Picked().IsEmpty());
  EXPECT_EQ(Picked().Filter(), PickFilter::Whole) << "as it was";
  // Escape in the view ends the picking and nothing else.
  press(dialog, 0);
  Display({"key", "Escape"});
  EXPECT_FALSE(button->isChecked());
  EXPECT_TRUE(dialog->isVisible());
  Click({0.7, 0, 0.7}, {}, "1", {-2, 2});
  EXPECT_EQ(NumbersOf(*dialog, 0), (QStringList{"0.7", "0", "-0.7"}));
  // A flat face is a point and its normal.
  dialog = ask(kCommandMirror);
  Display({"key", "ctrl+shift+3"});
  press(dialog, 0);
  Click({0.5, 0, 0.5});
  EXPECT_EQ(NumbersOf(*dialog, 0), (QStringList{"0.35", "0", "0.35"}));
  EXPECT_EQ(NumbersOf(*dialog, 1), (QStringList{"0", "1", "0"}));
  EXPECT_EQ(Picked().Filter(), PickFilter::Faces);
  Keep("picked-plane", dialog);
}

TEST_F(PickUse, NodesOfAnElementAreThoseThatArePicked) {
  AddMesh(1, 1, 1);
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+0"});
  ActionOf("IDS_MENU_WRT_MESH_ADD_ELEM")->trigger();
  ASSERT_TRUE(WaitUntil([this] { return Dialog("mesh") != nullptr; }));
  PutAside(Dialog("mesh"));
  m_window->activateWindow();
  Display({"key", "ctrl+shift+8"});
  Click({1, 0, 0}, {}, "1", {-2, -2});
  Click({1, 0, 1}, {"shift"}, "1", {-2, 2});
  Click({0, 0, 0}, {"shift"}, "1", {2, -2});
  EXPECT_EQ(Dialog("mesh")->findChild<QLineEdit*>("IDS_QD_WRT_MESH_NODE_COUNT")->text(), "2, 6, 1");
}

TEST_F(PickUse, ElementsAreColouredByTheirQualityWithALegend) {
  const iterator set = AddMesh(3, 1, 1);
  tagTMset bent = *Data().GetMsetPool().GetAtNU(set);
  auto mesh = std::make_shared<MeshData>(*bent.mesh);
  for (std::size_t i = 0; i < mesh->coordinates.size(); i += 3) {
    if (mesh->coordinates[i] == 3) mesh->coordinates[i + 2] += 2;  // the last element leans
  }
  bent.mesh = std::move(mesh);
  Data().BeginTransaction(L"bend");
  Data().GetMsetPool().Modify(set, bent);
  Data().CommitTransaction(1);
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+0"});
  const Vector3 good{0.5, 0, 0.5};
  const Vector3 bad{2.5, 0, 1.5};
  const auto* legend = View().findChild<QWidget*>("legend");
  EXPECT_FALSE(legend->isVisible());
  ActionOf("IDS_WB_QUALITY_JACOBIAN")->trigger();
  const auto isBlue = [](const QColor& colour) { return colour.blue() > colour.red() + 40; };
  const auto isRed = [](const QColor& colour) { return colour.red() > colour.blue() + 40; };
  EXPECT_TRUE(WaitUntil([&] { return isRed(Pixel(bad)); })) << Pixel(bad).name().toStdString();
  EXPECT_TRUE(isBlue(Pixel(good))) << Pixel(good).name().toStdString();
  EXPECT_TRUE(legend->isVisible());
  Keep("quality");
  // What was typed: from 0 to 0.4, in which the worst one is not bad any more.
  ActionOf("IDS_WB_COLOUR_RANGE_MENU")->trigger();
  ASSERT_TRUE(WaitUntil([this] { return Dialog("range") != nullptr; }));
  QDialog* dialog = Dialog("range");
  PutAside(dialog);
  const auto type = [dialog](int line, const QString& text) {
    dialog->findChildren<NumberRow*>().at(line)->findChild<NumberField*>()->setText(text);
  };
  type(0, "0.5");
  type(1, "0.4");
  dialog->findChild<QAbstractButton*>("apply")->click();
  EXPECT_TRUE(isRed(Pixel(bad))) << "a range that ends below its beginning is none";
  type(0, "0");
  Keep("quality-range", dialog);
  dialog->findChild<QAbstractButton*>("apply")->click();
  EXPECT_TRUE(WaitUntil([&] { return isBlue(Pixel(bad)); })) << Pixel(bad).name().toStdString();
  Keep("quality-typed");
  dialog->findChild<QAbstractButton*>("automatic")->click();
  EXPECT_TRUE(WaitUntil([&] { return isRed(Pixel(bad)); }));
  ActionOf("IDS_WB_COLOUR_BY_SET")->trigger();
  EXPECT_TRUE(WaitUntil([&] { return !legend->isVisible(); }));
}

}  // namespace
}  // namespace qd::test

// Work on real shapes through the exchange program and the dialogs of the window.

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <cmath>
#include <numbers>

#include "InWindow.h"
#include "host/CTransaction.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/NumberField.h"

namespace qd::test {
namespace {

using namespace workbench;

struct Bounds {
  std::array<double, 3> least{1e30, 1e30, 1e30};
  std::array<double, 3> greatest{-1e30, -1e30, -1e30};
};

/// A window with a grid of four blocks.
class Operations : public InWindow {
 protected:
  explicit Operations(const QStringList& model = {"grid", "4"}, const QString& file = "grid.step") {
    Open(m_files.Make(model, file));
  }
  std::vector<iterator> Parts() { return Data().GetGeomPool().GetItrList(); }
  const tagTGeom& Part(std::size_t index) { return *Data().GetGeomPool().GetAtNU(Parts()[index]); }
  Bounds BoundsOf(std::size_t index) {
    Bounds bounds;
    const auto& points = Part(index).shape->facets.points;
    for (std::size_t i = 0; i < points.size(); ++i) {
      bounds.least[i % 3] = std::min<double>(bounds.least[i % 3], points[i]);
      bounds.greatest[i % 3] = std::max<double>(bounds.greatest[i % 3], points[i]);
    }
    return bounds;
  }
  CQDTreeListCtrl& Sets() { return m_window->SetTreePane().Bar().GetTreeCtrl(); }
  CQDTreeListCtrl& Model() { return m_window->ModelTreePane().Bar().GetTreeCtrl(); }
  /// Selects parts by index in one of the trees and runs a menu command there.
  void Command(CQDTreeListCtrl& tree, const std::vector<std::size_t>& parts, unsigned command) {
    TArray<iterator> itrs;
    for (const std::size_t part : parts) itrs.push_back(Parts()[part]);
    m_window->Document().Select({itrs});
    tree.SetSelection(1, itrs);
    tree.OnMenuEvent(command);
    Wait(50);
  }
  /// Enters numbers into the open dialog and applies it; waits for the job.
  void Apply(const std::vector<double>& numbers) {
    QDialog* dialog = Dialog("operation");
    ASSERT_NE(dialog, nullptr);
    auto fields = dialog->findChildren<NumberField*>();
    fields.removeIf([dialog](const NumberField* field) { return !field->isVisibleTo(dialog); });
    ASSERT_EQ(static_cast<std::size_t>(fields.size()), numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) fields[static_cast<int>(i)]->SetValue(numbers[i]);
    dialog->findChild<QPushButton*>("apply")->click();
    EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking() && m_window->IsUpToDate(); }));
    dialog->close();
    Wait(50);
  }
};

TEST_F(Operations, TransformsMoveTurnMirrorAndScale) {
  const auto before = Data().Snapshot();
  const Bounds start = BoundsOf(0);
  const double volume = Part(0).shape->volume;
  EXPECT_GT(volume, 0);

  Command(Sets(), {0}, kCommandTranslate);
  Apply({100, 0, -5});
  EXPECT_NEAR(BoundsOf(0).least[0], start.least[0] + 100, 1e-3);
  EXPECT_NEAR(BoundsOf(0).least[2], start.least[2] - 5, 1e-3);
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(Data().Snapshot(), before);

  Command(Sets(), {0}, kCommandRotate);
  Apply({0, 0, 0, 0, 0, 1, 180});
  EXPECT_NEAR(BoundsOf(0).least[0], -start.greatest[0], 1e-3);
  Data().Undo();

  Command(Sets(), {0}, kCommandMirror);
  Apply({0, 0, 0, 0, 0, 1});
  EXPECT_NEAR(BoundsOf(0).least[2], -start.greatest[2], 1e-3);
  Data().Undo();

  Command(Sets(), {0, 1}, kCommandScale);
  Apply({0, 0, 0, 2});
  EXPECT_NEAR(Part(0).shape->volume, volume * 8, volume * 1e-4);
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
}

/// A block with a small hole, a face and a line.
class MixedOperations : public Operations {
 protected:
  MixedOperations() : Operations({"mixed"}, "mixed.brep") {
    for (std::size_t i = 0; i < Parts().size(); ++i) {
      if (Part(i).kind == TopologyKind::Solid) block = i;
      if (Part(i).kind == TopologyKind::Surface) face = i;
      if (Part(i).kind == TopologyKind::Curve) line = i;
    }
  }
  std::size_t block = 9, face = 9, line = 9;
};

TEST_F(MixedOperations, SweepingMakesASurfaceASolidAndMovesItToItsGroup) {
  const auto before = Data().Snapshot();
  Command(Sets(), {face}, kCommandSweep);
  Apply({0, 0, 5});
  EXPECT_EQ(Part(face).kind, TopologyKind::Solid);
  EXPECT_NEAR(Part(face).shape->volume, 10 * 10 * 5, 1e-3);
  const CQDTreeItem* node = Sets().FindGeomNode(Parts()[face]);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->GetParent()->GetTitle(), L"Solid [2]");
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
  EXPECT_EQ(Sets().FindGeomNode(Parts()[face])->GetParent()->GetTitle(), L"Surface [1]");
}

TEST_F(MixedOperations, SimplifyingTakesSmallFacesOut) {
  const double volume = Part(block).shape->volume;
  Command(Sets(), {block}, kCommandSimplify);
  Apply({40});  // the hole's wall has 31
  EXPECT_NEAR(Part(block).shape->volume, 20 * 20 * 10, 1e-3);
  EXPECT_LT(volume, 20 * 20 * 10 - 1);
}

TEST_F(MixedOperations, ProjectingAddsACurveOnTheTarget) {
  Command(Sets(), {line}, kCommandProject);
  QDialog* dialog = Dialog("operation");
  ASSERT_NE(dialog, nullptr);
  auto* target = dialog->findChild<QComboBox*>("target");
  target->setCurrentIndex(target->findData(QVariant::fromValue(Parts()[block])));
  Apply({0, 0, -1});
  ASSERT_EQ(Parts().size(), 4U);
  EXPECT_EQ(Part(3).kind, TopologyKind::Curve);
  EXPECT_NEAR(BoundsOf(3).greatest[2], 10, 1e-3);
  EXPECT_NEAR(BoundsOf(3).greatest[0] - BoundsOf(3).least[0], 16, 1e-3);
}

TEST_F(MixedOperations, PagesTellWhatSingleFacesAndEdgesAre) {
  const auto lines = [this](std::size_t part) {
    Model().SetSelection(1, {Parts()[part]});
    Wait(50);
    return m_window->Properties().Lines();
  };
  EXPECT_TRUE(lines(face).contains("Geometry: Plane"));
  EXPECT_TRUE(lines(face).contains("Area: 100"));
  EXPECT_TRUE(lines(line).contains("Geometry: Line"));
  EXPECT_TRUE(lines(line).contains("Length: 16"));
}

TEST_F(Operations, WhatCannotBeDoneIsSaidAndChangesNothing) {
  const auto before = Data().Snapshot();
  Command(Sets(), {0}, kCommandSweep);  // a solid cannot be swept
  Apply({0, 0, 10});
  Command(Sets(), {0}, kCommandTranslate);
  Apply({0, 0, 0});
  Command(Model(), {0}, kCommandGenerateMesh);
  Apply({0});
  EXPECT_EQ(Data().Snapshot(), before);
  // A part that changes while it is worked on keeps its newer shape.
  Command(Sets(), {0}, kCommandScale);
  QDialog* dialog = Dialog("operation");
  dialog->findChild<QPushButton*>("apply")->click();
  ASSERT_TRUE(m_window->IsWorking());
  Data().GetGeomPool().TR_Del({Parts()[0]});
  const auto changed = Data().Snapshot();
  EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking(); }));
  EXPECT_EQ(Data().Snapshot(), changed);
}

TEST_F(Operations, MeshingGivesThePartATetrahedralMesh) {
  Command(Model(), {1}, kCommandGenerateMesh);
  Apply({4});
  const iterator mesh = Data().GetMsetPool().GetItrByGeomItr(Parts()[1]);
  ASSERT_NE(mesh, 0U);
  const tagTMset& record = *Data().GetMsetPool().GetAtNU(mesh);
  EXPECT_GT(record.elementCount, 20U);
  constexpr int kTetrahedron = 4;
  EXPECT_EQ(record.mesh->blocks[0].elementType, kTetrahedron);
  // The icon tells of the mesh; deleting it is one act.
  EXPECT_EQ(Model().GetItemImage(Model().FindGeomNode(Parts()[1])->GetTreeItemHandle()), 25);
  Command(Model(), {1}, kCommandDeleteMesh);
  EXPECT_EQ(Data().GetMsetPool().GetItrByGeomItr(Parts()[1]), 0U);
  Data().Undo();
  Data().Undo();
  EXPECT_EQ(Data().GetMsetPool().Count(), 0U);
}

TEST_F(Operations, AttachingPutsAPartOntoAnother) {
  Command(Sets(), {0}, kCommandAttach);
  QDialog* dialog = Dialog("operation");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QComboBox*>("alignment")->setCurrentIndex(1);
  Apply({});
  EXPECT_NEAR(BoundsOf(0).least[2], BoundsOf(1).greatest[2], 1e-3);
}

/// All lines of text of the open dialog.
QString TextsOf(const QDialog& dialog) {
  QStringList texts;
  for (const QLabel* label : dialog.findChildren<QLabel*>()) texts << label->text();
  return texts.join("|");
}

TEST_F(Operations, TheDialogNamesWhatItWorksOnAndFollowsTheSelection) {
  const double start = BoundsOf(2).least[0];
  const iterator global = Data().GetCordPool().GetDefaultCord();
  Command(Sets(), {0, 1}, kCommandTranslate);
  QDialog* dialog = Dialog("operation");
  ASSERT_NE(dialog, nullptr);
  const auto* apply = dialog->findChild<QPushButton*>("apply");
  EXPECT_TRUE(TextsOf(*dialog).contains("Parts: 2 (Body 1, Body 2)")) << TextsOf(*dialog).toStdString();
  Keep("operation-names", dialog);
  m_window->Document().Select({{global}});
  EXPECT_FALSE(apply->isEnabled());
  EXPECT_TRUE(TextsOf(*dialog).contains("no parts to work on")) << TextsOf(*dialog).toStdString();
  Keep("operation-nothing", dialog);
  m_window->Document().Select({{Parts()[2]}});
  EXPECT_TRUE(apply->isEnabled());
  EXPECT_TRUE(TextsOf(*dialog).contains("Parts: 1 (Body 3)")) << TextsOf(*dialog).toStdString();
  Data().Undo();  // of the import
  EXPECT_FALSE(apply->isEnabled()) << "deleted parts";
  Data().Redo();
  m_window->Document().Select({{Parts()[2]}});
  Apply({100, 0, 0});
  EXPECT_NEAR(BoundsOf(2).least[0], start + 100, 1e-3);
}

/// What is meshed is what is said, also when nothing is selected.
TEST_F(Operations, AMeshIsMadeOfAllThatIsShownOrOfWhatIsSelected) {
  m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshAuto3D);
  QDialog* dialog = Dialog("operation");
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(TextsOf(*dialog).contains("All that is shown: 4 (Body 1, Body 2, Body 3, …)"))
      << TextsOf(*dialog).toStdString();
  m_window->Document().Select({{Data().GetCordPool().GetDefaultCord()}});
  dialog->findChild<QPushButton*>("apply")->click();
  EXPECT_FALSE(m_window->IsWorking());
  m_window->Document().Select({{Parts()[3]}});
  Apply({5});
  EXPECT_EQ(Data().GetMsetPool().Count(), 1U);
  EXPECT_NE(Data().GetMsetPool().GetItrByGeomItr(Parts()[3]), 0U);
}

/// A set may hold all parts that there are.
TEST_F(Operations, AttachingASetLeavesTheTargetWhereItIs) {
  m_window->Document().Select({{Data().GetGsetPool().GetCurrentSet()}});
  Sets().OnMenuEvent(kCommandAttach);
  Wait(50);
  QDialog* dialog = Dialog("operation");
  ASSERT_NE(dialog, nullptr);
  auto* target = dialog->findChild<QComboBox*>("target");
  ASSERT_EQ(target->count(), 4);
  target->setCurrentIndex(1);
  EXPECT_TRUE(TextsOf(*dialog).contains("Parts: 3 (Body 1, Body 3, Body 4)")) << TextsOf(*dialog).toStdString();
  dialog->findChild<QComboBox*>("alignment")->setCurrentIndex(1);
  const Bounds before = BoundsOf(1);
  Apply({});
  EXPECT_EQ(BoundsOf(1).least, before.least);
  EXPECT_NEAR(BoundsOf(0).least[2], before.greatest[2], 1e-3);
}

TEST_F(Operations, MaterialsAreMadeAppliedAndGiveTheMass) {
  const auto before = Data().Snapshot();
  Command(Model(), {0, 1}, kCommandMaterialDialog);
  QDialog* dialog = Dialog("materials");
  ASSERT_NE(dialog, nullptr);
  auto* apply = dialog->findChild<QPushButton*>("apply");
  apply->click();  // without a name
  EXPECT_EQ(Data().Snapshot(), before);
  dialog->findChild<QLineEdit*>("name")->setText("Steel");
  apply->click();
  dialog->close();
  const iterator steel = Part(0).material;
  ASSERT_NE(steel, 0U);
  EXPECT_EQ(Part(1).material, steel);
  EXPECT_EQ(Part(2).material, 0U);
  Model().SetSelection(1, {Parts()[0]});
  Wait(50);
  const QStringList lines = m_window->Properties().Lines();
  EXPECT_TRUE(lines.contains("Material: Steel")) << lines.join("\n").toStdString();
  EXPECT_EQ(lines.filter("Mass: ").size(), 1);
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
}

TEST_F(Operations, IncludeAndExcludeMovePartsBetweenSets) {
  CTransaction transaction(&Data());
  transaction.Begin(L"set");
  tagTGset record;
  record.name = L"second";
  const iterator second = Data().GetGsetPool().Add(record);
  transaction.Commit(1);
  Sets().SetSelection(0, {});
  Sets().SelectCTItem(Sets().GetQDRootItem()->GetChild(0)->GetChild(1));
  Sets().OnMenuEvent(kCommandIncludeExclude);
  QDialog* dialog = Dialog("sets");
  ASSERT_NE(dialog, nullptr);
  const auto lists = dialog->findChildren<QListWidget*>();
  lists[0]->item(2)->setSelected(true);
  dialog->findChild<QPushButton*>("include")->click();
  EXPECT_EQ(Part(2).gset, second);
  lists[1]->item(0)->setSelected(true);
  dialog->findChild<QPushButton*>("exclude")->click();
  EXPECT_NE(Part(2).gset, second);
  dialog->close();
}

TEST_F(Operations, RenderModesAndTransparencyAreSeen) {
  const auto picture = [this] {
    EXPECT_TRUE(WaitUntil([this] { return m_window->View().IsUpToDate(); }));
    Wait(100);
    return m_window->View().grabFramebuffer();
  };
  const QImage shaded = picture();
  std::set<quint64> seen;
  for (const unsigned command : {kCommandShading, kCommandWireframe, kCommandBoundingBox, kCommandEdgeShading}) {
    Command(Model(), {0, 1, 2, 3}, command);
    Model().ResetSelection(1);
    m_window->Document().ClearSelectBuffer(1);
    const QImage image = picture();
    quint64 sum = 0;
    for (int y = 0; y < image.height(); y += 3) {
      for (int x = 0; x < image.width(); x += 3) sum += image.pixel(x, y) & 0xFFFFFF;
    }
    seen.insert(sum);
  }
  EXPECT_EQ(seen.size(), 4U);
  Command(Model(), {0, 1, 2, 3}, kCommandTransparent + 2);
  EXPECT_NE(picture(), shaded);
}

}  // namespace
}  // namespace qd::test

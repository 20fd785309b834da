// Meshes in the window: real files in and out, generators, dialogs, the property page and the picture.

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QTreeWidget>
#include <set>

#include "InWindow.h"
#include "host/CTransaction.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/Places.h"
#include "support/SampleMesh.h"
#include "workbench/app/ExportDialog.h"
#include "workbench/app/NumberField.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

using namespace workbench;

class Meshes : public InWindow {
 protected:
  static QString Example(const char* name) { return QString::fromStdString(SourceFolder()) + "/examples/" + name; }
  iterator Named(const CString& name) { return Data().GetMsetPool().GetItr(name); }
  const tagTMset& Set(const CString& name) { return *Data().GetMsetPool().GetAtNU(Named(name)); }
  void Select(const std::vector<CString>& names) {
    TArray<iterator> itrs;
    for (const CString& name : names) itrs.push_back(Named(name));
    m_window->Document().Select({itrs});
    Tree().SetSelection(2, itrs);
  }
  /// Names with their counts of elements; nodes for what has no elements.
  std::set<std::string> Groups(Database& data) {
    std::set<std::string> groups;
    for (const iterator itr : data.GetMsetPool().GetItrList()) {
      const tagTMset& set = *data.GetMsetPool().GetAtNU(itr);
      if (set.nodeCount != 0) {
        groups.insert(ToUtf8(set.name) + " " + std::to_string(set.elementCount) + "/" +
                      std::to_string(set.nodeCount));
      }
    }
    return groups;
  }
  QImage Picture() {
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(50);
    return m_window->View().grabFramebuffer();
  }
  static int Difference(const QImage& a, const QImage& b) {
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
      for (int x = 0; x < a.width(); ++x) count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
    }
    return count;
  }
  QString Write(const QString& name) {
    const QString path = m_files.Folder() + "/" + name;
    m_window->Export(path);
    EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking(); }));
    return path;
  }
};

// ---- what is exported -----------------------------------------------------------------------------------

class ExportScopes : public Meshes {
 protected:
  ExportScopes() { Open(Example("bracket.inp")); }
  std::uint64_t All() {
    std::uint64_t all = 0;
    for (const iterator set : Data().GetMsetPool().GetItrList())
      all += Data().GetMsetPool().GetAtNU(set)->elementCount;
    return all;
  }
  /// Counts the elements of a file that the dialog is asked for.
  std::uint64_t WriteByDialog(const QString& name, int choice) {
    QMetaObject::invokeMethod(m_window.get(), [this] {
      for (QAction* action : m_window->findChildren<QAction*>()) {
        if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_E)) action->trigger();
      }
    });
    QDialog* dialog = nullptr;
    EXPECT_TRUE(WaitUntil([&] { return (dialog = Dialog("export")) != nullptr; }));
    Keep("export", dialog);
    const auto scopes = dialog->findChildren<QRadioButton*>();
    EXPECT_TRUE(scopes[0]->isChecked());
    scopes[choice]->click();
    const QString path = m_files.Folder() + "/" + name;
    dialog->findChild<QLineEdit*>("path")->setText(path);
    dialog->accept();
    EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking(); }));
    const QByteArray bytes = Files::Read(path);
    const qsizetype at = bytes.indexOf("$Elements\n") + 10;
    return bytes.mid(at, bytes.indexOf('\n', at) - at).toULongLong();
  }
};

TEST_F(ExportScopes, WhatIsSelectedOrHiddenDoesNotChangeWhatIsWrittenUnasked) {
  Select({L"PLATE"});
  m_window->Document().GetDisplay().Meshes().ShowHideMsetUnit(Named(L"WEDGES"), 0);
  Wait(100);
  EXPECT_EQ(WriteByDialog("all.msh", 0), All());
  EXPECT_EQ(WriteByDialog("shown.msh", 1), All() - Set(L"WEDGES").elementCount);
  EXPECT_EQ(WriteByDialog("selected.msh", 2), Set(L"PLATE").elementCount);
}

TEST_F(ExportScopes, PartsLeaveAsShapesAndTheMeshesAreSaid) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const std::vector<iterator> parts = Data().GetGeomPool().GetItrList();
  ASSERT_EQ(parts.size(), 9U);
  m_window->Document().GetDisplay().Parts().SetShowHide(Data().GetGeomPool().GetAtNU(parts[2])->cadItem, 0);
  WriteByDialog("all.step", 0);
  WriteByDialog("shown.step", 1);
  EXPECT_EQ(Files::Read(m_files.Folder() + "/all.step").count(" = NEXT_ASSEMBLY_USAGE_OCCURRENCE("), 11);
  EXPECT_EQ(Files::Read(m_files.Folder() + "/shown.step").count(" = NEXT_ASSEMBLY_USAGE_OCCURRENCE("), 10);
  EXPECT_EQ(Files::Read(m_files.Folder() + "/all.step").count("PLATE"), 0);
}

TEST_F(ExportScopes, AFileThatIsThereIsReplacedOnlyWhenTheUserAgrees) {
  ExportDialog dialog(m_window->Document(), m_files.Write("old.msh", "old"), nullptr);
  for (const auto& [button, result] : {std::pair{QMessageBox::No, 0}, std::pair{QMessageBox::Yes, 1}}) {
    dialog.setResult(0);
    bool asked = false;
    QTimer::singleShot(100, &dialog, [&asked, button = button] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      asked = box != nullptr;
      if (asked) box->button(button)->click();
    });
    dialog.accept();
    EXPECT_TRUE(asked);
    EXPECT_EQ(dialog.result(), result);
  }
}

TEST_F(ExportScopes, TheDialogCountsWhatItOffersAndWantsAKnownEnding) {
  ExportDialog dialog(m_window->Document(), "a.inp", nullptr);
  const auto scopes = dialog.findChildren<QRadioButton*>();
  ASSERT_EQ(scopes.size(), 3);
  EXPECT_TRUE(scopes[0]->text().contains(QString::number(All()))) << scopes[0]->text().toStdString();
  EXPECT_FALSE(scopes[2]->isEnabled());
  const auto canWrite = [&dialog](const QString& name) {
    dialog.findChild<QLineEdit*>("path")->setText(name);
    return dialog.findChild<QPushButton*>("write")->isEnabled();
  };
  EXPECT_TRUE(canWrite("x.INP"));
  EXPECT_FALSE(canWrite("x"));
  EXPECT_FALSE(canWrite("x.xyz"));
  const auto* told = dialog.findChild<QLabel*>("outcome");
  ASSERT_NE(told, nullptr);
  EXPECT_TRUE(told->text().contains("xyz"));
  EXPECT_TRUE(canWrite("x.stl"));
  EXPECT_FALSE(told->text().contains("xyz")) << "what was wrong is told no longer";
  EXPECT_FALSE(canWrite(""));
}

// ---- files ----------------------------------------------------------------------------------------------

class MeshFormats : public Meshes, public ::testing::WithParamInterface<const char*> {};
TEST_P(MeshFormats, ReadBackWithTheSameGroupsAndCounts) {
  const QString format = GetParam();
  // One set for each kind of element that the formats share.
  {
    CTransaction transaction(&Data());
    ASSERT_EQ(transaction.Begin(L"fill"), 1);
    std::uint64_t last = 0;
    for (const int type : {2, 3, 4, 5, 6, 9, 11, 16, 17, 18}) {
      tagTMset record;
      record.name = L"Kind " + std::to_wstring(type);
      PutMesh(record, OneElement(type, 2.0 * type, last));
      last += 30;
      ASSERT_NE(Data().GetMsetPool().Add(record), 0U);
    }
    ASSERT_EQ(transaction.Commit(1), 1);
  }
  const QString path = Write("kinds." + format);
  ASSERT_EQ(m_window->IsWorking(), false);
  const auto expected = Groups(Data());
  MainWindow other(m_messages);
  other.show();
  other.Import({path});
  ASSERT_TRUE(WaitUntil([&] { return other.IsUpToDate(); }));
  auto groups = Groups(other.Document().GetDatabase());
  if (format == "bdf") {
    // Its groups are told apart by number only.
    EXPECT_EQ(groups.size(), expected.size());
    std::multiset<std::string> counts;
    std::multiset<std::string> wanted;
    for (const std::string& group : groups) counts.insert(group.substr(group.rfind(' ')));
    for (const std::string& group : expected) wanted.insert(group.substr(group.rfind(' ')));
    EXPECT_EQ(counts, wanted);
  } else {
    EXPECT_EQ(groups, expected);
  }
  for (const iterator itr : other.Document().GetDatabase().GetMsetPool().GetItrList()) {
    const tagTMset& set = *other.Document().GetDatabase().GetMsetPool().GetAtNU(itr);
    EXPECT_EQ(set.mesh != nullptr ? CountBentEdges(*set.mesh) : 0, 0) << ToUtf8(set.name);
  }
}
INSTANTIATE_TEST_SUITE_P(Formats, MeshFormats, ::testing::Values("msh", "unv", "bdf", "inp"));

TEST_F(Meshes, SurfacesGoToStereolithographyAndBack) {
  Open(Example("bracket.inp"));
  const QString path = Write("skin.stl");
  MainWindow other(m_messages);
  other.show();
  other.Import({path});
  ASSERT_TRUE(WaitUntil([&] { return other.IsUpToDate(); }));
  std::uint64_t triangles = 0;
  for (const iterator itr : other.Document().GetDatabase().GetMsetPool().GetItrList()) {
    triangles += other.Document().GetDatabase().GetMsetPool().GetAtNU(itr)->elementCount;
  }
  EXPECT_EQ(triangles, 12U + 12 + 4 + 12);  // two blocks, two squares, two wedges that share a side
}

// ---- generators -----------------------------------------------------------------------------------------

TEST_F(Meshes, GeneratorsMeshSurfacesAndSolidsAndKeepHowTheyDid) {
  Open(m_files.Make({"grid", "1"}, "grid.step"));
  const auto run = [this](unsigned command, double size, bool secondOrder) {
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), command);
    QDialog* dialog = Dialog("operation");
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<NumberField*>()->SetValue(size);
    dialog->findChild<QAbstractButton*>("second")->setChecked(secondOrder);
    dialog->findChild<QPushButton*>("apply")->click();
    EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking() && m_window->IsUpToDate(); }));
    dialog->close();
    Wait(50);
  };
  const auto types = [this] {
    std::set<int> all;
    for (const iterator itr : Data().GetMsetPool().GetItrList()) {
      for (const auto& block : Data().GetMsetPool().GetAtNU(itr)->mesh->blocks) all.insert(block.elementType);
    }
    return all;
  };
  run(kCommandMeshAuto2D, 4, false);
  EXPECT_EQ(types(), std::set<int>{2});
  run(kCommandMeshMap3D, 4, false);
  EXPECT_EQ(types(), std::set<int>{5});
  Keep("mesh_mapped");
  run(kCommandMeshMap2D, 4, true);
  EXPECT_EQ(types(), std::set<int>{16});
  run(kCommandMeshAuto3D, 4, true);
  EXPECT_EQ(types(), std::set<int>{11});
  ASSERT_EQ(Data().GetMsetPool().GetItrList().size(), 1U);  // meshed again in place
  const iterator first = Data().GetMsetPool().GetItrList().front();
  Tree().SelectCTItem(Tree().FindMeshNode(first));
  m_window->Properties().ShowNow();
  const QString page = m_window->Properties().Lines().join("|");
  EXPECT_TRUE(page.contains("Method: Automatic Solid") && page.contains("Second Order: yes"))
      << page.toStdString();
  // Numbers of nodes and elements are given once in a document.
  std::set<std::uint64_t> elements;
  std::size_t count = 0;
  for (const iterator itr : Data().GetMsetPool().GetItrList()) {
    for (const auto& block : Data().GetMsetPool().GetAtNU(itr)->mesh->blocks) {
      elements.insert(block.elementIds.begin(), block.elementIds.end());
      count += block.elementIds.size();
    }
  }
  EXPECT_EQ(elements.size(), count);
  // Meshing again starts from what was meshed.
  Tree().FindMeshNode(first)->OnMenuEvent(kCommandRemesh);
  EXPECT_NE(Dialog("operation"), nullptr);
}

// ---- dialogs on nodes and elements ----------------------------------------------------------------------

TEST_F(Meshes, DialogsWorkOnNodesElementsAndSets) {
  Open(Example("bracket.inp"));
  const auto press = [this](const char* button) {
    QDialog* dialog = Dialog("mesh");
    if (dialog == nullptr) return std::string("no dialog");
    dialog->findChild<QPushButton*>(button)->click();
    for (const QLabel* fault : dialog->findChildren<QLabel*>("fault")) {
      if (fault->isVisible()) return fault->text().toStdString();
    }
    return dialog->findChild<QLabel*>("outcome")->text().toStdString();
  };
  const auto open = [this](unsigned command) {
    if (QDialog* last = Dialog("mesh")) last->close();
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), command);
  };
  open(kCommandMeshNode);
  EXPECT_EQ(press("apply"), "Node 17 made");
  EXPECT_EQ(Set(L"Default").nodeCount, 1U);
  open(kCommandMeshElement);
  Dialog("mesh")->findChild<QLineEdit*>()->setText("1, x");
  EXPECT_EQ(press("apply"), "Write whole numbers, such as 1, 2, 3 – this cannot be read: 1, x");
  Dialog("mesh")->findChild<QLineEdit*>()->setText("1, 2 17");
  EXPECT_EQ(press("apply"), "Element 13 made");
  EXPECT_EQ(Set(L"Default").elementCount, 1U);
  Dialog("mesh")->close();
  Select({L"PLATE"});
  Tree().OnMenuEvent(kCommandMeshIncludeExclude);
  Dialog("mesh")->findChild<QLineEdit*>()->setText("1-3");
  EXPECT_EQ(press("include"), "Elements moved: 3");
  EXPECT_EQ(Set(L"PLATE").elementCount, 5U);
  Keep("mesh_dialog");
  Data().Undo();
  EXPECT_EQ(Set(L"PLATE").elementCount, 2U);
  Dialog("mesh")->close();
  Select({L"PLATE"});
  Tree().FindMeshNode(Named(L"PLATE"))->OnMenuEvent(kCommandMeshRotate);
  EXPECT_EQ(press("apply"), "Done; changed: 6");
  EXPECT_NEAR(Set(L"PLATE").mesh->coordinates[1], 0, 1e-9);
  const auto before = Data().Snapshot();
  Dialog("mesh")->close();
  Wait(50);
  EXPECT_EQ(m_window->Document().GetCurrentDialog(), nullptr);
  EXPECT_EQ(Data().Snapshot(), before);
}

TEST_F(Meshes, ADialogOnSetsFollowsTheSelection) {
  Open(Example("bracket.inp"));
  Select({L"PLATE"});
  Tree().FindMeshNode(Named(L"PLATE"))->OnMenuEvent(kCommandMeshIncludeExclude);
  auto* other = Dialog("mesh")->findChild<QComboBox*>();
  EXPECT_EQ(other->findText("PLATE"), -1) << "excluded elements cannot go where they are";
  EXPECT_GT(other->count(), 1);
  Dialog("mesh")->close();
  Tree().FindMeshNode(Named(L"PLATE"))->OnMenuEvent(kCommandMeshTranslate);
  const auto says = [this](const QString& text) {
    for (const QLabel* label : Dialog("mesh")->findChildren<QLabel*>()) {
      if (label->text() == text) return true;
    }
    return false;
  };
  EXPECT_TRUE(says("Mesh sets: 1 (PLATE)"));
  m_window->Document().Select({{Data().GetCordPool().GetDefaultCord()}});
  EXPECT_FALSE(Dialog("mesh")->findChild<QPushButton*>("apply")->isEnabled());
  Select({L"WEDGES", L"PLATE"});
  EXPECT_TRUE(says("Mesh sets: 2 (WEDGES, PLATE)"));
  const double before = Set(L"WEDGES").mesh->coordinates[0];
  Dialog("mesh")->findChild<QPushButton*>("apply")->click();
  EXPECT_EQ(Set(L"WEDGES").mesh->coordinates[0], before + 10);
}

/// The generator's dialog has one name; what kind of mesh it makes anew stands in the record.
TEST_F(Meshes, AMeshIsMadeAnewAsItWasMade) {
  Open(m_files.Make({"grid", "1"}, "grid.step"));
  const auto mesh = [this] {
    QDialog* dialog = Dialog("operation");
    if (dialog == nullptr) return false;
    dialog->findChild<QPushButton*>("apply")->click();
    const bool done = WaitUntil([this] { return !m_window->IsWorking() && m_window->IsUpToDate(); });
    dialog->close();
    Wait(50);
    return done;
  };
  m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshMap2D);
  ASSERT_TRUE(mesh());
  const iterator set = Data().GetMsetPool().GetItrList().front();
  constexpr int kQuadrangle = 3;
  ASSERT_EQ(Data().GetMsetPool().GetAtNU(set)->mesh->blocks[0].elementType, kQuadrangle);
  Tree().FindMeshNode(set)->OnMenuEvent(kCommandRemesh);
  ASSERT_NE(Dialog("operation"), nullptr);
  EXPECT_EQ(Dialog("operation")->windowTitle(), "Mapped 2-D Mesh");
  m_window->Document().Select({{Data().GetCordPool().GetDefaultCord()}});
  ASSERT_TRUE(mesh()) << "it works on what was meshed, whatever is selected";
  ASSERT_EQ(Data().GetMsetPool().GetItrList().size(), 1U);
  EXPECT_EQ(Data().GetMsetPool().GetAtNU(set)->mesh->blocks[0].elementType, kQuadrangle);
  // A set that no generator made has nothing to be made anew by, which is said.
  Open(Example("bracket.inp"));
  Select({L"PLATE"});
  m_window->Document().Select({{Named(L"PLATE")}});
  for (QAction* action : m_window->findChildren<QAction*>()) {
    if (action->text() == "Mesh Again…") action->trigger();
  }
  EXPECT_TRUE(Messages().contains("PLATE")) << Messages().toStdString();
  EXPECT_EQ(Dialog("operation"), nullptr);
}

TEST_F(Meshes, ADropAsksWhatIsToBeDone) {
  Open(Example("bracket.inp"));
  const auto answer = [](const QStringList& presses) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, presses] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (dialog == nullptr) return;
      timer->deleteLater();
      const QString folder = qEnvironmentVariable("QD_PICTURES");
      if (!folder.isEmpty()) dialog->grab().save(folder + "/mesh_drop.png");
      for (const QString& press : presses) dialog->findChild<QAbstractButton*>(press)->click();
    });
    timer->start(50);
  };
  std::vector<CQDTreeItem*> dragged{Tree().FindMeshNode(Named(L"PLATE"))};
  CQDTreeItem* target = Tree().FindMeshNode(Named(L"SOLIDS"));
  const auto before = Data().Snapshot();
  answer({"10414", "2"});
  target->OnDrop(dragged);
  EXPECT_EQ(Data().Snapshot(), before);
  answer({"10414", "1"});
  target->OnDrop(dragged);
  EXPECT_EQ(Set(L"PLATE").parent, Set(L"SOLIDS").key);
}

// ---- the picture ----------------------------------------------------------------------------------------

TEST_F(Meshes, ASectionShowsTheInsideAsItShowsTheOutside) {
  Open(Example("bracket.inp"));
  Tree().OnMenuEventMeshRoot(kCommandMeshSmooth);
  m_window->Document().GetSections().ToggleAxis(0, m_window->Document().GetLooking().Camera().Focus());
  const QImage opaque = Picture();
  Tree().OnMenuEventMeshRoot(kCommandMeshTransparent + 5);
  EXPECT_GT(Difference(opaque, Picture()), 1000);
  Tree().OnMenuEventMeshRoot(kCommandMeshTransparent);
  const QImage transparent = Picture();
  Tree().OnMenuEventMeshRoot(kCommandHideAllMeshes);
  EXPECT_EQ(Difference(transparent, Picture()), 0);
}

TEST_F(Meshes, EveryModeAndAddOnChangesThePicture) {
  Open(Example("bracket.inp"));
  const QImage start = Picture();
  QImage last = start;
  const auto run = [&](unsigned command, const char* name) {
    Tree().OnMenuEventMeshRoot(command);
    const QImage now = Picture();
    EXPECT_GT(Difference(last, now), 20) << name;
    last = now;
    Keep(QString("mesh_") + name);
  };
  run(kCommandMeshWireframe, "wireframe");
  run(kCommandMeshFeatureEdges, "features");
  run(kCommandMeshFeatureShading, "feature_shading");
  run(kCommandMeshFreeFaces, "free_faces");
  run(kCommandMeshSmooth, "smooth");
  run(kCommandMeshShading, "shading");
  EXPECT_EQ(Difference(start, last), 0);
  run(kCommandAllNodes, "nodes");
  run(kCommandAllNodalSystems, "nodal_systems");
  run(kCommandAllElementSystems, "element_systems");
  run(kCommandAllMaterialSystems, "material_systems");
  run(kCommandClearAllAddOns, "no_add_ons");
  run(kCommandMeshTransparent + 5, "half");
  run(kCommandMeshTransparent, "transparent");
  run(kCommandMeshOpaque, "opaque");
  EXPECT_EQ(Difference(start, last), 0);
  run(kCommandMeshColourMode + 1, "by_property");
  run(kCommandMeshColourMode + 3, "by_type");
  run(kCommandMeshColourMode, "by_set");
  EXPECT_EQ(Difference(start, last), 0);
  run(kCommandHideAllMeshes, "hidden");
  run(kCommandShowAllMeshes, "shown");
  EXPECT_EQ(Difference(start, last), 0);
  Select({L"WEDGES", L"BLOCK"});
  Tree().OnMenuEvent(kCommandShrink);
  EXPECT_GT(Difference(start, Picture()), 50);
  Keep("mesh_shrink");
  Tree().OnMenuEventMeshRoot(kCommandAllNodeIds);
  Tree().OnMenuEventMeshRoot(kCommandAllElementIds);
  Picture();
  Keep("mesh_numbers");
}

TEST_F(Meshes, TheMassIsComputedOnRequestAndTheNameIsAppliedByTheButton) {
  Open(Example("bracket.inp"));
  Tree().SelectCTItem(Tree().FindMeshNode(Named(L"WEDGES")));
  PropertyPane& pane = m_window->Properties();
  pane.ShowNow();
  auto* grid = pane.findChild<QTreeWidget*>();
  QTreeWidgetItem* mass = grid->topLevelItem(1);
  EXPECT_FALSE(mass->isExpanded());
  EXPECT_EQ(mass->child(0)->text(1), "");
  emit grid->itemClicked(mass->child(0), 1);
  EXPECT_EQ(mass->child(0)->text(1), "7.85e-06 t");
  EXPECT_EQ(mass->child(1)->text(1), "   25 mm");
  Keep("mesh_page");
  auto* name = grid->findChild<QLineEdit*>();
  name->setText("Keile");
  emit name->editingFinished();
  EXPECT_EQ(Named(L"Keile"), 0U);
  pane.findChild<QPushButton*>("applyProperties")->click();
  EXPECT_NE(Named(L"Keile"), 0U);
}

}  // namespace
}  // namespace qd::test

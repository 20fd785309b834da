// Documents in the window: saved and opened.

#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFile>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include "InWindow.h"
#include "support/Digest.h"
#include "support/Places.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

using namespace workbench;

class Documents : public InWindow {
 protected:
  std::string Print() { return PrintTree(Tree()).substr(PrintTree(Tree()).find('\n')); }
};

TEST_F(Documents, AreSavedAndOpenedWithPartsMeshesAndPictures) {
  Open(m_files.Make({"pump"}, "pump.step"));
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  const std::string before = Print();
  EXPECT_TRUE(m_window->Keeper().IsUnsaved());
  ASSERT_TRUE(m_window->SaveAs(Path("pump.qdw")));
  EXPECT_FALSE(m_window->Keeper().IsUnsaved());
  EXPECT_TRUE(m_window->windowTitle().startsWith("pump.qdw"));
  Data().Undo();  // the history survives saving, and the act goes to the file
  EXPECT_NE(Print(), before);
  Data().Redo();
  Restart();
  EXPECT_TRUE(VerifyDocument(Path("pump.qdw").toStdString()).empty());
  ASSERT_TRUE(m_window->OpenDocument(Path("pump.qdw")));
  EXPECT_EQ(Print(), before);
  ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
  Keep("document");
  const QImage picture = m_window->View().grabFramebuffer();
  const QColor corner = picture.pixelColor(5, picture.height() - 5);
  const QColor middle = picture.pixelColor(picture.width() / 2, picture.height() / 2);
  EXPECT_NE(corner, middle) << "the model is in sight";
  // What is done now is in the file at once.
  const iterator part = Data().GetGeomPool().GetItrList().front();
  Data().GetGeomPool().TR_Del({part});
  const std::string after = Print();
  Restart();
  ASSERT_TRUE(m_window->OpenDocument(Path("pump.qdw")));
  EXPECT_EQ(Print(), after);
}

TEST_F(Documents, TheWindowIsFoundAgainAsItWas) {
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  ASSERT_TRUE(m_window->SaveAs(Path("view.qdw")));
  const auto isOpen = [this](const CString& title) {
    const iterator set = Data().GetMsetPool().GetItr(title);
    return Tree().IsExpanded(Tree().FindMeshNode(set)->GetTreeItemHandle());
  };
  EXPECT_FALSE(isOpen(L"SOLIDS"));
  Tree().FindMeshNode(Data().GetMsetPool().GetItr(L"SOLIDS"))->Expand(1);
  Tree().GetQDRootItem()->GetChild(0)->Expand(0);
  m_window->ModelTreePane().SetColumnWidths({200, 50, 70});
  m_window->SetLanguage("de");
  QDockWidget* messages = m_window->findChild<QDockWidget*>("messages");
  m_window->resize(900, 700);
  Wait(100);
  m_window->resizeDocks({messages}, {210}, Qt::Vertical);
  m_window->resizeDocks({&m_window->ModelTreePane(), &m_window->Properties()}, {150, 350}, Qt::Vertical);
  Wait(100);
  const int height = messages->height();
  const int page = m_window->Properties().height();
  EXPECT_GT(height, 180);
  Restart();
  m_window->resize(1300, 1000);
  m_window->SetLanguage("en");
  ASSERT_TRUE(m_window->OpenDocument(Path("view.qdw")));
  EXPECT_TRUE(isOpen(L"SOLIDS"));
  EXPECT_FALSE(isOpen(L"BLOCK"));
  EXPECT_FALSE(Tree().IsExpanded(Tree().GetQDRootItem()->GetChild(0)->GetTreeItemHandle()));
  EXPECT_EQ(m_window->ModelTreePane().ColumnWidths(), (QVariantList{200, 50, 70}));
  EXPECT_EQ(m_messages.Language(), "de");
  Wait(100);
  EXPECT_EQ(m_window->size(), QSize(900, 700));
  EXPECT_EQ(m_window->findChild<QDockWidget*>("messages")->height(), height);
  EXPECT_EQ(m_window->Properties().height(), page);
}

/// Hidden and drawn otherwise: after closing, and after a crash that left what was in the file soon after the act.
TEST_F(Documents, AreShownAsTheyWereShown) {
  Open(m_files.Make({"pump"}, "pump.step"));
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  ASSERT_TRUE(m_window->SaveAs(Path("shown.qdw")));
  const std::vector<iterator> parts = Data().GetGeomPool().GetItrList();
  const auto item = [&](std::size_t i) { return Data().GetGeomPool().GetAtNU(parts[i])->cadItem; };
  const std::string before = m_window->Keeper().File()->View("display");
  workbench::Display& display = m_window->Document().GetDisplay();
  display.Parts().SetShowHide(item(0), 0);
  display.Parts().SetTransparency({item(1)}, 0.5);
  display.Meshes().ShowHideMset(Data().GetMsetPool().GetItr(L"SOLIDS"), 0);
  display.Labels().SetShowHide(0, kLabelCord, 1);
  Looking& looking = m_window->Document().GetLooking();
  looking.LookFrom(StandardView::Top);
  looking.SetParallel(true);
  ViewCamera nearer = looking.Camera();
  nearer.Zoom(3, 0.2, 0.1);
  looking.Move(nearer);
  const ViewCamera camera = looking.Camera();
  Sections& sections = m_window->Document().GetSections();
  sections.ToggleAxis(1, {1, 2, 3});
  sections.Add({{4, 5, 6}, {0.6, 0, 0.8}, std::nullopt});
  const std::vector<SectionPlane> planes = sections.Planes();
  m_window->ModelTreePane().Bar().SetFilter(L"type:part s");
  const std::string shown = DisplayText(m_window->Document());
  ASSERT_TRUE(WaitUntil([&] { return m_window->Keeper().File()->View("display") != before; }));
  ASSERT_TRUE(QFile::copy(Path("shown.qdw"), Path("crashed.qdw")));
  display.Parts().SetShowHide(item(2), 0);
  const std::string last = DisplayText(m_window->Document());
  for (const auto& [name, text] : {std::pair("shown.qdw", last), std::pair("crashed.qdw", shown)}) {
    Restart();
    ASSERT_TRUE(m_window->OpenDocument(Path(name)));
    EXPECT_EQ(DisplayText(m_window->Document()), text) << name;
    EXPECT_EQ(Tree().WhichCheck(Tree().FindGeomNode(parts[0])->GetTreeItemHandle()), kUnchecked);
    EXPECT_EQ(Tree().WhichCheck(Tree().FindGeomNode(parts[1])->GetTreeItemHandle()), kChecked);
    EXPECT_FALSE(Data().CanUndo()) << name;
    EXPECT_EQ(m_window->Keeper().File()->View("title"), "") << "nobody learns where the first file lay";
    ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    const ViewCamera& found = m_window->Document().GetLooking().Camera();
    EXPECT_LT(Length(found.Eye() - camera.Eye()) + Length(found.Up() - camera.Up()), 1e-6 * camera.Distance());
    EXPECT_EQ(found.IsParallel(), camera.IsParallel());
    EXPECT_EQ(m_window->Document().GetSections().Planes(), planes);
    if (name == std::string("crashed.qdw")) continue;  // searches are written when the window closes
    EXPECT_TRUE(Tree().GetFinder().IsFiltering());
    EXPECT_EQ(Tree().GetFinder().GetQuery(), L"type:part s");
  }
}

/// As a program starts that is given a file: nothing has laid out the window when the file is opened.
TEST_F(Documents, AMaximisedWindowIsFoundAgainAtOnce) {
  Open(m_files.Make({"pump"}, "pump.step"));
  m_window->showMaximized();
  ASSERT_TRUE(WaitUntil([this] { return m_window->isMaximized(); }));
  Wait(300);
  ASSERT_TRUE(m_window->SaveAs(Path("large.qdw")));
  m_window->SaveLayout();
  m_window.reset();
  for (const bool shown : {true, false}) {
    m_window = std::make_unique<MainWindow>(m_messages);
    m_window->RestoreLayout();
    if (shown) m_window->show();
    ASSERT_TRUE(m_window->OpenDocument(Path("large.qdw")));
    m_window->show();
    ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(300);
    EXPECT_TRUE(m_window->isMaximized());
    EXPECT_NE(Print().find("Shaft"), std::string::npos);
    m_window.reset();
  }
}

/// As a file manager lets files fall onto the window.
TEST_F(Documents, FilesThatFallOntoTheWindowAreOpenedAndFoundAgainAmongTheRecent) {
  const QString step = m_files.Make({"pump"}, "pump.step");
  const auto drop = [this](const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &event);
    EXPECT_EQ(event.dropAction(), Qt::CopyAction) << "the file stays where it is";
    return WaitUntil([this] { return m_window->IsUpToDate(); });
  };
  EXPECT_FALSE(drop({QUrl("http://example.org/pump.step")}));
  EXPECT_TRUE(m_window->windowTitle().startsWith(Text("IDS_WB_APP")));
  ASSERT_TRUE(drop({QUrl::fromLocalFile(step)}));
  ASSERT_TRUE(WaitUntil([this] { return Data().GetGeomPool().Count() > 0; }));
  EXPECT_TRUE(m_window->windowTitle().startsWith("pump.step"));
  EXPECT_TRUE(m_window->isWindowModified());
  ASSERT_TRUE(m_window->SaveAs(Path("pump [*].qdw")));
  EXPECT_FALSE(m_window->isWindowModified());
  Restart();
  ASSERT_TRUE(drop({QUrl::fromLocalFile(Path("pump [*].qdw"))}));
  ASSERT_TRUE(WaitUntil([this] { return Data().GetGeomPool().Count() > 0; }));
  ASSERT_TRUE(QFile::remove(step));
  QStringList recent;
  for (QMenu* menu : m_window->findChildren<QMenu*>()) {
    if (menu->title() != Text("IDS_WB_OPEN_RECENT")) continue;
    emit menu->aboutToShow();
    Wait(300);  // the menu does not wait for the disk
    for (const QAction* action : menu->actions().mid(0, 2))
      recent << action->text().remove('&') + (action->isEnabled() ? "" : " (grey)");
  }
  EXPECT_EQ(recent, (QStringList{Path("pump [*].qdw"), step + " (grey)"}));
  // What falls together comes together: the document is opened, and the other file goes into it.
  Restart();
  const QString block = m_files.Make({"grid", "1"}, "block.step");
  ASSERT_TRUE(drop({QUrl::fromLocalFile(block), QUrl::fromLocalFile(Path("pump [*].qdw"))}));
  ASSERT_TRUE(WaitUntil([this] { return Data().CanUndo() && m_window->IsUpToDate(); }));
  EXPECT_TRUE(m_window->windowTitle().startsWith("pump [*]"));
  EXPECT_NE(Print().find("Shaft"), std::string::npos);
  EXPECT_NE(Print().find("Body 1"), std::string::npos);
}

TEST_F(Documents, AFileThatCannotBeOpenedIsNamedAndTheWindowGoesOn) {
  m_files.Write("bad.qdw", "no document");
  EXPECT_FALSE(m_window->OpenDocument(Path("bad.qdw")));
  EXPECT_FALSE(m_window->OpenDocument(Path("none.qdw")));
  EXPECT_FALSE(m_window->OpenDocument(m_files.Folder()));
  EXPECT_EQ(m_window->FailedDocuments(), 3);
  EXPECT_FALSE(m_window->SaveAs("/proc/none/a.qdw"));
  // What came together with it comes all the same.
  EXPECT_FALSE(m_window->OpenDocument(Path("bad.qdw"), {m_files.Make({"pump"}, "pump.step")}));
  ASSERT_TRUE(WaitUntil([this] { return Data().GetGeomPool().Count() > 0 && m_window->IsUpToDate(); }));
  EXPECT_NE(Print().find("Shaft"), std::string::npos);
}

}  // namespace
}  // namespace qd::test

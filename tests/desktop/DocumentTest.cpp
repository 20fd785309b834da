// Documents in the window: saved and opened.

#include "InWindow.h"
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
  Restart();
  m_window->SetLanguage("en");
  ASSERT_TRUE(m_window->OpenDocument(Path("view.qdw")));
  EXPECT_TRUE(isOpen(L"SOLIDS"));
  EXPECT_FALSE(isOpen(L"BLOCK"));
  EXPECT_FALSE(Tree().IsExpanded(Tree().GetQDRootItem()->GetChild(0)->GetTreeItemHandle()));
  EXPECT_EQ(m_window->ModelTreePane().ColumnWidths(), (QVariantList{200, 50, 70}));
  EXPECT_EQ(m_messages.Language(), "de");
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

TEST_F(Documents, AFileThatCannotBeOpenedIsNamedAndTheWindowGoesOn) {
  m_files.Write("bad.qdw", "no document");
  EXPECT_FALSE(m_window->OpenDocument(Path("bad.qdw")));
  EXPECT_FALSE(m_window->OpenDocument(Path("none.qdw")));
  EXPECT_FALSE(m_window->OpenDocument(m_files.Folder()));
  EXPECT_EQ(m_window->FailedDocuments(), 3);
  EXPECT_FALSE(m_window->SaveAs("/proc/none/a.qdw"));
  Open(m_files.Make({"pump"}, "pump.step"));
  EXPECT_NE(Print().find("Shaft"), std::string::npos);
}

}  // namespace
}  // namespace qd::test

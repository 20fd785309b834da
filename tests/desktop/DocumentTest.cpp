// Documents in the window: saved, opened, recovered after a crash.

#include <QAbstractButton>
#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QTimer>

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
  QString Path(const QString& name) { return m_files.Folder() + "/" + name; }
  /// Answers the next question with the button of a text.
  void Answer(const char* key) {
    constexpr int kSoon = 300;
    QTimer::singleShot(kSoon, m_window.get(), [key] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      for (QAbstractButton* button : box->buttons()) {
        if (button->text() == Text(key)) return button->click();
      }
      ADD_FAILURE() << "no button " << key;
      box->reject();
    });
  }
  /// A window as after a start of the program; the old one is gone as if it had been closed.
  void Restart() {
    m_window.reset();
    m_window = std::make_unique<MainWindow>(m_messages);
    m_window->show();
    Wait(100);
  }
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

TEST_F(Documents, ReferencesToNothingAreMendedWhenTheUserAgrees) {
  const std::string path = Path("broken.qdw").toStdString();
  {
    Database broken;
    tagTGeom part;
    part.id = part.cadItem = 1;
    part.name = L"Bolt";
    part.material = static_cast<iterator>(kDataMaterial) << kTypeShift | 7;
    broken.Load(broken.GetGeomPool().ItrOfNumber(1), std::make_shared<const tagTGeom>(part));
    DocumentError error;
    ASSERT_NE(DocumentFile::Create(path, broken, error), nullptr);
  }
  const auto rename = [this] {
    Data().BeginTransaction(L"rename");
    tagTGeom part = *Data().GetGeomPool().GetAtNU(Data().GetGeomPool().GetItrList().front());
    part.name = L"Nut";
    Data().GetGeomPool().Change(Data().GetGeomPool().GetItrList().front(), part);
    return Data().CommitTransaction(1);
  };
  Answer("IDS_WB_VIEW_ONLY");
  ASSERT_TRUE(m_window->OpenDocument(Path("broken.qdw")));
  EXPECT_NE(Print().find("Bolt"), std::string::npos);
  EXPECT_EQ(rename(), 0) << "what is viewed takes no acts";
  Restart();
  EXPECT_EQ(VerifyDocument(path).size(), 1U) << "the file is as it was";
  Answer("IDS_WB_MEND");
  ASSERT_TRUE(m_window->OpenDocument(Path("broken.qdw")));
  EXPECT_EQ(rename(), 1);
  Restart();
  EXPECT_TRUE(VerifyDocument(path).empty());
  ASSERT_TRUE(m_window->OpenDocument(Path("broken.qdw"))) << "nothing is asked any more";
  EXPECT_NE(Print().find("Nut"), std::string::npos);
}

TEST_F(Documents, WhatWasNotSavedIsThereAfterACrash) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const std::string before = Print();
  const QString left = QString::fromStdString(m_window->Keeper().Path());
  ASSERT_TRUE(QFileInfo::exists(left));
  // What a killed program leaves behind: the file as it is now.
  DocumentError error;
  const QString copy = Path("left.qdw");
  ASSERT_TRUE(QFile::copy(left, copy));
  Restart();
  EXPECT_FALSE(QFileInfo::exists(left)) << "a closed window leaves nothing";
  ASSERT_TRUE(m_window->Recover(copy));
  EXPECT_EQ(Print(), before);
  EXPECT_TRUE(m_window->Keeper().IsUnsaved());
  ASSERT_TRUE(m_window->SaveAs(Path("saved.qdw")));
  EXPECT_FALSE(QFileInfo::exists(copy)) << "saved, it is needed no more";
}

TEST(Recovery, FindsWhatHoldsSomethingAndIsNotOpen) {
  const Files files;
  const std::string folder = files.Folder().toStdString();
  DocumentError error;
  Database empty;
  DocumentFile::Create(folder + "/empty.qdw", empty, error);
  Database full;
  full.BeginTransaction(L"add");
  full.GetMaterialPool().Add({});
  full.CommitTransaction(1);
  DocumentFile::Create(folder + "/closed.qdw", full, error);
  const auto open = DocumentFile::Create(folder + "/open.qdw", full, error);
  const auto found = DocumentKeeper::FindRecoverable(folder);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].path, folder + "/closed.qdw");
  EXPECT_FALSE(QFileInfo::exists(files.Folder() + "/empty.qdw"));
}

}  // namespace
}  // namespace qd::test

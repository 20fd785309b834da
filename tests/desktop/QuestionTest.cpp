// What the window asks and tells when a file, a document or an act is not as it should be.

#include <signal.h>
#include <sys/resource.h>

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QStatusBar>
#include <QToolButton>
#include <filesystem>
#include <fstream>

#include "InWindow.h"
#include "host/CTransaction.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/FileName.h"
#include "workbench/exchange/watch/ExchangeLimits.h"
#include "workbench/model/Values.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;

/// The processes that this one has started and that run a program of a name.
std::vector<pid_t> Children(const std::string& program) {
  std::vector<pid_t> found;
  std::error_code none;
  for (const auto& task : fs::directory_iterator("/proc/self/task", none)) {
    std::ifstream children(task.path() / "children");
    for (pid_t child = 0; children >> child;) {
      std::string name;
      std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), name);
      if (name == program) found.push_back(child);
    }
  }
  return found;
}

class Questions : public InWindow {
 protected:
  ~Questions() override { SettingsOfExchange() = {}; }
  std::string Print() { return PrintTree(Tree()); }
  /// A document with a record, as an earlier program or a damaged disk may have left it.
  template <typename T>
  QString Leave(const QString& name, std::uint16_t type, T record) {
    Database data;
    record.id = 1;
    data.Load(static_cast<iterator>(type) << kTypeShift | 1, std::make_shared<const T>(record));
    DocumentError error;
    EXPECT_NE(DocumentFile::Create(Path(name).toStdString(), data, error), nullptr) << error.detail;
    return Path(name);
  }
};

TEST_F(Questions, AnActThatTheRulesRefuseIsTold) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const std::string before = Print();
  const iterator part = Data().GetGeomPool().GetItrList().front();
  {
    CTransaction transaction(&Data());
    ASSERT_EQ(transaction.Begin(L"Rename"), 1);
    tagTGeom record = *Data().GetGeomPool().GetAtNU(part);
    record.name = CString(kMostName + 1, L'x');
    EXPECT_EQ(Data().GetGeomPool().Change(part, record), 0);
  }
  EXPECT_TRUE(Messages().endsWith("“Rename” was not done: part 1: a name that is too long"))
      << Messages().toStdString();
  EXPECT_TRUE(m_window->statusBar()->currentMessage().contains("a name that is too long"));
  EXPECT_EQ(Print(), before);
}

/// As when the disk of the recovery files is full: an act that cannot be kept does not happen, and the work so far
/// can be taken elsewhere.
TEST_F(Questions, ADiskThatTakesNoMoreIsToldWithTheOfferToSaveElsewhere) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const std::string before = Print();
  const iterator part = Data().GetGeomPool().GetItrList().front();
  Tree().SetSelection(1, {part});
  Tree().OnMenuEvent(kCommandMaterialDialog);
  QDialog* dialog = Dialog("materials");
  ASSERT_NE(dialog, nullptr);
  auto* name = dialog->findChild<QLineEdit*>("name");
  auto* apply = dialog->findChild<QPushButton*>("apply");
  name->setText("Steel");
  rlimit usual{};
  getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit none{0, usual.rlim_max};
  signal(SIGXFSZ, SIG_IGN);
  Answer("unkept", QMessageBox::RejectRole);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
  apply->click();
  EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &usual), 0);
  EXPECT_TRUE(WaitUntil([this] { return !m_asked.isEmpty(); }, 5)) << Messages().toStdString();
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->findChild<QLabel*>("outcome")->text(), "Steel: not stored");
  EXPECT_EQ(name->text(), "Steel");
  EXPECT_TRUE(m_asked.startsWith("The change cannot be kept")) << m_asked.toStdString();
  EXPECT_EQ(Print(), before);
  ASSERT_TRUE(m_window->SaveAs(Path("elsewhere.qdw"))) << Messages().toStdString();
  EXPECT_EQ(m_window->Keeper().Path(), Path("elsewhere.qdw").toStdString());
  apply->click();
  EXPECT_NE(Data().GetGeomPool().GetAtNU(part)->material, 0U);
  EXPECT_EQ(dialog->findChild<QLabel*>("fault")->text(), "");
}

TEST_F(Questions, ADeckTakesFilesOfOtherFoldersOnlyWhenTheUserAgrees) {
  QDir(m_files.Folder()).mkdir("deck");
  QDir(m_files.Folder()).mkdir("other");
  m_files.Write("other/nodes.inp", "*NODE\n1, 0, 0, 0\n2, 1, 0, 0\n3, 0, 1, 0\n4, 0, 0, 1\n");
  const QString deck = m_files.Write(
      "deck/tet.inp", "*INCLUDE, INPUT=../other/nodes.inp\n*ELEMENT, TYPE=C3D4, ELSET=TET\n1, 1, 2, 3, 4\n");
  Answer("include", QMessageBox::RejectRole);
  m_window->Import({deck});
  ASSERT_TRUE(WaitUntil([this] { return !m_window->IsImporting(); }));
  EXPECT_TRUE(m_asked.contains(deck) && m_asked.contains("nodes.inp") && m_asked.contains(Path("other")))
      << m_asked.toStdString();
  EXPECT_EQ(m_usual, QMessageBox::RejectRole);
  EXPECT_EQ(m_window->FailedImports(), 1);
  EXPECT_EQ(Data().GetMsetPool().Count(), 0U);
  Answer("include", QMessageBox::AcceptRole);
  m_window->Import({deck, m_files.Make({"pump"}, "pump.step")});
  ASSERT_TRUE(WaitUntil([this] { return !m_window->IsImporting(); }));
  EXPECT_EQ(m_window->FailedImports(), 1);
  EXPECT_NE(Data().GetMsetPool().GetItr(L"TET"), 0U);
  EXPECT_GT(Data().GetGeomPool().Count(), 0U) << "what waits behind it comes too";
  EXPECT_TRUE(SettingsOfExchange().includes.empty()) << "the next deck is asked about again";
}

TEST_F(Questions, AnImportThatSeemsLostIsWaitedForAsLongAsTheUserWants) {
  SettingsOfExchange().silence = std::chrono::seconds(2);
  const QString grid = m_files.Make({"grid", "40"}, "grid.step");
  auto* wait = m_window->findChild<QToolButton*>("wait");
  ASSERT_NE(wait, nullptr);
  m_window->Import({grid});
  std::vector<pid_t> child;
  ASSERT_TRUE(WaitUntil([&] { return !(child = Children("qd_exchange")).empty(); }));
  ASSERT_EQ(kill(child[0], SIGSTOP), 0);
  ASSERT_TRUE(WaitUntil([&] { return wait->isVisible(); }, 10));
  EXPECT_TRUE(Messages().contains("2")) << Messages().toStdString();
  Keep("wait-longer");
  wait->click();
  EXPECT_TRUE(WaitUntil([&] { return !wait->isVisible(); }, 10));
  ASSERT_TRUE(WaitUntil([&] { return wait->isVisible(); }, 10)) << "asked again, for it is still silent";
  ASSERT_EQ(kill(child[0], SIGCONT), 0);
  ASSERT_TRUE(WaitUntil([&] { return m_window->IsUpToDate(); }));
  EXPECT_FALSE(wait->isVisible());
  EXPECT_EQ(m_window->FailedImports(), 0) << Messages().toStdString();
  EXPECT_GT(Data().GetGeomPool().Count(), 0U);
}

TEST_F(Questions, ADamagedDocumentIsRepairedIntoAnotherFileWhenTheUserWants) {
  tagTProperty property;
  property.name = L"Plate";
  property.kind = static_cast<tagTProperty::Kind>(200);
  const QString damaged = Leave("damaged.qdw", kDataProperty, property);
  const QByteArray before = Files::Read(damaged);
  Answer("repair", QMessageBox::RejectRole);
  EXPECT_FALSE(m_window->OpenDocument(damaged));
  EXPECT_TRUE(m_asked.contains("property 1: a kind that there is not")) << m_asked.toStdString();
  Answer("repair", QMessageBox::AcceptRole);
  AnswerFileName(Path("sound"));
  m_window->OpenDocument(damaged);
  EXPECT_EQ(m_window->Keeper().Path(), Path("sound.qdw").toStdString()) << Messages().toStdString();
  EXPECT_TRUE(Messages().contains("left out")) << Messages().toStdString();
  EXPECT_EQ(Files::Read(damaged), before);
  m_window.reset();
  EXPECT_TRUE(VerifyDocument(Path("sound.qdw").toStdString()).empty());
}

TEST_F(Questions, WhatWasMendedOfADocumentIsListedInTheLanguageOfTheWindow) {
  tagTGeom part;
  part.cadItem = 1;
  part.name = L"Bolt";
  part.material = static_cast<iterator>(kDataMaterial) << kTypeShift | 7;
  const QString path = Leave("broken.qdw", kDataGeom, part);
  const QByteArray before = Files::Read(path);
  m_window->SetLanguage("de");
  Answer("mend", QMessageBox::RejectRole);
  ASSERT_TRUE(m_window->OpenDocument(path));
  EXPECT_EQ(m_details, "Teil 1: worauf er verweist, gibt es nicht: Material");
  EXPECT_EQ(m_usual, QMessageBox::RejectRole);
  ASSERT_TRUE(m_window->SaveAs(Path("kept.qdw")));
  Restart();
  EXPECT_EQ(Files::Read(path), before);
  EXPECT_TRUE(VerifyDocument(Path("kept.qdw").toStdString()).empty());
  m_window->SetLanguage("en");
  // When the user agrees it is mended in its place, and nothing is asked any more.
  Answer("mend", QMessageBox::AcceptRole);
  ASSERT_TRUE(m_window->OpenDocument(path));
  EXPECT_FALSE(m_window->Keeper().IsReadOnly());
  Restart();
  EXPECT_TRUE(VerifyDocument(path.toStdString()).empty());
  ASSERT_TRUE(m_window->OpenDocument(path));
  EXPECT_NE(Print().find("Bolt"), std::string::npos);
}

/// Names of files are bytes; a window of its own gets them as they are.
TEST_F(Questions, AWindowOfItsOwnOpensADocumentOfAnyName) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "after the start of the new process the sanitizer stumbles over its own marks on the stack";
#endif
  Database data;
  DocumentError error;
  const std::string path = Path("n").toStdString() + "\xff\xfe.qdw";
  ASSERT_NE(DocumentFile::Create(path, data, error), nullptr);
  Open(m_files.Make({"pump"}, "pump.step"));
  ASSERT_TRUE(m_window->OpenDocument(NameFromBytes(path)));
  EXPECT_TRUE(WaitUntil([&path] { return DocumentFile::IsInUse(path); }, 20)) << Messages().toStdString();
  for (const pid_t child : Children("workbench")) kill(child, SIGKILL);
  EXPECT_TRUE(WaitUntil([&path] { return !DocumentFile::IsInUse(path); }, 20));
  fs::remove(path);  // the folder's own way of going knows no such names
}

}  // namespace
}  // namespace qd::test

// What happens around a document while its window is open: file dialogs, other programs, files that go away, work
// that ends at the wrong moment. Nothing is lost without a word.

#include <QFileDialog>
#include <QFileInfo>
#include <filesystem>
#include <fstream>
#include <limits>

#include "InWindow.h"
#include "host/CTransaction.h"
#include "host/LongWork.h"
#include "workbench/app/DocumentQuestions.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

using namespace workbench;

class Trouble : public InWindow {
 protected:
  ~Trouble() override { qputenv("XDG_STATE_HOME", m_state); }
  std::string Print() { return PrintTree(Tree()).substr(PrintTree(Tree()).find('\n')); }
  /// A new window whose recovery files stand in a place of this test.
  void RestartWithState(const QString& state) {
    m_window.reset();
    qputenv("XDG_STATE_HOME", state.toUtf8());
    Restart();
  }
  void Rename(const CString& name) {
    const iterator part = Data().GetGeomPool().GetItrList().front();
    CTransaction transaction(&Data());
    ASSERT_EQ(transaction.Begin(L"rename"), 1);
    tagTGeom record = *Data().GetGeomPool().GetAtNU(part);
    record.name = name;
    Data().GetGeomPool().Change(part, record);
    transaction.Commit(1);
  }

  const QByteArray m_state = qgetenv("XDG_STATE_HOME");
};

/// What another program says that reads a document; empty when it gets in.
QByteArray ReadElsewhere(const QString& path) {
  QProcess other;
  other.start(QCoreApplication::applicationDirPath() + "/workbench", {"--print-tree", path});
  EXPECT_TRUE(other.waitForFinished(60'000));
  return other.exitCode() == 0 ? QByteArray() : other.readAllStandardError();
}

TEST_F(Trouble, AFileDialogOverItsFolderDoesNotLetAnotherProgramIn) {
  Open(m_files.Make({"pump"}, "pump.step"));
  ASSERT_TRUE(m_window->SaveAs(Path("pump.qdw")));
  for (int round = 0; round < 3; ++round) {
    QFileDialog dialog(m_window.get(), "look", m_files.Folder());
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.show();
    dialog.selectFile("pump.qdw");
    Wait(500);
    dialog.reject();
    EXPECT_NE(ReadElsewhere(Path("pump.qdw")), "") << round;
    Rename(L"renamed " + std::to_wstring(round));
  }
  const std::string before = Print();
  m_window.reset();
  EXPECT_EQ(ReadElsewhere(Path("pump.qdw")), "");
  Restart();
  ASSERT_TRUE(m_window->OpenDocument(Path("pump.qdw")));
  EXPECT_EQ(Print(), before);
  EXPECT_NE(before.find("renamed 2"), std::string::npos);
}

TEST_F(Trouble, WhatEndsDuringLongWorkWaitsForItsEnd) {
  m_window->Import({m_files.Make({"pump"}, "pump.step")});
  const auto count = [this] { return Data().GetGeomPool().Count(); };
  const int done = qdRunLongWork(L"work", [&](const ProgressCall& progress) {
    QElapsedTimer time;
    time.start();
    constexpr int kLong = 6000;
    while (time.elapsed() < kLong) {
      if (!progress(static_cast<double>(time.elapsed()) / kLong)) return 0;
      if (count() != 0) return 0;
    }
    m_window->close();  // does not happen either
    return 1;
  });
  EXPECT_EQ(done, 1) << "something came into the document in the middle of the work";
  EXPECT_TRUE(m_window->isVisible());
  EXPECT_TRUE(WaitUntil([&] { return count() > 0; }));
  EXPECT_TRUE(m_window->SaveAs(Path("pump.qdw")));
}

TEST_F(Trouble, WithoutAPlaceForRecoveryFilesItIsToldAtOnceAndAskedAtTheEnd) {
  RestartWithState(m_files.Write("state", "a file in the place of the folder"));
  Answer("unkept", QMessageBox::RejectRole);
  Open(m_files.Make({"pump"}, "pump.step"));
  ASSERT_TRUE(WaitUntil([this] { return !m_asked.isEmpty(); }, 5));
  Answer("closing", QMessageBox::RejectRole);
  m_window->close();
  EXPECT_FALSE(m_asked.isEmpty());
  EXPECT_TRUE(m_window->isVisible());
  // As soon as there is a place the next act is kept.
  ASSERT_TRUE(QFile::remove(Path("state")));
  Rename(L"renamed");
  EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(m_window->Keeper().Path())));
}

TEST_F(Trouble, AFileThatWasMovedIsToldAtTheNextActAndAtTheEnd) {
  Open(m_files.Make({"pump"}, "pump.step"));
  ASSERT_TRUE(m_window->SaveAs(Path("a.qdw")));
  Rename(L"one");
  Rename(L"two");
  const std::string before = Print();
  ASSERT_TRUE(QFile::rename(Path("a.qdw"), Path("b.qdw")));
  Answer("closing", QMessageBox::RejectRole);
  m_window->close();
  EXPECT_TRUE(m_asked.contains("a.qdw")) << m_asked.toStdString();
  EXPECT_TRUE(m_window->isVisible());
  Answer("unkept", QMessageBox::RejectRole);
  Rename(L"three");
  ASSERT_TRUE(WaitUntil([this] { return !m_asked.isEmpty(); }, 5));
  EXPECT_EQ(Print(), before) << "what cannot be kept does not happen";
  ASSERT_TRUE(m_window->SaveAs(Path("c.qdw")));
  Rename(L"four");
  m_window->close();
  EXPECT_FALSE(m_window->isVisible()) << "nothing to ask any more";
  m_window.reset();
  EXPECT_TRUE(VerifyDocument(Path("b.qdw").toStdString()).empty());
  EXPECT_FALSE(QFileInfo::exists(Path("b.qdw-wal")) || QFileInfo::exists(Path("a.qdw-wal")));
  for (const auto& [name, part] : {std::pair("b.qdw", "two"), std::pair("c.qdw", "four")}) {
    Restart();
    ASSERT_TRUE(m_window->OpenDocument(Path(name)));
    EXPECT_NE(Print().find(part), std::string::npos) << name;
    m_window.reset();
  }
}

TEST_F(Trouble, RecoveryNamesTheDocumentAndDoesNotMixItWithAnother) {
  RestartWithState(Path("state"));
  Open(m_files.Make({"pump"}, "pump.step"));
  const std::string before = Print();
  const QString left = QString::fromStdString(m_window->Keeper().Path());
  const QString copy = QFileInfo(left).path() + "/document-1.qdw";
  ASSERT_TRUE(QFile::copy(left, copy));  // as if another window had been killed
  // A window that holds something takes up nothing.
  EXPECT_FALSE(m_window->Recover(copy));
  EXPECT_EQ(Print(), before);
  EXPECT_TRUE(QFileInfo::exists(copy));
  // An empty one asks before it does anything else.
  Restart();
  Answer("recovery", QMessageBox::AcceptRole);
  m_window->OfferRecovery();
  EXPECT_TRUE(m_asked.contains("pump.step")) << m_asked.toStdString();
  EXPECT_TRUE(m_asked.contains(QString::number(Data().GetGeomPool().Count()))) << m_asked.toStdString();
  EXPECT_EQ(Print(), before);
  EXPECT_TRUE(m_window->Keeper().IsUnsaved());
  EXPECT_EQ(m_window->Keeper().Path(), copy.toStdString());
}

/// What cannot be recovered as it is was somebody's work too: it is told, and what is sound of it can be had.
TEST_F(Trouble, ASecondClickDoesNotDiscardTheNextDocument) {
  bool early = true;
  QTimer::singleShot(100, m_window.get(), [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    for (QAbstractButton* button : box->buttons()) {
      if (box->buttonRole(button) != QMessageBox::DestructiveRole) continue;
      early = button->isEnabled();
      if (WaitUntil([button] { return button->isEnabled(); }, 5)) return button->click();
    }
    box->close();
  });
  const workbench::DocumentQuestions questions(m_window.get());
  EXPECT_EQ(questions.AskRecovery({}), workbench::DocumentQuestions::Recovery::Discard);
  EXPECT_FALSE(early) << "a click that comes at once is of the question before";
}

TEST_F(Trouble, ADamagedRecoveryFileIsToldAndOfferedForRepair) {
  RestartWithState(Path("state"));
  Open(m_files.Make({"pump"}, "pump.step"));
  const QString left = QString::fromStdString(m_window->Keeper().Path());
  const QString folder = QFileInfo(left).path();
  QFile whole(left);
  ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
  QByteArray bytes = whole.readAll();
  bytes.replace("CREATE TABLE gset ", "CREATE TABLE gset\t");
  m_window.reset();
  {
    QFile damaged(folder + "/document-1.qdw");
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write(bytes);
    Database broken;  // this one is damaged in a value
    tagTGeom part;
    part.id = part.cadItem = 1;
    auto shape = std::make_shared<PartShape>();
    shape->volume = std::numeric_limits<double>::infinity();
    part.shape = shape;
    broken.Load(broken.GetGeomPool().ItrOfNumber(1), std::make_shared<const tagTGeom>(part));
    DocumentError error;
    ASSERT_NE(DocumentFile::Create((folder + "/document-2.qdw").toStdString(), broken, error), nullptr);
  }
  Restart();
  Answer("repair", QMessageBox::RejectRole);
  EXPECT_FALSE(m_window->Recover(folder + "/document-2.qdw"));
  EXPECT_TRUE(m_asked.contains("document-2.qdw")) << m_asked.toStdString();
  ASSERT_TRUE(QFile::remove(folder + "/document-2.qdw"));
  Answer("repair", QMessageBox::RejectRole);
  m_window->OfferRecovery();
  EXPECT_TRUE(m_asked.contains("document-1.qdw")) << m_asked.toStdString();
  EXPECT_TRUE(Messages().contains("document-1.qdw")) << Messages().toStdString();
  EXPECT_TRUE(QFileInfo::exists(folder + "/document-1.qdw"));
  // Once repaired it is offered no more, whatever it is called and whatever lies beside it.
  const std::filesystem::path place(folder.toStdString());
  std::filesystem::rename(place / "document-1.qdw", place / "document-\xff.qdw");
  std::ofstream(place / "document-\xff.qdw.damaged") << "another one";
  Answer("repair", QMessageBox::AcceptRole);
  AnswerFileName(Path("sound"));
  m_window->OfferRecovery();
  EXPECT_EQ(m_window->Keeper().Path(), Path("sound.qdw").toStdString()) << Messages().toStdString();
  EXPECT_FALSE(std::filesystem::exists(place / "document-\xff.qdw"));
  // The folder of the test could not be removed with such names in it.
  EXPECT_TRUE(std::filesystem::remove(place / "document-\xff.qdw.damaged-2"));
  EXPECT_TRUE(std::filesystem::remove(place / "document-\xff.qdw.damaged"));
}

}  // namespace
}  // namespace qd::test

// Documents of the main window: opening, saving, what a crash left behind.

#include <unistd.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <algorithm>

#include "platform/qt/QtConvert.h"
#include "workbench/app/FileName.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/TreePane.h"
#include "workbench/session/VariantNames.h"
#include "workbench/view/ModelView.h"

namespace qd::workbench {

namespace {

constexpr const char* kRecentKey = "recent";
constexpr qsizetype kMostRecent = 8;
constexpr const char* kViewName = "window";

QString Filter() {
  return Text("IDS_WB_DOCUMENTS") + " (*.qdw)";
}

QString TextOf(const DocumentError& error) {
  return Text(error.key, {QString::fromStdString(error.detail)});
}

}  // namespace

/// Where programs of a user keep what is to be there at their next start.
std::string MainWindow::RecoveryFolder() {
  QString state = qEnvironmentVariable("XDG_STATE_HOME");
  if (state.isEmpty()) state = QDir::homePath() + "/.local/state";
  return (state + "/qd_wrt/recovery").toStdString();
}

/// Nothing was done in this window yet, so it can take up a document.
bool MainWindow::IsFresh() const {
  const Database& database = m_doc->GetDatabase();
  return !m_keeper->IsNamed() && !m_keeper->IsUnsaved() && !database.CanUndo() && !database.CanRedo() &&
         !IsImporting();
}

void MainWindow::RefreshTitle() {
  const QString app = Text("IDS_WB_APP");
  if (!m_keeper->IsNamed()) return setWindowTitle(app);
  const QString name = QFileInfo(NameFromBytes(m_keeper->Path())).fileName();
  setWindowTitle((m_keeper->IsReadOnly() ? Text("IDS_WB_DOC_READ_ONLY", {name}) : name) + " – " + app);
}

void MainWindow::StartProgram(const QStringList& documents) {
  const auto* variant = std::find_if(kVariants.begin(), kVariants.end(), [](const VariantName& known) {
    return known.variant == GetProductVariant();
  });
  QStringList arguments{"--language", m_messages.Language(), "--variant", variant->name};
  if (!m_messages.Folder().isEmpty()) arguments << "--messages" << m_messages.Folder();
  // It lives on when this one ends, so nothing here owns it; as long as both live, its death is told.
  auto* process = new QProcess;
  connect(process, &QProcess::finished, process, &QObject::deleteLater);
  connect(process, &QProcess::finished, this, [this, documents](int code, QProcess::ExitStatus status) {
    if (code == 0 && status == QProcess::NormalExit) return;
    Say((documents.isEmpty() ? QString() : documents.first() + ": ") + Text("IDS_WB_NEW_WINDOW_DIED"), true);
  });
  connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) Say(Text("IDS_WB_NEW_WINDOW_FAILED"), true);
  });
  process->setProcessChannelMode(QProcess::ForwardedChannels);
  process->setStandardInputFile(QProcess::nullDevice());
  process->setChildProcessModifier([] { setsid(); });  // not of this terminal's foreground
  process->start(QCoreApplication::applicationFilePath(), arguments + documents);
}

/// A program of its own, with the language and variant of this one: a variant is that of a whole program.
void MainWindow::OnNewWindow() {
  StartProgram({});
}

// ---- opening --------------------------------------------------------------------------------------------

void MainWindow::OnOpen() {
  const QString path = QFileDialog::getOpenFileName(this, Text("IDS_WB_OPEN").remove('&'), QString(), Filter());
  if (!path.isEmpty()) OpenDocument(path);
}

bool MainWindow::OpenDocument(const QString& path) {
  const QString absolute = QFileInfo(path).absoluteFilePath();
  if (!IsFresh()) {
    StartProgram({absolute});
    return true;
  }
  DocumentError error;
  const int done = qdRunLongWork(FromQt(Text("IDS_WB_OPENING", {absolute})), [&](const ProgressCall& progress) {
    return m_keeper->Open(NameToBytes(absolute), error, progress) ? 1 : 0;
  });
  if (done == 0) {
    ++m_failedDocuments;
    Say(absolute + ": " + TextOf(error), true);
    return false;
  }
  ShowLoaded(absolute);
  NoteRecent(absolute);
  Say(Text(m_keeper->IsReadOnly() ? "IDS_WB_DOC_VIEWED" : "IDS_WB_OPENED", {absolute}), false);
  return true;
}

/// The trees and the view take up what a file has filled the database with.
void MainWindow::ShowLoaded(const QString& name) {
  m_doc->SetPathName(FromQt(name));
  m_trees->MakeAnew();
  m_view->Apply(UpdateRecordFor(m_doc->GetDatabase().AllRecords(), true));
  m_trees->OpenBranches();
  RestoreView();
  RefreshActions();
  RefreshTitle();
}

/// What the window shows of a document goes into its file, apart from the model.
void MainWindow::KeepView() {
  if (!m_keeper->IsNamed()) return;
  QJsonObject view{{"language", m_messages.Language()},
                   {"panes", QString::fromLatin1(saveState().toBase64())},
                   {"size", QJsonArray{normalGeometry().width(), normalGeometry().height()}}};
  for (TreePane* pane : {m_modelPane, m_gsetPane}) view[pane->objectName()] = pane->ViewState();
  m_keeper->File()->PutView(kViewName, QJsonDocument(view).toJson(QJsonDocument::Compact).toStdString());
}

/// Anything may stand in a file, so what does not fit is passed over.
void MainWindow::RestoreView() {
  const std::string kept = m_keeper->File()->View(kViewName);
  const QJsonObject view = QJsonDocument::fromJson(QByteArray::fromStdString(kept)).object();
  if (view.isEmpty()) return;
  const QString language = view["language"].toString();
  const bool known = m_messages.Languages().contains(language);
  if (known && language != m_messages.Language()) SetLanguage(language);
  RestorePanes(QByteArray::fromBase64(view["panes"].toString().toLatin1()));
  constexpr int kLeast = 300;
  constexpr int kMost = 10'000;
  const QJsonArray size = view["size"].toArray();
  const bool free = !windowState().testAnyFlags(Qt::WindowMaximized | Qt::WindowFullScreen);
  if (size.size() == 2 && free) {
    resize(std::clamp(size[0].toInt(), kLeast, kMost), std::clamp(size[1].toInt(), kLeast, kMost));
  }
  for (TreePane* pane : {m_modelPane, m_gsetPane}) pane->RestoreViewState(view[pane->objectName()].toObject());
}

void MainWindow::NoteRecent(const QString& path) {
  QSettings settings;
  QStringList recent = settings.value(kRecentKey).toStringList();
  recent.removeAll(path);
  recent.prepend(path);
  settings.setValue(kRecentKey, recent.mid(0, kMostRecent));
}

void MainWindow::ListRecent(QMenu& menu) {
  menu.clear();
  for (const QString& path : QSettings().value(kRecentKey).toStringList()) {
    menu.addAction(QString(path).replace('&', "&&"), this, [this, path] { OpenDocument(path); });
  }
  if (menu.isEmpty()) menu.addAction(Text("IDS_WB_NO_RECENT"))->setEnabled(false);
}

// ---- saving ---------------------------------------------------------------------------------------------

/// A document with a file is saved with every act.
void MainWindow::OnSave() {
  if (!m_keeper->IsNamed() || m_keeper->IsReadOnly()) return OnSaveAs();
  Say(Text("IDS_WB_SAVED", {QString::fromStdString(m_keeper->Path())}), false);
}

void MainWindow::OnSaveAs() {
  QString path = QFileDialog::getSaveFileName(this, Text("IDS_WB_SAVE_AS").remove('&'), QString(), Filter());
  if (path.isEmpty()) return;
  if (QFileInfo(path).suffix().isEmpty()) path += ".qdw";
  SaveAs(path);
}

bool MainWindow::SaveAs(const QString& path) {
  const QString absolute = QFileInfo(path).absoluteFilePath();
  DocumentError error;
  const int done = qdRunLongWork(FromQt(Text("IDS_WB_SAVING", {absolute})), [&](const ProgressCall& progress) {
    return m_keeper->SaveAs(absolute.toStdString(), error, progress) ? 1 : 0;
  });
  if (done == 0) {
    Say(absolute + ": " + TextOf(error), true);
    return false;
  }
  m_doc->SetPathName(FromQt(absolute));
  m_trees->Manager().ResetFilePath(m_doc.get());
  NoteRecent(absolute);
  KeepView();
  RefreshTitle();
  Say(Text("IDS_WB_SAVED", {absolute}), false);
  return true;
}

void MainWindow::OnUnkept(const DocumentError& error) {
  Say(TextOf(error), true);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (m_keeper->IsUnsaved()) {
    const auto answer = QMessageBox::question(this, Text("IDS_WB_APP"), Text("IDS_WB_ASK_SAVE"),
                                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Save) OnSaveAs();
    if (answer == QMessageBox::Cancel || (answer == QMessageBox::Save && m_keeper->IsUnsaved())) {
      return event->ignore();
    }
  }
  QMainWindow::closeEvent(event);
}

// ---- after a crash --------------------------------------------------------------------------------------

void MainWindow::OfferRecovery() {
  for (const std::string& path : DocumentKeeper::FindRecoverable(RecoveryFolder())) {
    const QDateTime when = QFileInfo(QString::fromStdString(path)).lastModified();
    QMessageBox box(QMessageBox::Question, Text("IDS_WB_APP"),
                    Text("IDS_WB_ASK_RECOVER", {QLocale().toString(when, QLocale::ShortFormat)}),
                    QMessageBox::NoButton, this);
    const QPushButton* recover = box.addButton(Text("IDS_WB_RECOVER"), QMessageBox::AcceptRole);
    const QPushButton* discard = box.addButton(Text("IDS_WB_DISCARD"), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(Text("IDS_WB_LATER"), QMessageBox::RejectRole));
    box.exec();
    if (box.clickedButton() == discard) DocumentKeeper::Discard(path);
    if (box.clickedButton() != recover) continue;
    if (Recover(QString::fromStdString(path))) return;  // a window holds one; the others wait
  }
}

bool MainWindow::Recover(const QString& path) {
  DocumentError error;
  if (!m_keeper->Recover(path.toStdString(), error)) {
    Say(path + ": " + TextOf(error), true);
    return false;
  }
  ShowLoaded(Text("IDS_WB_UNTITLED"));
  return true;
}

}  // namespace qd::workbench

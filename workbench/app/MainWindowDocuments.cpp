// Documents of the main window: opening, saving, what a crash left behind.

#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/CommandLine.h"
#include "workbench/app/FileName.h"
#include "workbench/app/KeptLooking.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/MissingFiles.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/QuietTime.h"
#include "workbench/app/StatusLine.h"
#include "workbench/app/TreePane.h"
#include "workbench/app/console/ActScript.h"
#include "workbench/display/DisplayBytes.h"
#include "workbench/session/PythonText.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentMark.h"
#include "workbench/store/KeptViews.h"
#include "workbench/text/Units.h"
#include "workbench/text/Utf8.h"
#include "workbench/view/ModelView.h"

namespace qd::workbench {

namespace {

constexpr qsizetype kMostRecent = 8;

QString Filter() {
  return Text("IDS_WB_DOCUMENTS") + " (*.qdw)";
}

/// Gives a recovery file and the logs beside it a name that nothing has yet, so that it is found no more; false
/// when it cannot be moved.
bool SetAside(const std::string& path) {
  namespace fs = std::filesystem;
  const std::string beginning = path + ".damaged";
  std::string aside = beginning;
  std::error_code failed;
  for (int number = 2; fs::exists(fs::symlink_status(aside, failed)); ++number) {
    aside = beginning + "-" + std::to_string(number);
  }
  fs::rename(path, aside, failed);
  if (failed) return false;
  for (const char* log : {"-journal", "-wal"}) fs::rename(path + log, aside + log, failed);
  return true;
}

}  // namespace

/// Where programs of a user keep what is to be there at their next start.
std::string MainWindow::RecoveryFolder() {
  QByteArray state = qgetenv("XDG_STATE_HOME");
  if (state.isEmpty()) state = QFile::encodeName(QDir::homePath()) + "/.local/state";
  return state.toStdString() + "/qd_wrt/recovery";
}

bool MainWindow::IsRecoveryFile(const QString& path) {
  std::error_code none;
  return std::filesystem::equivalent(std::filesystem::path(NameToBytes(path)).parent_path(), RecoveryFolder(),
                                     none);
}

/// Nothing was done in this window yet, so it can take up a document.
bool MainWindow::IsFresh() const {
  const Database& database = m_doc->GetDatabase();
  return !m_keeper->IsNamed() && !m_keeper->IsUnsaved() && !database.CanUndo() && !database.CanRedo() &&
         !IsImporting();
}

/// The document's file, or the first one that was imported, marked as not saved.
void MainWindow::RefreshTitle() {
  const QString app = Text("IDS_WB_APP");
  const bool isNamed = m_keeper->IsNamed();
  if (!isNamed && m_session->IsEmpty() && !m_keeper->IsUnsaved()) {
    setWindowModified(false);
    return setWindowTitle(app);
  }
  QString name = QFileInfo(isNamed ? NameFromBytes(m_keeper->Path()) : ToQt(m_doc->GetPathName())).fileName();
  if (m_keeper->IsReadOnly()) name = Text("IDS_WB_DOC_READ_ONLY", {name});
  name.replace("[*]", "[*][*]");  // where the toolkit puts its mark, unless it stands there twice
  setWindowTitle(name + "[*] – " + app);
  setWindowModified(!isNamed);
}

void MainWindow::OnNewWindow() {
  m_others->Start({});
}

// ---- opening --------------------------------------------------------------------------------------------

void MainWindow::OpenFiles(const QStringList& paths) {
  QStringList documents;
  QStringList others;
  for (const QString& path : paths) (IsDocumentName(NameToBytes(path)) ? documents : others) << path;
  // What comes with a document is imported into it, in its own window.
  if (documents.isEmpty()) return Import(others);
  OpenDocument(documents.takeFirst(), others);
  for (const QString& document : documents) OpenDocument(document);
}

namespace {

/// Files of this machine among what is dragged over the window.
QStringList FilesOf(const QMimeData& data) {
  QStringList paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths << url.toLocalFile();
  }
  return paths;
}

}  // namespace

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (FilesOf(*event->mimeData()).isEmpty() || QuietTime::IsNow()) return;
  // Nobody's file goes away by being looked at.
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

/// Opened after the program that it came from is free again: opening may ask something.
void MainWindow::dropEvent(QDropEvent* event) {
  const QStringList paths = FilesOf(*event->mimeData());
  event->setDropAction(Qt::CopyAction);
  event->accept();
  QTimer::singleShot(0, this, [this, paths] { QuietTime::WhenOver(this, [this, paths] { OpenFiles(paths); }); });
}

void MainWindow::OnOpen() {
  const QString path = QFileDialog::getOpenFileName(this, TitleText("IDS_WB_OPEN"), QString(), Filter());
  if (!path.isEmpty()) OpenDocument(path);
}

bool MainWindow::OpenDocument(const QString& path, const QStringList& imports) {
  const QString absolute = QFileInfo(path).absoluteFilePath();
  std::error_code none;
  if (m_keeper->IsNamed() && std::filesystem::equivalent(NameToBytes(absolute), m_keeper->Path(), none)) {
    raise();  // it is open here
    activateWindow();
    Import(imports);
    return true;
  }
  if (!IsFresh()) {
    QStringList files{absolute};
    for (const QString& file : imports) files << QFileInfo(file).absoluteFilePath();
    m_others->Start(files);
    return true;
  }
  const bool opened = IsRecoveryFile(absolute) ? Recover(absolute) : OpenHere(absolute);
  Import(imports);  // also when the document could not be opened, or was repaired: they are not lost with it
  return opened;
}

bool MainWindow::OpenHere(const QString& absolute) {
  DocumentError error;
  const int done = qdRunLongWork(FromQt(Text("IDS_WB_OPENING", {absolute})), [&](const ProgressCall& progress) {
    return m_keeper->Open(NameToBytes(absolute), error, progress) ? 1 : 0;
  });
  if (done == 0) {
    ++m_failedDocuments;
    Say({absolute + ": " + TextOf(error), Severity::Failure, absolute});
    AskToRepair(absolute, error);
    return false;
  }
  ShowLoaded(absolute);
  m_acts->Say("doc = qd.open(" + PythonPath(NameToBytes(absolute)) + ")");
  NoteRecent(absolute);
  const std::string& aside = m_keeper->File()->ForeignLog();
  if (!aside.empty()) Say({TextOf({"IDS_WB_DOC_LOG_ASIDE", aside}), Severity::Failure});
  // One that is only viewed is left alone with all that lies beside it.
  if (m_keeper->IsReadOnly() && CheckLogs(m_keeper->Path()) == LogKind::Foreign) {
    Say({TextOf({"IDS_WB_DOC_LOG_LEFT", m_keeper->Path()}), Severity::Failure});
  }
  const char* opened = m_keeper->IsReadOnly() ? m_keeper->File()->ViewedKey() : "IDS_WB_OPENED";
  Say({TextOf({opened, NameToBytes(absolute)}), Severity::Note, absolute});
  if (m_keeper->File()->IsOlder()) Say({Text("IDS_WB_DOC_OLDER", {absolute}), Severity::Note, absolute});
  AskToMend(absolute);
  return true;
}

/// A document that refers to what is not there is shown mended; only the user lets that be written. Until then the
/// file takes no acts.
void MainWindow::AskToMend(const QString& name) {
  if (!m_keeper->File()->MayKeepMended()) return;
  if (!m_asks) return Say({Text("IDS_WB_DOC_VIEWED", {name}), Severity::Warning});
  QStringList mended;
  for (const std::string& line : m_keeper->File()->Mended()) mended << QString::fromStdString(line);
  QMessageBox box(QMessageBox::Warning, Text("IDS_WB_APP"), Text("IDS_WB_ASK_MEND", {name}), QMessageBox::NoButton,
                  this);
  box.setObjectName("mend");
  box.setTextFormat(Qt::PlainText);
  box.setDetailedText(mended.join('\n'));
  const QPushButton* mend = box.addButton(Text("IDS_WB_MEND"), QMessageBox::AcceptRole);
  QPushButton* view = box.addButton(Text("IDS_WB_VIEW_ONLY"), QMessageBox::RejectRole);
  const QPushButton* leave = box.addButton(Text("IDS_WB_CLOSE"), QMessageBox::DestructiveRole);
  box.setDefaultButton(view);
  box.setEscapeButton(view);
  box.exec();
  // At the start of a program the loop that ends with the last window has still to begin.
  if (box.clickedButton() == leave) QTimer::singleShot(0, this, &QWidget::close);
  DocumentError error;
  if (box.clickedButton() == mend && !m_keeper->File()->KeepMended(error)) Say({TextOf(error), Severity::Failure});
  RefreshTitle();
}

/// A damaged document stays as it is; what is sound of it may go into another one.
void MainWindow::AskToRepair(const QString& path, const DocumentError& error, bool keepFree) {
  const QStringList repairable{"IDS_WB_DOC_DAMAGED", "IDS_WB_DOC_ALIEN", "IDS_WB_DOC_TABLE", "IDS_WB_DOC_ENDLESS"};
  if (!m_asks || !repairable.contains(error.key)) return;
  QMessageBox box(QMessageBox::Warning, Text("IDS_WB_APP"),
                  TextOf(error) + "\n\n" + Text("IDS_WB_ASK_REPAIR", {path}), QMessageBox::Cancel, this);
  box.setObjectName("repair");
  box.setTextFormat(Qt::PlainText);
  const QPushButton* repair = box.addButton(Text("IDS_WB_REPAIR"), QMessageBox::AcceptRole);
  box.exec();
  if (box.clickedButton() != repair) return;
  QString repaired = QFileDialog::getSaveFileName(this, TitleText("IDS_WB_SAVE_AS"), QString(), Filter());
  if (repaired.isEmpty()) return;
  if (QFileInfo(repaired).suffix().isEmpty()) repaired += ".qdw";
  std::vector<DocumentError> notes;
  DocumentError fault;
  const int done = qdRunLongWork(FromQt(Text("IDS_WB_SAVING", {repaired})), [&](const ProgressCall& progress) {
    // That something there is replaced was asked by the dialog.
    return MayRepairInto(NameToBytes(path), NameToBytes(repaired), true, fault) &&
                   RepairDocument(NameToBytes(path), NameToBytes(repaired), notes, fault, progress)
               ? 1
               : 0;
  });
  if (done == 0) return Say({path + ": " + TextOf(fault), Severity::Failure, path});
  for (const DocumentError& note : notes) Say({TextOf(note), Severity::Warning});
  Say({Text("IDS_WB_REPAIRED", {repaired, QLocale().toString(static_cast<qulonglong>(notes.size()))}),
       Severity::Note, repaired});
  // What is not sound stays too, but is offered no more.
  if (IsRecoveryFile(path) && !SetAside(NameToBytes(path)))
    Say({Text("IDS_WB_DOC_NOT_ASIDE", {path}), Severity::Failure, path});
  if (keepFree) return m_others->Start({QFileInfo(repaired).absoluteFilePath()});
  OpenDocument(repaired);
}

/// The trees and the view take up what a file has filled the database with.
void MainWindow::ShowLoaded(const QString& name) {
  m_keptDisplay = m_keeper->File()->View(kDisplayName);
  m_session->TakeUp(FromQt(name), m_keptDisplay);
  m_view->Apply(UpdateRecordFor(m_doc->GetDatabase().AllRecords(), true));
  m_acts->BeginAnew();
  m_dialogs->CloseAll();  // they were opened for the empty document
  m_properties->Refresh();
  m_keptLooking = m_keeper->File()->View(kLookingName);
  const QJsonObject looking = QJsonDocument::fromJson(QByteArray::fromStdString(m_keptLooking)).object();
  TakeUpCamera(looking["camera"].toObject(), m_doc->GetLooking());
  TakeUpSections(looking["sections"].toArray(), m_doc->GetSections());
  RestoreView();
  for (TreePane* pane : {m_modelPane, m_gsetPane}) {
    pane->RestoreFindState(looking["find"].toObject()[pane->objectName()].toObject());
  }
  // Documents of former versions do not say which units their numbers are meant in.
  m_keptUnits = m_keeper->File()->View(kUnitsName);
  for (const UnitSystem& units : UnitSystems()) {
    if (ToUtf8(units.length) == m_keptUnits) SetUnits(units);
  }
  m_status->CountAnew();
  RefreshActions();
  RefreshTitle();
}

/// How the model is shown, and from where, goes into the file soon after it has changed, so that a crash does not
/// take it either.
void MainWindow::KeepDisplay() {
  m_keepDisplay.stop();
  if (m_keeper->File() == nullptr) return;
  const auto keep = [this](const char* name, std::string bytes, std::string& kept) {
    if (bytes != kept && m_keeper->File()->PutView(name, bytes)) kept = std::move(bytes);
  };
  const QJsonObject looking{
      {"camera", JsonOf(m_doc->GetLooking().Camera())},
      {"sections", JsonOf(m_doc->GetSections())},
      {"find", QJsonObject{{"model", m_modelPane->FindState()}, {"gset", m_gsetPane->FindState()}}}};
  keep(kLookingName, QJsonDocument(looking).toJson(QJsonDocument::Compact).toStdString(), m_keptLooking);
  keep(kUnitsName, ToUtf8(CQDUnitCtrl::GetUnitSystemLength()), m_keptUnits);
  keep(kDisplayName, BytesOfDisplay(m_doc->GetDisplay()), m_keptDisplay);
  // What is long is not written as often.
  constexpr std::size_t kBytesPerMillisecond = 500;
  m_keepDisplay.setInterval(kKeepDisplay + static_cast<int>(m_keptDisplay.size() / kBytesPerMillisecond));
}

/// What the window shows of a document goes into its file, apart from the model.
void MainWindow::KeepView() {
  if (!m_keeper->IsNamed()) return;
  KeepDisplay();
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
  constexpr int kLeast = 300;
  constexpr int kMost = 10'000;
  const QJsonArray size = view["size"].toArray();
  const bool free = !windowState().testAnyFlags(Qt::WindowMaximized | Qt::WindowFullScreen);
  if (size.size() == 2 && free) {
    resize(std::clamp(size[0].toInt(), kLeast, kMost), std::clamp(size[1].toInt(), kLeast, kMost));
  }
  // After the size: panes are scaled with a window that changes its own.
  RestorePanes(QByteArray::fromBase64(view["panes"].toString().toLatin1()));
  for (TreePane* pane : {m_modelPane, m_gsetPane}) pane->RestoreViewState(view[pane->objectName()].toObject());
}

/// What a program opens that nobody watches is nothing that somebody will look for.
void MainWindow::NoteRecent(const QString& path) const {
  if (!m_asks) return;
  QSettings settings;
  QStringList recent = settings.value(kRecentKey).toStringList();
  recent.removeAll(path);
  recent.prepend(path);
  settings.setValue(kRecentKey, recent.mid(0, kMostRecent));
}

void MainWindow::ListRecent(QMenu& menu) {
  menu.clear();
  const QStringList recent = QSettings().value(kRecentKey).toStringList();
  QHash<QString, QAction*> actions;
  for (const QString& path : recent) {
    actions[path] = menu.addAction(QString(path).replace('&', "&&"), this, [this, path] { OpenFiles({path}); });
  }
  m_missing->Look(recent, [actions](const QString& path) {
    QAction* action = actions.value(path);
    if (action == nullptr) return;
    action->setEnabled(false);
    action->setStatusTip(Text("IDS_WB_RECENT_MISSING"));
  });
  if (menu.isEmpty()) menu.addAction(Text("IDS_WB_NO_RECENT"))->setEnabled(false);
}

// ---- saving ---------------------------------------------------------------------------------------------

/// A document with a file is saved with every act.
void MainWindow::OnSave() {
  if (!m_keeper->IsNamed() || m_keeper->IsReadOnly()) return OnSaveAs();
  Say({Text("IDS_WB_SAVED", {NameFromBytes(m_keeper->Path())}), Severity::Note, NameFromBytes(m_keeper->Path())});
}

/// Beside the document, or beside the first file that was imported.
QString MainWindow::SuggestedPath() const {
  if (m_keeper->IsNamed()) return NameFromBytes(m_keeper->Path());
  const QFileInfo file(ToQt(m_doc->GetPathName()));
  return file.path() + "/" + file.completeBaseName() + ".qdw";
}

void MainWindow::OnSaveAs() {
  QString path = QFileDialog::getSaveFileName(this, TitleText("IDS_WB_SAVE_AS"), SuggestedPath(), Filter());
  if (path.isEmpty()) return;
  if (QFileInfo(path).suffix().isEmpty()) path += ".qdw";
  SaveAs(path);
}

bool MainWindow::SaveAs(const QString& path) {
  const QString absolute = QFileInfo(path).absoluteFilePath();
  DocumentError error;
  const int done = qdRunLongWork(FromQt(Text("IDS_WB_SAVING", {absolute})), [&](const ProgressCall& progress) {
    return m_keeper->SaveAs(NameToBytes(absolute), error, progress) ? 1 : 0;
  });
  if (done == 0) {
    Say({absolute + ": " + TextOf(error), Severity::Failure, absolute});
    return false;
  }
  m_session->Rename(FromQt(absolute));
  NoteRecent(absolute);
  KeepView();
  RefreshTitle();
  m_acts->Say("doc.save(" + PythonPath(NameToBytes(absolute)) + ")");
  Say({Text("IDS_WB_SAVED", {absolute}), Severity::Note, absolute});
  return true;
}

void MainWindow::OnUnkept(const DocumentError& error) {
  const QString text = TextOf(error);
  const bool shielded = std::string_view(error.key) == "IDS_WB_DOC_PROTECTED";
  Say({text, shielded ? Severity::Warning : Severity::Failure});
  statusBar()->showMessage(text, kWarningTime);
  const QStringList needsUser{"IDS_WB_DOC_NO_RECOVERY", "IDS_WB_DOC_GONE", "IDS_WB_DOC_CHANGED",
                              // Another place may have room.
                              "IDS_WB_DOC_FULL", "IDS_WB_DOC_UNKEPT"};
  if (needsUser.contains(error.key)) m_questions.Warn(text, [this] { OnSaveAs(); });
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (QuietTime::IsNow()) return event->ignore();
  const auto isAtRisk = [this] { return m_keeper->IsUnsaved() || m_keeper->HasLostFile(); };
  if (isAtRisk()) {
    const auto answer =
        m_keeper->IsUnsaved() ? m_questions.AskUnsaved() : m_questions.AskLost(NameFromBytes(m_keeper->Path()));
    if (answer == DocumentQuestions::Closing::Save) OnSaveAs();
    const bool goOn = answer == DocumentQuestions::Closing::Discard ||
                      (answer == DocumentQuestions::Closing::Save && !isAtRisk());
    if (!goOn) return event->ignore();
  }
  if (m_acts->HasRecorded()) {
    const auto answer = m_questions.AskRecording();
    if (answer == DocumentQuestions::Closing::Save) OnRecordActs();
    const bool goesOn = answer == DocumentQuestions::Closing::Save && m_acts->IsRecording();
    if (goesOn || answer == DocumentQuestions::Closing::Stay) return event->ignore();
    m_acts->StopRecording();
  }
  QMainWindow::closeEvent(event);
}

// ---- after a crash --------------------------------------------------------------------------------------

void MainWindow::OfferRecovery(bool keepFree) {
  for (const RecoverableDocument& document : DocumentKeeper::FindRecoverable(RecoveryFolder())) {
    const QString path = NameFromBytes(document.path);
    if (document.fault.key != nullptr) {
      Say({path + ": " + TextOf(document.fault), Severity::Failure, path});
      AskToRepair(path, document.fault, keepFree);
      continue;
    }
    switch (m_questions.AskRecovery(document)) {
      case DocumentQuestions::Recovery::Recover:
        if (keepFree || !IsFresh()) {
          m_others->Start({path});
        } else {
          Recover(path);
        }
        break;
      case DocumentQuestions::Recovery::Discard:
        if (!DocumentKeeper::Discard(document.path))
          Say({TextOf({"IDS_WB_DOC_BUSY", document.path}), Severity::Failure});
        break;
      case DocumentQuestions::Recovery::Later:
        break;
    }
  }
}

bool MainWindow::Recover(const QString& path) {
  DocumentError error{"IDS_WB_RECOVER_NOT_EMPTY", NameToBytes(path)};
  if (!IsFresh() || !m_keeper->Recover(NameToBytes(path), error)) {
    ++m_failedDocuments;
    Say({path + ": " + TextOf(error), Severity::Failure, path});
    AskToRepair(path, error);
    return false;
  }
  const QString title = QString::fromStdString(m_keeper->Title());
  ShowLoaded(title.isEmpty() ? Text("IDS_WB_UNTITLED") : title);
  AskToMend(title.isEmpty() ? Text("IDS_WB_UNTITLED") : title);
  return true;
}

}  // namespace qd::workbench

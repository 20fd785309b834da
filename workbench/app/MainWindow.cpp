#include "workbench/app/MainWindow.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDockWidget>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QUrl>
#include <algorithm>
#include <iostream>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "platform/qt/QtToolkit.h"
#include "workbench/app/DialogFrame.h"
#include "workbench/app/ExportDialog.h"
#include "workbench/app/FileName.h"
#include "workbench/app/MessagePane.h"
#include "workbench/app/MissingFiles.h"
#include "workbench/app/PictureDialog.h"
#include "workbench/app/PictureFile.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/QuietTime.h"
#include "workbench/app/StatusLine.h"
#include "workbench/app/Translated.h"
#include "workbench/app/TreePane.h"
#include "workbench/app/WelcomePanel.h"
#include "workbench/app/console/ActScript.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/display/ViewSettings.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/session/PickedText.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/RecordQuery.h"
#include "workbench/session/SelectionPage.h"
#include "workbench/session/WindowCommands.h"
#include "workbench/view/ModelView.h"
#include "workbench/view/ViewPicking.h"

namespace qd::workbench {

MainWindow::MainWindow(MessageTables& messages)
    : m_messages(messages),
      m_doc(std::make_unique<WorkDocument>()),
      m_keeper(std::make_unique<DocumentKeeper>(m_doc->GetDatabase(), RecoveryFolder())) {
  m_keeper->SetOnFailure([this](const DocumentError& error) { OnUnkept(error); });
  m_doc->SetPathName(FromQt(Text("IDS_WB_UNTITLED")));
  resize(1200, 760);
  setAcceptDrops(true);
  MakePanes();
  MakeMenus();
  MakeStatusBar();
  MakeToolbar();
  RefreshRecording();
  m_session = std::make_unique<Session>(
      *m_doc, m_modelPane->Bar(), m_gsetPane->Bar(), [this](const std::function<void()>& what) {
        QTimer::singleShot(0, this, [this, what] { QuietTime::WhenOver(this, what); });
      });
  AddScriptEntries();
  m_onRecords = m_doc->OnRecords([this](const CQDUpdateRecord& record) {
    m_view->Apply(record);
    if (Concerns(record, kDataDeck)) m_properties->Refresh();
    if (!m_keeper->IsNamed()) RefreshTitle();
    RefreshActions();
  });
  m_onDisplay = m_doc->GetDisplay().Subscribe([this](const DisplayNotice& notice) {
    RefreshActions();
    if (notice.colours) m_properties->Refresh();
    if (!m_keepDisplay.isActive()) m_keepDisplay.start();
  });
  m_onSelection = m_doc->OnSelection([this](const Selection&) { RefreshSelection(); });
  m_keepDisplay.setSingleShot(true);
  m_keepDisplay.setInterval(kKeepDisplay);
  connect(&m_keepDisplay, &QTimer::timeout, this, &MainWindow::KeepDisplay);
  // Where one looks from is written when the hand rests.
  m_onCamera = m_doc->GetLooking().Subscribe([this](const ViewCamera&) {
    FollowCamera();
    m_keepDisplay.start();
  });
  m_onSections = m_doc->GetSections().Subscribe([this](const Sections&) {
    RefreshActions();
    m_keepDisplay.start();
  });
  m_onPicks = m_doc->GetPicks().Subscribe([this](const Picks&) { RefreshActions(); });
  m_onSettings = ViewSettings::Ours().Subscribe([this](const ViewSettings&) { RefreshActions(); });
  m_doc->SetOnImport([this] { OnImport(); });
  MakeJobs();
  m_welcome = new WelcomePanel(
      m_view, {m_actions.at(kOpen), m_actions.at(kImport), m_actions.at(kOpenExample), m_actions.at(kManual)},
      [this](const QString& path) { OpenFiles({path}); });
  m_dialogs = std::make_unique<DialogHost>(*m_doc, *m_operations, this);
  m_dialogs->SetOnSaid([this](const Message& message) { Say(message); });
  RefreshActions();
  RefreshTitle();
  SayTableFaults();
}

MainWindow::~MainWindow() {
  disconnect(qApp, nullptr, this, nullptr);  // the focus wanders while the panes go
  KeepView();
  m_keeper->SetOnFailure(nullptr);
  delete std::exchange(m_acts, nullptr);
  delete m_scripts;  // ends what runs, while all that it may work on stands
  delete m_console;
  m_dialogs.reset();
  delete m_operations;
  delete m_imports;
  delete m_exporter;
  m_doc->SetOnImport(nullptr);
  m_onRecords = {};
  m_onDisplay = {};
  m_onSelection = {};
  m_onCamera = {};
  m_onSections = {};
  m_onPicks = {};
  m_onSettings = {};
  m_session.reset();
  delete m_status;
  // The panes and the view look at the document, so they go before it.
  delete m_modelPane;
  delete m_gsetPane;
  delete m_view;
}

void MainWindow::MakePanes() {
  m_view = new ModelView(*m_doc, this);
  m_view->Picking().SetOnPick(
      [this](const std::vector<iterator>& records, PickMode mode) { m_session->Trees().Pick(records, mode); });
  m_view->Picking().SetOnMenu([this](const QPoint& screen) { ShowPickedMenu(screen); });
  m_view->Picking().SetNames([this](const PickHit& hit) {
    return ToQt(hit.picked ? NameOf(*m_doc, *hit.picked) : NameOf(*m_doc, hit.record));
  });
  setCentralWidget(m_view);
  m_modelPane = new TreePane("model", this);
  m_gsetPane = new TreePane("gset", this);
  m_modelPane->Open(*m_doc);
  m_gsetPane->Open(*m_doc);
  m_properties = new PropertyPane(this);
  m_properties->SetDocumentPage([this] { return SelectionPage::For(*m_doc); });
  m_properties->SetEmptyKey([this] { return EmptyPageKey(*m_doc); });
  m_messagePane = new QDockWidget(this);
  m_messagePane->setObjectName("messages");
  SetTitle(*m_messagePane, "IDS_WB_PANE_MESSAGES");
  m_messagePane->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  m_told = new MessagePane(m_messagePane);
  m_messagePane->setWidget(m_told);
  connect(m_told, &MessagePane::Chosen, this, &MainWindow::GoTo);
  addDockWidget(Qt::LeftDockWidgetArea, m_modelPane);
  tabifyDockWidget(m_modelPane, m_gsetPane);
  m_modelPane->raise();
  SetTitle(*m_modelPane, "IDS_WB_PANE_MODEL");
  SetTitle(*m_gsetPane, "IDS_WB_PANE_GSET");
  SetTitle(*m_properties, "IDS_WB_PANE_PROPERTIES");
  addDockWidget(Qt::LeftDockWidgetArea, m_properties);
  addDockWidget(Qt::BottomDockWidgetArea, m_messagePane);
  resizeDocks({m_modelPane, m_properties}, {520, 160}, Qt::Vertical);
  resizeDocks({m_modelPane}, {380}, Qt::Horizontal);
  resizeDocks({m_messagePane}, {110}, Qt::Vertical);
  MakeConsole();
}

void MainWindow::MakeStatusBar() {
  m_status = new StatusLine(
      *statusBar(), *m_doc,
      [this](const std::function<void()>& what) { QTimer::singleShot(0, this, [what] { what(); }); }, *m_unitMenu);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* now) {
    // A find bar that is left keeps what was searched for.
    const bool search = qobject_cast<QLineEdit*>(before) != nullptr &&
                        (m_modelPane->isAncestorOf(before) || m_gsetPane->isAncestorOf(before));
    if (search && !m_keepDisplay.isActive()) m_keepDisplay.start();
    FollowFocus(now);
  });
  m_progress = new QProgressBar(this);
  m_progress->setRange(0, 1000);
  m_progress->setMaximumWidth(260);
  m_cancel = new QToolButton(this);
  SetText(*m_cancel, "IDS_WB_CANCEL");
  connect(m_cancel, &QToolButton::clicked, this, [this] {
    m_questions.ForgetInclude();
    m_imports->Cancel();
    m_operations->Cancel();
    m_exporter->Cancel();
  });
  m_wait = new QToolButton(this);
  m_wait->setObjectName("wait");
  SetText(*m_wait, "IDS_WB_WAIT_LONGER");
  connect(m_wait, &QToolButton::clicked, this, [this] {
    m_imports->WaitLonger();
    m_operations->WaitLonger();
    m_exporter->WaitLonger();
  });
  // Messages hide what does not stand there for good.
  for (QWidget* widget : std::initializer_list<QWidget*>{m_progress, m_wait, m_cancel}) {
    statusBar()->addPermanentWidget(widget);
    widget->hide();
  }
}

// ---- looks ----------------------------------------------------------------------------------------------

void MainWindow::SaveLayout() const {
  QSettings settings;
  settings.setValue("geometry", saveGeometry());
  settings.setValue("panes", saveState());
  const ViewSettings& view = ViewSettings::Ours();
  settings.setValue("view/mouse", static_cast<int>(view.Habits()));
  settings.setValue("view/ground", static_cast<int>(view.GetGround()));
  settings.setValue("view/plain", view.IsPlain());
  settings.setValue("view/smooth", view.IsSmooth());
  settings.setValue("view/hover", view.IsHovering());
  settings.setValue("view/hidden", view.TakesHidden());
  settings.setValue("view/treesFollow", view.DoTreesFollow());
  for (const TreePane* pane : {m_modelPane, m_gsetPane}) {
    settings.setValue("columns/" + pane->objectName(), pane->ColumnWidths());
  }
}

void MainWindow::RestoreLayout() {
  const QSettings settings;
  restoreGeometry(settings.value("geometry").toByteArray());
  // Anything may stand in settings.
  ViewSettings& view = ViewSettings::Ours();
  const int habits = settings.value("view/mouse").toInt();
  const int ground = settings.value("view/ground").toInt();
  if (habits >= 0 && habits <= static_cast<int>(MouseHabits::FreeCad))
    view.SetHabits(static_cast<MouseHabits>(habits));
  if (ground >= 0 && ground <= static_cast<int>(Ground::Dark)) view.SetGround(static_cast<Ground>(ground));
  view.SetPlain(settings.value("view/plain", false).toBool());
  view.SetSmooth(settings.value("view/smooth", true).toBool());
  view.SetHovering(settings.value("view/hover", true).toBool());
  view.SetTakesHidden(settings.value("view/hidden", false).toBool());
  view.SetTreesFollow(settings.value("view/treesFollow", true).toBool());
  RestorePanes(settings.value("panes").toByteArray());
  for (TreePane* pane : {m_modelPane, m_gsetPane}) {
    pane->SetColumnWidths(settings.value("columns/" + pane->objectName()).toList());
  }
}

/// A window that does not show yet and will be maximised keeps the places for when it is, and falls over them when
/// others have been set meanwhile. So they are set when it shows.
void MainWindow::RestorePanes(const QByteArray& places) {
  m_panePlaces = places;
  if (isVisible()) PlacePanes();
}

/// Only the console can be closed. A pane that floated when the window closed was hidden with it, and is written
/// down so.
void MainWindow::PlacePanes() {
  restoreState(std::exchange(m_panePlaces, {}));
  for (QDockWidget* pane : findChildren<QDockWidget*>()) {
    if (pane->isHidden() && pane != m_console) pane->show();
  }
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (!m_panePlaces.isEmpty()) PlacePanes();
}

// ---- the user's acts ------------------------------------------------------------------------------------

void MainWindow::OnImport() {
  const QString filter = Text("IDS_WB_IMPORT_FILTER") + " (" + QString::fromStdString(ReadPatterns(" ")) + ");;" +
                         Text("IDS_WB_ALL_FILES") + " (*)";
  Import(QFileDialog::getOpenFileNames(this, TitleText("IDS_WB_IMPORT"), QString(), filter));
}

CPropertiesWnd* MainWindow::GetPropertiesWnd(CQDDocBase* doc) {
  return doc == m_doc.get() ? m_properties : nullptr;
}

bool MainWindow::IsUpToDate() const {
  return !IsImporting() && m_view->IsUpToDate();
}

// ---- long work ------------------------------------------------------------------------------------------

template <typename Job>
void MainWindow::Follow(Job& job) {
  connect(&job, &Job::Started, this, &MainWindow::ShowProgress);
  connect(&job, &Job::Progress, m_progress, &QProgressBar::setValue);
  connect(&job, &Job::Said, this, &MainWindow::Say);
  connect(&job, &Job::Ended, this, &MainWindow::HideProgress);
  if constexpr (requires { &Job::Stalled; }) {
    connect(&job, &Job::Stalled, this, &MainWindow::AskToWait);
    connect(&job, &Job::Resumed, m_wait, &QWidget::hide);
  }
}

/// The question stands beside the progress, where work on everything else goes on.
void MainWindow::AskToWait(const QString& reason) {
  Say({Text("IDS_WB_STALLED", {reason}), Severity::Warning});
  m_wait->show();
}

void MainWindow::MakeJobs() {
  m_operations = new OperationRunner(*m_doc, this);
  m_imports = new ImportQueue(*m_doc, this);
  m_exporter = new ModelExporter(*m_doc, this);
  m_longWork = std::make_unique<ProgressWindow>(this);
  connect(m_operations, &OperationRunner::Applying, this, &MainWindow::ExpectWork);
  m_missing = new MissingFiles(this);
  m_others = new OtherWindows(m_messages, this);
  connect(m_others, &OtherWindows::Said, this, &MainWindow::Say);
  Follow(*m_operations);
  Follow(*m_imports);
  Follow(*m_exporter);
  connect(m_imports, &ImportQueue::Wanted, this,
          [this](const QString& deck, const QString& folder, const QString& file) {
            if (!m_asks) return m_imports->Allow(false);
            m_questions.AskInclude(deck, folder, file, [this](bool allowed) { m_imports->Allow(allowed); });
          });
  connect(m_imports, &ImportQueue::Storing, this, [this](const QString& path) {
    m_acts->Expect("doc.import_file(" + PythonPath(NameToBytes(QFileInfo(path).absoluteFilePath())) + ")");
    BeforeStore(path);
  });
  connect(m_imports, &ImportQueue::Stored, this, &MainWindow::AfterStore);
}

void MainWindow::Import(const QStringList& paths) {
  m_imports->Add(paths);
}

/// The first file gives the document its name.
void MainWindow::BeforeStore(const QString& path) {
  m_firstImport = m_session->IsEmpty();
  if (!m_firstImport || m_keeper->IsNamed()) return;
  const QString absolute = QFileInfo(path).absoluteFilePath();
  m_keeper->SetTitle(absolute.toStdString());
  m_session->Rename(FromQt(absolute));
}

void MainWindow::AfterStore(const QString& path) {
  if (m_firstImport) m_session->Trees().OpenBranches();
  NoteRecent(QFileInfo(path).absoluteFilePath());
  RefreshTitle();
}

void MainWindow::OnExport() {
  const QFileInfo document(ToQt(m_doc->GetPathName()));
  const bool hasMeshes = m_doc->GetDatabase().GetMsetPool().Count() > 0;
  const QString ending = hasMeshes ? ".inp" : ".step";
  const QString name = document.absolutePath() + "/" + document.completeBaseName() + ending;
  auto* dialog = new ExportDialog(*m_doc, name, this);  // deletes itself
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog] { Export(dialog->Path(), dialog->Scope()); });
  dialog->open();
}

void MainWindow::Export(const QString& path, ExportScope scope) {
  const std::string file = PythonPath(NameToBytes(QFileInfo(path).absoluteFilePath()));
  m_acts->Say(scope == ExportScope::All ? "doc.export(" + file + ")"
                                        : "# no line for: a part is written to " + file);
  m_exporter->Start(path, scope);
}

void MainWindow::OnPicture() {
  const QSize size = m_view->size() * m_view->devicePixelRatioF();
  auto* dialog = new PictureDialog(size, this);  // deletes itself
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog] {
    const QSize wanted = dialog->Size();
    QString path = QFileDialog::getSaveFileName(this, TitleText("IDS_WB_PICTURE_TITLE"), QString(), "PNG (*.png)");
    if (path.isEmpty()) return;
    if (QFileInfo(path).suffix().isEmpty()) path += ".png";
    SavePicture(path, wanted);
  });
  dialog->open();
}

bool MainWindow::SavePicture(const QString& path, QSize size) {
  if (!IsPictureName(path)) {
    Say({Text("IDS_WB_PICTURE_ENDING", {path}), Severity::Failure});
    return false;
  }
  const bool saved = WritePicture(m_view->Render(size), path);
  Say({Text(saved ? "IDS_WB_SAVED" : "IDS_WB_PICTURE_FAILED", {path}), saved ? Severity::Note : Severity::Failure,
       QFileInfo(path).absoluteFilePath()});
  return saved;
}

bool MainWindow::HideMatches(const QString& query) {
  const FoundRecords found = FindRecords(*m_session, FromQt(query));
  if (found.fault.key == nullptr) ShowRecords(*m_doc, found.records, false);
  if (found.fault.key != nullptr) Say({query + ": " + Text(found.fault.key), Severity::Failure});
  return found.fault.key == nullptr;
}

void MainWindow::ShowProgress(const QString& text) {
  statusBar()->showMessage(text);
  m_progress->setValue(0);
  m_progress->show();
  m_cancel->show();
}

void MainWindow::HideProgress() {
  if (m_acts != nullptr) m_acts->Expect({});  // an act that failed has not come
  QMetaObject::invokeMethod(this, &MainWindow::RefreshActions, Qt::QueuedConnection);  // when the job is over
  m_progress->hide();
  m_wait->hide();
  m_cancel->hide();
  statusBar()->clearMessage();
}

void MainWindow::Warn(const CString& text) {
  if (m_scripts->TakeWarning(text)) return;
  HeardWarnings::Note(ToQt(text));
  Say({ToQt(text), Severity::Warning});
  statusBar()->showMessage(ToQt(text), kWarningTime);
}

/// The trees' own editors belong to the window system's toolkit, and are fields for text; so is that of the find
/// bar, which stands beside its tree.
void MainWindow::FollowFocus(const QWidget* now) {
  using Place = StatusLine::Place;
  const auto in = [now](const QWidget* pane) { return pane == now || pane->isAncestorOf(now); };
  Place place = Place::Elsewhere;
  if (now == nullptr) return;  // another program
  if (in(m_view)) place = Place::View;
  for (TreePane* pane : {m_modelPane, m_gsetPane}) {
    if (!in(pane)) continue;
    const bool isField = qobject_cast<const QLineEdit*>(now) != nullptr;
    const QWidget* tree = QtToolkit::WidgetOf(pane->Bar().GetTreeCtrl());
    place = !isField ? Place::Tree : tree->isAncestorOf(now) ? Place::Editor : Place::FindField;
  }
  m_status->ShowPlace(place);
}

void MainWindow::Say(const Message& message) {
  m_told->Add(message);
  if (message.severity == Severity::Failure) std::cerr << message.text.toStdString() << std::endl;
}

/// To the rows of records that are still there, or to the folder of a file.
void MainWindow::GoTo(const Message& message) {
  std::vector<iterator> records = message.records;
  std::erase_if(records, [this](iterator record) { return m_doc->GetDatabase().GetDataType(record) == 0; });
  if (!records.empty()) return m_session->Trees().Pick(records, PickMode::Replace);
  if (message.file.isEmpty()) return Warn(FromQt(Text("IDS_WB_MESSAGES_GONE")));
  QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(message.file).absolutePath()));
}

}  // namespace qd::workbench

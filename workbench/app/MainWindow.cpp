#include "workbench/app/MainWindow.h"

#include <QApplication>
#include <QDockWidget>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <iostream>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/ExportDialog.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/QuietTime.h"
#include "workbench/app/Translated.h"
#include "workbench/app/TreePane.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/session/SelectionPage.h"
#include "workbench/view/ModelView.h"

namespace qd::workbench {

MainWindow::MainWindow(MessageTables& messages)
    : m_messages(messages),
      m_doc(std::make_unique<WorkDocument>()),
      m_keeper(std::make_unique<DocumentKeeper>(m_doc->GetDatabase(), RecoveryFolder())) {
  m_keeper->SetOnFailure([this](const DocumentError& error) { OnUnkept(error); });
  m_doc->SetPathName(FromQt(Text("IDS_WB_UNTITLED")));
  resize(1200, 760);
  MakePanes();
  MakeMenus();
  m_session = std::make_unique<Session>(
      *m_doc, m_modelPane->Bar(), m_gsetPane->Bar(), [this](const std::function<void()>& what) {
        QTimer::singleShot(0, this, [this, what] { QuietTime::WhenOver(this, what); });
      });
  m_onRecords = m_doc->OnRecords([this](const CQDUpdateRecord& record) {
    m_view->Apply(record);
    if (Concerns(record, kDataDeck)) m_properties->Refresh();
    RefreshActions();
  });
  m_onDisplay = m_doc->GetDisplay().Subscribe([this](const DisplayNotice& notice) {
    RefreshActions();
    if (notice.colours) m_properties->Refresh();
  });
  m_onSelection = m_doc->OnSelection([this](const Selection&) { RefreshSelection(); });
  m_doc->SetOnImport([this] { OnImport(); });
  MakeJobs();
  m_dialogs = std::make_unique<DialogHost>(*m_doc, *m_operations, this);
  RefreshActions();
  RefreshTitle();
  SayTableFaults();
}

MainWindow::~MainWindow() {
  KeepView();
  m_dialogs.reset();
  delete m_operations;
  delete m_imports;
  delete m_exporter;
  m_doc->SetOnImport(nullptr);
  m_onRecords = {};
  m_onDisplay = {};
  m_onSelection = {};
  m_session.reset();
  // The panes and the view look at the document, so they go before it.
  delete m_modelPane;
  delete m_gsetPane;
  delete m_view;
}

void MainWindow::MakePanes() {
  m_view = new ModelView(*m_doc, this);
  m_view->SetOnPick([this](iterator itr, bool add) { m_session->Trees().Pick(itr, add); });
  setCentralWidget(m_view);
  m_modelPane = new TreePane("model", this);
  m_gsetPane = new TreePane("gset", this);
  m_modelPane->Open(*m_doc);
  m_gsetPane->Open(*m_doc);
  m_properties = new PropertyPane(this);
  m_properties->SetDocumentPage([this] { return SelectionPage::For(*m_doc); });
  m_selectionText = new QLabel(this);
  m_selectionText->setObjectName("selection");
  m_messagePane = new QDockWidget(this);
  m_messagePane->setObjectName("messages");
  SetTitle(*m_messagePane, "IDS_WB_PANE_MESSAGES");
  m_messagePane->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  m_messageText = new QPlainTextEdit(m_messagePane);
  m_messageText->setReadOnly(true);
  m_messageText->setMaximumBlockCount(10000);
  m_messagePane->setWidget(m_messageText);
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
  statusBar()->addPermanentWidget(m_selectionText);
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
  for (const TreePane* pane : {m_modelPane, m_gsetPane}) {
    settings.setValue("columns/" + pane->objectName(), pane->ColumnWidths());
  }
}

void MainWindow::RestoreLayout() {
  const QSettings settings;
  restoreGeometry(settings.value("geometry").toByteArray());
  RestorePanes(settings.value("panes").toByteArray());
  for (TreePane* pane : {m_modelPane, m_gsetPane}) {
    pane->SetColumnWidths(settings.value("columns/" + pane->objectName()).toList());
  }
}

/// A window that does not show yet and will be maximised keeps the places for when it is, and falls over them when
/// others have been set meanwhile. So they are set when it shows.
void MainWindow::RestorePanes(const QByteArray& places) {
  m_panePlaces = places;
  if (isVisible()) restoreState(std::exchange(m_panePlaces, {}));
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (!m_panePlaces.isEmpty()) restoreState(std::exchange(m_panePlaces, {}));
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
  Say(Text("IDS_WB_STALLED", {reason}), false);
  m_wait->show();
}

void MainWindow::MakeJobs() {
  m_operations = new OperationRunner(*m_doc, this);
  m_imports = new ImportQueue(*m_doc, this);
  m_exporter = new ModelExporter(*m_doc, this);
  m_longWork = std::make_unique<ProgressWindow>(this);
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
  connect(m_imports, &ImportQueue::Storing, this, &MainWindow::BeforeStore);
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

void MainWindow::AfterStore() {
  if (m_firstImport) m_session->Trees().OpenBranches();
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
  m_exporter->Start(path, scope);
}

void MainWindow::ShowProgress(const QString& text) {
  statusBar()->showMessage(text);
  m_progress->setValue(0);
  m_progress->show();
  m_cancel->show();
}

void MainWindow::HideProgress() {
  m_progress->hide();
  m_wait->hide();
  m_cancel->hide();
  statusBar()->clearMessage();
}

void MainWindow::Warn(const CString& text) {
  Say(ToQt(text), false);
  statusBar()->showMessage(ToQt(text), kWarningTime);
}

void MainWindow::Say(const QString& text, bool failure) {
  m_messageText->appendPlainText(text);
  if (failure) std::cerr << text.toStdString() << std::endl;
}

}  // namespace qd::workbench

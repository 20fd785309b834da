#include "workbench/app/MainWindow.h"

#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <iostream>

#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/TreePane.h"
#include "workbench/exchange/StoreImport.h"
#include "workbench/view/ModelView.h"

namespace qd::workbench {

namespace {
constexpr int kWarningTime = 8000;  // milliseconds
}

MainWindow::MainWindow(MessageTables& messages) : m_messages(messages), m_doc(std::make_unique<WorkDocument>()) {
  m_doc->SetPathName(FromQt(Text("IDS_WB_UNTITLED")));
  resize(1200, 760);
  MakePanes();
  MakeMenus();
  m_manager = std::make_unique<CWorksTreeManager>(
      std::map<long, CSwitchDockablePane*>{{kModelTree, m_modelPane}, {kGeometrySetTree, m_gsetPane}}, &m_factory);
  m_manager->CreateTreeItems(m_doc.get(), kModelTree);
  m_doc->GetDatabase().SetListener(this);
  m_doc->SetOnImport([this] { OnImport(); });
  m_doc->GetDisplay().SetOnItemsChanged([this] { QTimer::singleShot(0, this, [this] { SyncTrees(); }); });
  m_operations = new OperationRunner(*m_doc, this);
  connect(m_operations, &OperationRunner::Started, this,
          [this](const QString& title) { ShowProgress(Text("IDS_WB_WORKING", {title})); });
  connect(m_operations, &OperationRunner::Progress, m_progress, &QProgressBar::setValue);
  connect(m_operations, &OperationRunner::Said, this, &MainWindow::Say);
  connect(m_operations, &OperationRunner::Ended, this, &MainWindow::HideProgress);
  m_dialogs = std::make_unique<DialogHost>(*m_doc, *m_operations, this);
  ApplyPalette();
  Retranslate();
}

MainWindow::~MainWindow() {
  m_job.reset();
  m_dialogs.reset();
  delete m_operations;
  m_doc->GetDisplay().SetOnItemsChanged(nullptr);
  m_doc->SetOnImport(nullptr);
  m_doc->GetDatabase().SetListener(nullptr);
  m_manager->DestroyTreeItems(m_doc.get());
  // The panes and the view look at the document, so they go before it.
  delete m_modelPane;
  delete m_gsetPane;
  delete m_view;
}

void MainWindow::MakePanes() {
  m_view = new ModelView(*m_doc, this);
  m_view->SetOnPick([this](iterator itr, bool add) { OnPick(itr, add); });
  setCentralWidget(m_view);
  m_modelPane = new TreePane("model", this);
  m_gsetPane = new TreePane("gset", this);
  m_modelPane->Open(*m_doc);
  m_gsetPane->Open(*m_doc);
  m_properties = new PropertyPane(this);
  m_messagePane = new QDockWidget(this);
  m_messagePane->setObjectName("messages");
  m_messagePane->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  m_messageText = new QPlainTextEdit(m_messagePane);
  m_messageText->setReadOnly(true);
  m_messageText->setMaximumBlockCount(10000);
  m_messagePane->setWidget(m_messageText);
  addDockWidget(Qt::LeftDockWidgetArea, m_modelPane);
  tabifyDockWidget(m_modelPane, m_gsetPane);
  m_modelPane->raise();
  addDockWidget(Qt::LeftDockWidgetArea, m_properties);
  addDockWidget(Qt::BottomDockWidgetArea, m_messagePane);
  resizeDocks({m_modelPane, m_properties}, {520, 160}, Qt::Vertical);
  resizeDocks({m_modelPane}, {380}, Qt::Horizontal);
  resizeDocks({m_messagePane}, {110}, Qt::Vertical);

  m_progress = new QProgressBar(this);
  m_progress->setRange(0, 1000);
  m_progress->setMaximumWidth(260);
  m_cancel = new QToolButton(this);
  connect(m_cancel, &QToolButton::clicked, this, [this] {
    m_waiting.clear();
    if (m_job != nullptr) m_job->Cancel();
    m_operations->Cancel();
  });
  statusBar()->addPermanentWidget(m_progress);
  statusBar()->addPermanentWidget(m_cancel);
  m_progress->hide();
  m_cancel->hide();
}

// ---- menus ----------------------------------------------------------------------------------------------

QAction* MainWindow::Add(QMenu* menu, const char* key, const QKeySequence& shortcut,
                         void (MainWindow::*handler)()) {
  QAction* action = menu->addAction(QString(), this, handler);
  action->setShortcut(shortcut);
  m_translated.push_back({action, key});
  return action;
}

void MainWindow::MakeMenus() {
  QMenu* file = menuBar()->addMenu(QString());
  m_translated.push_back({file->menuAction(), "IDS_WB_MENU_FILE"});
  Add(file, "IDS_WB_IMPORT", QKeySequence::Open, &MainWindow::OnImport);
  file->addSeparator();
  m_translated.push_back(
      {file->addAction(QString(), QKeySequence::Quit, this, &QMainWindow::close), "IDS_WB_EXIT"});

  QMenu* edit = menuBar()->addMenu(QString());
  m_translated.push_back({edit->menuAction(), "IDS_WB_MENU_EDIT"});
  m_undo = Add(edit, "IDS_WB_UNDO", QKeySequence::Undo, &MainWindow::OnUndo);
  m_redo = Add(edit, "IDS_WB_REDO", QKeySequence::Redo, &MainWindow::OnRedo);
  edit->addSeparator();
  m_delete = Add(edit, "IDS_WB_DELETE", QKeySequence::Delete, &MainWindow::OnDelete);

  QMenu* view = menuBar()->addMenu(QString());
  m_translated.push_back({view->menuAction(), "IDS_WB_MENU_VIEW"});
  Add(view, "IDS_WB_FIT", QKeySequence(Qt::CTRL | Qt::Key_0), &MainWindow::OnFit);
  Add(view, "IDS_QD_WRT_SHOW_ALL", {}, &MainWindow::OnShowAll);
  Add(view, "IDS_QD_WRT_HIDE_ALL", {}, &MainWindow::OnHideAll);
  QMenu* language = view->addMenu(QString());
  m_translated.push_back({language->menuAction(), "IDS_WB_MENU_LANGUAGE"});
  auto* group = new QActionGroup(this);
  for (const QString& code : MessageTables::Languages()) {
    QAction* action =
        language->addAction(QLocale(code).nativeLanguageName(), this, [this, code] { SetLanguage(code); });
    action->setCheckable(true);
    action->setChecked(code == m_messages.Language());
    group->addAction(action);
  }
  connect(edit, &QMenu::aboutToShow, this, &MainWindow::RefreshActions);
}

void MainWindow::SetLanguage(const QString& language) {
  if (!m_messages.SetLanguage(language)) return;
  Retranslate();
  m_manager->OnChangeLanguage();
}

void MainWindow::Retranslate() {
  for (const auto& [action, key] : m_translated) action->setText(Text(key));
  setWindowTitle(Text("IDS_WB_APP"));
  m_modelPane->setWindowTitle(Text("IDS_WB_PANE_MODEL"));
  m_gsetPane->setWindowTitle(Text("IDS_WB_PANE_GSET"));
  m_properties->setWindowTitle(Text("IDS_WB_PANE_PROPERTIES"));
  m_properties->Refresh();
  m_messagePane->setWindowTitle(Text("IDS_WB_PANE_MESSAGES"));
  m_cancel->setText(Text("IDS_WB_CANCEL"));
  RefreshActions();
}

void MainWindow::RefreshActions() {
  const Database& database = m_doc->GetDatabase();
  const auto label = [](const char* key, const CString& title) {
    return title.empty() ? Text(key) : Text(key) + " – " + ToQt(title).replace('&', "&&");
  };
  m_undo->setText(label("IDS_WB_UNDO", database.UndoTitle()));
  m_redo->setText(label("IDS_WB_REDO", database.RedoTitle()));
  m_undo->setEnabled(database.CanUndo());
  m_redo->setEnabled(database.CanRedo());
}

/// The trees draw their texts in the system's colours, so their background has to follow the palette.
void MainWindow::ApplyPalette() {
  m_manager->SetBkColor(FromQt(QApplication::palette().color(QPalette::Base)));
}

void MainWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange && m_manager != nullptr) ApplyPalette();
  QMainWindow::changeEvent(event);
}

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
  restoreState(settings.value("panes").toByteArray());
  for (TreePane* pane : {m_modelPane, m_gsetPane}) {
    pane->SetColumnWidths(settings.value("columns/" + pane->objectName()).toList());
  }
}

// ---- the user's acts ------------------------------------------------------------------------------------

void MainWindow::OnImport() {
  const QString filter = Text("IDS_WB_IMPORT_FILTER") +
                         " (*.step *.stp *.iges *.igs *.brep *.brp *.msh *.unv *.bdf *.nas *.stl *.inp);;" +
                         Text("IDS_WB_ALL_FILES") + " (*)";
  Import(QFileDialog::getOpenFileNames(this, Text("IDS_WB_IMPORT").remove('&'), QString(), filter));
}

void MainWindow::OnUndo() {
  m_doc->GetDatabase().Undo();
}

void MainWindow::OnRedo() {
  m_doc->GetDatabase().Redo();
}

void MainWindow::OnDelete() {
  std::vector<iterator> parts = m_doc->GetSelectBuffer();
  std::erase_if(parts, [this](iterator itr) { return m_doc->GetDatabase().GetDataType(itr) != kDataGeom; });
  if (!parts.empty()) {
    m_doc->GetDatabase().GetGeomPool().TR_Del(parts);
  } else {
    m_modelPane->Bar().GetTreeCtrl().OnMenuEvent(kCommandDeleteMesh);  // of meshes; asks for nested ones
  }
}

void MainWindow::OnFit() {
  m_view->FitAll();
}

void MainWindow::OnShowAll() {
  m_modelPane->Bar().GetTreeCtrl().GetQDRootItem()->OnMenuEvent(kCommandShowAll);
}

void MainWindow::OnHideAll() {
  m_modelPane->Bar().GetTreeCtrl().GetQDRootItem()->OnMenuEvent(kCommandHideAll);
}

void MainWindow::OnPick(iterator itr, bool add) {
  std::vector<iterator> selection = add ? m_doc->GetSelectBuffer() : std::vector<iterator>();
  if (itr != 0) {
    const auto known = std::find(selection.begin(), selection.end(), itr);
    if (known == selection.end()) {
      selection.push_back(itr);
    } else {
      selection.erase(known);
    }
  }
  m_doc->SetSelectBuffer(std::move(selection));
  constexpr int kAnyKind = 0;
  for (TreePane* pane : {m_modelPane, m_gsetPane}) {
    pane->Bar().GetTreeCtrl().SetSelection(kAnyKind, m_doc->GetSelectBuffer());
  }
}

void MainWindow::OnDatabaseChanged(const CQDUpdateRecord& record) {
  // Records that are gone cannot stay selected.
  std::vector<iterator> selection = m_doc->GetSelectBuffer();
  std::erase_if(selection, [this](iterator itr) { return m_doc->GetDatabase().GetDataType(itr) == 0; });
  m_doc->SetSelectBuffer(std::move(selection));
  m_manager->UpdateDB(m_doc.get(), HintOf(record));
  m_view->Apply(record);
  RefreshActions();
}

CPropertiesWnd* MainWindow::GetPropertiesWnd(CQDDocBase* doc) {
  return doc == m_doc.get() ? m_properties : nullptr;
}

bool MainWindow::IsUpToDate() const {
  return !IsImporting() && m_view->IsUpToDate();
}

// ---- import ---------------------------------------------------------------------------------------------

void MainWindow::Import(const QStringList& paths) {
  m_waiting += paths;
  if (m_job == nullptr) StartNextImport();
}

void MainWindow::StartNextImport() {
  if (m_waiting.isEmpty()) return;
  m_job = std::make_unique<ExchangeJob>(m_waiting.takeFirst());
  const QString path = m_job->Path();
  ShowProgress(Text("IDS_WB_IMPORTING", {path}));
  connect(m_job.get(), &ExchangeJob::Progress, m_progress, &QProgressBar::setValue);
  connect(m_job.get(), &ExchangeJob::Finished, this, [this](ImportedModel& model) { StoreImported(model); });
  connect(m_job.get(), &ExchangeJob::Failed, this, [this, path](const QString& reason) {
    if (reason.isEmpty()) {
      Say(Text("IDS_WB_IMPORT_CANCELLED", {path}), false);
    } else {
      ++m_failed;
      Say(Text("IDS_WB_IMPORT_FAILED", {path, reason}), true);
    }
    EndImport();
  });
  m_job->Start();
}

void MainWindow::StoreImported(ImportedModel& model) {
  const QString path = m_job->Path();
  const std::size_t parts = model.parts.size();
  const std::size_t sets = model.meshSets.size();
  const bool first =
      m_doc->GetDatabase().GetGeomPool().Count() == 0 && m_doc->GetDatabase().GetMsetPool().Count() == 0;
  for (const ImportNote& note : model.notes) {
    Say(path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)}), false);
  }
  if (first) {
    m_doc->SetPathName(FromQt(QFileInfo(path).absoluteFilePath()));
    m_manager->ResetFilePath(m_doc.get());
  }
  const CString title = FromQt(Text("IDS_WB_TRANS_IMPORT", {QFileInfo(path).fileName()}));
  StoreImport(m_doc->GetDatabase(), std::move(model), title);
  // An empty branch cannot stand open, so the first records open it.
  for (TreePane* pane : {m_modelPane, m_gsetPane}) {
    if (!first) break;
    for (CQDTreeItem* branch : pane->Bar().GetTreeCtrl().GetQDRootItem()->Children()) branch->Expand(1);
  }
  if (parts > 0) Say(Text("IDS_WB_IMPORTED_PARTS", {path, QLocale().toString(parts)}), false);
  if (sets > 0) Say(Text("IDS_WB_IMPORTED_MESH", {path, QLocale().toString(sets)}), false);
  EndImport();
}

void MainWindow::EndImport() {
  HideProgress();
  // The job is in the middle of its last signal.
  m_job.release()->deleteLater();
  StartNextImport();
}

void MainWindow::ShowProgress(const QString& text) {
  statusBar()->showMessage(text);
  m_progress->setValue(0);
  m_progress->show();
  m_cancel->show();
}

void MainWindow::HideProgress() {
  m_progress->hide();
  m_cancel->hide();
  statusBar()->clearMessage();
}

void MainWindow::SyncTrees() {
  TArray<iterator> parts;
  for (const int cadItem : m_doc->GetDisplay().TakeChangedItems()) {
    parts.push_back(m_doc->GetDatabase().GetGeomPool().ItrOfNumber(cadItem));
  }
  for (TreePane* pane : {m_modelPane, m_gsetPane}) pane->Bar().GetTreeCtrl().RefreshParts(parts);
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

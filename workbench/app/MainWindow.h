#pragma once

#include <QMainWindow>
#include <map>
#include <memory>
#include <vector>

#include "host/CMainFrame.h"
#include "host/MessageOutput.h"
#include "workbench/app/DialogHost.h"
#include "workbench/app/DocumentQuestions.h"
#include "workbench/app/ImportQueue.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/ModelExporter.h"
#include "workbench/app/OtherWindows.h"
#include "workbench/app/ProgressWindow.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/model/Database.h"
#include "workbench/session/Session.h"
#include "workbench/store/DocumentKeeper.h"

class QAction;
class QDockWidget;
class QLabel;
class QMenu;
class QPlainTextEdit;
class QProgressBar;
class QToolButton;

namespace qd::workbench {

class ModelView;
class PropertyPane;
class TreePane;
struct WindowCommand;

/// The main window: one document, its view, its works trees and the property and message panes.
class MainWindow final : public QMainWindow, public CMainFrame, private IMessageOutput {
 public:
  explicit MainWindow(MessageTables& messages);
  ~MainWindow() override;

  /// Imports files one after another. Messages go to the message pane and, for failures, to standard error too.
  void Import(const QStringList& paths);
  bool IsImporting() const { return m_imports->IsRunning(); }
  /// How many imports have failed so far.
  int FailedImports() const { return m_imports->Failed(); }
  /// Opens a document, in this window when nothing was done in it yet, else in one of its own. False, with a
  /// message, when it cannot be opened.
  bool OpenDocument(const QString& path);
  /// Lets opening ask nothing, for programs that nobody watches: a document that wants mending is viewed then.
  void AskNothing() { m_asks = false; }
  /// Writes the document to a path and goes on there. False, with a message, when that cannot be done.
  bool SaveAs(const QString& path);
  /// Asks what is to become of documents that a crash left behind, and recovers one in this window when nothing
  /// was done in it yet and it is not needed for something else; others come in windows of their own.
  void OfferRecovery(bool keepFree = false);
  /// False, with a message, when the file cannot be recovered, or when the window holds something.
  bool Recover(const QString& path);
  static bool IsRecoveryFile(const QString& path);
  /// How many documents could not be opened so far.
  int FailedDocuments() const { return m_failedDocuments; }
  static std::string RecoveryFolder();
  DocumentKeeper& Keeper() { return *m_keeper; }
  /// Whether everything is on screen.
  bool IsUpToDate() const;
  void SetLanguage(const QString& language);

  /// Keep the places of the panes and the widths of the columns from one run to the next.
  void SaveLayout() const;
  void RestoreLayout();

  WorkDocument& Document() { return *m_doc; }
  ModelView& View() { return *m_view; }
  TreePane& ModelTreePane() { return *m_modelPane; }
  TreePane& SetTreePane() { return *m_gsetPane; }
  PropertyPane& Properties() { return *m_properties; }
  bool IsWorking() const { return m_operations->IsRunning() || m_exporter->IsRunning(); }
  /// Writes what is in a scope to a file; what came of it is said when it is done.
  void Export(const QString& path, ExportScope scope = ExportScope::All);

  CPropertiesWnd* GetPropertiesWnd(CQDDocBase* doc) override;
  IWorksTreeManager* GetWorksTreeManager() override {
    return m_session != nullptr ? &m_session->Manager() : nullptr;
  }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void MakePanes();
  void MakeMenus();
  void MakeJobs();
  template <typename Job>
  void Follow(Job& job);
  void AskToWait(const QString& reason);
  QMenu* AddMenu(QMenu* above, const char* key);
  void AddCommand(QMenu& menu, const WindowCommand& command);
  void RunCommand(unsigned number);
  void ListLanguages(QMenu& menu);
  void ListUnits(QMenu& menu);
  void ListVariants(QMenu& menu);
  void SayTableFaults();
  void RefreshActions();
  void RefreshSelection();

  void OnImport();
  void OnExport();
  void BeforeStore(const QString& path);
  void AfterStore();
  bool IsFresh() const;
  void RefreshTitle();
  void OnNewWindow();
  void OnOpen();
  void OnSave();
  void OnSaveAs();
  void OnUnkept(const DocumentError& error);
  void ShowLoaded(const QString& name);
  void AskToMend(const QString& name);
  void AskToRepair(const QString& path, const DocumentError& error, bool keepFree = false);
  void KeepView();
  void RestoreView();
  void RestorePanes(const QByteArray& places);
  static void NoteRecent(const QString& path);
  void ListRecent(QMenu& menu);
  void ShowProgress(const QString& text);
  void HideProgress();
  static constexpr int kWarningTime = 8000;  // milliseconds
  void Warn(const CString& text) override;
  void Say(const QString& text, bool failure);

  bool m_asks = true;
  MessageTables& m_messages;
  std::unique_ptr<WorkDocument> m_doc;
  std::unique_ptr<DocumentKeeper> m_keeper;
  std::unique_ptr<Session> m_session;
  Subscription m_onRecords;
  Subscription m_onDisplay;
  Subscription m_onSelection;
  ModelView* m_view = nullptr;  // these are owned by their Qt parents
  TreePane* m_modelPane = nullptr;
  TreePane* m_gsetPane = nullptr;
  PropertyPane* m_properties = nullptr;
  QDockWidget* m_messagePane = nullptr;
  QPlainTextEdit* m_messageText = nullptr;
  QProgressBar* m_progress = nullptr;
  QLabel* m_selectionText = nullptr;
  QToolButton* m_cancel = nullptr;
  QToolButton* m_wait = nullptr;  // shown while something seems to be lost
  OperationRunner* m_operations = nullptr;
  ImportQueue* m_imports = nullptr;
  ModelExporter* m_exporter = nullptr;
  OtherWindows* m_others = nullptr;
  DocumentQuestions m_questions{this};
  std::unique_ptr<ProgressWindow> m_longWork;
  std::unique_ptr<DialogHost> m_dialogs;
  std::map<unsigned, QAction*> m_actions;  // by the number of the command
  QByteArray m_panePlaces;                 // for when the window shows
  int m_failedDocuments = 0;
  bool m_firstImport = false;
};

}  // namespace qd::workbench

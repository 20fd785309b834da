#pragma once

#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <string>
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
class QMenu;
class QProgressBar;
class QToolButton;

namespace qd::workbench {

class ActScript;
class ConsolePane;
class ManualWindow;
class MessagePane;
class MissingFiles;
class ModelView;
class OwnScripts;
class PropertyPane;
class ScriptEngine;
class StatusLine;
class TreePane;
class WelcomePanel;
struct UnitSystem;
struct WindowCommand;

/// The main window: one document, its view, its works trees and the property and message panes.
class MainWindow final : public QMainWindow, public CMainFrame, private IMessageOutput {
 public:
  explicit MainWindow(MessageTables& messages);
  ~MainWindow() override;

  /// Opens what are documents and imports the others, as OpenDocument and Import do.
  void OpenFiles(const QStringList& paths);
  /// Imports files one after another. Messages go to the message pane and, for failures, to standard error too.
  void Import(const QStringList& paths);
  bool IsImporting() const { return m_imports->IsRunning(); }
  /// How many imports have failed so far.
  int FailedImports() const { return m_imports->Failed(); }
  /// Opens a document, in this window when nothing was done in it yet, else in one of its own. False, with a
  /// message, when it cannot be opened. What is to be imported into it comes with it, and comes all the same then.
  bool OpenDocument(const QString& path, const QStringList& imports = {});
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
  /// Writes the view to a file in any size, in pixels. False, with a message, when that cannot be done.
  bool SavePicture(const QString& path, QSize size);
  /// Hides the parts and mesh sets that a query of the find bar matches. False, with a message, for a wrong one.
  bool HideMatches(const QString& query);

  /// Runs a script on the document once what is being imported has come in; the console shows what it writes.
  void RunScript(const QString& path, const QStringList& arguments = {});
  /// Runs those scripts of the user's folder that the user wants at each start.
  void RunOwnScripts();
  ScriptEngine& Scripts() { return *m_scripts; }
  ConsolePane& Console() { return *m_console; }

  CPropertiesWnd* GetPropertiesWnd(CQDDocBase* doc) override;
  IWorksTreeManager* GetWorksTreeManager() override {
    return m_session != nullptr ? &m_session->Manager() : nullptr;
  }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void MakePanes();
  void MakeMenus();
  void MakeToolbar();
  void MakeStatusBar();
  void MakeJobs();
  void MakeConsole();
  void AddScriptEntries();
  void OnRunScript();
  void OnRecordActs();
  void RefreshRecording();
  void ExpectWork(const ShapeOperation& operation, const std::vector<WorkedPart>& parts);
  template <typename Job>
  void Follow(Job& job);
  void AskToWait(const QString& reason);
  QMenu* AddMenu(QMenu* above, const char* key, const std::function<void(QMenu&)>& fill = nullptr);
  void AddCommand(QMenu& menu, const WindowCommand& command);
  void RunCommand(unsigned number);
  void ShowPickedMenu(const QPoint& screen);
  void ListLanguages(QMenu& menu);
  void ListUnits(QMenu& menu);
  void ListVariants(QMenu& menu);
  void SayTableFaults();
  void ShowManual(const QString& page);
  void RefreshActions();
  void FollowCamera();
  void RefreshSelection();
  void FollowFocus(const QWidget* now);
  /// Numbers are meant in these units from now on; they stay as they are.
  void SetUnits(const UnitSystem& units);
  void RefreshUnits();

  void OnImport();
  void OnExport();
  void OnPicture();
  void BeforeStore(const QString& path);
  void AfterStore(const QString& path);
  bool IsFresh() const;
  void RefreshTitle();
  void OnNewWindow();
  void OnOpen();
  bool OpenHere(const QString& absolute);
  void OnSave();
  void OnSaveAs();
  QString SuggestedPath() const;
  void OnUnkept(const DocumentError& error);
  void ShowLoaded(const QString& name);
  void AskToMend(const QString& name);
  void AskToRepair(const QString& path, const DocumentError& error, bool keepFree = false);
  void KeepView();
  void KeepDisplay();
  void RestoreView();
  void RestorePanes(const QByteArray& places);
  void PlacePanes();
  static constexpr const char* kRecentKey = "recent";  // of the settings
  void NoteRecent(const QString& path) const;
  void ListRecent(QMenu& menu);
  void ShowProgress(const QString& text);
  void HideProgress();
  static constexpr int kWarningTime = 8000;  // milliseconds
  static constexpr int kKeepDisplay =
      2000;  // likewise: often enough for a crash, and many acts are written as one
  void Warn(const CString& text) override;
  void Say(const Message& message);
  void GoTo(const Message& message);

  bool m_asks = true;
  MessageTables& m_messages;
  std::unique_ptr<WorkDocument> m_doc;
  std::unique_ptr<DocumentKeeper> m_keeper;
  std::unique_ptr<Session> m_session;
  Subscription m_onRecords;
  Subscription m_onDisplay;
  Subscription m_onSelection;
  Subscription m_onCamera;
  Subscription m_onSections;
  Subscription m_onPicks;
  Subscription m_onSettings;
  ModelView* m_view = nullptr;  // these are owned by their Qt parents
  TreePane* m_modelPane = nullptr;
  TreePane* m_gsetPane = nullptr;
  PropertyPane* m_properties = nullptr;
  QDockWidget* m_messagePane = nullptr;
  MessagePane* m_told = nullptr;
  WelcomePanel* m_welcome = nullptr;
  ScriptEngine* m_scripts = nullptr;
  ConsolePane* m_console = nullptr;
  ActScript* m_acts = nullptr;
  OwnScripts* m_ownScripts = nullptr;
  QProgressBar* m_progress = nullptr;
  StatusLine* m_status = nullptr;
  QToolButton* m_cancel = nullptr;
  QToolButton* m_wait = nullptr;  // shown while something seems to be lost
  OperationRunner* m_operations = nullptr;
  ImportQueue* m_imports = nullptr;
  ModelExporter* m_exporter = nullptr;
  OtherWindows* m_others = nullptr;
  MissingFiles* m_missing = nullptr;
  ManualWindow* m_manual = nullptr;  // once somebody asked for it
  DocumentQuestions m_questions{this};
  std::unique_ptr<ProgressWindow> m_longWork;
  std::unique_ptr<DialogHost> m_dialogs;
  std::map<unsigned, QAction*> m_actions;  // by the number of the command
  QByteArray m_panePlaces;                 // for when the window shows
  QTimer m_keepDisplay;                    // runs while a change of the display is not in the file
  std::string m_keptDisplay;               // as it stands in the file
  std::string m_keptLooking;               // likewise
  std::string m_keptUnits;                 // likewise
  QMenu* m_unitMenu = nullptr;             // owned by the menu above it
  int m_failedDocuments = 0;
  bool m_firstImport = false;
};

}  // namespace qd::workbench

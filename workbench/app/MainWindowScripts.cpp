// Scripts in the main window.

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>
#include <algorithm>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/console/ActScript.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/LineOfWork.h"
#include "workbench/app/console/OwnScripts.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/ScriptWords.h"
#include "workbench/session/WindowCommands.h"

namespace qd::workbench {

namespace {
constexpr const char* kPythonFiles = "Python (*.py)";
}

void MainWindow::MakeConsole() {
  const auto setLanguage = [this](const QString& language) {
    if (!m_messages.Languages().contains(language)) return false;
    SetLanguage(language);
    return true;
  };
  m_scripts = new ScriptEngine(
      {*m_doc, [this]() -> Session& { return *m_session; },
       [this](const UnitSystem& units) {
         SetUnits(units);
         m_keepDisplay.start();
       },
       setLanguage, [this](const QString& path) { return SaveAs(path); },
       [this](const QString& path) { BeforeStore(path); }, [this](const QString& path) { AfterStore(path); }},
      this);
  m_console = new ConsolePane(*m_scripts, this);
  addDockWidget(Qt::BottomDockWidgetArea, m_console);
  splitDockWidget(m_messagePane, m_console, Qt::Horizontal);
  resizeDocks({m_messagePane, m_console}, {500, 500}, Qt::Horizontal);
  m_console->hide();
  m_acts = new ActScript(*m_doc, *m_scripts, this);
  connect(m_acts, &ActScript::Wrote, m_console, &ConsolePane::ShowTranscript);
  m_ownScripts = new OwnScripts(*m_scripts, this);
  connect(m_ownScripts, &OwnScripts::Chosen, this, [this](const QString& path) { RunScript(path); });
  connect(m_ownScripts, &OwnScripts::Said, this, [this](const Message& message) { Say(message); });
  connect(m_ownScripts, &OwnScripts::Failed, m_console, &ConsolePane::Come);
  connect(m_console, &QDockWidget::visibilityChanged, this, [this](bool visible) {
    if (visible) m_acts->Begin();
  });
}

void MainWindow::RunOwnScripts() {
  m_ownScripts->RunThoseOfTheStart();
}

/// Below the menus of rows stands what scripts have added for those of the selected records that it is for.
void MainWindow::AddScriptEntries() {
  const auto meant = [this](const ScriptEntry& entry) {
    std::vector<iterator> records = m_doc->GetSelection().records;
    std::erase_if(records, [&entry](iterator itr) {
      const char* kind = ScriptKindOf(TypeOf(itr));
      if (kind == nullptr || entry.kinds.empty()) return kind == nullptr;
      return std::find(entry.kinds.begin(), entry.kinds.end(), kind) == entry.kinds.end();
    });
    return records;
  };
  const auto list = [this, meant, entries = std::vector<ScriptEntry>()]() mutable {
    entries = m_scripts->Entries();
    std::vector<MenuEntry> more;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (meant(entries[i]).empty()) continue;
      more.push_back(
          {.command = Session::kFirstOfHost + static_cast<unsigned>(i), .key = entries[i].title, .literal = true});
    }
    return more;
  };
  m_session->SetMore({list, [this, meant](unsigned number) {
                        const std::vector<ScriptEntry> entries = m_scripts->Entries();
                        const std::size_t place = number - Session::kFirstOfHost;
                        if (place < entries.size()) m_scripts->RunEntry(place, meant(entries[place]));
                      }});
}

void MainWindow::OnRunScript() {
  const QString path = QFileDialog::getOpenFileName(this, TitleText("IDS_WB_RUN_SCRIPT"), QString(), kPythonFiles);
  if (!path.isEmpty()) RunScript(path);
}

void MainWindow::RefreshRecording() {
  QAction* action = m_actions.at(kRecordActs);
  action->setCheckable(true);
  action->setChecked(m_acts->IsRecording());
}

/// Begins to record, or ends it and asks where the script goes.
void MainWindow::OnRecordActs() {
  if (!m_acts->IsRecording()) {
    m_console->Come();
    m_acts->StartRecording();
  } else {
    QString path = QFileDialog::getSaveFileName(this, Text("IDS_WB_SAVE_RECORDING"), QString(), kPythonFiles);
    if (path.isEmpty()) return RefreshRecording();  // it goes on
    if (QFileInfo(path).suffix().isEmpty()) path += ".py";
    const QByteArray script = m_acts->Recording().toUtf8();
    QSaveFile file(path);
    const bool saved = file.open(QIODevice::WriteOnly) && file.write(script) == script.size() && file.commit();
    if (saved) m_acts->StopRecording();  // else it goes on, and can be saved elsewhere
    Say({Text(saved ? "IDS_WB_SAVED" : "IDS_WB_RECORDING_FAILED", {path}),
         saved ? Severity::Note : Severity::Failure, QFileInfo(path).absoluteFilePath()});
  }
  RefreshRecording();
}

void MainWindow::ExpectWork(const ShapeOperation& operation, const std::vector<WorkedPart>& parts) {
  m_acts->Expect(LineOfWork(m_doc->GetDatabase(), operation, parts));
}

void MainWindow::RunScript(const QString& path, const QStringList& arguments) {
  constexpr int kLook = 50;  // milliseconds
  m_console->Come();
  if (IsImporting() || m_scripts->IsBusy()) {  // one after another, each with its own end
    QTimer::singleShot(kLook, this, [this, path, arguments] { RunScript(path, arguments); });
    return;
  }
  m_console->ShowTranscript("# " + path + "\n");
  m_scripts->RunFile(path, arguments);
}

}  // namespace qd::workbench

// Scripts in the main window.

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/console/ActScript.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/LineOfWork.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/session/PythonText.h"
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
  connect(m_console, &QDockWidget::visibilityChanged, this, [this](bool visible) {
    if (visible) m_acts->Begin();
  });
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

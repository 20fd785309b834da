#include "workbench/app/console/ActScript.h"

#include "platform/qt/QtConvert.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/session/PythonText.h"

namespace qd::workbench {

ActScript::ActScript(WorkDocument& doc, ScriptEngine& engine, QObject* parent)
    : QObject(parent), m_doc(doc), m_engine(engine) {
  constexpr int kMoment = 50;  // milliseconds
  m_flush.setInterval(kMoment);
  connect(&m_flush, &QTimer::timeout, this, [this] { m_acts->Flush(); });
  connect(&m_engine, &ScriptEngine::Ran, this, &ActScript::OnRan);
}

void ActScript::Begin() {
  if (m_acts == nullptr) Follow();
}

void ActScript::BeginAnew() {
  if (m_acts != nullptr) Follow();
}

void ActScript::Follow() {
  m_acts = std::make_unique<ActRecorder>(m_doc, [this](const std::string& lines) { Write(lines); });
  m_acts->SetIsSilent([this] { return m_engine.IsServing(); });
  m_flush.start();
}

void ActScript::Expect(const std::string& line) {
  if (m_acts != nullptr) m_acts->Expect(line);
}

void ActScript::Say(const std::string& line) {
  if (m_acts != nullptr && !m_engine.IsServing()) m_acts->Say(line);
}

void ActScript::Write(const std::string& lines) {
  if (m_recording) *m_recording += lines;
  emit Wrote(QString::fromStdString(lines));
}

void ActScript::OnRan(const QString& lines, int status) {
  if (m_acts != nullptr) m_acts->Flush();
  if (!m_recording) return;
  const std::string text = lines.toStdString();
  if (status == 0) {
    *m_recording += text + (text.ends_with('\n') ? "" : "\n");
  } else {
    *m_recording += "# ended with an error; what it did before that stays, and is not done here: " +
                    PythonText(FromQt(lines)) + "\n";
  }
}

void ActScript::StartRecording() {
  Begin();
  m_acts->Flush();
  m_recording.emplace();
}

bool ActScript::HasRecorded() {
  if (m_recording) m_acts->Flush();
  return m_recording && !m_recording->empty();
}

QString ActScript::Recording() {
  if (!m_recording) return {};
  m_acts->Flush();
  return QString::fromStdString(
      "# Recorded in the workbench. Runs in its window, and without one on a file:\n"
      "# workbench --script SCRIPT FILE\n"
      "import sys\n"
      "\n"
      "import qd\n"
      "\n"
      "doc = qd.current() or (qd.open(sys.argv[1]) if len(sys.argv) > 1 else qd.Document())\n"
      "\n" +
      *m_recording);
}

}  // namespace qd::workbench

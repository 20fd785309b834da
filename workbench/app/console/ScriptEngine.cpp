#include "workbench/app/console/ScriptEngine.h"

#include <dlfcn.h>

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <utility>

#include "workbench/app/ExchangeJob.h"
#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/session/PythonText.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// Input of the user; what moves and shows the window is none.
bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::DragEnter:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

}  // namespace

ScriptEngine::ScriptEngine(Window window, QWidget* parent) : QObject(parent), m_window(std::move(window)) {
  constexpr int kTurn = 20;  // milliseconds
  m_show.setSingleShot(true);
  m_show.setInterval(kTurn);
  connect(&m_show, &QTimer::timeout, this, &ScriptEngine::ShowOutput);
}

ScriptEngine::~ScriptEngine() {
  if (m_interpreter != nullptr) m_interpreter->Detach();
}

bool ScriptEngine::Load() {
  if (m_interpreter != nullptr) return true;
  const std::string library = NameToBytes(QCoreApplication::applicationDirPath()) + "/qd_interpreter.so";
  // Modules of Python that are libraries look for Python's names among those that all see.
  void* loaded = dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL);
  const auto make =
      reinterpret_cast<InterpreterOf*>(loaded != nullptr ? dlsym(loaded, kInterpreterName) : nullptr);
  if (make == nullptr) {
    emit Wrote(Text("IDS_WB_CONSOLE_NO_PYTHON", {QString::fromLocal8Bit(dlerror())}) + "\n", true);
    return false;
  }
  m_interpreter = make();
  m_interpreter->Attach(*this);
  return true;
}

bool ScriptEngine::IsWhole(const QString& lines) {
  return !Load() || m_interpreter->IsWhole(lines.toStdString());
}

QStringList ScriptEngine::Complete(const QString& text) {
  QStringList names;
  if (!Load()) return names;
  for (const std::string& name : m_interpreter->Complete(text.toStdString()))
    names << QString::fromStdString(name);
  return names;
}

void ScriptEngine::RunLines(const QString& lines) {
  if (!Load()) return;
  m_running = lines;
  m_interpreter->RunLines(lines.toStdString());
  Refresh();
}

void ScriptEngine::RunFile(const QString& path, const QStringList& arguments) {
  if (!Load()) return;
  std::vector<std::string> words;
  for (const QString& argument : arguments) words.push_back(NameToBytes(argument));
  m_running = "# ran " + QString::fromStdString(PythonPath(NameToBytes(path)));
  m_interpreter->RunFile(NameToBytes(path), words);
  Refresh();
}

std::vector<ScriptEntry> ScriptEngine::Entries() const {
  return m_interpreter != nullptr ? m_interpreter->Entries() : std::vector<ScriptEntry>();
}

void ScriptEngine::RunEntry(std::size_t place, const std::vector<iterator>& records) {
  const std::vector<ScriptEntry> entries = Entries();
  if (place >= entries.size()) return;
  m_running = "# ran the entry " + QString::fromStdString(PythonText(FromUtf8(entries[place].title)));
  m_interpreter->RunEntry(place, records);
  Refresh();
}

void ScriptEngine::Stop() {
  if (m_interpreter == nullptr) return;
  m_stops = m_long != nullptr;  // it asks whether to go on; what is not begun yet is given up
  m_interpreter->Stop();
}

bool ScriptEngine::TakeWarning(const CString& text) {
  if (!IsServing()) return false;
  m_interpreter->Warn(text);
  return true;
}

// ---- what scripts ask -----------------------------------------------------------------------------------

std::string ScriptEngine::ExchangeProgram() {
  return workbench::ExchangeProgram();
}

bool ScriptEngine::SetLanguage(const std::string& language) {
  return m_window.setLanguage(QString::fromStdString(language));
}

bool ScriptEngine::Save(const std::string& path) {
  return m_window.save(NameFromBytes(path));
}

void ScriptEngine::BeforeImport(const std::string& path) {
  m_window.beforeImport(NameFromBytes(path));
}

void ScriptEngine::AfterImport(const std::string& path) {
  m_window.afterImport(NameFromBytes(path));
}

bool ScriptEngine::ShowProgress(double done) {
  if (m_long == nullptr) {
    m_long = std::make_unique<QuietTime>();
    qApp->installEventFilter(this);
  }
  emit Progress(done);
  QCoreApplication::processEvents();
  return !m_stops;
}

void ScriptEngine::EndProgress() {
  if (m_long == nullptr) return;
  m_long.reset();
  m_stops = false;
  if (m_act == nullptr) qApp->removeEventFilter(this);
  emit Progress(-1);
}

void ScriptEngine::HoldInput(bool hold) {
  if (hold == (m_act != nullptr)) return;
  m_act = hold ? std::make_unique<QuietTime>() : nullptr;
  if (hold) {
    while (QWidget* popup = QApplication::activePopupWidget())
      popup->close();  // it keeps all input, and gets none
    return qApp->installEventFilter(this);
  }
  if (m_long == nullptr) qApp->removeEventFilter(this);
}

void ScriptEngine::Wake() {
  QMetaObject::invokeMethod(this, &ScriptEngine::Look, Qt::QueuedConnection);
}

/// Nobody but the script works on the document while an act of it is open or a long call runs; its pane is for
/// stopping it.
bool ScriptEngine::eventFilter(QObject* target, QEvent* event) {
  if (!IsInput(event->type())) return false;
  const auto* widget = qobject_cast<const QWidget*>(target);
  if (widget == nullptr) return event->type() == QEvent::Shortcut;
  while (widget != nullptr && widget != m_free) widget = widget->parentWidget();  // its menus are windows
  return widget == nullptr;
}

void ScriptEngine::Look() {
  // A long call is served already, and an act that is open is the script's own.
  const auto serve = [this] {
    // By a timer: what is posted comes before all timers and paints of the window.
    if (m_long == nullptr && m_interpreter->Serve()) QTimer::singleShot(1, this, &ScriptEngine::Look);
    if (m_interpreter->HasOutput() && !m_show.isActive()) m_show.start();
    Refresh();
  };
  if (m_act != nullptr || m_long != nullptr) return serve();
  // An act would take the input from a question that is open, and nobody could stop it.
  constexpr int kLook = 50;  // milliseconds
  if (QApplication::activeModalWidget() != nullptr) {
    QTimer::singleShot(kLook, this, &ScriptEngine::Look);
    return;
  }
  QuietTime::WhenOver(this, serve);
}

/// In turns: who writes much does not hold the window up.
void ScriptEngine::ShowOutput() {
  for (const ScriptOutput& output : m_interpreter->TakeOutput()) {
    emit Wrote(QString::fromStdString(output.text), output.isError);
  }
  if (m_interpreter->HasOutput()) m_show.start();
  Refresh();
}

void ScriptEngine::Refresh() {
  const bool busy = IsBusy();
  if (busy == m_wasBusy) return;
  m_wasBusy = busy;
  if (!busy) emit Ran(std::exchange(m_running, {}), m_interpreter->Status());
  emit Turned();
}

}  // namespace qd::workbench

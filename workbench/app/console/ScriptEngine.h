#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>

#include "workbench/app/QuietTime.h"
#include "workbench/python/Interpreter.h"

namespace qd::workbench {

/// Scripts in a window: Python, which is loaded when the first one is to run, on the window's document.
///
/// Python runs on a thread of its own and its calls come to this one. Were it on this thread, a script that waits
/// for a file, a program or the time would hold up the window; and were events let in while it computes, whatever
/// the user did then would happen inside of the script's call.
class ScriptEngine final : public QObject, private IScriptWindow {
  Q_OBJECT

 public:
  /// What the window does for scripts.
  struct Window {
    WorkDocument& doc;
    std::function<Session&()> session;
    std::function<void(const UnitSystem&)> setUnits;
    std::function<bool(const QString&)> setLanguage;
    std::function<bool(const QString&)> save;
    std::function<void(const QString&)> beforeImport;
    std::function<void(const QString&)> afterImport;
  };

  ScriptEngine(Window window, QWidget* parent);
  ~ScriptEngine() override;

  /// Loads Python if it is not there yet. False where it is not installed; why is written then.
  bool Load();
  bool IsLoaded() const { return m_interpreter != nullptr; }
  /// Until what a script wrote is shown.
  bool IsBusy() const {
    return m_interpreter != nullptr && (m_interpreter->IsBusy() || m_interpreter->HasOutput());
  }
  bool IsWhole(const QString& lines);
  QStringList Complete(const QString& text);
  void RunLines(const QString& lines);
  void RunFile(const QString& path, const QStringList& arguments);
  void Stop();
  /// What scripts have added to the menus of rows; see IInterpreter.
  std::vector<ScriptEntry> Entries() const;
  void RunEntry(std::size_t place, const std::vector<iterator>& records);

  /// Input for this widget passes while a script holds the rest of the window.
  void SetFree(QWidget* free) { m_free = free; }
  /// Whether a warning is for the script that is served, which gets it then.
  bool TakeWarning(const CString& text);
  /// Whether what happens now is the work of a script.
  bool IsServing() const { return m_interpreter != nullptr && m_interpreter->IsServing(); }

 signals:
  /// Lines that were typed, or the file of a script as a comment, have ended with a status.
  void Ran(const QString& lines, int status);
  void Wrote(const QString& text, bool isError);
  /// Something began or has ended.
  void Turned();
  /// 0 to 1 while a long call runs; below 0 when it is over.
  void Progress(double done);

 private:
  WorkDocument& Document() override { return m_window.doc; }
  Session& GetSession() override { return m_window.session(); }
  std::string ExchangeProgram() override;
  void SetUnits(const UnitSystem& units) override { m_window.setUnits(units); }
  bool SetLanguage(const std::string& language) override;
  bool Save(const std::string& path) override;
  void BeforeImport(const std::string& path) override;
  void AfterImport(const std::string& path) override;
  bool ShowProgress(double done) override;
  void EndProgress() override;
  void HoldInput(bool hold) override;
  void Wake() override;

  bool eventFilter(QObject* target, QEvent* event) override;
  void Look();
  void ShowOutput();
  void Refresh();

  Window m_window;
  IInterpreter* m_interpreter = nullptr;  // of the program
  QWidget* m_free = nullptr;
  std::unique_ptr<QuietTime> m_act;   // while an act of a script is open
  std::unique_ptr<QuietTime> m_long;  // while a long call runs
  QTimer m_show;
  QString m_running;  // lines, or a comment
  bool m_stops = false;
  bool m_wasBusy = false;
};

}  // namespace qd::workbench

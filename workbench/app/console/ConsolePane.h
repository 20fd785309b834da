#pragma once

#include <QDockWidget>

class QPlainTextEdit;
class QProgressBar;
class QToolButton;

namespace qd::workbench {

class ConsoleInput;
class ScriptEngine;

/// The console: what scripts write and what acts of the window are in Python, and a field for lines of one's own.
class ConsolePane final : public QDockWidget {
  Q_OBJECT

 public:
  ConsolePane(ScriptEngine& engine, QWidget* parent);

  /// Shows it with the keyboard in its field, or hides it when the keyboard is there already.
  void Toggle();
  /// What it is to be seen for.
  void Come();
  ConsoleInput& Input() { return *m_input; }
  QPlainTextEdit& Output() { return *m_output; }
  QToolButton& StopButton() { return *m_stop; }
  /// Shows lines that were run by the window, not here.
  void ShowTranscript(const QString& lines);
  void ChangeLanguage();

 private:
  enum class Voice { Plain, Error, Echo, Transcript };
  void Write(const QString& text, Voice voice);
  void Run(const QString& lines);
  void Refresh();

  ScriptEngine& m_engine;
  QPlainTextEdit* m_output;  // these are owned by their Qt parents
  ConsoleInput* m_input;
  QToolButton* m_stop;
  QProgressBar* m_progress;
  int m_lineLength = 0;
};

}  // namespace qd::workbench

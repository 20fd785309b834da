#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>

#include "workbench/session/ActRecorder.h"

namespace qd::workbench {

class ScriptEngine;

/// The acts of a window as a script: shown in the console as they are done, and kept while they are recorded. What
/// was typed in the console is recorded as it was typed, unless it ended with an error.
class ActScript final : public QObject {
  Q_OBJECT

 public:
  ActScript(WorkDocument& doc, ScriptEngine& engine, QObject* parent);

  /// Follows the document from now on, if it does not yet.
  void Begin();
  /// The document was replaced as a whole; for those who follow it.
  void BeginAnew();
  /// See ActRecorder.
  void Expect(const std::string& line);
  void Say(const std::string& line);

  bool IsRecording() const { return m_recording.has_value(); }
  /// Whether there is something in a recording that goes on.
  bool HasRecorded();
  void StartRecording();
  /// The script so far, which works with and without a window.
  QString Recording();
  void StopRecording() { m_recording.reset(); }

 signals:
  void Wrote(const QString& lines);

 private:
  void Follow();
  void Write(const std::string& lines);
  void OnRan(const QString& lines, int status);

  WorkDocument& m_doc;
  ScriptEngine& m_engine;
  std::unique_ptr<ActRecorder> m_acts;  // null until somebody wants to see it
  std::optional<std::string> m_recording;
  QTimer m_flush;  // until when an act may get more
};

}  // namespace qd::workbench

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "workbench/session/Session.h"
#include "workbench/text/Units.h"

namespace qd::workbench {

/// What scripts ask of the window that they run in. On the window's thread, but for what is said to be otherwise.
class IScriptWindow {
 public:
  virtual WorkDocument& Document() = 0;
  virtual Session& GetSession() = 0;
  virtual std::string ExchangeProgram() = 0;
  /// Numbers are meant in these units from now on.
  virtual void SetUnits(const UnitSystem& units) = 0;
  /// False when there is no such language.
  virtual bool SetLanguage(const std::string& language) = 0;
  /// Writes the document to a file and goes on there. False, with a warning, when that cannot be done.
  virtual bool Save(const std::string& path) = 0;
  /// Around the act by which a file comes in.
  virtual void BeforeImport(const std::string& path) = 0;
  virtual void AfterImport(const std::string& path) = 0;
  /// Shows how far a long call of a script is, 0 to 1, and lets the window draw. False when it is to end.
  virtual bool ShowProgress(double done) = 0;
  virtual void EndProgress() = 0;
  /// While an act of a script is open nobody else may change the document.
  virtual void HoldInput(bool hold) = 0;
  /// From any thread: something waits in the interpreter for Serve and TakeOutput.
  virtual void Wake() = 0;

 protected:
  ~IScriptWindow() = default;
};

/// What a script wrote.
struct ScriptOutput {
  std::string text;  ///< UTF-8
  bool isError = false;
};

/// What a script has added to the menus of the trees' rows.
struct ScriptEntry {
  std::string title;               ///< UTF-8
  std::vector<std::string> kinds;  ///< of records that it is for, as scripts call them; any for none
};

/// Python in the program of a window. It runs on a thread of its own, so that whatever a script waits for, the
/// window does not; what a script asks of documents comes to the window's thread one call after another, when
/// that has nothing else in hand, so that the model, the trees and the view are touched by one thread only. There
/// is one for the program. On the window's thread.
class IInterpreter {
 public:
  /// Scripts work in this window from now on, with nothing left of what was typed before.
  virtual void Attach(IScriptWindow& window) = 0;
  /// Ends what runs; calls of scripts that do not end fail from now on.
  virtual void Detach() = 0;

  /// Whether lines that were typed are all of a statement.
  virtual bool IsWhole(const std::string& lines) = 0;
  /// Runs lines that were typed, or a script of a file with its arguments. One after another.
  virtual void RunLines(const std::string& lines) = 0;
  virtual void RunFile(const std::string& path, const std::vector<std::string>& arguments) = 0;
  /// What scripts have added to menus of rows since Attach, and does one of it, by its place, with some records.
  virtual std::vector<ScriptEntry> Entries() const = 0;
  virtual void RunEntry(std::size_t place, const std::vector<iterator>& records) = 0;
  virtual bool IsBusy() const = 0;
  /// What the last of them ended with: 0, or another number for an error.
  virtual int Status() const = 0;
  /// Interrupts what runs, as Ctrl+C in a terminal does.
  virtual void Stop() = 0;
  /// What the name that a text ends with can be completed to, by looking at what is there: nothing is called.
  virtual std::vector<std::string> Complete(const std::string& text) = 0;

  /// Does what scripts ask of the window, for a moment. Called after Wake, when nobody works on the document. True
  /// when there is more to do, once the window had its turn.
  virtual bool Serve() = 0;
  /// Whether what happens now is the work of a script.
  virtual bool IsServing() const = 0;
  /// What scripts wrote since the last call; a part, when it is much.
  virtual std::vector<ScriptOutput> TakeOutput() = 0;
  virtual bool HasOutput() const = 0;
  /// What was warned of goes to the script that is served.
  virtual void Warn(const CString& text) = 0;

 protected:
  ~IInterpreter() = default;
};

/// What the library of the interpreter has under this name.
using InterpreterOf = IInterpreter*();
inline constexpr const char* kInterpreterName = "qd_interpreter";

}  // namespace qd::workbench

#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/Act.h"
#include "workbench/batch/BatchDocument.h"
#include "workbench/python/Interpreter.h"

namespace qd::workbench::script {

namespace py = pybind11;

/// qd.Error: what went wrong, in the program's words.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};
/// qd.GoneError: the record, or the document, is not there any more.
struct Gone : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class ScriptDocument;
using DocumentPtr = std::shared_ptr<ScriptDocument>;

/// Where the module works: in Python's own program, or in that of a window.
class IPlace {
 public:
  /// What all documents of the program share.
  virtual Windowless& Surroundings() = 0;
  /// Makes sentences and titles those of a language. False when there is none of this code.
  virtual bool SetLanguage(const std::string& language) = 0;
  /// The window that scripts work in, null for none.
  virtual IScriptWindow* Window() = 0;
  /// The document of that window.
  virtual DocumentPtr Current() = 0;
  /// Runs what touches documents on the thread that they belong to, and waits for it.
  virtual void Run(const std::function<void()>& work) = 0;
  /// Likewise, some time.
  virtual void Later(std::function<void()> work) = 0;
  /// Adds an entry to the menus of rows. False where there are none.
  virtual bool AddEntry(ScriptEntry entry, const py::object& function) = 0;

 protected:
  ~IPlace() = default;
};
/// Each library that has the module says what it is.
IPlace& Place();
inline Windowless& Surroundings() {
  return Place().Surroundings();
}
/// The program that reads files and works on shapes for scripts: beside a library of this program, or where the
/// build or the installation puts it from there.
std::string FindExchangeProgram();
/// What the module consists of, without what its place adds.
void FillModule(py::module_& module);

/// Shows the progress of one piece of long work, to a callable of the script or, without one, in the terminal, and
/// lets an interrupt from the keyboard end it. Other threads of the script go on meanwhile; the document is of no
/// use to them until the work is done.
class Progress {
 public:
  Progress(ScriptDocument& document, py::object call);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  ProgressCall Call() {
    return [this](double done) { return GoOn(done); };
  }
  /// Throws what the callable has thrown, or KeyboardInterrupt, when that has ended the work.
  void Rethrow() const;

 private:
  using Clock = std::chrono::steady_clock;
  bool GoOn(double done);
  void Show(double done);
  void ShowIn(IScriptWindow& window, double done);

  ScriptDocument& m_document;
  py::object m_call;
  bool m_terminal = false;
  bool m_shown = false;
  Clock::time_point m_next;
  std::exception_ptr m_error;
};

/// A document of a script. Records hold it, so it lives as long as they do, but is of no use once it is closed.
class ScriptDocument : public std::enable_shared_from_this<ScriptDocument> {
 public:
  ScriptDocument() : m_batch(std::make_unique<BatchDocument>(Surroundings(), BatchDocument::Shapes::Drawn)) {}
  /// The open document of a window.
  explicit ScriptDocument(IScriptWindow& window);
  ~ScriptDocument();
  ScriptDocument(const ScriptDocument&) = delete;
  ScriptDocument& operator=(const ScriptDocument&) = delete;

  /// Throws when the document was closed, or is worked on by a call that has not ended.
  BatchDocument& Batch() const;
  void SetBusy(bool busy) { m_busy = busy; }
  Database& Data() const { return Batch().Data(); }
  void Close();
  /// Null for a document of the script's own.
  IScriptWindow* Window() const { return m_window; }
  /// The window goes, and its document with it.
  void LoseWindow();
  void SetUnits(const UnitSystem& units);
  bool IsClosed() const { return m_batch == nullptr; }

  /// Ends what a call has done: warnings become Python's, and a failure an exception.
  void Finish(const Outcome& outcome, const Progress* progress = nullptr) const;
  /// Likewise for acts that answer 1 or 0.
  void Require(int done) const;

  void Begin(const std::string& title);
  /// Keeps the open act, or takes it back.
  void End(bool keep);
  bool IsInAct() const { return m_act != nullptr; }

 private:
  IScriptWindow* m_window = nullptr;
  std::unique_ptr<BatchDocument> m_batch;
  std::unique_ptr<OpenAct> m_act;  // goes before the document
  bool m_busy = false;
};

/// A record of a document, by its number: it is looked up at each use.
struct Record {
  DocumentPtr document;
  iterator itr = 0;

  Database& Data() const { return document->Data(); }
  bool Exists() const { return !document->IsClosed() && Data().GetDataType(itr) != 0; }
  /// Throws Gone when it was deleted.
  void Need() const;
  bool operator==(const Record& other) const { return itr == other.itr && document == other.document; }
};
struct Part : Record {};
struct MeshSet : Record {};
struct Group : Record {};
struct Material : Record {};
struct CoordinateSystem : Record {};

/// A record as an object of its kind; None for 0.
py::object Wrap(const DocumentPtr& document, iterator itr);
py::list WrapAll(const DocumentPtr& document, const std::vector<iterator>& itrs);
/// The numbers of records of a script: one, or any sequence of them. Throws for those of another document, and for
/// those that are gone.
std::vector<iterator> Unwrap(const ScriptDocument& document, const py::object& records);

/// Texts go to and fro as UTF-8; what is no character becomes U+FFFD.
py::str ToPython(const CString& text);
CString FromPython(const py::str& text);

void BindRecords(py::module_& module);
void BindMeshes(py::module_& module, py::class_<Part, Record>& part, py::class_<MeshSet, Record>& meshSet);
void BindLooks(py::class_<Part, Record>& part, py::class_<MeshSet, Record>& meshSet);
void BindSystems(py::module_& module);
void BindDocument(py::module_& module);
void BindShapes(py::class_<ScriptDocument, DocumentPtr>& document);
void BindDocumentLooks(py::class_<ScriptDocument, DocumentPtr>& document);

}  // namespace qd::workbench::script

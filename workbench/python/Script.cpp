#include "workbench/python/Script.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <utility>

#include "host/CQDUnitCtrl.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench::script {

std::string FindExchangeProgram() {
  namespace fs = std::filesystem;
  Dl_info info{};
  fs::path here;
  if (dladdr(reinterpret_cast<const void*>(&FindExchangeProgram), &info) != 0 && info.dli_fname != nullptr) {
    std::error_code failed;
    here = fs::weakly_canonical(info.dli_fname, failed).parent_path();
  }
  for (const char* folder : {".", "../bin", QD_PROGRAMS_FROM_MODULE}) {
    std::error_code failed;
    const fs::path program = here / folder / "qd_exchange";
    if (fs::is_regular_file(program, failed)) return fs::weakly_canonical(program, failed).string();
  }
  return "qd_exchange";
}

// ---- progress -------------------------------------------------------------------------------------------

Progress::Progress(ScriptDocument& document, py::object call)
    : m_document(document), m_call(std::move(call)), m_next(Clock::now()) {
  constexpr std::chrono::milliseconds kSoon{500};  // what is done by then needs no progress
  m_terminal = Place().Window() == nullptr && m_call.is_none() && isatty(STDERR_FILENO) != 0;
  if (m_terminal) m_next += kSoon;
}

Progress::~Progress() {
  if (IScriptWindow* window = Place().Window()) window->EndProgress();
  if (m_shown) std::fputs("\r      \r", stderr);
}

/// Work asks very often; the script is asked now and then.
bool Progress::GoOn(double done) {
  if (m_error != nullptr) return false;
  constexpr std::chrono::milliseconds kStep{50};
  const Clock::time_point now = Clock::now();
  if (now < m_next) return true;
  m_next = now + kStep;
  m_document.SetBusy(true);
  try {
    if (IScriptWindow* window = Place().Window()) {
      ShowIn(*window, done);
    } else {
      { const py::gil_scoped_release others; }
      if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    }
    Show(done);
  } catch (...) {
    m_error = std::current_exception();
  }
  m_document.SetBusy(false);
  return m_error == nullptr;
}

/// The window goes on meanwhile. Interrupts come to Python on another thread than this.
void Progress::ShowIn(IScriptWindow& window, double done) {
  bool goesOn = false;
  {
    const py::gil_scoped_release others;
    goesOn = window.ShowProgress(done);
  }
  if (goesOn) return;
  PyErr_SetNone(PyExc_KeyboardInterrupt);
  throw py::error_already_set();
}

void Progress::Show(double done) {
  if (!m_call.is_none()) m_call(done);
  if (!m_terminal) return;
  constexpr double kPercent = 100;
  std::fprintf(stderr, "\r%3.0f %%", done * kPercent);
  m_shown = true;
}

void Progress::Rethrow() const {
  if (m_error != nullptr) std::rethrow_exception(m_error);
}

// ---- documents ------------------------------------------------------------------------------------------

ScriptDocument::ScriptDocument(IScriptWindow& window)
    : m_window(&window),
      m_batch(std::make_unique<BatchDocument>(Surroundings(), window.Document(), window.GetSession())) {}

/// The last to hold it may be a script, on its own thread.
ScriptDocument::~ScriptDocument() {
  if (m_batch == nullptr) return;
  Place().Later([batch = std::shared_ptr(std::move(m_batch)), act = std::shared_ptr(std::move(m_act))]() mutable {
    act.reset();
    batch.reset();
  });
}

BatchDocument& ScriptDocument::Batch() const {
  if (m_batch == nullptr) throw Gone("the document is closed");
  if (m_busy) throw Failure("the document is being worked on");
  if (m_window != nullptr) m_batch->SetUnits(FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength()));
  return *m_batch;
}

void ScriptDocument::SetUnits(const UnitSystem& units) {
  Batch().SetUnits(units);
  if (m_window != nullptr) m_window->SetUnits(units);
}

void ScriptDocument::Close() {
  if (m_window != nullptr) throw Failure("the document is that of the window, and closes with it");
  if (m_batch != nullptr) static_cast<void>(Batch());
  m_act.reset();
  m_batch.reset();
}

void ScriptDocument::LoseWindow() {
  End(false);
  m_batch.reset();
  m_window = nullptr;
}

void ScriptDocument::Finish(const Outcome& outcome, const Progress* progress) const {
  std::vector<CString> notes = outcome.notes;
  for (CString& warning : Batch().TakeWarnings()) notes.push_back(std::move(warning));
  if (progress != nullptr) progress->Rethrow();
  const py::object category = py::module_::import("qd").attr("Note");
  for (const CString& note : notes) {
    if (PyErr_WarnEx(category.ptr(), ToUtf8(note).c_str(), 1) != 0) throw py::error_already_set();
  }
  if (!outcome.IsGood()) throw Failure(ToUtf8(outcome.fault));
}

void ScriptDocument::Require(int done) const {
  if (done != 0) return;
  const std::vector<CString> warnings = Batch().TakeWarnings();
  throw Failure(warnings.empty() ? "nothing was changed" : ToUtf8(warnings.back()));
}

void ScriptDocument::Begin(const std::string& title) {
  if (m_act != nullptr) throw Failure("an act of this document is open already");
  auto act = std::make_unique<OpenAct>(&Data(), FromUtf8(title));
  if (!act->IsOpen()) throw Failure("an act of this document is open already");
  m_act = std::move(act);
  if (m_window != nullptr) m_window->HoldInput(true);
}

void ScriptDocument::End(bool keep) {
  const std::unique_ptr<OpenAct> act = std::move(m_act);
  if (act == nullptr) return;
  if (m_window != nullptr) m_window->HoldInput(false);
  if (!keep) {
    act->Rollback();
    return m_batch->Document().GetDisplay().Deliver();
  }
  const int done = act->Commit();
  m_batch->Document().GetDisplay().Deliver();  // what was shown and hidden in the act belongs to it
  const std::vector<CString> warnings = Batch().TakeWarnings();
  if (done == 0) throw Failure(warnings.empty() ? "a part of the act has failed" : ToUtf8(warnings.back()));
}

// ---- records --------------------------------------------------------------------------------------------

void Record::Need() const {
  if (Data().GetDataType(itr) == 0) throw Gone("the record is gone");
}

py::object Wrap(const DocumentPtr& document, iterator itr) {
  if (itr == 0) return py::none();
  switch (static_cast<std::uint16_t>(itr >> kTypeShift)) {
    case kDataGeom:
      return py::cast(Part{{document, itr}});
    case kDataMset:
      return py::cast(MeshSet{{document, itr}});
    case kDataGset:
      return py::cast(Group{{document, itr}});
    case kDataMaterial:
      return py::cast(Material{{document, itr}});
    case kDataCord:
      return py::cast(CoordinateSystem{{document, itr}});
    default:
      return py::cast(Record{document, itr});
  }
}

py::list WrapAll(const DocumentPtr& document, const std::vector<iterator>& itrs) {
  py::list all;
  for (const iterator itr : itrs) all.append(Wrap(document, itr));
  return all;
}

std::vector<iterator> Unwrap(const ScriptDocument& document, const py::object& records) {
  std::vector<iterator> itrs;
  const auto add = [&](const Record& record) {
    if (record.document.get() != &document) throw py::value_error("the record is of another document");
    record.Need();
    itrs.push_back(record.itr);
  };
  if (py::isinstance<Record>(records)) {
    add(records.cast<const Record&>());
    return itrs;
  }
  for (const py::handle& record : py::iter(records)) {
    if (!py::isinstance<Record>(record)) throw py::type_error("records are wanted");
    add(record.cast<const Record&>());
  }
  return itrs;
}

py::str ToPython(const CString& text) {
  return ToUtf8(text);
}

CString FromPython(const py::str& text) {
  return FromUtf8(text.cast<std::string>());
}

}  // namespace qd::workbench::script

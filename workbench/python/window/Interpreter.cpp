// The interpreter of the window's program.

#include "workbench/python/Interpreter.h"

#include <pthread.h>
#include <pybind11/embed.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "ConsoleProgram.h"
#include "host/LentActs.h"
#include "workbench/python/Script.h"
#include "workbench/python/window/Calls.h"

namespace qd::workbench::script {

namespace {

/// Breaks what a script waits for, on the thread that Python calls its main one; the terminal's Ctrl+C stays what
/// it is to the program.
int StopSignal() {
  return SIGRTMIN + 4;
}

PyObject* MakeModule() {
  static PyModuleDef definition;
  py::module_ module = py::module_::create_extension_module("qd", nullptr, &definition);
  try {
    FillModule(module);
    return module.release().ptr();
  } catch (py::error_already_set& error) {
    error.restore();
    return nullptr;
  }
}

/// Never taken down: the thread ends with the program.
class Interpreter final : public IInterpreter, public IPlace {
 public:
  void Attach(IScriptWindow& window) override;
  void Detach() override;
  bool IsWhole(const std::string& lines) override;
  void RunLines(const std::string& lines) override;
  void RunFile(const std::string& path, const std::vector<std::string>& arguments) override;
  std::vector<ScriptEntry> Entries() const override {
    const std::lock_guard lock(m_mutex);
    return m_entries;
  }
  void RunEntry(std::size_t place, const std::vector<iterator>& records) override;
  bool IsBusy() const override;
  int Status() const override { return m_status; }
  void Stop() override;
  std::vector<std::string> Complete(const std::string& text) override;
  bool Serve() override { return m_calls.Serve(); }
  bool IsServing() const override { return m_calls.IsServing(); }
  std::vector<ScriptOutput> TakeOutput() override;
  bool HasOutput() const override {
    const std::lock_guard lock(m_mutex);
    return !m_output.empty();
  }
  void Warn(const CString& text) override { m_surroundings->NoteWarning(text); }

  Windowless& Surroundings() override { return *m_surroundings; }
  bool SetLanguage(const std::string& language) override {
    return m_window != nullptr && m_window->SetLanguage(language);
  }
  IScriptWindow* Window() override { return m_window; }
  DocumentPtr Current() override { return m_current; }
  void Run(const std::function<void()>& work) override;
  void Later(std::function<void()> work) override { m_calls.Later(std::move(work)); }
  bool AddEntry(ScriptEntry entry, const py::object& function) override;

 private:
  using Job = std::function<void(const py::object& console)>;

  void Start();
  void Main();
  void Begin();
  void RunJobs(const py::object& console);
  void Add(Job job);
  void TakeBackOpenAct();
  void Write(const py::bytes& text, bool isError);
  py::object Call(const py::object& function, const py::tuple& arguments, const py::dict& named);
  py::object CallHere(const py::object& function, const py::tuple& arguments, bool writes);

  static constexpr std::size_t kMostEntries = 50;
  static constexpr std::size_t kMostWaiting = std::size_t{1} << 20U;  // bytes written and not shown yet
  static constexpr std::size_t kMostAtOnce = std::size_t{1} << 14U;

  Calls m_calls;
  std::unique_ptr<Windowless> m_surroundings;
  IScriptWindow* m_window = nullptr;  // changes while no job runs, or none that is served any more
  DocumentPtr m_current;
  void* m_acts = nullptr;  // that go on on the window's thread

  mutable std::mutex m_mutex;  // of what follows
  std::condition_variable m_changed;
  std::atomic<int> m_status = 0;
  bool m_isReady = false;
  bool m_works = false;
  bool m_isShown = false;  // output is taken
  std::deque<Job> m_jobs;
  std::deque<ScriptOutput> m_output;
  std::size_t m_waiting = 0;
  std::vector<ScriptEntry> m_entries;
  std::vector<py::object> m_functions;  // of the entries; with Python's lock instead
  pthread_t m_thread{};
};

// ---- on the window's thread -----------------------------------------------------------------------------

void Interpreter::Start() {
  if (m_surroundings != nullptr) return;
  m_surroundings = std::make_unique<Windowless>(m_window->ExchangeProgram(), Windowless::Beside::Window);
  std::thread([this] { Main(); }).detach();
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isReady; });
}

void Interpreter::Attach(IScriptWindow& window) {
  m_window = &window;
  m_calls.Open([&window] { window.Wake(); });
  Start();
  m_current = std::make_shared<ScriptDocument>(window);
  {
    const std::lock_guard lock(m_mutex);
    m_isShown = true;
    m_output.clear();
    m_waiting = 0;
    m_entries.clear();
    m_acts = nullptr;
  }
  Add([this](const py::object& console) {
    m_functions.clear();
    console.attr("begin")();
  });
}

void Interpreter::Detach() {
  constexpr std::chrono::seconds kPatience{2};
  m_calls.Close();
  {
    const std::lock_guard lock(m_mutex);
    m_isShown = false;
    m_jobs.clear();
  }
  m_changed.notify_all();
  Stop();
  const DocumentPtr document = std::exchange(m_current, nullptr);
  if (document != nullptr) document->LoseWindow();
  m_window = nullptr;
  Add([](const py::object& console) { console.attr("end")(); });
  std::unique_lock lock(m_mutex);
  m_changed.wait_for(lock, kPatience, [this] { return !m_works && m_jobs.empty(); });
}

bool Interpreter::IsBusy() const {
  const std::lock_guard lock(m_mutex);
  return m_works || !m_jobs.empty();
}

void Interpreter::Stop() {
  {
    const std::lock_guard lock(m_mutex);
    if (m_works) pthread_kill(m_thread, StopSignal());
  }
  m_calls.Stop();  // who waits there finds the signal
}

bool Interpreter::IsWhole(const std::string& lines) {
  const py::gil_scoped_acquire held;
  try {
    return py::module_::import("qd_console").attr("is_whole")(lines).cast<bool>();
  } catch (const std::exception&) {
    return true;  // a script may have broken anything of Python's; running the lines will say what
  }
}

std::vector<std::string> Interpreter::Complete(const std::string& text) {
  if (IsBusy()) return {};
  const py::gil_scoped_acquire held;
  try {
    return py::module_::import("qd_console").attr("complete")(text).cast<std::vector<std::string>>();
  } catch (py::error_already_set&) {
    return {};  // what is there is of any kind
  }
}

void Interpreter::RunLines(const std::string& lines) {
  Add([this, lines](const py::object& console) { m_status = console.attr("run_lines")(lines).cast<int>(); });
}

void Interpreter::RunFile(const std::string& path, const std::vector<std::string>& arguments) {
  Add([this, path, arguments](const py::object& console) {
    const auto name = [](const std::string& bytes) {
      return py::reinterpret_steal<py::object>(
          PyUnicode_DecodeFSDefaultAndSize(bytes.data(), static_cast<py::ssize_t>(bytes.size())));
    };
    py::list words;
    for (const std::string& argument : arguments) words.append(name(argument));
    m_status = console.attr("run_file")(name(path), words).cast<int>();
  });
}

void Interpreter::RunEntry(std::size_t place, const std::vector<iterator>& records) {
  Add([this, place, records](const py::object& console) {
    if (place >= m_functions.size() || m_current == nullptr) return;
    m_status = console.attr("run_entry")(m_functions[place], WrapAll(m_current, records)).cast<int>();
  });
}

/// On a thread of scripts.
bool Interpreter::AddEntry(ScriptEntry entry, const py::object& function) {
  py::object before;  // what ends with it runs when nothing is locked any more
  const std::lock_guard lock(m_mutex);
  const auto known = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&entry](const ScriptEntry& other) { return other.title == entry.title; });
  const auto place = static_cast<std::size_t>(known - m_entries.begin());
  if (place == kMostEntries) throw Failure("menus hold no more entries of scripts");
  m_entries.resize(std::max(m_entries.size(), place + 1));
  m_functions.resize(m_entries.size());
  m_entries[place] = std::move(entry);
  before = std::exchange(m_functions[place], function);
  return true;
}

void Interpreter::Add(Job job) {
  {
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
  }
  m_changed.notify_all();
}

std::vector<ScriptOutput> Interpreter::TakeOutput() {
  std::vector<ScriptOutput> taken;
  const std::lock_guard lock(m_mutex);
  std::size_t bytes = 0;
  while (!m_output.empty() && bytes < kMostAtOnce) {
    bytes += m_output.front().text.size();
    m_waiting -= m_output.front().text.size();
    taken.push_back(std::move(m_output.front()));
    m_output.pop_front();
  }
  m_changed.notify_all();
  return taken;
}

// ---- on the threads of scripts --------------------------------------------------------------------------

void Interpreter::Run(const std::function<void()>& work) {
  if (m_calls.IsHere()) return work();
  std::exception_ptr error;
  bool done = false;
  {
    const py::gil_scoped_release released;
    done = m_calls.Run([&] {
      const py::gil_scoped_acquire held;
      try {
        work();
      } catch (...) {
        error = std::current_exception();
      }
      m_acts = ActsOfThread();
    });
  }
  // An interrupt that has ended the work is not to end what handles it, too.
  if (PyErr_CheckSignals() != 0) {
    if (!done || error != nullptr) {
      PyErr_Clear();
      PyErr_SetNone(PyExc_KeyboardInterrupt);
    }
    if (!done || error == nullptr) throw py::error_already_set();
    PyErr_Clear();
  }
  if (error != nullptr) std::rethrow_exception(error);
  if (!done) throw Gone("the window is gone");
}

py::object Interpreter::Call(const py::object& function, const py::tuple& arguments, const py::dict& named) {
  py::object result;
  Run([&] { result = function(*arguments, **named); });
  return result;
}

/// What reads a record, or writes one while an act of its document is open, touches no window: it is done here,
/// while the window's thread waits. To go there and back takes far longer than most of such calls.
py::object Interpreter::CallHere(const py::object& function, const py::tuple& arguments, bool writes) {
  const bool fits = !m_calls.IsHere() && (!writes || (py::isinstance<Record>(arguments[0]) &&
                                                      arguments[0].cast<const Record&>().document->IsInAct()));
  py::object result;
  std::exception_ptr error;
  const auto work = [&] {
    const LentActs acts(m_acts);
    try {
      result = function(*arguments);
    } catch (...) {
      error = std::current_exception();
    }
  };
  if (!fits || !m_calls.RunHere(work)) return Call(function, arguments, py::dict());
  if (error != nullptr) std::rethrow_exception(error);
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  return result;
}

void Interpreter::Write(const py::bytes& text, bool isError) {
  ScriptOutput output{text, isError};
  const py::gil_scoped_release others;
  std::unique_lock lock(m_mutex);
  // Who writes without end waits for who reads; but not for itself.
  if (!m_calls.IsHere()) m_changed.wait(lock, [this] { return m_waiting < kMostWaiting || !m_isShown; });
  if (!m_isShown) return;
  m_waiting += output.text.size();
  const bool wakes = m_output.empty();
  if (!wakes && m_output.back().isError == isError && m_output.back().text.size() < kMostAtOnce) {
    m_output.back().text += output.text;
  } else {
    m_output.push_back(std::move(output));
  }
  lock.unlock();
  if (wakes) m_calls.Later([] {});
}

void Interpreter::Begin() {
  PyImport_AppendInittab("qd", &MakeModule);
  PyConfig config;
  PyConfig_InitPythonConfig(&config);
  config.install_signal_handlers = 0;
  config.parse_argv = 0;
  config.safe_path = 1;  // what lies in the folder that the program was started in is not for it
  PyConfig_SetBytesString(&config, &config.program_name, QD_PYTHON);
  Py_InitializeFromConfig(&config);
  PyConfig_Clear(&config);
}

void Interpreter::Main() {
  Begin();
  {
    const py::module_ console = py::module_::import("types").attr("ModuleType")("qd_console");
    py::module_::import("sys").attr("modules")["qd_console"] = console;
    console.attr("__file__") = "<console>";
    const py::object code = py::module_::import("builtins").attr("compile")(kConsoleProgram, "<console>", "exec");
    py::module_::import("builtins").attr("exec")(code, console.attr("__dict__"));
    const py::object native = py::module_::import("types").attr("SimpleNamespace")();
    native.attr("write") = py::cpp_function([this](const py::bytes& text, bool isError) { Write(text, isError); });
    native.attr("call") =
        py::cpp_function([this](const py::object& function, const py::tuple& arguments, const py::dict& named) {
          return Call(function, arguments, named);
        });
    native.attr("call_here") =
        py::cpp_function([this](const py::object& function, const py::tuple& arguments, bool writes) {
          return CallHere(function, arguments, writes);
        });
    console.attr("start")(native, StopSignal());
    RunJobs(console);
  }
}

void Interpreter::TakeBackOpenAct() {
  bool open = false;
  Run([&] {
    open = m_current != nullptr && m_current->IsInAct();
    if (open) m_current->End(false);
  });
  if (open) Write(py::bytes("The act that was left open is taken back.\n"), true);
}

void Interpreter::RunJobs(const py::object& console) {
  while (true) {
    Job job;
    {
      const py::gil_scoped_release others;
      std::unique_lock lock(m_mutex);
      m_thread = pthread_self();
      m_works = false;
      m_isReady = true;
      m_changed.notify_all();
      m_changed.wait(lock, [this] { return !m_jobs.empty(); });
      m_works = true;
      job = std::move(m_jobs.front());
      m_jobs.pop_front();
    }
    try {
      job(console);
    } catch (py::error_already_set& error) {
      Write(py::bytes(std::string(error.what()) + "\n"), true);  // interrupted between the job and its end
    } catch (const std::exception& error) {
      Write(py::bytes(std::string(error.what()) + "\n"), true);  // a script has put something else into its place
    }
    job = nullptr;
    try {
      TakeBackOpenAct();
      if (PyErr_CheckSignals() != 0) PyErr_Clear();  // came too late
    } catch (const std::exception&) {
      PyErr_Clear();  // the window has gone and has taken it back
    }
    {
      const std::lock_guard lock(m_mutex);
      m_works = false;
    }
    m_calls.Later([] {});  // who waits for the end looks
  }
}

}  // namespace

IPlace& Place() {
  static auto* interpreter = new Interpreter;
  return *interpreter;
}

}  // namespace qd::workbench::script

extern "C" __attribute__((visibility("default"))) qd::workbench::IInterpreter* qd_interpreter() {
  return static_cast<qd::workbench::script::Interpreter*>(&qd::workbench::script::Place());
}

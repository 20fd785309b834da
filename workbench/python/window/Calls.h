#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace qd::workbench::script {

/// Takes calls of scripts from their threads to that of the window.
class Calls {
 public:
  /// The window's thread is this one. `wake`, from any thread, makes it come to Serve soon.
  void Open(std::function<void()> wake);
  /// Calls that wait are given up, and others not taken.
  void Close();
  bool IsHere() const { return std::this_thread::get_id() == m_thread.load(); }

  /// Runs work on the window's thread and waits for it. False when it was not begun: the window is gone, or Stop
  /// came before.
  bool Run(const std::function<void()>& work);
  /// Runs work that touches no window at once, on this thread, while the window's waits for calls. False, with
  /// nothing run, when that does something else.
  bool RunHere(const std::function<void()>& work);
  /// Runs work there some time, unless the window goes before.
  void Later(std::function<void()> work);
  /// Gives up calls that wait.
  void Stop();

  /// Runs what waits, and what comes a moment later, as from a loop; but not for long. On the window's thread.
  /// True when there is more.
  bool Serve();
  bool IsServing() const { return m_works; }

 private:
  struct Call {
    std::function<void()> work;
    enum class State { Waiting, Begun, Done, GivenUp } state = State::Waiting;
    bool isAwaited = true;
  };
  void GiveUp();

  std::mutex m_mutex;
  std::condition_variable m_came;
  std::condition_variable m_ended;
  std::deque<std::shared_ptr<Call>> m_waiting;
  std::function<void()> m_wake;  // null while there is no window
  std::atomic<std::thread::id> m_thread;
  std::chrono::steady_clock::time_point m_lastHere;
  bool m_serves = false;  // this and the others under the mutex
  bool m_waits = false;   // the window's thread, for calls
  bool m_works = false;   // on the window's thread, or while that waits
};

}  // namespace qd::workbench::script

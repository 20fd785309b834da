#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace qd::workbench {

/// A program that runs as our child: with an environment of a few plain settings, no descriptors of ours, and its
/// output in a pipe. It is killed and taken off with its object. Used by one thread, which must outlive it.
class ChildProcess {
 public:
  ChildProcess() = default;
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Starts a program with `home` as its home and its folder for temporary files. All of `input` is there for it
  /// to read on its standard input. False when it cannot be started.
  bool Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& home,
             const std::string& input);
  /// The end of the pipe that its output comes from; reading never waits.
  int Output() const { return m_output; }
  /// Processor time of all its threads so far.
  std::chrono::milliseconds WorkTime() const;

  /// How a program ended: an exit code, or the signal that killed it.
  struct End {
    int code = 0;
    int signal = 0;
  };
  /// Nothing while it runs.
  std::optional<End> TakeEnd();
  /// Ends it, if it runs, and waits for that.
  void Kill();

 private:
  pid_t m_pid = -1;
  int m_output = -1;
};

}  // namespace qd::workbench

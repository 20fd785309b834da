#pragma once

#include <poll.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/Places.h"
#include "workbench/exchange/watch/ChildProcess.h"
#include "workbench/exchange/watch/ExchangeRun.h"

namespace qd::test {

/// Runs a program until it ends, and gives what it wrote.
inline workbench::ChildProcess::End RunToEnd(const std::string& program, const std::vector<std::string>& arguments,
                                             std::string* output = nullptr) {
  workbench::ChildProcess child;
  if (!child.Start(program, arguments, "/tmp", {})) return {127, 0};
  while (true) {
    const auto end = child.TakeEnd();
    char bytes[4096];
    pollfd wait{child.Output(), POLLIN, 0};
    if (!end) poll(&wait, 1, 20);
    for (ssize_t count = 0; (count = read(child.Output(), bytes, sizeof(bytes))) > 0;) {
      if (output != nullptr) output->append(bytes, static_cast<std::size_t>(count));
    }
    if (end) return *end;
  }
}

inline std::string Output(const std::string& program, const std::vector<std::string>& arguments) {
  std::string output;
  RunToEnd(program, arguments, &output);
  return output;
}

/// Hears of a run and does nothing.
struct Quiet : workbench::ExchangeRun::Listener {
  void OnProgress(int) override {}
  bool OnStalled(const workbench::ExchangeRun::Message&) override { return false; }
  void OnResumed() override {}
};

inline workbench::ExchangeRun::Result RunQuietly(const workbench::ExchangeRun::Task& task) {
  workbench::ExchangeRun run(task);
  Quiet listener;
  return run.Run(listener);
}

/// Reads a file by the exchange program itself.
inline workbench::ExchangeRun::Task TaskFor(const std::string& file) {
  return {Program("qd_exchange"), file, {}, workbench::LimitsForFile(file)};
}

}  // namespace qd::test

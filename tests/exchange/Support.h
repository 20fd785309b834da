#pragma once

#include <poll.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "workbench/exchange/watch/ChildProcess.h"

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

}  // namespace qd::test

#pragma once

#include <poll.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "workbench/exchange/watch/ChildProcess.h"

namespace qd::test {

/// A folder for the files of one test.
class Folder {
 public:
  Folder() {
    const char* base = std::getenv("TMPDIR");
    m_path = std::string(base != nullptr ? base : "/tmp") + "/qd_test.XXXXXX";
    if (mkdtemp(m_path.data()) == nullptr) std::abort();
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::string& Path() const { return m_path; }
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(m_path + "/" + name, std::ios::binary) << bytes;
    return m_path + "/" + name;
  }
  std::string Read(const std::string& name) const { return ReadAt(m_path + "/" + name); }
  static std::string ReadAt(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) names.insert(entry.path().filename());
    return names;
  }

 private:
  std::string m_path;
};

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

#pragma once

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace qd::test {

/// Files and folders that nobody can write to as long as it lives: by permissions, or, for who is above them, by
/// the flag of the file system that keeps things as they are.
class Unwritable {
 public:
  explicit Unwritable(std::vector<std::string> paths) : m_paths(std::move(paths)) {
    for (const std::string& path : m_paths) Set(path, true);
  }
  ~Unwritable() {
    for (const std::string& path : m_paths) Set(path, false);
  }
  Unwritable(const Unwritable&) = delete;
  Unwritable& operator=(const Unwritable&) = delete;

  /// False where the system has no such thing; a test is skipped then.
  bool Works() const {
    for (const std::string& path : m_paths) {
      if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0) return false;
    }
    return true;
  }

 private:
  static void Set(const std::string& path, bool on) {
    if (geteuid() != 0) {
      struct stat status {};
      if (stat(path.c_str(), &status) == 0) {
        chmod(path.c_str(), on ? status.st_mode & ~0222U : status.st_mode | 0200U);
      }
      return;
    }
    const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    if (ioctl(handle, FS_IOC_GETFLAGS, &flags) == 0) {
      flags = on ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
      ioctl(handle, FS_IOC_SETFLAGS, &flags);
    }
    close(handle);
  }

  std::vector<std::string> m_paths;
};

}  // namespace qd::test

#include "workbench/exchange/watch/PrivateFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <initializer_list>
#include <string_view>
#include <system_error>

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "qd_exchange.";

/// Opens a folder and locks it; -1 when it is in use, or is no folder of ours.
int LockFolder(const fs::path& path) {
  const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder < 0) return -1;
  struct stat status {};
  if (fstat(folder, &status) == 0 && status.st_uid == geteuid() && flock(folder, LOCK_EX | LOCK_NB) == 0) {
    return folder;
  }
  close(folder);
  return -1;
}

/// One that was made a moment ago may not be locked yet.
bool IsOld(int folder) {
  constexpr std::time_t kMoment = 60;  // seconds
  struct stat status {};
  return fstat(folder, &status) == 0 && std::time(nullptr) - status.st_mtime > kMoment;
}

void RemoveAbandoned(const fs::path& base) {
  std::error_code failed;
  for (fs::directory_iterator at(base, failed), end; !failed && at != end; at.increment(failed)) {
    if (!at->path().filename().string().starts_with(kPrefix)) continue;
    const int folder = LockFolder(at->path());
    if (folder < 0) continue;
    std::error_code ignored;
    if (IsOld(folder)) fs::remove_all(at->path(), ignored);
    close(folder);
  }
}

std::string MakeIn(const char* base) {
  if (base == nullptr || *base != '/') return {};
  RemoveAbandoned(base);
  std::string path = std::string(base) + "/" + std::string(kPrefix) + "XXXXXX";
  return mkdtemp(path.data()) != nullptr ? path : std::string();
}

}  // namespace

PrivateFolder::PrivateFolder() {
  for (const char* base :
       std::initializer_list<const char*>{std::getenv("XDG_RUNTIME_DIR"), std::getenv("TMPDIR"), "/tmp"}) {
    m_path = MakeIn(base);
    if (!m_path.empty()) break;
  }
  if (!m_path.empty()) m_lock = LockFolder(m_path);
}

PrivateFolder::~PrivateFolder() {
  std::error_code ignored;
  if (!m_path.empty()) fs::remove_all(m_path, ignored);
  if (m_lock >= 0) close(m_lock);
}

}  // namespace qd::workbench

#include "workbench/files/SystemFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#ifdef _WIN32
#include <io.h>
#include <share.h>
#else
#include <unistd.h>
#endif

namespace qd::workbench::system {

namespace {
constexpr std::size_t kMostAtOnce = std::size_t{1} << 30U;  // systems write no more than 2 GiB in one call
}

#ifdef _WIN32

// A file that is opened without sharing can be opened and taken away by nobody else.

int MakeLocked(const std::filesystem::path& path) {
  int handle = -1;
  _wsopen_s(&handle, path.c_str(), _O_CREAT | _O_EXCL | _O_RDWR | _O_BINARY | _O_NOINHERIT, _SH_DENYRW,
            _S_IREAD | _S_IWRITE);
  return handle;
}

int OpenIfFree(const std::filesystem::path& path) {
  int handle = -1;
  _wsopen_s(&handle, path.c_str(), _O_RDWR | _O_BINARY | _O_NOINHERIT, _SH_DENYRW, _S_IREAD | _S_IWRITE);
  return handle;
}

bool IsAt(int handle, const std::filesystem::path&) {
  return handle >= 0;
}

void CopyRights(int, const std::filesystem::path&) {}

bool WriteAll(int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const int done = _write(handle, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), kMostAtOnce)));
    if (done <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(done));
  }
  return true;
}

bool Settle(int handle) {
  return _commit(handle) == 0;
}

bool SettleFolder(const std::filesystem::path&) {
  return true;  // the system does it with the name
}

bool Close(int handle) {
  return _close(handle) == 0;
}

#else

namespace {

/// A lock of the open file, which closing another handle of the same file does not drop.
bool Lock(int handle) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kLockPlace;
  lock.l_len = 1;
  return fcntl(handle, F_OFD_SETLK, &lock) == 0;
}

}  // namespace

int MakeLocked(const std::filesystem::path& path) {
  const int handle = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666);
  if (handle < 0) return -1;
  // Where a file system knows no locks, nobody else can lock the file and take it for left behind either.
  Lock(handle);
  return handle;
}

int OpenIfFree(const std::filesystem::path& path) {
  const int handle = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (handle < 0) return -1;
  struct stat there {};
  if (fstat(handle, &there) == 0 && S_ISREG(there.st_mode) && Lock(handle)) return handle;
  close(handle);
  return -1;
}

bool IsAt(int handle, const std::filesystem::path& path) {
  struct stat mine {};
  struct stat there {};
  return fstat(handle, &mine) == 0 && stat(path.c_str(), &there) == 0 && mine.st_dev == there.st_dev &&
         mine.st_ino == there.st_ino;
}

void CopyRights(int handle, const std::filesystem::path& from) {
  constexpr mode_t kRights = 0777;
  struct stat there {};
  if (stat(from.c_str(), &there) != 0 || !S_ISREG(there.st_mode)) return;
  if (fchown(handle, static_cast<uid_t>(-1), there.st_gid) != 0) errno = 0;  // not everybody may
  if (fchmod(handle, there.st_mode & kRights) != 0) errno = 0;
}

bool WriteAll(int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t done = write(handle, bytes.data(), std::min(bytes.size(), kMostAtOnce));
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(done));
  }
  return true;
}

bool Settle(int handle) {
  return fsync(handle) == 0;
}

bool SettleFolder(const std::filesystem::path& folder) {
  const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return errno == EACCES;  // a folder that may be written to but not listed
  // Some file systems know no such thing as a folder that waits for the disk.
  const bool settled = fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP;
  close(handle);
  return settled;
}

bool Close(int handle) {
  return close(handle) == 0;
}

#endif

}  // namespace qd::workbench::system

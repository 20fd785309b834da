#include "workbench/store/DocumentHold.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "workbench/files/SystemFile.h"

namespace qd::workbench {

std::unique_ptr<DocumentHold> DocumentHold::Take(const std::string& path, Kind kind, Result& result) {
  const bool writes = kind == Kind::Write;
  const int handle = open(path.c_str(), (writes ? O_RDWR : O_RDONLY) | O_CLOEXEC | O_NONBLOCK);
  if (handle < 0) {
    result = errno == ENOENT || errno == ENOTDIR ? Result::Missing
             : errno == EISDIR                   ? Result::Folder
                                                 : Result::Refused;
    return nullptr;
  }
  auto hold = std::make_unique<DocumentHold>(handle);
  struct stat there {};
  if (fstat(handle, &there) != 0 || !S_ISREG(there.st_mode)) {
    result = S_ISDIR(there.st_mode) ? Result::Folder : Result::Refused;
    return nullptr;
  }
  struct flock lock {};
  lock.l_type = writes ? F_WRLCK : F_RDLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = system::kLockPlace;
  lock.l_len = 1;
  if (fcntl(handle, F_OFD_SETLK, &lock) != 0) {
    result = errno == EAGAIN || errno == EACCES ? Result::Busy : Result::Refused;
    return nullptr;
  }
  // It may have been replaced between opening and locking.
  result = hold->IsAt(path) ? Result::Held : Result::Busy;
  return result == Result::Held ? std::move(hold) : nullptr;
}

DocumentHold::~DocumentHold() {
  close(m_handle);
}

bool DocumentHold::IsAt(const std::string& path) const {
  return system::IsAt(m_handle, path);
}

bool DocumentHold::IsLockedByLibrary() const {
  // The bytes that the database library locks for a reader.
  struct flock lock {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0x40000002;
  lock.l_len = 510;
  return fcntl(m_handle, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

std::pair<std::int64_t, std::int64_t> DocumentHold::State() const {
  constexpr std::int64_t kSecond = 1'000'000'000;
  struct stat there {};
  if (fstat(m_handle, &there) != 0) return {-1, 0};
  return {there.st_size, there.st_mtim.tv_sec * kSecond + there.st_mtim.tv_nsec};
}

bool DocumentHold::HasOtherNames() const {
  struct stat there {};
  return fstat(m_handle, &there) == 0 && there.st_nlink > 1;
}

}  // namespace qd::workbench

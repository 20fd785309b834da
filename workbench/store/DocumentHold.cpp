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

bool DocumentHold::HasOtherNames() const {
  struct stat there {};
  return fstat(m_handle, &there) == 0 && there.st_nlink > 1;
}

}  // namespace qd::workbench

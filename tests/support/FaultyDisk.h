#pragma once

#include <sqlite3.h>

#include <csignal>
#include <cstring>

namespace qd::test {

/// A file layer of the database library over its own, whose n-th write, sync or truncation fails, and all after
/// it, until it is healed.
class FaultyDisk {
 public:
  enum class Fault { Error, Full, Killed };
  static constexpr const char* kName = "qd_faulty";

  FaultyDisk() {
    s_disk = this;
    m_real = sqlite3_vfs_find(nullptr);
    m_vfs = *m_real;
    m_vfs.zName = kName;
    m_vfs.szOsFile = static_cast<int>(sizeof(File)) + m_real->szOsFile;
    m_vfs.pNext = nullptr;
    m_vfs.xOpen = Open;
    sqlite3_vfs_register(&m_vfs, 0);
  }
  ~FaultyDisk() {
    sqlite3_vfs_unregister(&m_vfs);
    s_disk = nullptr;
  }
  FaultyDisk(const FaultyDisk&) = delete;
  FaultyDisk& operator=(const FaultyDisk&) = delete;

  void FailAt(int operation, Fault fault) {
    m_left = operation;
    m_fault = fault;
  }
  /// The program is killed in place of the operation.
  void KillAt(int operation) { FailAt(operation, Fault::Killed); }
  void Heal() { m_left = -1; }

 private:
  struct File {
    sqlite3_file base;
    sqlite3_io_methods methods;
    sqlite3_file* Real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
  };
  static File* Of(sqlite3_file* file) { return reinterpret_cast<File*>(file); }

  /// The code of the fault that is due, 0 for none.
  static int Due(int error) {
    if (s_disk == nullptr || s_disk->m_left < 0) return SQLITE_OK;
    if (s_disk->m_left > 0) {
      --s_disk->m_left;
      return SQLITE_OK;
    }
    if (s_disk->m_fault == Fault::Killed) std::raise(SIGKILL);
    return s_disk->m_fault == Fault::Full ? SQLITE_FULL : error;
  }

  static int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    File* mine = Of(file);
    sqlite3_vfs* real = s_disk->m_real;
    mine->base.pMethods = nullptr;
    const int result = real->xOpen(real, name, mine->Real(), flags, outFlags);
    if (result != SQLITE_OK) return result;
    sqlite3_io_methods& m = mine->methods;
    std::memset(&m, 0, sizeof(m));
    m.iVersion = 1;  // without shared memory: the files are used by one program at a time
    m.xClose = [](sqlite3_file* f) { return Of(f)->Real()->pMethods->xClose(Of(f)->Real()); };
    m.xRead = [](sqlite3_file* f, void* to, int size, sqlite3_int64 at) {
      return Of(f)->Real()->pMethods->xRead(Of(f)->Real(), to, size, at);
    };
    m.xWrite = [](sqlite3_file* f, const void* from, int size, sqlite3_int64 at) {
      const int due = Due(SQLITE_IOERR_WRITE);
      return due != 0 ? due : Of(f)->Real()->pMethods->xWrite(Of(f)->Real(), from, size, at);
    };
    m.xTruncate = [](sqlite3_file* f, sqlite3_int64 size) {
      const int due = Due(SQLITE_IOERR_TRUNCATE);
      return due != 0 ? due : Of(f)->Real()->pMethods->xTruncate(Of(f)->Real(), size);
    };
    m.xSync = [](sqlite3_file* f, int how) {
      const int due = Due(SQLITE_IOERR_FSYNC);
      return due != 0 ? due : Of(f)->Real()->pMethods->xSync(Of(f)->Real(), how);
    };
    m.xFileSize = [](sqlite3_file* f, sqlite3_int64* size) {
      return Of(f)->Real()->pMethods->xFileSize(Of(f)->Real(), size);
    };
    m.xLock = [](sqlite3_file* f, int lock) { return Of(f)->Real()->pMethods->xLock(Of(f)->Real(), lock); };
    m.xUnlock = [](sqlite3_file* f, int lock) { return Of(f)->Real()->pMethods->xUnlock(Of(f)->Real(), lock); };
    m.xCheckReservedLock = [](sqlite3_file* f, int* held) {
      return Of(f)->Real()->pMethods->xCheckReservedLock(Of(f)->Real(), held);
    };
    m.xFileControl = [](sqlite3_file* f, int what, void* argument) {
      return Of(f)->Real()->pMethods->xFileControl(Of(f)->Real(), what, argument);
    };
    m.xSectorSize = [](sqlite3_file* f) { return Of(f)->Real()->pMethods->xSectorSize(Of(f)->Real()); };
    m.xDeviceCharacteristics = [](sqlite3_file* f) {
      return Of(f)->Real()->pMethods->xDeviceCharacteristics(Of(f)->Real());
    };
    mine->base.pMethods = &m;
    return SQLITE_OK;
  }

  static inline FaultyDisk* s_disk = nullptr;
  sqlite3_vfs m_vfs{};
  sqlite3_vfs* m_real = nullptr;
  int m_left = -1;
  Fault m_fault = Fault::Error;
};

}  // namespace qd::test

// Enters the cell of the exchange program and tries one harm. Usage: cell_probe HARM FOLDER both|filter|none
// The folder holds the files "given", which the cell leaves open, and "victim". Ends with 7 when the harm was
// done, with 0 when it was refused.

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <thread>

#include "workbench/exchange/child/Cell.h"

#if defined(__SANITIZE_ADDRESS__)
// Looking for leaks starts a process of its own, which the cell forbids.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "detect_leaks=0";
}
#endif

namespace {

constexpr std::uint64_t kMemory = std::uint64_t{256} << 20;
constexpr int kDone = 7;

struct Place {
  std::string folder;
  int given;
  std::string Path(const char* name) const { return folder + "/" + name; }
};

bool Opens(const std::string& path, int flags) {
  return open(path.c_str(), flags, 0600) >= 0;
}

bool Takes(std::uint64_t bytes) {
  void* memory = std::malloc(bytes);
  if (memory == nullptr) return false;
  std::memset(memory, 1, bytes);
  return static_cast<volatile char*>(memory)[bytes / 2] == 1;
}

bool RaisesItsLimits() {
  const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
  return setrlimit(RLIMIT_DATA, &none) == 0;
}

bool Maps(int protection, int flags) {
  return mmap(nullptr, 4096, protection, flags | MAP_ANONYMOUS, -1, 0) != MAP_FAILED;
}

bool MakesMemoryRunnable() {
  void* page = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return mprotect(page, 4096, PROT_READ | PROT_EXEC) == 0;
}

bool ConnectsTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof(address.sun_path) - 1);
  // Without a socket of ours: any descriptor will do for trying.
  return connect(STDERR_FILENO, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 || errno == ENOTSOCK;
}

bool RunsAThread() {
  bool ran = false;
  std::thread([&ran] { ran = true; }).join();
  return ran;
}

using Harm = std::function<bool(const Place&)>;
const std::map<std::string, Harm>& Harms() {
  static const std::map<std::string, Harm> kHarms{
      // What must go on working.
      {"read-given", [](const Place& at) { return Opens(at.Path("given"), O_RDONLY); }},
      {"run-thread", [](const Place&) { return RunsAThread(); }},
      {"take-little-memory", [](const Place&) { return Takes(kMemory / 4); }},
      {"write-to-pipe", [](const Place&) { return write(STDOUT_FILENO, "x", 1) == 1; }},
      // Running something else.
      {"exec", [](const Place&) { return execl("/bin/sh", "sh", "-c", "exit 7", nullptr) == 0; }},
      {"system", [](const Place& at) { return std::system(("touch '" + at.Path("marker") + "'").c_str()) == 0; }},
      {"popen", [](const Place&) { return popen("exit 0", "r") != nullptr; }},
      {"fork", [](const Place&) { return fork() >= 0; }},
      {"map-code", [](const Place&) { return Maps(PROT_READ | PROT_EXEC, MAP_PRIVATE); }},
      {"make-code", [](const Place&) { return MakesMemoryRunnable(); }},
      {"load-library", [](const Place&) { return Opens("/lib/x86_64-linux-gnu/libc.so.6", O_RDONLY); }},
      // Talking to others, and looking into them.
      {"socket", [](const Place&) { return socket(AF_INET, SOCK_STREAM, 0) >= 0; }},
      {"local-socket", [](const Place&) { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }},
      {"socket-pair",
       [](const Place&) {
         int ends[2];
         return socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0;
       }},
      {"connect", [](const Place& at) { return ConnectsTo(at.Path("socket")); }},
      {"signal-parent", [](const Place&) { return kill(getppid(), 0) == 0; }},
      {"trace", [](const Place&) { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0; }},
      {"look-into-parent", [](const Place&) { return syscall(SYS_pidfd_open, getppid(), 0) >= 0; }},
      {"shared-memory", [](const Place&) { return shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600) >= 0; }},
      {"map-shared", [](const Place&) { return Maps(PROT_READ | PROT_WRITE, MAP_SHARED); }},
      {"memory-file", [](const Place&) { return memfd_create("x", 0) >= 0; }},
      {"rings", [](const Place&) { return syscall(SYS_io_uring_setup, 1, nullptr) >= 0 || errno == EFAULT; }},
      // Files.
      {"read-other", [](const Place& at) { return Opens(at.Path("victim"), O_RDONLY); }},
      {"read-users", [](const Place&) { return Opens("/etc/passwd", O_RDONLY); }},
      {"list-folder", [](const Place& at) { return Opens(at.folder, O_RDONLY | O_DIRECTORY); }},
      {"write", [](const Place& at) { return Opens(at.Path("victim"), O_WRONLY); }},
      {"write-given", [](const Place& at) { return Opens(at.Path("given"), O_WRONLY | O_APPEND); }},
      {"write-by-descriptor",
       [](const Place& at) { return Opens("/proc/self/fd/" + std::to_string(at.given), O_RDWR); }},
      {"open-and-truncate", [](const Place& at) { return Opens(at.Path("given"), O_RDONLY | O_TRUNC); }},
      {"create", [](const Place& at) { return Opens(at.Path("marker"), O_CREAT | O_WRONLY); }},
      {"create-empty", [](const Place& at) { return Opens(at.Path("marker"), O_CREAT | O_RDONLY); }},
      {"create-nameless", [](const Place& at) { return Opens(at.folder, O_TMPFILE | O_RDWR); }},
      {"make-folder", [](const Place& at) { return mkdir(at.Path("marker").c_str(), 0700) == 0; }},
      {"make-pipe", [](const Place& at) { return mkfifo(at.Path("marker").c_str(), 0600) == 0; }},
      {"link", [](const Place& at) { return link(at.Path("victim").c_str(), at.Path("marker").c_str()) == 0; }},
      {"symlink", [](const Place& at) { return symlink("victim", at.Path("marker").c_str()) == 0; }},
      {"unlink", [](const Place& at) { return unlink(at.Path("victim").c_str()) == 0; }},
      {"rename",
       [](const Place& at) { return rename(at.Path("victim").c_str(), at.Path("marker").c_str()) == 0; }},
      {"truncate", [](const Place& at) { return truncate(at.Path("victim").c_str(), 0) == 0; }},
      {"chmod", [](const Place& at) { return chmod(at.Path("victim").c_str(), 0777) == 0; }},
      {"chmod-given", [](const Place& at) { return fchmod(at.given, 0777) == 0; }},
      {"chown", [](const Place& at) { return chown(at.Path("victim").c_str(), getuid(), getgid()) == 0; }},
      {"times", [](const Place& at) { return utimensat(AT_FDCWD, at.Path("victim").c_str(), nullptr, 0) == 0; }},
      {"times-of-given", [](const Place& at) { return futimens(at.given, nullptr) == 0; }},
      {"attribute", [](const Place& at) { return setxattr(at.Path("victim").c_str(), "user.x", "1", 1, 0) == 0; }},
      {"flags-of-given",
       [](const Place& at) {
         int flags = FS_NODUMP_FL;
         return ioctl(at.given, FS_IOC_SETFLAGS, &flags) == 0;
       }},
      // Getting out.
      {"take-much-memory", [](const Place&) { return Takes(2 * kMemory); }},
      {"raise-limits", [](const Place&) { return RaisesItsLimits(); }},
      {"dump-memory", [](const Place&) { return prctl(PR_SET_DUMPABLE, 1, 0, 0, 0) == 0; }},
      {"outlive-parent", [](const Place&) { return prctl(PR_SET_PDEATHSIG, 0, 0, 0, 0) == 0; }},
      {"new-namespace", [](const Place&) { return syscall(SYS_unshare, 0) == 0; }},
      {"new-root", [](const Place& at) { return chroot(at.folder.c_str()) == 0; }},
  };
  return kHarms;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "--list") {
    for (const auto& [name, harm] : Harms()) std::cout << name << "\n";
    return 0;
  }
  if (argc != 4 || !Harms().contains(argv[1])) return 2;
  const std::string mode = argv[3];
  Place place{argv[2], -1};
  place.given = open(place.Path("given").c_str(), O_RDONLY | O_CLOEXEC);
  if (mode != "none") {
    qd::workbench::CellRules rules;
    rules.readable = {place.given};
    rules.memory = kMemory;
    rules.withLandlock = mode != "filter";
    const auto missing = qd::workbench::EnterCell(rules);
    if (missing.size() != (mode == "filter" ? 1U : 0U)) return 3;
  }
  return Harms().at(argv[1])(place) ? kDone : 0;
}

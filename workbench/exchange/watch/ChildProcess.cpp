#include "workbench/exchange/watch/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

namespace qd::workbench {

namespace {

/// A file in memory, read from its beginning; -1 when there is no room for it.
int MemoryFile(const std::string& bytes) {
  const int file = memfd_create("request", MFD_CLOEXEC);
  for (std::size_t at = 0; file >= 0 && at < bytes.size();) {
    const ssize_t count = write(file, bytes.data() + at, bytes.size() - at);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      close(file);
      return -1;
    }
    at += static_cast<std::size_t>(count);
  }
  if (file >= 0) lseek(file, 0, SEEK_SET);
  return file;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// What the new process changes before the program starts.
class Preparation {
 public:
  Preparation(int input, int output) {
    posix_spawn_file_actions_init(&m_files);
    posix_spawn_file_actions_adddup2(&m_files, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&m_files, output, STDOUT_FILENO);
    // What the libraries print is of use to nobody.
    posix_spawn_file_actions_addopen(&m_files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&m_files, STDERR_FILENO + 1);
    posix_spawnattr_init(&m_attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&m_attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&m_attributes, &signals);
    posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Preparation() {
    posix_spawn_file_actions_destroy(&m_files);
    posix_spawnattr_destroy(&m_attributes);
  }
  Preparation(const Preparation&) = delete;
  Preparation& operator=(const Preparation&) = delete;
  const posix_spawn_file_actions_t* Files() const { return &m_files; }
  const posix_spawnattr_t* Attributes() const { return &m_attributes; }

 private:
  posix_spawn_file_actions_t m_files{};
  posix_spawnattr_t m_attributes{};
};

}  // namespace

ChildProcess::~ChildProcess() {
  Kill();
  if (m_output >= 0) close(m_output);
}

bool ChildProcess::Start(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& home, const std::string& input) {
  int ends[2] = {-1, -1};
  const int request = MemoryFile(input);
  if (request < 0 || pipe2(ends, O_CLOEXEC) != 0) {
    if (request >= 0) close(request);
    return false;
  }
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  // Settings of the libraries come from nowhere else; numbers are written with a point.
  std::vector<std::string> environment{"HOME=" + home, "TMPDIR=" + home, "LC_ALL=C.UTF-8"};
  const Preparation preparation(request, ends[1]);
  const bool started = posix_spawn(&m_pid, program.c_str(), preparation.Files(), preparation.Attributes(),
                                   Pointers(words).data(), Pointers(environment).data()) == 0;
  close(request);
  close(ends[1]);
  m_output = ends[0];
  if (!started) m_pid = -1;
  return started;
}

std::chrono::milliseconds ChildProcess::WorkTime() const {
  clockid_t clock{};
  timespec time{};
  if (m_pid < 0 || clock_getcpuclockid(m_pid, &clock) != 0 || clock_gettime(clock, &time) != 0) return {};
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                               std::chrono::nanoseconds(time.tv_nsec));
}

std::optional<ChildProcess::End> ChildProcess::TakeEnd() {
  int status = 0;
  if (m_pid < 0 || waitpid(m_pid, &status, WNOHANG) != m_pid) return std::nullopt;
  m_pid = -1;
  if (WIFSIGNALED(status)) return End{0, WTERMSIG(status)};
  return End{WEXITSTATUS(status), 0};
}

void ChildProcess::Kill() {
  if (m_pid < 0) return;
  kill(m_pid, SIGKILL);
  while (waitpid(m_pid, nullptr, 0) < 0 && errno == EINTR) continue;
  m_pid = -1;
}

}  // namespace qd::workbench

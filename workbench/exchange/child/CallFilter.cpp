#include "workbench/exchange/child/CallFilter.h"

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <initializer_list>

namespace qd::workbench {

namespace {

// Nothing here changes anything outside the process. What is written can only go to descriptors that were open
// before: the pipe.
constexpr int kAllowed[] = {
    SCMP_SYS(read), SCMP_SYS(pread64), SCMP_SYS(readv), SCMP_SYS(preadv), SCMP_SYS(write), SCMP_SYS(writev),
    SCMP_SYS(lseek), SCMP_SYS(_llseek), SCMP_SYS(close), SCMP_SYS(dup), SCMP_SYS(poll), SCMP_SYS(ppoll),
    SCMP_SYS(fadvise64), SCMP_SYS(readahead),
    // What is told of a file; its contents stay closed.
    SCMP_SYS(fstat), SCMP_SYS(stat), SCMP_SYS(lstat), SCMP_SYS(newfstatat), SCMP_SYS(fstatat64), SCMP_SYS(statx),
    SCMP_SYS(fstatfs), SCMP_SYS(access), SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(readlink),
    SCMP_SYS(readlinkat), SCMP_SYS(getcwd),
    // Memory; mapping it is told apart below.
    SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise), SCMP_SYS(membarrier),
    // Threads of our own.
    SCMP_SYS(futex), SCMP_SYS(set_robust_list), SCMP_SYS(rseq), SCMP_SYS(sched_yield), SCMP_SYS(sched_getaffinity),
    SCMP_SYS(getcpu), SCMP_SYS(gettid), SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(restart_syscall),
    SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack),
    // Clocks and who we are.
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_getres), SCMP_SYS(clock_nanosleep), SCMP_SYS(nanosleep),
    SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(times), SCMP_SYS(getrusage), SCMP_SYS(getrlimit),
    SCMP_SYS(sysinfo), SCMP_SYS(uname), SCMP_SYS(getpid), SCMP_SYS(getppid), SCMP_SYS(getuid), SCMP_SYS(geteuid),
    SCMP_SYS(getgid), SCMP_SYS(getegid), SCMP_SYS(getrandom)};

// No reader of files makes these: who does is an intruder, and is not given a second try. Everything that is in
// neither list fails as not permitted: socket, because the C library tries one when it is asked for a user's name.
constexpr int kDeadly[] = {SCMP_SYS(execve),
                           SCMP_SYS(execveat),
                           SCMP_SYS(fork),
                           SCMP_SYS(vfork),
                           SCMP_SYS(ptrace),
                           SCMP_SYS(process_vm_readv),
                           SCMP_SYS(process_vm_writev),
                           SCMP_SYS(pidfd_open),
                           SCMP_SYS(pidfd_getfd),
                           SCMP_SYS(socketpair),
                           SCMP_SYS(connect),
                           SCMP_SYS(bind),
                           SCMP_SYS(listen),
                           SCMP_SYS(accept),
                           SCMP_SYS(accept4),
                           SCMP_SYS(sendto),
                           SCMP_SYS(sendmsg),
                           SCMP_SYS(sendmmsg),
                           SCMP_SYS(io_uring_setup),
                           SCMP_SYS(bpf),
                           SCMP_SYS(mount),
                           SCMP_SYS(umount2),
                           SCMP_SYS(move_mount),
                           SCMP_SYS(pivot_root),
                           SCMP_SYS(chroot),
                           SCMP_SYS(unshare),
                           SCMP_SYS(setns),
                           SCMP_SYS(init_module),
                           SCMP_SYS(finit_module),
                           SCMP_SYS(kexec_load),
                           SCMP_SYS(keyctl),
                           SCMP_SYS(perf_event_open),
                           SCMP_SYS(userfaultfd),
                           SCMP_SYS(open_by_handle_at)};

/// Puts rules into a filter. Calls that this machine's architecture does not have need no rule.
class Rules {
 public:
  explicit Rules(scmp_filter_ctx filter) : m_filter(filter) {}
  void Add(std::uint32_t action, int call, std::initializer_list<scmp_arg_cmp> arguments = {}) {
    const int result = seccomp_rule_add_array(m_filter, action, call, static_cast<unsigned>(arguments.size()),
                                              arguments.size() > 0 ? arguments.begin() : nullptr);
    if (result != 0 && call >= 0) m_good = false;
  }
  bool AreGood() const { return m_good; }

 private:
  scmp_filter_ctx m_filter;
  bool m_good = true;
};

scmp_arg_cmp NoneOf(unsigned argument, std::uint64_t bits) {
  return {argument, SCMP_CMP_MASKED_EQ, bits, 0};
}

scmp_arg_cmp Masked(unsigned argument, std::uint64_t bits, std::uint64_t wanted) {
  return {argument, SCMP_CMP_MASKED_EQ, bits, wanted};
}

void AddRulesWithArguments(Rules& rules) {
  // Opening for reading: the filter sees no paths, so this is all that it can tell.
  constexpr std::uint64_t kWriting = O_ACCMODE | O_CREAT | O_TRUNC;
#if defined(__SANITIZE_ADDRESS__)
  // Whether memory can be read the sanitizers find out by writing it into a pipe.
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(pipe), {});
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(pipe2), {});
#endif
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(open), {NoneOf(1, kWriting)});
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(openat), {NoneOf(2, kWriting)});
  // No code comes in after this, and no memory is shared with anybody.
  constexpr std::uint64_t kMapType = 0xF;
  for (const int call : {SCMP_SYS(mmap), SCMP_SYS(mmap2)}) {
    rules.Add(SCMP_ACT_ALLOW, call, {NoneOf(2, PROT_EXEC), Masked(3, kMapType, MAP_PRIVATE)});
  }
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(mprotect), {NoneOf(2, PROT_EXEC)});
  // A thread, exactly as the C library starts one, but no process. It tries another call first, whose arguments a
  // filter cannot see.
  constexpr std::uint64_t kThread = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND | CLONE_THREAD |
                                    CLONE_SYSVSEM | CLONE_SETTLS | CLONE_PARENT_SETTID | CLONE_CHILD_CLEARTID;
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(clone), {{0, SCMP_CMP_EQ, kThread, 0}});
  rules.Add(SCMP_ACT_KILL_PROCESS, SCMP_SYS(clone), {{0, SCMP_CMP_NE, kThread, 0}});
  rules.Add(SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3));
  // Asking for limits, not setting them; ending ourselves, nobody else.
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(prlimit64), {{2, SCMP_CMP_EQ, 0, 0}});
  rules.Add(SCMP_ACT_ALLOW, SCMP_SYS(tgkill), {{0, SCMP_CMP_EQ, static_cast<scmp_datum_t>(getpid()), 0}});
  for (const int query : {F_GETFD, F_SETFD, F_GETFL}) {
    for (const int call : {SCMP_SYS(fcntl), SCMP_SYS(fcntl64)}) {
      rules.Add(SCMP_ACT_ALLOW, call, {{1, SCMP_CMP_EQ, static_cast<scmp_datum_t>(query), 0}});
    }
  }
}

}  // namespace

bool FilterCalls() {
  scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
  if (filter == nullptr) return false;
  Rules rules(filter);
  for (const int call : kAllowed) rules.Add(SCMP_ACT_ALLOW, call);
  for (const int call : kDeadly) rules.Add(SCMP_ACT_KILL_PROCESS, call);
  AddRulesWithArguments(rules);
  // Calls of another architecture have other numbers: none is known here.
  const bool good = rules.AreGood() &&
                    seccomp_attr_set(filter, SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS) == 0 &&
                    seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1) == 0 &&
                    seccomp_attr_set(filter, SCMP_FLTATR_CTL_OPTIMIZE, 2) == 0 && seccomp_load(filter) == 0;
  seccomp_release(filter);
  return good;
}

}  // namespace qd::workbench

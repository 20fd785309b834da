#include "workbench/exchange/child/Cell.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "workbench/exchange/child/CallFilter.h"
#include "workbench/exchange/child/Landlock.h"

namespace qd::workbench {

namespace {

bool Limit(decltype(RLIMIT_CORE) resource, std::uint64_t value) {
  rlimit limit{};
  if (getrlimit(resource, &limit) != 0) return false;
  if (value >= limit.rlim_max) return true;  // there is a tighter one
  limit.rlim_cur = limit.rlim_max = static_cast<rlim_t>(value);
  return setrlimit(resource, &limit) == 0;
}

/// Counts what a process writes into memory of its own; what the libraries' code takes is not in it. Memory that
/// is shared does not count either, but the filter lets none be made.
bool LimitMemory(std::uint64_t bytes) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  static_cast<void>(bytes);
  return true;  // the sanitizers' shadow is larger than any limit
#else
  return bytes == 0 || Limit(RLIMIT_DATA, bytes);
#endif
}

}  // namespace

std::vector<std::string> EnterCell(const CellRules& rules) {
  std::vector<std::string> missing;
  const auto want = [&missing](bool given, const char* name) {
    if (!given) missing.emplace_back(name);
  };
  want(Limit(RLIMIT_CORE, 0) && prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0, "no memory dumps");
  want(LimitMemory(rules.memory), "memory limit");
  const bool privileges = prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
  want(privileges, "no new privileges");
  want(privileges && rules.withLandlock && CloseFileSystem(rules.readable), "Landlock");
  want(privileges && rules.withCallFilter && FilterCalls(), "seccomp");
  return missing;
}

void EndWithParent(int parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
  if (getppid() != parent) std::_Exit(1);
}

}  // namespace qd::workbench

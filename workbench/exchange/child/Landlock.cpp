#include "workbench/exchange/child/Landlock.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

namespace qd::workbench {

namespace {

// The C library has no functions for these calls, and the system's headers may be older than the kernel that we
// run on: everything is written down here as the kernel defines it.
constexpr long kCreateRuleset = 444;
constexpr long kAddRule = 445;
constexpr long kRestrictSelf = 446;
constexpr unsigned kAskVersion = 1;
constexpr int kPathBeneath = 1;

constexpr std::uint64_t kReadFile = 1U << 2;
constexpr std::uint64_t kBasicRights = (1U << 13) - 1;  // execute, write, read, list, remove, make
constexpr std::uint64_t kMoveRight = 1U << 13;          // version 2: linking and renaming between folders
constexpr std::uint64_t kTruncateRight = 1U << 14;      // version 3
constexpr std::uint64_t kDeviceRight = 1U << 15;        // version 5: commands to devices
constexpr std::uint64_t kPorts = 3;                     // version 4: bind and connect
constexpr std::uint64_t kScopes = 3;                    // version 6: abstract sockets and signals

struct RulesetAttributes {
  std::uint64_t files = 0;
  std::uint64_t ports = 0;
  std::uint64_t scopes = 0;
};

struct [[gnu::packed]] PathRule {
  std::uint64_t allowed;
  std::int32_t descriptor;
};

/// What a version of the kernel's interface can forbid, and how much of the structure it knows.
RulesetAttributes AllThatIsKnownTo(long version, std::size_t& size) {
  RulesetAttributes all{kBasicRights, 0, 0};
  size = sizeof(std::uint64_t);
  if (version >= 2) all.files |= kMoveRight;
  if (version >= 3) all.files |= kTruncateRight;
  if (version >= 4) {
    all.ports = kPorts;
    size = 2 * sizeof(std::uint64_t);
  }
  if (version >= 5) all.files |= kDeviceRight;
  if (version >= 6) {
    all.scopes = kScopes;
    size = 3 * sizeof(std::uint64_t);
  }
  return all;
}

}  // namespace

bool CloseFileSystem(const std::vector<int>& readable) {
  const long version = syscall(kCreateRuleset, nullptr, 0, kAskVersion);
  if (version < 1) return false;
  std::size_t size = 0;
  const RulesetAttributes attributes = AllThatIsKnownTo(version, size);
  const long ruleset = syscall(kCreateRuleset, &attributes, size, 0U);
  if (ruleset < 0) return false;
  bool good = true;
  for (const int descriptor : readable) {
    const PathRule rule{kReadFile, descriptor};
    good = syscall(kAddRule, ruleset, kPathBeneath, &rule, 0U) == 0 && good;
  }
  good = good && syscall(kRestrictSelf, ruleset, 0U) == 0;
  close(static_cast<int>(ruleset));
  return good;
}

}  // namespace qd::workbench

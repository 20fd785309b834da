#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qd::workbench {

/// What a process that reads strangers' files may still do.
struct CellRules {
  /// Descriptors of files, and of folders with all that lies below, that may be opened for reading.
  std::vector<int> readable;
  /// Bytes of data that the process may hold; 0 for no limit.
  std::uint64_t memory = 0;
  /// Only for tests of what is left where a system lacks one of them.
  bool withLandlock = true;
  bool withCallFilter = true;
};

/// Puts the calling process into a cell, for good: it cannot start programs or processes, reach the network, look
/// into other processes, open anything for writing, or change a file, its name, its mode or its times; it opens
/// for reading only what the rules name, dumps no memory, and holds no more of it than it may. A harmless call
/// that is forbidden fails; one that only an intruder makes ends the process with SIGSYS. Threads may be started
/// afterwards; those that run already must be none, as paths are closed for the calling thread and those that it
/// starts. Returns the names of the protections that the system does not give.
std::vector<std::string> EnterCell(const CellRules& rules);

/// Lets the process end as soon as the one with the number `parent` has ended, whatever ends it. The system ties
/// this to the thread that started us: that one must live as long as we are wanted. Ends the process at once when
/// the parent is gone already.
void EndWithParent(int parent);

}  // namespace qd::workbench

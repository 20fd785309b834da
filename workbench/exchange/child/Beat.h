#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "workbench/exchange/child/Sink.h"

namespace qd::workbench {

/// Tells the workbench several times a second, from a thread of its own, that the program is alive, and how many
/// bytes it has read and the libraries have said: who waits can tell a program that spins from one that works.
class Beat {
 public:
  /// `counters` is a descriptor of the process's own counters, opened before the cell was entered; -1 for none.
  Beat(Sink& sink, int counters);
  ~Beat();
  Beat(const Beat&) = delete;
  Beat& operator=(const Beat&) = delete;

 private:
  void Run();
  std::uint64_t BytesMoved();

  Sink& m_sink;
  int m_counters;
  std::uint64_t m_counted = 0;  // bytes of the counters themselves
  std::mutex m_mutex;
  std::condition_variable m_ended;
  bool m_end = false;
  std::thread m_thread;  // last: it uses what stands above
};

}  // namespace qd::workbench

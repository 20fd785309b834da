#include "workbench/exchange/child/Beat.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string_view>

namespace qd::workbench {

Beat::Beat(Sink& sink, int counters) : m_sink(sink), m_counters(counters), m_thread([this] { Run(); }) {}

Beat::~Beat() {
  {
    const std::lock_guard lock(m_mutex);
    m_end = true;
  }
  m_ended.notify_one();
  m_thread.join();
}

void Beat::Run() {
  constexpr std::chrono::milliseconds kPause{200};
  std::unique_lock lock(m_mutex);
  while (!m_ended.wait_for(lock, kPause, [this] { return m_end; })) {
    lock.unlock();
    m_sink.Beat(BytesMoved());
    lock.lock();
  }
}

/// What all threads have read and written so far, as the system counts it, but for what we send and read here.
std::uint64_t Beat::BytesMoved() {
  if (m_counters < 0) return 0;
  char text[512] = {};
  const ssize_t length = pread(m_counters, text, sizeof(text) - 1, 0);
  if (length <= 0) return 0;
  m_counted += static_cast<std::uint64_t>(length);
  const std::string_view all(text, static_cast<std::size_t>(length));
  std::uint64_t bytes = 0;
  for (const std::string_view name : {"rchar: ", "wchar: "}) {
    const std::size_t at = all.find(name);
    if (at != std::string_view::npos) bytes += std::strtoull(text + at + name.size(), nullptr, 10);
  }
  const std::uint64_t own = m_counted + m_sink.Sent();
  return bytes > own ? bytes - own : 0;
}

}  // namespace qd::workbench

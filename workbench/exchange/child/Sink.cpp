#include "workbench/exchange/child/Sink.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace qd::workbench {

void Sink::Send(FrameType type, const std::string& payload) {
  const std::string frame = FrameOf(type, payload);
  const std::lock_guard lock(m_mutex);
  for (std::size_t sent = 0; sent < frame.size();) {
    const ssize_t count = write(m_descriptor, frame.data() + sent, frame.size() - sent);
    if (count <= 0) std::_Exit(3);
    sent += static_cast<std::size_t>(count);
    m_bytes += static_cast<std::uint64_t>(count);
  }
}

void Sink::Progress(double done) {
  const auto thousandths = static_cast<std::uint32_t>(std::clamp(done, 0.0, 1.0) * 1000);
  if (thousandths <= m_progress) return;
  m_progress = thousandths;
  Send(FrameType::Progress, EncodeProgress(thousandths));
}

void Sink::Part(const ImportedPart& part) {
  ++m_sent;
  Send(FrameType::Part, Encode(part));
}

void Sink::MeshSet(const ImportedMeshSet& set) {
  ++m_sent;
  Send(FrameType::MeshSet, Encode(set));
}

void Sink::Bytes(const std::string& bytes) {
  ++m_sent;
  Send(FrameType::Bytes, bytes);
}

void Sink::Finish() {
  if (m_sent == 0) throw ImportError{"IDS_WB_IMPORT_NOTHING", ""};
  Send(FrameType::Done, {});
}

}  // namespace qd::workbench

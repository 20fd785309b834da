#pragma once

#include <atomic>
#include <mutex>

#include "workbench/exchange/pipe/Protocol.h"

namespace qd::workbench {

/// Sends frames through a pipe, from any thread. Ends the program when the other end is gone: nobody wants the
/// result then.
class Sink {
 public:
  explicit Sink(int descriptor) : m_descriptor(descriptor) {}

  void Progress(double done);
  /// We are alive, and have read and written so many bytes beside what was sent.
  void Beat(std::uint64_t bytesMoved) { Send(FrameType::Beat, EncodeBeat(bytesMoved)); }
  void Part(const ImportedPart& part);
  void MeshSet(const ImportedMeshSet& set);
  void Material(const ImportedMaterial& material) { Send(FrameType::Material, Encode(material)); }
  void Property(const ImportedProperty& property) { Send(FrameType::Property, Encode(property)); }
  void Deck(const ImportedDeck& deck) { Send(FrameType::Deck, Encode(deck)); }
  /// A piece of the file that is written.
  void Bytes(const std::string& bytes);
  void Written(std::uint64_t parts) { Send(FrameType::Written, EncodeWritten(parts)); }
  void Note(const ImportNote& note) { Send(FrameType::Note, Encode(note)); }
  /// Throws when nothing was sent: a file without contents is an error.
  void Finish();
  void Fail(const ImportError& error) { Send(FrameType::Error, Encode(error)); }
  /// Bytes that were sent so far.
  std::uint64_t Sent() const { return m_bytes; }

 private:
  void Send(FrameType type, const std::string& payload);

  int m_descriptor;
  std::mutex m_mutex;  // a frame is sent whole before the next one begins
  std::atomic<std::uint64_t> m_bytes = 0;
  std::uint32_t m_progress = 0;
  std::size_t m_sent = 0;
};

}  // namespace qd::workbench

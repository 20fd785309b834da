#pragma once

#include "workbench/exchange/Protocol.h"

namespace qd::workbench {

/// Sends frames through a pipe. Ends the program when the other end is gone: nobody wants the result then.
class Sink {
 public:
  explicit Sink(int descriptor) : m_descriptor(descriptor) {}

  void Progress(double done);
  void Part(const ImportedPart& part);
  void MeshSet(const ImportedMeshSet& set);
  void Material(const ImportedMaterial& material) { Send(FrameType::Material, Encode(material)); }
  void Property(const ImportedProperty& property) { Send(FrameType::Property, Encode(property)); }
  void Note(const ImportNote& note) { Send(FrameType::Note, Encode(note)); }
  /// Throws when nothing was sent: a file without contents is an error.
  void Finish();
  void Fail(const ImportError& error) { Send(FrameType::Error, Encode(error)); }

 private:
  void Send(FrameType type, const std::string& payload);

  int m_descriptor;
  std::uint32_t m_progress = 0;
  std::size_t m_sent = 0;
};

}  // namespace qd::workbench

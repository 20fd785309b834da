#include "workbench/exchange/Protocol.h"

#include <utility>

#include "workbench/model/ModelBytes.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kFrameHead = sizeof(std::uint32_t) + sizeof(std::uint64_t);

}  // namespace

std::string EncodeProgress(std::uint32_t thousandths) {
  return ByteWriter().Put(thousandths).Take();
}

std::optional<std::uint32_t> DecodeProgress(std::string_view payload) {
  std::uint32_t thousandths = 0;
  if (!ByteReader(payload).Get(thousandths).IsWhole() || thousandths > 1000) return std::nullopt;
  return thousandths;
}

std::string Encode(const ImportedPart& part) {
  ByteWriter writer;
  writer.Put(part.name).Put(part.assembly).Put(part.colour).Put(part.kind);
  PutShape(writer, part.shape);
  return writer.Take();
}

std::optional<ImportedPart> DecodePart(std::string_view payload) {
  ImportedPart part;
  ByteReader reader(payload);
  reader.Get(part.name).Get(part.assembly).Get(part.colour).Get(part.kind);
  const bool sound = GetShape(reader, part.shape) && reader.IsWhole() && part.kind <= TopologyKind::Compound;
  return sound ? std::optional(std::move(part)) : std::nullopt;
}

std::string Encode(const ImportedMeshSet& set) {
  ByteWriter writer;
  writer.Put(set.name).Put(set.parent).Put(set.property);
  PutMesh(writer, set.mesh);
  return writer.Take();
}

std::optional<ImportedMeshSet> DecodeMeshSet(std::string_view payload) {
  ImportedMeshSet set;
  ByteReader reader(payload);
  reader.Get(set.name).Get(set.parent).Get(set.property);
  const bool sound = GetMesh(reader, set.mesh) && reader.IsWhole();
  return sound ? std::optional(std::move(set)) : std::nullopt;
}

std::string Encode(const ImportedMaterial& material) {
  return ByteWriter()
      .Put(material.name)
      .Put(material.youngsModulus)
      .Put(material.poissonsRatio)
      .Put(material.density)
      .Take();
}

std::optional<ImportedMaterial> DecodeMaterial(std::string_view payload) {
  ImportedMaterial material;
  const bool whole = ByteReader(payload)
                         .Get(material.name)
                         .Get(material.youngsModulus)
                         .Get(material.poissonsRatio)
                         .Get(material.density)
                         .IsWhole();
  return whole ? std::optional(material) : std::nullopt;
}

std::string Encode(const ImportedProperty& property) {
  return ByteWriter().Put(property.name).Put(property.kind).Put(property.size).Put(property.material).Take();
}

std::optional<ImportedProperty> DecodeProperty(std::string_view payload) {
  ImportedProperty property;
  const bool whole = ByteReader(payload)
                         .Get(property.name)
                         .Get(property.kind)
                         .Get(property.size)
                         .Get(property.material)
                         .IsWhole();
  return whole && property.kind <= tagTProperty::Kind::Beam ? std::optional(property) : std::nullopt;
}

std::string Encode(const ImportNote& note) {
  return ByteWriter().Put(note.key).Put(note.detail).Take();
}

std::optional<ImportNote> DecodeNote(std::string_view payload) {
  ImportNote note;
  return ByteReader(payload).Get(note.key).Get(note.detail).IsWhole() ? std::optional(note) : std::nullopt;
}

std::string Encode(const ImportError& error) {
  return ByteWriter().Put(error.key).Put(error.detail).Take();
}

std::optional<ImportError> DecodeError(std::string_view payload) {
  ImportError error;
  if (!ByteReader(payload).Get(error.key).Get(error.detail).IsWhole()) return std::nullopt;
  return error;
}

std::string Encode(const ShapeOperation& operation) {
  ByteWriter writer;
  writer.Put(operation.kind)
      .Put(operation.point)
      .Put(operation.vector)
      .Put(operation.amount)
      .Put(operation.dimension)
      .Put(operation.mapped)
      .Put(operation.secondOrder)
      .Put(operation.target);
  writer.Put(static_cast<std::uint64_t>(operation.operands.size()));
  for (const ShapeOperation::Operand& operand : operation.operands) {
    writer.Put(operand.name).Put(operand.brep).Put(operand.kind);
  }
  return writer.Take();
}

std::optional<ShapeOperation> DecodeOperation(std::string_view payload) {
  ShapeOperation operation;
  ByteReader reader(payload);
  std::uint64_t operands = 0;
  reader.Get(operation.kind)
      .Get(operation.point)
      .Get(operation.vector)
      .Get(operation.amount)
      .Get(operation.dimension)
      .Get(operation.mapped)
      .Get(operation.secondOrder)
      .Get(operation.target);
  reader.Get(operands);
  for (std::uint64_t i = 0; i < operands && reader.IsGood(); ++i) {
    ShapeOperation::Operand& operand = operation.operands.emplace_back();
    reader.Get(operand.name).Get(operand.brep).Get(operand.kind);
    if (operand.kind > TopologyKind::Compound) return std::nullopt;
  }
  if (!reader.IsWhole() || operation.kind > ShapeOperationKind::Mesh) return std::nullopt;
  return operation;
}

std::string FrameOf(FrameType type, std::string_view payload) {
  std::string frame = ByteWriter().Put(type).Put(static_cast<std::uint64_t>(payload.size())).Take();
  frame.append(payload);
  return frame;
}

std::optional<FrameReader::Frame> FrameReader::Next() {
  const std::string_view rest = std::string_view(m_buffer).substr(m_read);
  if (rest.size() < kFrameHead) return std::nullopt;
  FrameType type{};
  std::uint64_t length = 0;
  ByteReader(rest.substr(0, kFrameHead)).Get(type).Get(length);
  if (length > rest.size() - kFrameHead) return std::nullopt;
  Frame frame{type, std::string(rest.substr(kFrameHead, static_cast<std::size_t>(length)))};
  m_read += kFrameHead + frame.payload.size();
  // Consumed bytes are dropped now and then, not at every frame.
  if (m_read > m_buffer.size() / 2) {
    m_buffer.erase(0, m_read);
    m_read = 0;
  }
  return frame;
}

}  // namespace qd::workbench

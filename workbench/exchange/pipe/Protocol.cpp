#include "workbench/exchange/pipe/Protocol.h"

#include <algorithm>
#include <utility>

#include "workbench/mesh/ModelBytes.h"
#include "workbench/text/Shown.h"

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

std::string EncodeBeat(std::uint64_t bytesMoved) {
  return ByteWriter().Put(bytesMoved).Take();
}

std::optional<std::uint64_t> DecodeBeat(std::string_view payload) {
  std::uint64_t bytesMoved = 0;
  if (!ByteReader(payload).Get(bytesMoved).IsWhole()) return std::nullopt;
  return bytesMoved;
}

std::string EncodeWritten(std::uint64_t parts) {
  return ByteWriter().Put(parts).Take();
}

std::optional<std::uint64_t> DecodeWritten(std::string_view payload) {
  std::uint64_t parts = 0;
  if (!ByteReader(payload).Get(parts).IsWhole()) return std::nullopt;
  return parts;
}

namespace {

void PutAssemblies(ByteWriter& writer, const std::vector<ImportedAssembly>& assemblies) {
  writer.Put(static_cast<std::uint64_t>(assemblies.size()));
  for (const ImportedAssembly& assembly : assemblies) {
    writer.Put(assembly.product).Put(assembly.instance).Put(assembly.use);
  }
}

void GetAssemblies(ByteReader& reader, std::vector<ImportedAssembly>& assemblies) {
  std::uint64_t count = 0;
  reader.Get(count);
  for (std::uint64_t i = 0; i < count && reader.IsGood(); ++i) {
    ImportedAssembly& assembly = assemblies.emplace_back();
    reader.Get(assembly.product).Get(assembly.instance).Get(assembly.use);
  }
}

}  // namespace

std::string Encode(const ImportedPart& part) {
  ByteWriter writer;
  writer.Put(part.name).Put(part.product).Put(part.instance).Put(part.use);
  PutAssemblies(writer, part.assemblies);
  writer.Put(part.colour).Put(part.kind);
  PutShape(writer, part.shape);
  return writer.Take();
}

std::optional<ImportedPart> DecodePart(std::string_view payload) {
  ImportedPart part;
  ByteReader reader(payload);
  reader.Get(part.name).Get(part.product).Get(part.instance).Get(part.use);
  GetAssemblies(reader, part.assemblies);
  reader.Get(part.colour).Get(part.kind);
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
  if (!ByteReader(payload).Get(note.key).Get(note.detail).IsWhole()) return std::nullopt;
  note.detail = ShownText(note.detail, kShownDetail);
  return note;
}

namespace {

void PutNames(ByteWriter& writer, const std::vector<ImportedDeck::Name>& names) {
  writer.Put(static_cast<std::uint64_t>(names.size()));
  for (const ImportedDeck::Name& name : names) writer.Put(name.name).Put(name.place).Put(name.shared);
}

void GetNames(ByteReader& reader, std::vector<ImportedDeck::Name>& names) {
  std::uint64_t count = 0;
  reader.Get(count);
  for (std::uint64_t i = 0; i < count && reader.IsGood(); ++i) {
    std::uint8_t shared = 0;
    ImportedDeck::Name& name = names.emplace_back();
    reader.Get(name.name).Get(name.place).Get(shared);
    name.shared = shared != 0;
  }
}

}  // namespace

std::string Encode(const ImportedDeck& deck) {
  ByteWriter writer;
  writer.Put(deck.name).Put(deck.text);
  PutNames(writer, deck.sets);
  PutNames(writer, deck.materials);
  return writer.Put(deck.sections).Put(deck.rest).Take();
}

std::optional<ImportedDeck> DecodeDeck(std::string_view payload) {
  ImportedDeck deck;
  ByteReader reader(payload);
  reader.Get(deck.name).Get(deck.text);
  GetNames(reader, deck.sets);
  GetNames(reader, deck.materials);
  const bool whole = reader.Get(deck.sections).Get(deck.rest).IsWhole();
  return whole ? std::optional(std::move(deck)) : std::nullopt;
}

std::string Encode(const ImportError& error) {
  return ByteWriter().Put(error.key).Put(error.detail).Put(error.wanted).Take();
}

std::optional<ImportError> DecodeError(std::string_view payload) {
  ImportError error;
  if (!ByteReader(payload).Get(error.key).Get(error.detail).Get(error.wanted).IsWhole()) return std::nullopt;
  error.detail = ShownText(error.detail, kShownDetail);
  constexpr std::size_t kLongestPath = 4096;
  const bool isPath = error.wanted.starts_with('/') && error.wanted.size() < kLongestPath &&
                      error.wanted.find('\0') == std::string::npos;
  if (!isPath) error.wanted.clear();
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
  writer.Put(static_cast<std::uint64_t>(operation.taken.size()));
  for (const ShapeOperation::Taken& taken : operation.taken) {
    writer.Put(taken.operand).Put(taken.kind).Put(taken.at).Put(taken.name);
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
  std::uint64_t count = 0;
  reader.Get(count);
  for (std::uint64_t i = 0; i < count && reader.IsGood(); ++i) {
    ShapeOperation::Taken& taken = operation.taken.emplace_back();
    reader.Get(taken.operand).Get(taken.kind).Get(taken.at).Get(taken.name);
    if (taken.operand >= operands || taken.kind > TopologyKind::Surface) return std::nullopt;
  }
  if (!reader.IsWhole() || operation.kind > ShapeOperationKind::TakeOut) return std::nullopt;
  return operation;
}

std::string Encode(const ShapeExport& wanted) {
  ByteWriter writer;
  writer.Put(wanted.kind).Put(static_cast<std::uint64_t>(wanted.parts.size()));
  for (const ExportedPart& part : wanted.parts) {
    writer.Put(part.name).Put(part.product).Put(part.instance).Put(part.use).Put(part.import);
    PutAssemblies(writer, part.assemblies);
    writer.Put(part.colour).Put(part.kind).Put(part.shape != nullptr ? part.shape->brep : std::string());
  }
  return writer.Take();
}

std::optional<ShapeExport> DecodeExport(std::string_view payload) {
  ShapeExport wanted;
  ByteReader reader(payload);
  std::uint64_t parts = 0;
  reader.Get(wanted.kind).Get(parts);
  for (std::uint64_t i = 0; i < parts && reader.IsGood(); ++i) {
    ExportedPart& part = wanted.parts.emplace_back();
    auto shape = std::make_shared<PartShape>();
    reader.Get(part.name).Get(part.product).Get(part.instance).Get(part.use).Get(part.import);
    GetAssemblies(reader, part.assemblies);
    reader.Get(part.colour).Get(part.kind).Get(shape->brep);
    part.shape = std::move(shape);
    if (part.kind > TopologyKind::Compound) return std::nullopt;
  }
  if (!reader.IsWhole() || wanted.kind > ShapeExport::Kind::Brep) return std::nullopt;
  return wanted;
}

std::string FrameOf(FrameType type, std::string_view payload) {
  std::string frame = ByteWriter().Put(type).Put(static_cast<std::uint64_t>(payload.size())).Take();
  frame.append(payload);
  return frame;
}

bool FrameReader::Feed(std::string_view bytes) {
  while (!m_broken) {
    if (m_head.size() < kFrameHead) {
      const std::size_t part = std::min(kFrameHead - m_head.size(), bytes.size());
      m_head.append(bytes.substr(0, part));
      bytes.remove_prefix(part);
      if (m_head.size() < kFrameHead) return true;
      if (!BeginFrame()) break;
    }
    const std::size_t part =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_length - m_payload.size(), bytes.size()));
    m_payload.append(bytes.substr(0, part));
    bytes.remove_prefix(part);
    if (m_payload.size() < m_length) return true;
    m_ready.push_back({m_type, std::exchange(m_payload, {})});
    m_head.clear();
  }
  return false;
}

/// Reads the head that has arrived, and counts the frame before any of it is kept.
bool FrameReader::BeginFrame() {
  constexpr std::uint64_t kKeeping = 512;  // bytes that a record takes beside its payload
  ByteReader(m_head).Get(m_type).Get(m_length);
  // A beat is not kept.
  const std::uint64_t cost = m_type == FrameType::Beat && m_length <= kKeeping ? 0 : kKeeping + m_length;
  m_broken = m_length > m_limits.frame || cost > m_limits.total - m_total;
  if (!m_broken) m_total += cost;
  return !m_broken;
}

std::optional<FrameReader::Frame> FrameReader::Next() {
  if (m_ready.empty()) return std::nullopt;
  Frame frame = std::move(m_ready.front());
  m_ready.pop_front();
  return frame;
}

}  // namespace qd::workbench

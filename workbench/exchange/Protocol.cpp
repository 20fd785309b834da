#include "workbench/exchange/Protocol.h"

#include <algorithm>
#include <functional>
#include <type_traits>
#include <utility>

#include "workbench/model/ElementTypes.h"
#include "workbench/model/MeshEdit.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kFrameHead = sizeof(std::uint32_t) + sizeof(std::uint64_t);

/// Appends plain values, texts and arrays of plain values.
class Writer {
 public:
  template <typename T>
  Writer& Put(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    m_bytes.append(reinterpret_cast<const char*>(&value), sizeof(T));
    return *this;
  }
  Writer& Put(const std::string& text) { return PutArray(text.data(), text.size()); }
  template <typename T>
  Writer& Put(const std::vector<T>& values) {
    return PutArray(values.data(), values.size());
  }
  std::string Take() { return std::move(m_bytes); }

 private:
  template <typename T>
  Writer& PutArray(const T* values, std::size_t count) {
    Put(static_cast<std::uint64_t>(count));
    if (count > 0) m_bytes.append(reinterpret_cast<const char*>(values), count * sizeof(T));
    return *this;
  }
  std::string m_bytes;
};

/// The other way; once anything is missing, everything fails.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : m_bytes(bytes) {}
  template <typename T>
  Reader& Get(T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (Need(sizeof(T))) {
      std::memcpy(&value, m_bytes.data(), sizeof(T));
      m_bytes.remove_prefix(sizeof(T));
    }
    return *this;
  }
  Reader& Get(std::string& text) { return GetArray(text); }
  template <typename T>
  Reader& Get(std::vector<T>& values) {
    return GetArray(values);
  }
  bool IsWhole() const { return m_good && m_bytes.empty(); }
  bool IsGood() const { return m_good; }

 private:
  bool Need(std::size_t bytes) {
    m_good = m_good && bytes <= m_bytes.size();
    return m_good;
  }
  template <typename Array>
  Reader& GetArray(Array& values) {
    using Value = typename Array::value_type;
    std::uint64_t count = 0;
    Get(count);
    // Asked of the bytes at hand before anything is made that large.
    if (!m_good || count > m_bytes.size() / sizeof(Value)) {
      m_good = false;
      return *this;
    }
    values.resize(static_cast<std::size_t>(count));
    if (values.empty()) return *this;  // an empty array has no place to copy to
    std::memcpy(values.data(), m_bytes.data(), values.size() * sizeof(Value));
    m_bytes.remove_prefix(values.size() * sizeof(Value));
    return *this;
  }
  std::string_view m_bytes;
  bool m_good = true;
};

/// Whether every number of `indexes` names one of `count` things.
template <typename Index>
bool AllBelow(const std::vector<Index>& indexes, std::size_t count) {
  for (const Index index : indexes) {
    if (index >= count) return false;
  }
  return true;
}

bool IsSound(const PartFacets& facets) {
  const std::size_t points = facets.points.size() / 3;
  std::size_t linePoints = 0;
  for (const std::uint32_t size : facets.lineSizes) linePoints += size;
  return facets.points.size() % 3 == 0 &&
         (facets.normals.empty() || facets.normals.size() == facets.points.size()) &&
         facets.triangles.size() % 3 == 0 && AllBelow(facets.triangles, points) &&
         linePoints == facets.lines.size() && AllBelow(facets.lines, points);
}

/// Known kinds of elements, nodes in ascending order, and each element's nodes among them.
bool IsSound(const MeshData& mesh) {
  if (mesh.coordinates.size() != mesh.nodeIds.size() * 3) return false;
  if (std::adjacent_find(mesh.nodeIds.begin(), mesh.nodeIds.end(), std::greater_equal<>()) != mesh.nodeIds.end()) {
    return false;
  }
  for (const MeshData::Block& block : mesh.blocks) {
    const ElementType* type = FindElementType(block.elementType);
    if (type == nullptr || block.nodesPerElement != type->nodes) return false;
    if (block.nodeIds.size() != block.elementIds.size() * static_cast<std::size_t>(type->nodes)) return false;
    const auto known = [&mesh](std::uint64_t node) { return PlaceOfNode(mesh, node) < mesh.nodeIds.size(); };
    if (!std::all_of(block.nodeIds.begin(), block.nodeIds.end(), known)) return false;
  }
  return true;
}

}  // namespace

std::string EncodeProgress(std::uint32_t thousandths) {
  return Writer().Put(thousandths).Take();
}

std::optional<std::uint32_t> DecodeProgress(std::string_view payload) {
  std::uint32_t thousandths = 0;
  if (!Reader(payload).Get(thousandths).IsWhole() || thousandths > 1000) return std::nullopt;
  return thousandths;
}

namespace {

/// Keys divided by blanks.
std::string Keys(const std::vector<std::pair<std::string, double>>& pairs) {
  std::string keys;
  for (const auto& [key, value] : pairs) keys += key + " ";
  return keys;
}

std::vector<double> Values(const std::vector<std::pair<std::string, double>>& pairs) {
  std::vector<double> values;
  values.reserve(pairs.size());
  for (const auto& [key, value] : pairs) values.push_back(value);
  return values;
}

/// False when there are not as many keys as values.
bool Pair(const std::string& keys, const std::vector<double>& values,
          std::vector<std::pair<std::string, double>>& pairs) {
  std::size_t at = 0;
  for (const double value : values) {
    const std::size_t end = keys.find(' ', at);
    if (end == std::string::npos) return false;
    pairs.emplace_back(keys.substr(at, end - at), value);
    at = end + 1;
  }
  return at == keys.size();
}

}  // namespace

std::string Encode(const ImportedPart& part) {
  const PartFacets& facets = part.shape.facets;
  return Writer()
      .Put(part.name)
      .Put(part.assembly)
      .Put(part.colour)
      .Put(part.kind)
      .Put(part.shape.brep)
      .Put(facets.points)
      .Put(facets.normals)
      .Put(facets.triangles)
      .Put(facets.lineSizes)
      .Put(facets.lines)
      .Put(part.shape.volume)
      .Put(part.shape.area)
      .Put(part.shape.length)
      .Put(Keys(part.shape.geometry))
      .Put(Values(part.shape.geometry))
      .Take();
}

std::optional<ImportedPart> DecodePart(std::string_view payload) {
  ImportedPart part;
  PartFacets& facets = part.shape.facets;
  std::string keys;
  std::vector<double> values;
  const bool whole = Reader(payload)
                         .Get(part.name)
                         .Get(part.assembly)
                         .Get(part.colour)
                         .Get(part.kind)
                         .Get(part.shape.brep)
                         .Get(facets.points)
                         .Get(facets.normals)
                         .Get(facets.triangles)
                         .Get(facets.lineSizes)
                         .Get(facets.lines)
                         .Get(part.shape.volume)
                         .Get(part.shape.area)
                         .Get(part.shape.length)
                         .Get(keys)
                         .Get(values)
                         .IsWhole();
  if (!whole || part.kind > TopologyKind::Compound || !IsSound(facets)) return std::nullopt;
  if (!Pair(keys, values, part.shape.geometry)) return std::nullopt;
  return part;
}

std::string Encode(const ImportedMeshSet& set) {
  Writer writer;
  writer.Put(set.name).Put(set.parent).Put(set.property).Put(set.mesh.nodeIds).Put(set.mesh.coordinates);
  writer.Put(static_cast<std::uint64_t>(set.mesh.blocks.size()));
  for (const MeshData::Block& block : set.mesh.blocks) {
    writer.Put(block.elementType).Put(block.nodesPerElement).Put(block.elementIds).Put(block.nodeIds);
  }
  return writer.Take();
}

std::optional<ImportedMeshSet> DecodeMeshSet(std::string_view payload) {
  ImportedMeshSet set;
  Reader reader(payload);
  std::uint64_t blocks = 0;
  reader.Get(set.name).Get(set.parent).Get(set.property).Get(set.mesh.nodeIds).Get(set.mesh.coordinates);
  reader.Get(blocks);
  for (std::uint64_t i = 0; i < blocks && reader.IsGood(); ++i) {
    MeshData::Block block;
    reader.Get(block.elementType).Get(block.nodesPerElement).Get(block.elementIds).Get(block.nodeIds);
    set.mesh.blocks.push_back(std::move(block));
  }
  if (!reader.IsWhole() || !IsSound(set.mesh)) return std::nullopt;
  return set;
}

std::string Encode(const ImportedMaterial& material) {
  return Writer()
      .Put(material.name)
      .Put(material.youngsModulus)
      .Put(material.poissonsRatio)
      .Put(material.density)
      .Take();
}

std::optional<ImportedMaterial> DecodeMaterial(std::string_view payload) {
  ImportedMaterial material;
  const bool whole = Reader(payload)
                         .Get(material.name)
                         .Get(material.youngsModulus)
                         .Get(material.poissonsRatio)
                         .Get(material.density)
                         .IsWhole();
  return whole ? std::optional(material) : std::nullopt;
}

std::string Encode(const ImportedProperty& property) {
  return Writer().Put(property.name).Put(property.kind).Put(property.size).Put(property.material).Take();
}

std::optional<ImportedProperty> DecodeProperty(std::string_view payload) {
  ImportedProperty property;
  const bool whole =
      Reader(payload).Get(property.name).Get(property.kind).Get(property.size).Get(property.material).IsWhole();
  return whole && property.kind <= tagTProperty::Kind::Beam ? std::optional(property) : std::nullopt;
}

std::string Encode(const ImportNote& note) {
  return Writer().Put(note.key).Put(note.detail).Take();
}

std::optional<ImportNote> DecodeNote(std::string_view payload) {
  ImportNote note;
  return Reader(payload).Get(note.key).Get(note.detail).IsWhole() ? std::optional(note) : std::nullopt;
}

std::string Encode(const ImportError& error) {
  return Writer().Put(error.key).Put(error.detail).Take();
}

std::optional<ImportError> DecodeError(std::string_view payload) {
  ImportError error;
  if (!Reader(payload).Get(error.key).Get(error.detail).IsWhole()) return std::nullopt;
  return error;
}

std::string Encode(const ShapeOperation& operation) {
  Writer writer;
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
  Reader reader(payload);
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
  std::string frame = Writer().Put(type).Put(static_cast<std::uint64_t>(payload.size())).Take();
  frame.append(payload);
  return frame;
}

std::optional<FrameReader::Frame> FrameReader::Next() {
  const std::string_view rest = std::string_view(m_buffer).substr(m_read);
  if (rest.size() < kFrameHead) return std::nullopt;
  FrameType type{};
  std::uint64_t length = 0;
  Reader(rest.substr(0, kFrameHead)).Get(type).Get(length);
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

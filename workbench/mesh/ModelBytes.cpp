#include "workbench/mesh/ModelBytes.h"

#include <algorithm>
#include <functional>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::workbench {

namespace {

/// Whether every number of `indexes` names one of `count` things.
template <typename Index>
bool AllBelow(const std::vector<Index>& indexes, std::size_t count) {
  for (const Index index : indexes) {
    if (index >= count) return false;
  }
  return true;
}

}  // namespace

bool HangsTogether(const PartShape& shape) {
  const PartFacets& facets = shape.facets;
  const std::size_t points = facets.points.size() / 3;
  std::size_t linePoints = 0;
  for (const std::uint32_t size : facets.lineSizes) linePoints += size;
  return facets.points.size() % 3 == 0 &&
         (facets.normals.empty() || facets.normals.size() == facets.points.size()) &&
         facets.triangles.size() % 3 == 0 && AllBelow(facets.triangles, points) &&
         linePoints == facets.lines.size() && AllBelow(facets.lines, points);
}

bool HangsTogether(const MeshData& mesh) {
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

void PutShape(ByteWriter& writer, const PartShape& shape) {
  const PartFacets& facets = shape.facets;
  writer.Put(shape.brep).Put(facets.points).Put(facets.normals).Put(facets.triangles).Put(facets.lineSizes);
  writer.Put(facets.lines).Put(shape.volume).Put(shape.area).Put(shape.length);
  writer.Put(static_cast<std::uint64_t>(shape.geometry.size()));
  for (const auto& [key, value] : shape.geometry) writer.Put(key).Put(value);
}

bool GetShape(ByteReader& reader, PartShape& shape) {
  PartFacets& facets = shape.facets;
  reader.Get(shape.brep).Get(facets.points).Get(facets.normals).Get(facets.triangles).Get(facets.lineSizes);
  reader.Get(facets.lines).Get(shape.volume).Get(shape.area).Get(shape.length);
  std::uint64_t measures = 0;
  reader.Get(measures);
  for (std::uint64_t i = 0; i < measures && reader.IsGood(); ++i) {
    auto& [key, value] = shape.geometry.emplace_back();
    reader.Get(key).Get(value);
  }
  return reader.IsGood() && HangsTogether(shape);
}

void PutMesh(ByteWriter& writer, const MeshData& mesh) {
  writer.Put(mesh.nodeIds).Put(mesh.coordinates).Put(static_cast<std::uint64_t>(mesh.blocks.size()));
  for (const MeshData::Block& block : mesh.blocks) {
    writer.Put(block.elementType).Put(block.nodesPerElement).Put(block.elementIds).Put(block.nodeIds);
  }
}

bool GetMesh(ByteReader& reader, MeshData& mesh) {
  std::uint64_t blocks = 0;
  reader.Get(mesh.nodeIds).Get(mesh.coordinates).Get(blocks);
  for (std::uint64_t i = 0; i < blocks && reader.IsGood(); ++i) {
    MeshData::Block& block = mesh.blocks.emplace_back();
    reader.Get(block.elementType).Get(block.nodesPerElement).Get(block.elementIds).Get(block.nodeIds);
  }
  return reader.IsGood() && HangsTogether(mesh);
}

// ---- decks ----------------------------------------------------------------------------------------------

void PutDeckNames(ByteWriter& writer, const tagTDeck& deck) {
  writer.Put(static_cast<std::uint64_t>(deck.sets.size()));
  for (const tagTDeck::Set& set : deck.sets) {
    writer.Put(set.name).Put(set.mset).Put(static_cast<std::uint8_t>(set.shared)).Put(set.count).Put(set.mark);
  }
  writer.Put(static_cast<std::uint64_t>(deck.materials.size()));
  for (const tagTDeck::Material& material : deck.materials) {
    writer.Put(material.name).Put(material.material).Put(material.youngsModulus);
    writer.Put(material.poissonsRatio).Put(material.density);
  }
  writer.Put(static_cast<std::uint64_t>(deck.sections.size()));
  for (const tagTDeck::Section& section : deck.sections) {
    writer.Put(section.property).Put(section.material).Put(section.size);
  }
}

bool GetDeckNames(ByteReader& reader, tagTDeck& deck) {
  // Lists grow with what was read, never by what is announced.
  std::uint64_t count = 0;
  reader.Get(count);
  for (std::uint64_t i = 0; i < count && reader.IsGood(); ++i) {
    tagTDeck::Set& set = deck.sets.emplace_back();
    std::uint8_t shared = 0;
    reader.Get(set.name).Get(set.mset).Get(shared).Get(set.count).Get(set.mark);
    if (shared > 1) return false;
    set.shared = shared != 0;
  }
  reader.Get(count);
  for (std::uint64_t i = 0; i < count && reader.IsGood(); ++i) {
    tagTDeck::Material& material = deck.materials.emplace_back();
    reader.Get(material.name).Get(material.material).Get(material.youngsModulus);
    reader.Get(material.poissonsRatio).Get(material.density);
  }
  reader.Get(count);
  for (std::uint64_t i = 0; i < count && reader.IsGood(); ++i) {
    tagTDeck::Section& section = deck.sections.emplace_back();
    reader.Get(section.property).Get(section.material).Get(section.size);
  }
  return reader.IsGood();
}

}  // namespace qd::workbench

#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <variant>

#include "workbench/mesh/DeckRecord.h"
#include "workbench/model/Database.h"

namespace qd::test {

/// Writes down everything that a record holds, member by member, without the tables and forms that documents use.
/// Nothing that matters may look the same: texts with their lengths, numbers to the last bit.
class RecordText {
 public:
  static std::string Of(iterator itr, const tagTRecord& record) {
    RecordText text;
    text.Put(itr).Put(record.id);
    switch (workbench::TypeOf(itr)) {
      case kDataCord:
        text.Write(static_cast<const tagTCord&>(record));
        break;
      case kDataMset:
        text.Write(static_cast<const tagTMset&>(record));
        break;
      case kDataProperty:
        text.Write(static_cast<const tagTProperty&>(record));
        break;
      case kDataMaterial:
        text.Write(static_cast<const tagTMaterial&>(record));
        break;
      case kDataGeom:
        text.Write(static_cast<const tagTGeom&>(record));
        break;
      case kDataGset:
        text.Put(static_cast<const tagTGset&>(record).name);
        break;
      case kDataMGInfo:
        text.Write(static_cast<const tagMGInfo&>(record));
        break;
      case workbench::kDataSettings:
        text.Put(static_cast<const workbench::tagTSettings&>(record).currentGset);
        text.Put(static_cast<const workbench::tagTSettings&>(record).defaultMset);
        break;
      case workbench::kDataDeck:
        text.Write(static_cast<const workbench::tagTDeck&>(record));
        break;
      default:
        text.Put(std::string("a record of no known type"));
        break;
    }
    return text.m_text;
  }

 private:
  RecordText& Put(const std::string& bytes) {
    m_text += ' ' + std::to_string(bytes.size()) + ':' + bytes;
    return *this;
  }
  RecordText& Put(const CString& text) {
    m_text += " \"";
    for (const wchar_t unit : text) m_text += std::to_string(static_cast<unsigned>(unit)) + ",";
    m_text += '"';
    return *this;
  }
  RecordText& Put(double number) {
    std::array<char, 40> digits{};
    std::snprintf(digits.data(), digits.size(), " %a", number + 0.0);  // files know no negative zero
    m_text += digits.data();
    return *this;
  }
  template <typename Number>
  std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>, RecordText&> Put(Number number) {
    m_text += ' ' + std::to_string(static_cast<long long>(number));
    return *this;
  }
  template <typename Item>
  RecordText& Put(const std::vector<Item>& items) {
    Put(items.size());
    for (const Item& item : items) Put(item);
    return *this;
  }
  RecordText& Put(const std::pair<std::string, double>& item) { return Put(item.first).Put(item.second); }
  RecordText& Put(const AssemblyUse& use) { return Put(use.product).Put(use.instance).Put(use.use); }
  RecordText& Put(const MeshData::Block& block) {
    return Put(block.elementType).Put(block.nodesPerElement).Put(block.elementIds).Put(block.nodeIds);
  }
  RecordText& Put(const workbench::tagTDeck::Set& set) {
    return Put(set.name).Put(set.mset).Put(set.shared).Put(set.count).Put(set.mark);
  }
  RecordText& Put(const workbench::tagTDeck::Material& made) {
    return Put(made.name).Put(made.material).Put(made.youngsModulus).Put(made.poissonsRatio).Put(made.density);
  }
  RecordText& Put(const workbench::tagTDeck::Section& section) {
    return Put(section.property).Put(section.material).Put(section.size);
  }

  void Write(const tagTCord& system) {
    Put(system.GetName()).Put(system.kind).Put(system.parent);
    for (const auto& triple : {system.origin, system.xAxis, system.xyPlane}) {
      for (const double number : triple) Put(number);
    }
  }
  void Write(const tagTMset& set) {
    Put(set.key).Put(set.name).Put(set.colour).Put(set.parent).Put(set.geom).Put(set.property).Put(set.mgInfo);
    Put(set.nodeCount).Put(set.elementCount).Put(set.mesh != nullptr);
    if (set.mesh != nullptr) Put(set.mesh->nodeIds).Put(set.mesh->coordinates).Put(set.mesh->blocks);
  }
  void Write(const tagTProperty& property) {
    Put(property.name).Put(property.kind).Put(property.material).Put(property.size);
  }
  void Write(const tagTMaterial& material) {
    Put(material.name).Put(material.youngsModulus).Put(material.poissonsRatio).Put(material.density);
    Put(material.colour);
  }
  void Write(const tagTGeom& part) {
    Put(part.colour).Put(part.cadItem).Put(part.kind).Put(part.name).Put(part.material).Put(part.gset);
    Put(part.flexible).Put(part.shape != nullptr).Put(part.origin != nullptr);
    if (part.shape != nullptr) {
      const PartFacets& facets = part.shape->facets;
      Put(part.shape->brep).Put(facets.points).Put(facets.normals).Put(facets.triangles).Put(facets.lineSizes);
      Put(facets.lines).Put(part.shape->volume).Put(part.shape->area).Put(part.shape->length);
      Put(part.shape->geometry);
    }
    if (part.origin == nullptr) return;
    Put(part.origin->product).Put(part.origin->instance).Put(part.origin->use).Put(part.origin->import);
    Put(part.origin->assemblies);
  }
  void Write(const tagMGInfo& generation) {
    Put(generation.kind).Put(generation.method).Put(generation.targets);
    for (const auto& [key, option] : generation.options) {
      Put(key).Put(option.index());
      std::visit([this](const auto& value) { Put(value); }, option);
    }
  }
  void Write(const workbench::tagTDeck& deck) {
    Put(deck.name).Put(deck.nodes).Put(deck.elements).Put(deck.rest).Put(deck.sets).Put(deck.materials);
    Put(deck.sections).Put(*deck.text);
  }

  std::string m_text;
};

/// Everything that a database holds, a line a record.
inline std::string Contents(const workbench::Database& data) {
  std::string text;
  for (const workbench::JournalEntry& entry : data.AllRecords())
    text += RecordText::Of(entry.itr, *entry.after) + "\n";
  return text;
}

}  // namespace qd::test

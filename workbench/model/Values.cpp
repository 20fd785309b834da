#include "workbench/model/Values.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/text/Characters.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/model/Placement.h"
#include "workbench/model/Pools.h"

namespace qd::workbench {

namespace {

constexpr const char* kNoNumber = "IDS_WB_FAULT_NO_NUMBER";
constexpr const char* kLongName = "IDS_WB_FAULT_LONG_NAME";
constexpr const char* kUnknownKind = "IDS_WB_FAULT_KIND";
constexpr const char* kBeyondAll = "IDS_WB_FAULT_BEYOND_ALL";
constexpr const char* kTooLarge = "IDS_WB_FAULT_TOO_LARGE";

template <typename Number>
bool AllFinite(const std::vector<Number>& values) {
  return std::all_of(values.begin(), values.end(), [](Number value) { return std::isfinite(value); });
}

/// Whether every number of `indexes` names one of `count` things.
template <typename Index>
bool AllBelow(const std::vector<Index>& indexes, std::size_t count) {
  return std::all_of(indexes.begin(), indexes.end(), [count](Index index) { return index < count; });
}

const char* Fault(const tagTSettings&) {
  return nullptr;
}

const char* Fault(const tagTCord& system) {
  if (*std::begin(system.name) == 0) return "IDS_WB_FAULT_NO_NAME";
  if (std::find(std::begin(system.name), std::end(system.name), L'\0') == std::end(system.name)) return kLongName;
  if (system.kind > CordKind::Spherical) return kUnknownKind;
  return IsPlaceable(system) ? nullptr : "IDS_WB_FAULT_AXES";
}

const char* Fault(const tagTMaterial& material) {
  if (material.name.size() > kMostName) return kLongName;
  const bool finite = std::isfinite(material.youngsModulus) && std::isfinite(material.poissonsRatio) &&
                      std::isfinite(material.density);
  return finite ? nullptr : kNoNumber;
}

const char* Fault(const tagTProperty& property) {
  if (property.name.size() > kMostName) return kLongName;
  if (property.kind > tagTProperty::Kind::Beam) return kUnknownKind;
  return std::isfinite(property.size) ? nullptr : kNoNumber;
}

const char* Fault(const tagTGset& set) {
  return set.name.size() > kMostName ? kLongName : nullptr;
}

const char* Fault(const tagTGeom& part) {
  if (part.name.size() > kMostName) return kLongName;
  if (part.kind > TopologyKind::Compound) return kUnknownKind;
  if (part.cadItem != part.id) return "IDS_WB_FAULT_WRONG_NUMBER";
  if (part.origin != nullptr && BytesOf(*part.origin) > kMostPartBytes) return kTooLarge;
  if (const char* fault = part.origin != nullptr ? FaultOf(*part.origin) : nullptr) return fault;
  return part.shape != nullptr && BytesOf(*part.shape) > kMostPartBytes ? kTooLarge : nullptr;
}

const char* Fault(const tagMGInfo& generation) {
  if (generation.kind < 0 || generation.method < 0) return kUnknownKind;
  if (generation.targets.size() > kMostTargets || generation.options.size() > kMostParameters) {
    return "IDS_WB_FAULT_LONG_LIST";
  }
  for (const auto& [key, option] : generation.options) {
    if (key.size() > kMostKey) return kLongName;
    const int* choice = std::get_if<int>(&option);
    if (choice != nullptr && (*choice <= -kMostChoice || *choice >= kMostChoice)) return kBeyondAll;
    const double* number = std::get_if<double>(&option);
    if (number != nullptr && !std::isfinite(*number)) return kNoNumber;
  }
  return nullptr;
}

const char* Fault(const tagTMset& set) {
  if (set.name.size() > kMostName) return kLongName;
  if ((set.key & kMsetKeyMask) == 0) return "IDS_WB_FAULT_KEY";
  if ((set.parent & ~kMsetKeyMask) != 0) return "IDS_WB_FAULT_KEY";
  if (set.mgInfo > kMostRecords) return kBeyondAll;
  if (set.nodeCount != (set.mesh != nullptr ? set.mesh->nodeIds.size() : 0) ||
      set.elementCount != (set.mesh != nullptr ? ElementCountOf(*set.mesh) : 0)) {
    return "IDS_WB_FAULT_COUNTS";
  }
  return set.mesh != nullptr && BytesOf(*set.mesh) > kMostPartBytes ? kTooLarge : nullptr;
}

/// About how many bytes the names of a deck and what they stand for take in a document.
std::size_t NameBytesOf(const tagTDeck& deck) {
  constexpr std::size_t kEntry = 48;  // with its numbers
  std::size_t bytes = (deck.sets.size() + deck.materials.size() + deck.sections.size()) * kEntry;
  for (const auto& set : deck.sets) bytes += set.name.size();
  for (const auto& material : deck.materials) bytes += material.name.size();
  return bytes;
}

const char* Fault(const tagTDeck& deck) {
  if (deck.name.size() > kMostName) return kLongName;
  if (deck.text == nullptr) return "IDS_WB_FAULT_NO_TEXT";
  if (const char* fault = FaultOf(*deck.text)) return fault;
  if (NameBytesOf(deck) > kMostPartBytes) return kTooLarge;
  const bool numbered = deck.nodes <= kMostNumber && deck.elements <= kMostNumber;
  return numbered && deck.rest <= kMsetKeyMask ? nullptr : kBeyondAll;
}

template <typename T>
const char* FaultAs(const tagTRecord& record) {
  return Fault(static_cast<const T&>(record));
}

}  // namespace

const char* FaultOf(std::uint16_t type, std::int32_t id, const tagTRecord& record) {
  if (id <= 0 || static_cast<iterator>(id) > kMostRecords) return kBeyondAll;
  if (record.id != id) return "IDS_WB_FAULT_WRONG_NUMBER";
  switch (type) {
    case kDataSettings:
      return FaultAs<tagTSettings>(record);
    case kDataCord:
      return FaultAs<tagTCord>(record);
    case kDataMset:
      return FaultAs<tagTMset>(record);
    case kDataProperty:
      return FaultAs<tagTProperty>(record);
    case kDataMaterial:
      return FaultAs<tagTMaterial>(record);
    case kDataGeom:
      return FaultAs<tagTGeom>(record);
    case kDataGset:
      return FaultAs<tagTGset>(record);
    case kDataMGInfo:
      return FaultAs<tagMGInfo>(record);
    case kDataDeck:
      return FaultAs<tagTDeck>(record);
    default:
      return kUnknownKind;
  }
}

// ---- names ----------------------------------------------------------------------------------------------

namespace {

/// The name by which users know a record; null for a kind that they do not name.
template <typename T>
const CString* NameIn(const tagTRecord& record) {
  return &static_cast<const T&>(record).name;
}
const CString* NameOf(std::uint16_t type, const tagTRecord& record) {
  switch (type) {
    case kDataMset:
      return NameIn<tagTMset>(record);
    case kDataMaterial:
      return NameIn<tagTMaterial>(record);
    case kDataGeom:
      return NameIn<tagTGeom>(record);
    case kDataGset:
      return NameIn<tagTGset>(record);
    default:
      return nullptr;
  }
}

}  // namespace

bool IsNamedByBlanks(std::uint16_t type, const tagTRecord* before, const tagTRecord& after) {
  if (type == kDataCord) {
    const CString name = static_cast<const tagTCord&>(after).GetName();
    return IsBlank(name) && (before == nullptr || name != static_cast<const tagTCord*>(before)->GetName());
  }
  const CString* name = NameOf(type, after);
  if (name == nullptr || !IsBlank(*name)) return false;
  return before != nullptr ? *name != *NameOf(type, *before) : !name->empty();
}

// ---- putting right ---------------------------------------------------------------------------------------

namespace {

void Fit(double& value) {
  if (!std::isfinite(value)) value = 0;
}
void Fit(CString& name) {
  name.resize(CutLength(name, kMostName));
}

void Fit(tagMGInfo& generation) {
  generation.kind = std::max(generation.kind, 0);
  generation.method = std::max(generation.method, 0);
  generation.targets.resize(std::min(generation.targets.size(), kMostTargets));
  std::erase_if(generation.options, [](const auto& entry) {
    tagMGInfo alone;
    alone.options.insert(entry);
    return Fault(alone) != nullptr;
  });
  while (generation.options.size() > kMostParameters) generation.options.erase(--generation.options.end());
}

void Fit(tagTDeck& deck) {
  Fit(deck.name);
  if (deck.text == nullptr) deck.text = std::make_shared<const std::string>();
  deck.rest &= kMsetKeyMask;
}

void Fit(tagTGeom& part) {
  Fit(part.name);
  if (part.origin != nullptr && Fault(part) != nullptr) part.origin = nullptr;
}

void Fit(tagTMset& set) {
  Fit(set.name);
  set.parent &= kMsetKeyMask;
  if (set.mgInfo > kMostRecords) set.mgInfo = 0;
  PutMesh(set, std::move(set.mesh));
}

}  // namespace

void MakeFit(std::uint16_t type, std::int32_t id, tagTRecord& record) {
  record.id = id;
  switch (type) {
    case kDataMset:
      return Fit(static_cast<tagTMset&>(record));
    case kDataMGInfo:
      return Fit(static_cast<tagMGInfo&>(record));
    case kDataDeck:
      return Fit(static_cast<tagTDeck&>(record));
    case kDataGset:
      return Fit(static_cast<tagTGset&>(record).name);
    case kDataGeom:
      static_cast<tagTGeom&>(record).cadItem = id;
      return Fit(static_cast<tagTGeom&>(record));
    case kDataProperty:
      Fit(static_cast<tagTProperty&>(record).name);
      return Fit(static_cast<tagTProperty&>(record).size);
    case kDataMaterial: {
      auto& material = static_cast<tagTMaterial&>(record);
      Fit(material.name);
      Fit(material.youngsModulus);
      Fit(material.poissonsRatio);
      return Fit(material.density);
    }
    default:
      return;
  }
}

// ---- large parts ----------------------------------------------------------------------------------------

const char* FaultOf(const MeshData& mesh) {
  if (!AllFinite(mesh.coordinates)) return "IDS_WB_FAULT_NODE_PLACE";
  if (LastNode(mesh) > kMostNumber) return "IDS_WB_FAULT_NODE_NUMBER";
  for (const MeshData::Block& block : mesh.blocks) {
    if (!AllBelow(block.elementIds, kMostNumber + 1)) return "IDS_WB_FAULT_ELEMENT_NUMBER";
  }
  return nullptr;
}

const char* FaultOf(const std::string& text) {
  return text.size() > kMostDeckBytes ? kTooLarge : nullptr;
}

const char* FaultOf(const PartShape& shape) {
  if (!AllFinite(shape.facets.points) || !AllFinite(shape.facets.normals)) {
    return "IDS_WB_FAULT_FACET_PLACE";
  }
  if (!std::isfinite(shape.volume) || !std::isfinite(shape.area) || !std::isfinite(shape.length)) return kNoNumber;
  if (shape.geometry.size() > kMostParameters) return "IDS_WB_FAULT_LONG_LIST";
  for (const auto& [key, value] : shape.geometry) {
    if (key.size() > kMostKey) return kLongName;
    if (!std::isfinite(value)) return kNoNumber;
  }
  return nullptr;
}

std::size_t BytesOf(const PartShape& shape) {
  const PartFacets& facets = shape.facets;
  return shape.brep.size() + sizeof(float) * (facets.points.size() + facets.normals.size()) +
         sizeof(std::uint32_t) * (facets.triangles.size() + facets.lineSizes.size() + facets.lines.size());
}

const char* FaultOf(const PartOrigin& origin) {
  if (origin.assemblies.size() > kMostAssemblies) return "IDS_WB_FAULT_LONG_LIST";
  const bool isLong = origin.product.size() > kMostName || origin.instance.size() > kMostName ||
                      std::any_of(origin.assemblies.begin(), origin.assemblies.end(), [](const AssemblyUse& at) {
                        return at.product.size() > kMostName || at.instance.size() > kMostName;
                      });
  if (isLong) return kLongName;
  return origin.import > kMostRecords ? kBeyondAll : nullptr;
}

std::size_t BytesOf(const PartOrigin& origin) {
  std::size_t elements = origin.product.size() + origin.instance.size();
  for (const AssemblyUse& at : origin.assemblies) {
    elements += at.product.size() + at.instance.size() + sizeof(AssemblyUse);
  }
  return elements * sizeof(std::uint32_t);
}

std::size_t BytesOf(const MeshData& mesh) {
  std::size_t words = mesh.nodeIds.size() + mesh.coordinates.size();
  for (const MeshData::Block& block : mesh.blocks) words += block.elementIds.size() + block.nodeIds.size();
  return words * sizeof(std::uint64_t);
}

}  // namespace qd::workbench

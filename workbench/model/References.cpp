#include "workbench/model/References.h"

#include <algorithm>
#include <array>

#include "workbench/model/Placement.h"
#include "workbench/model/Pools.h"

namespace qd::workbench {

namespace {

// ---- the fields -----------------------------------------------------------------------------------------

std::size_t One(const tagTRecord&) {
  return 1;
}

template <typename T, iterator T::*kMember>
constexpr ReferenceField Field(std::uint16_t holder, std::uint16_t target, const char* what, WhenGone whenGone,
                               bool inPool = false) {
  return {holder,
          target,
          what,
          whenGone,
          false,
          inPool,
          One,
          [](const tagTRecord& record, std::size_t) { return static_cast<const T&>(record).*kMember; },
          [](tagTRecord& record, iterator, iterator instead) { static_cast<T&>(record).*kMember = instead; }};
}

constexpr iterator NameOfGeneration(std::uint32_t key) {
  return key != 0 ? static_cast<iterator>(kDataMGInfo) << kTypeShift | key : 0;
}

// Fields of one type stand together.
constexpr std::array kFields{
    Field<tagTSettings, &tagTSettings::currentGset>(kDataSettings, kDataGset, "IDS_WB_NAMES_CURRENT_GSET",
                                                    WhenGone::Clear),
    Field<tagTSettings, &tagTSettings::defaultMset>(kDataSettings, kDataMset, "IDS_WB_NAMES_DEFAULT_MSET",
                                                    WhenGone::Refuse),
    Field<tagTCord, &tagTCord::parent>(kDataCord, kDataCord, "IDS_WB_NAMES_SYSTEM", WhenGone::KeepPlace, true),
    Field<tagTProperty, &tagTProperty::material>(kDataProperty, kDataMaterial, "IDS_WB_RECORD_MATERIAL",
                                                 WhenGone::Clear),
    Field<tagTGeom, &tagTGeom::material>(kDataGeom, kDataMaterial, "IDS_WB_RECORD_MATERIAL", WhenGone::Clear),
    Field<tagTGeom, &tagTGeom::gset>(kDataGeom, kDataGset, "IDS_WB_RECORD_GSET", WhenGone::Default, true),
    ReferenceField{kDataMGInfo, kDataGeom, "IDS_WB_NAMES_MESHED_PART", WhenGone::TakeOut, false, false,
                   [](const tagTRecord& record) { return static_cast<const tagMGInfo&>(record).targets.size(); },
                   [](const tagTRecord& record, std::size_t place) {
                     return static_cast<const tagMGInfo&>(record).targets[place];
                   },
                   [](tagTRecord& record, iterator name, iterator instead) {
                     auto& targets = static_cast<tagMGInfo&>(record).targets;
                     std::replace(targets.begin(), targets.end(), name, instead);
                     std::erase(targets, iterator{0});
                   }},
    ReferenceField{kDataMset, kDataMset, "IDS_WB_NAMES_PARENT", WhenGone::MoveUp, false, true, One,
                   [](const tagTRecord& record, std::size_t) {
                     return NameOfMsetKey(static_cast<const tagTMset&>(record).parent);
                   },
                   [](tagTRecord& record, iterator, iterator instead) {
                     static_cast<tagTMset&>(record).parent = static_cast<std::uint32_t>(instead);
                   }},
    Field<tagTMset, &tagTMset::geom>(kDataMset, kDataGeom, "IDS_WB_RECORD_PART", WhenGone::Clear),
    Field<tagTMset, &tagTMset::property>(kDataMset, kDataProperty, "IDS_WB_RECORD_PROPERTY", WhenGone::Clear),
    ReferenceField{kDataMset, kDataMGInfo, "IDS_WB_RECORD_GENERATION", WhenGone::Clear, true, false, One,
                   [](const tagTRecord& record, std::size_t) {
                     return NameOfGeneration(static_cast<const tagTMset&>(record).mgInfo);
                   },
                   [](tagTRecord& record, iterator, iterator instead) {
                     static_cast<tagTMset&>(record).mgInfo = static_cast<std::uint32_t>(instead);
                   }},
};

template <typename T>
std::shared_ptr<tagTRecord> Copy(const tagTRecord& record) {
  return std::make_shared<T>(static_cast<const T&>(record));
}

/// The name of the nearest record above a field's one that stays; 0 for none.
iterator NearestAbove(const ReferenceField& field, iterator name, Departure& departure) {
  std::vector<iterator> way;
  while (name != 0) {
    if (const auto known = departure.above.find(name); known != departure.above.end()) {
      name = known->second;
      break;
    }
    const iterator itr = Resolve(departure.records, name);
    if (itr != 0 && !departure.goes(itr)) break;
    way.push_back(name);
    name = itr != 0 ? field.at(*departure.records.Find(itr), 0) : 0;
  }
  for (const iterator passed : way) departure.above[passed] = name;
  return name;
}

/// Puts a system into the axes of the nearest one that stays, and of a lost one into the global ones.
void KeepPlace(tagTCord& system, const Departure& departure) {
  constexpr iterator kGlobal = static_cast<iterator>(kDataCord) << kTypeShift | 1;
  Placement placement = PlacementOf(system);
  bool moved = false;
  while (const auto* below = static_cast<const tagTCord*>(departure.records.Find(system.parent))) {
    if (!departure.goes(system.parent)) break;
    placement = Compose(PlacementOf(*below), placement);
    system.parent = below->parent;
    moved = true;
  }
  if (Resolve(departure.records, system.parent) == 0) system.parent = kGlobal;
  if (moved) Place(system, placement);
}

}  // namespace

std::span<const ReferenceField> ReferenceFields() {
  return kFields;
}

std::span<const ReferenceField> ReferenceFieldsOf(std::uint16_t holder) {
  const auto isOf = [holder](const ReferenceField& field) { return field.holder == holder; };
  const auto* first = std::find_if(kFields.begin(), kFields.end(), isOf);
  const auto* last = std::find_if_not(first, kFields.end(), isOf);
  return {first, last};
}

// ---- names ----------------------------------------------------------------------------------------------

iterator Resolve(const IRecordLookup& records, iterator name) {
  if (name == 0) return 0;
  if (IsMsetKey(name)) return records.MsetOfKey(static_cast<std::uint32_t>(name));
  return records.Find(name) != nullptr ? name : 0;
}

iterator NameFor(const ReferenceField& field, iterator itr, const tagTRecord& record) {
  const bool byKey = field.holder == kDataMset && field.target == kDataMset;
  return byKey ? NameOfMsetKey(static_cast<const tagTMset&>(record).key & kMsetKeyMask) : itr;
}

// ---- the rules ------------------------------------------------------------------------------------------

std::shared_ptr<tagTRecord> Released(const ReferenceField& field, const tagTRecord& holder, iterator name,
                                     Departure& departure) {
  if (field.whenGone == WhenGone::Refuse) return nullptr;
  std::shared_ptr<tagTRecord> changed = CopyRecord(field.holder, holder);
  switch (field.whenGone) {
    case WhenGone::KeepPlace:
      KeepPlace(static_cast<tagTCord&>(*changed), departure);
      return changed;
    case WhenGone::MoveUp:
      field.replace(*changed, name, NearestAbove(field, name, departure));
      return changed;
    case WhenGone::Default:
      if (const iterator instead = departure.defaultOf(field.target); instead != 0) {
        field.replace(*changed, name, instead);
        return changed;
      }
      return nullptr;
    default:
      field.replace(*changed, name, 0);
      return changed;
  }
}

std::shared_ptr<tagTRecord> CopyRecord(std::uint16_t type, const tagTRecord& record) {
  switch (type) {
    case kDataSettings:
      return Copy<tagTSettings>(record);
    case kDataCord:
      return Copy<tagTCord>(record);
    case kDataMset:
      return Copy<tagTMset>(record);
    case kDataProperty:
      return Copy<tagTProperty>(record);
    case kDataMaterial:
      return Copy<tagTMaterial>(record);
    case kDataGeom:
      return Copy<tagTGeom>(record);
    case kDataGset:
      return Copy<tagTGset>(record);
    case kDataMGInfo:
      return Copy<tagMGInfo>(record);
    case kDataDeck:
      return Copy<tagTDeck>(record);
    default:
      return nullptr;
  }
}

// ---- the index ------------------------------------------------------------------------------------------

void ReferenceIndex::Follow(iterator itr, const tagTRecord* before, const tagTRecord* after) {
  for (const ReferenceField& field : ReferenceFieldsOf(TypeOf(itr))) {
    if (field.inPool) continue;
    const std::size_t were = before != nullptr ? field.count(*before) : 0;
    const std::size_t are = after != nullptr ? field.count(*after) : 0;
    if (were == 1 && are == 1 && field.at(*before, 0) == field.at(*after, 0)) continue;
    for (std::size_t i = 0; i < were; ++i) m_holders.erase({field.at(*before, i), itr});
    for (std::size_t i = 0; i < are; ++i) {
      if (const iterator name = field.at(*after, i); name != 0) m_holders.emplace(name, itr);
    }
  }
}

void ReferenceIndex::AppendHolders(iterator name, std::uint16_t holder, std::vector<iterator>& itrs) const {
  // Iterators of a type stand together.
  auto at = m_holders.lower_bound({name, static_cast<iterator>(holder) << kTypeShift});
  for (; at != m_holders.end() && at->first == name && TypeOf(at->second) == holder; ++at) {
    itrs.push_back(at->second);
  }
}

}  // namespace qd::workbench

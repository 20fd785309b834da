#include "workbench/store/RecordCheck.h"

#include "workbench/model/Placement.h"
#include "workbench/model/Pools.h"

namespace qd::workbench {

namespace {
constexpr std::size_t kMostFaults = 100;
}

void RecordCheck::Complain(const char* table, iterator itr, const std::string& fault) {
  if (m_faults.size() >= kMostFaults) return;
  m_faults.push_back(std::string(table) + " " + std::to_string(NumberOf(itr)) + ": " + fault);
}

void RecordCheck::Add(iterator itr, const tagTRecord& record) {
  if (NumberOf(itr) > kMostRecords) Complain("record", itr, "a number beyond all");
  m_records.emplace_back(itr, &record);
  m_byItr.emplace(itr, &record);
  if (TypeOf(itr) == kDataMGInfo) m_generations.insert(MGInfoPool::KeyOf(itr));
  if (TypeOf(itr) != kDataMset) return;
  const auto& set = static_cast<const tagTMset&>(record);
  const std::uint32_t key = set.key & kMsetKeyMask;
  if (key == 0 || !m_msetOfKey.emplace(key, &set).second) Complain("mset", itr, "a key that is none or taken");
}

void RecordCheck::Need(const char* table, iterator itr, iterator other, const char* what) {
  if (other != 0 && !m_byItr.contains(other)) Complain(table, itr, std::string("no such ") + what);
}

void RecordCheck::Check(iterator itr, const tagTGeom& part) {
  Need("geom", itr, part.material, "material");
  Need("geom", itr, part.gset, "geometry set");
  if (part.cadItem != part.id) Complain("geom", itr, "a wrong number in the view");
}

void RecordCheck::Check(iterator itr, const tagTMset& set) {
  Need("mset", itr, set.geom, "part");
  Need("mset", itr, set.property, "property");
  if (set.mgInfo != 0 && !m_generations.contains(set.mgInfo)) Complain("mset", itr, "no such generation");
  std::unordered_set<const void*> way;
  for (const tagTMset* at = &set; at->parent != 0 && !m_standing.contains(at);) {
    if (!way.insert(at).second) return Complain("mset", itr, "stands on itself");
    const auto above = m_msetOfKey.find(at->parent);
    if (above == m_msetOfKey.end()) return Complain("mset", itr, "no such parent");
    at = above->second;
  }
  m_standing.insert(way.begin(), way.end());
}

void RecordCheck::Check(iterator itr, const tagTCord& system) {
  if (!IsPlaceable(system)) Complain("cord", itr, "axes that make no system");
  const bool global = NumberOf(itr) == 1;
  if (global != (system.parent == 0)) return Complain("cord", itr, "no system to stand in");
  std::unordered_set<const void*> way;
  for (const tagTCord* at = &system; at->parent != 0 && !m_standing.contains(at);) {
    if (!way.insert(at).second) return Complain("cord", itr, "stands on itself");
    const auto above = TypeOf(at->parent) == kDataCord ? m_byItr.find(at->parent) : m_byItr.end();
    if (above == m_byItr.end()) return Complain("cord", itr, "no system to stand in");
    at = static_cast<const tagTCord*>(above->second);
  }
  m_standing.insert(way.begin(), way.end());
}

void RecordCheck::CheckReferences() {
  for (const auto& [itr, record] : m_records) {
    switch (TypeOf(itr)) {
      case kDataGeom:
        Check(itr, static_cast<const tagTGeom&>(*record));
        break;
      case kDataMset:
        Check(itr, static_cast<const tagTMset&>(*record));
        break;
      case kDataCord:
        Check(itr, static_cast<const tagTCord&>(*record));
        break;
      case kDataProperty:
        Need("property", itr, static_cast<const tagTProperty&>(*record).material, "material");
        break;
      default:
        break;
    }
  }
  constexpr iterator kGlobal = static_cast<iterator>(kDataCord) << kTypeShift | 1;
  if (!m_byItr.contains(kGlobal)) Complain("cord", kGlobal, "the global system is missing");
}

}  // namespace qd::workbench

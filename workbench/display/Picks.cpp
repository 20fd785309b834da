#include "workbench/display/Picks.h"

#include <algorithm>
#include <iterator>

namespace qd::workbench {

std::size_t Picks::Hash::operator()(const Picked& one) const {
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = (static_cast<std::uint64_t>(one.owner) + static_cast<std::uint64_t>(one.kind)) * kSpread;
  hash = (hash ^ (hash >> 32U) ^ one.number) * kSpread;
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

void Picks::SetFilter(PickFilter filter) {
  if (std::exchange(m_filter, filter) != filter) m_notice.Tell(*this);
}

std::vector<Picked> Picks::OfKind(PickFilter kind) const {
  std::vector<Picked> some;
  std::copy_if(m_all.begin(), m_all.end(), std::back_inserter(some),
               [kind](const Picked& one) { return one.kind == kind; });
  return some;
}

/// The shape or mesh of a record, null for none.
std::shared_ptr<const void> Picks::BodyOf(iterator owner) const {
  if (const tagTGeom* part = m_database.GetGeomPool().GetAtNU(owner)) return part->shape;
  const tagTMset* set = m_database.GetMsetPool().GetAtNU(owner);
  return set != nullptr ? set->mesh : nullptr;
}

bool Picks::Put(const Picked& one) {
  if (!m_known.insert(one).second) return false;
  m_all.push_back(one);
  const auto [body, isNew] = m_bodies.try_emplace(one.owner);
  if (isNew) body->second = BodyOf(one.owner);
  return true;
}

void Picks::Set(std::vector<Picked> all) {
  if (all == m_all) return;
  m_all.clear();
  m_known.clear();
  m_bodies.clear();
  for (const Picked& one : all) Put(one);
  m_notice.Tell(*this);
}

void Picks::Add(const std::vector<Picked>& some) {
  bool any = false;
  for (const Picked& one : some) any = Put(one) || any;
  if (any) m_notice.Tell(*this);
}

void Picks::Toggle(const std::vector<Picked>& some) {
  if (some.empty()) return;
  std::unordered_set<Picked, Hash> turned;  // what is listed twice is meant once
  std::unordered_set<Picked, Hash> gone;
  for (const Picked& one : some) {
    if (!turned.insert(one).second) continue;
    if (m_known.erase(one) != 0) {
      gone.insert(one);
    } else {
      Put(one);
    }
  }
  if (!gone.empty()) std::erase_if(m_all, [&gone](const Picked& one) { return gone.contains(one); });
  m_notice.Tell(*this);
}

void Picks::Take(const std::vector<Picked>& some, PickMode mode) {
  switch (mode) {
    case PickMode::Replace:
      return Set(some);
    case PickMode::Add:
      return Add(some);
    case PickMode::Toggle:
      return Toggle(some);
  }
}

void Picks::Follow(const CQDUpdateRecord& record) {
  if (m_all.empty()) return;
  std::unordered_set<iterator> lost;
  for (const tagTRNotify& change : record.changes) {
    const auto body = m_bodies.find(change.itr);
    if (body == m_bodies.end()) continue;
    if (change.kind == kChangeDeleted || BodyOf(change.itr) != body->second) lost.insert(change.itr);
  }
  if (lost.empty()) return;
  std::vector<Picked> kept = m_all;
  std::erase_if(kept, [&lost](const Picked& one) { return lost.contains(one.owner); });
  Set(std::move(kept));
}

namespace {

/// What was found out of something, anew only when it is another one that stands at the same place now.
template <typename Of, typename Map, typename Make>
auto Find(Map& kept, const std::shared_ptr<const Of>& of, const Make& make) {
  const auto known = kept.find(of.get());
  if (known != kept.end() && known->second.of.lock() == of) return known->second.found;
  if (kept.size() >=
      kept.bucket_count()) {  // before it grows: each entry is looked at now and then, not at each miss
    std::erase_if(kept, [](const auto& entry) { return entry.second.of.expired(); });
  }
  return (kept[of.get()] = {of, make()}).found;
}

}  // namespace

std::shared_ptr<const FacetParts> Picks::PartsOf(const std::shared_ptr<const PartShape>& shape) const {
  return Find(m_parts, shape, [&] { return std::make_shared<const FacetParts>(shape->facets); });
}

std::shared_ptr<const ElementPlaces> Picks::PlacesOf(const std::shared_ptr<const MeshData>& mesh) const {
  return Find(m_places, mesh, [&] { return std::make_shared<const ElementPlaces>(*mesh); });
}

}  // namespace qd::workbench

#include "workbench/session/ModelCounts.h"

namespace qd::workbench {

// ---- numbers --------------------------------------------------------------------------------------------

bool NumberUses::Add(std::uint64_t number) {
  std::unique_ptr<Page>& page = m_pages[number / kPage];
  if (page == nullptr) page = std::make_unique<Page>();
  if (++page->uses[number % kPage] != 1) return false;
  ++page->used;
  return true;
}

bool NumberUses::Remove(std::uint64_t number) {
  const auto page = m_pages.find(number / kPage);
  if (--page->second->uses[number % kPage] != 0) return false;
  if (--page->second->used == 0) m_pages.erase(page);
  return true;
}

// ---- counts ---------------------------------------------------------------------------------------------

ModelCounts::ModelCounts(WorkDocument& doc, Later later, std::function<void()> changed)
    : m_doc(doc), m_later(std::move(later)), m_changed(std::move(changed)) {
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  m_onDisplay = doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) { FollowDisplay(notice); });
  CountAnew();
}

void ModelCounts::CountAnew() {
  // What is counted already may be gone.
  for (const auto& [itr, part] : m_parts) m_waiting.emplace_back(kDataGeom, itr);
  for (const auto& [itr, set] : m_sets) m_waiting.emplace_back(kDataMset, itr);
  for (const iterator itr : m_doc.GetDatabase().GetGeomPool().GetItrList()) m_waiting.emplace_back(kDataGeom, itr);
  for (const iterator itr : m_doc.GetDatabase().GetMsetPool().GetItrList()) m_waiting.emplace_back(kDataMset, itr);
  Work();
}

void ModelCounts::FollowRecords(const CQDUpdateRecord& record) {
  for (const tagTRNotify& change : record.changes) {
    if (change.dataType == kDataGeom || change.dataType == kDataMset) {
      m_waiting.emplace_back(change.dataType, change.itr);
    }
  }
  Work();
}

void ModelCounts::FollowDisplay(const DisplayNotice& notice) {
  const GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
  for (const int cadItem : notice.parts) m_waiting.emplace_back(kDataGeom, pool.ItrOfNumber(cadItem));
  for (const iterator set : notice.msets) m_waiting.emplace_back(kDataMset, set);
  Work();
}

void ModelCounts::Work() {
  if (m_scheduled) return;                 // what waits has its turn
  constexpr std::size_t kSlice = 200'000;  // a few milliseconds
  const Counts before = m_counts;
  for (std::size_t done = 0; done < kSlice && !m_waiting.empty();) {
    const auto [type, itr] = m_waiting.front();
    m_waiting.pop_front();
    done += type == kDataGeom ? LookAtPart(itr) : LookAtSet(itr);
  }
  if (!m_waiting.empty()) {
    m_scheduled = true;
    m_later([this, alive = std::weak_ptr(m_alive)] {
      if (alive.expired()) return;
      m_scheduled = false;
      Work();
    });
  }
  if (m_counts != before) m_changed();
}

std::size_t ModelCounts::LookAtPart(iterator itr) {
  if (const auto known = m_parts.find(itr); known != m_parts.end()) {
    --m_counts.parts;
    m_counts.partsShown -= known->second.shown ? 1 : 0;
    m_parts.erase(known);
  }
  Database& database = m_doc.GetDatabase();
  if (database.GetDataType(itr) != kDataGeom) return 1;
  const bool shown = m_doc.GetDisplay().Parts().GetShowHide(database.GetGeomPool().GetAtNU(itr)->cadItem) != 0;
  m_parts.emplace(itr, Part{shown});
  ++m_counts.parts;
  m_counts.partsShown += shown ? 1 : 0;
  constexpr std::size_t kWork = 16;  // as much as so many nodes
  return kWork;
}

std::size_t ModelCounts::LookAtSet(iterator itr) {
  Database& database = m_doc.GetDatabase();
  Set now;
  const bool stands = database.GetDataType(itr) == kDataMset;
  if (stands) {
    const tagTMset& record = *database.GetMsetPool().GetAtNU(itr);
    now = {record.mesh, record.elementCount, m_doc.GetDisplay().Meshes().IsMsetShown(itr) != 0};
  }
  Set& known = m_sets[itr];
  m_counts.elements += now.elements - known.elements;  // both wrap alike
  m_counts.elementsShown += (now.shown ? now.elements : 0) - (known.shown ? known.elements : 0);
  std::size_t work = 1;
  // A set that is only hidden, or whose elements alone have changed, keeps its nodes.
  const bool same = now.mesh == known.mesh ||
                    (now.mesh != nullptr && known.mesh != nullptr && now.mesh->nodeIds == known.mesh->nodeIds);
  if (!same) {
    if (now.mesh != nullptr) {
      for (const std::uint64_t node : now.mesh->nodeIds) m_counts.nodes += m_nodes.Add(node) ? 1 : 0;
      work += now.mesh->nodeIds.size();
    }
    if (known.mesh != nullptr) {
      for (const std::uint64_t node : known.mesh->nodeIds) m_counts.nodes -= m_nodes.Remove(node) ? 1 : 0;
      work += known.mesh->nodeIds.size();
    }
  }
  if (stands) {
    known = std::move(now);
  } else {
    m_sets.erase(itr);
  }
  return work;
}

}  // namespace qd::workbench

#include "workbench/model/Pools.h"

#include <set>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "workbench/model/CopyName.h"

namespace qd::workbench {

// ---- parts ----------------------------------------------------------------------------------------------

void GeomPool::OnEnter(iterator itr, const tagTGeom& record) {
  Members& members = m_sets[record.gset][static_cast<std::size_t>(record.kind)];
  members.tidy = members.tidy && (members.itrs.empty() || members.itrs.back() < itr);
  members.itrs.push_back(itr);
  ++members.count;
}

void GeomPool::OnLeave(iterator, const tagTGeom& record) {
  Members& members = m_sets[record.gset][static_cast<std::size_t>(record.kind)];
  members.tidy = false;
  if (--members.count == 0) members = {};
}

const GeomPool::Members* GeomPool::Find(iterator gset, int kind) const {
  const auto found = m_sets.find(gset);
  if (found == m_sets.end()) return nullptr;
  Members& members = found->second[static_cast<std::size_t>(kind)];
  if (!members.tidy) {
    std::sort(members.itrs.begin(), members.itrs.end());
    members.itrs.erase(std::unique(members.itrs.begin(), members.itrs.end()), members.itrs.end());
    std::erase_if(members.itrs, [&](iterator itr) {
      const auto record = std::static_pointer_cast<const tagTGeom>(Get(itr));
      return record == nullptr || record->gset != gset || static_cast<int>(record->kind) != kind;
    });
    members.tidy = true;
  }
  return &members;
}

void GeomPool::GetTypeExist(iterator gset, int (&exists)[5]) const {
  const auto found = m_sets.find(gset);
  for (std::size_t kind = 0; kind < 5; ++kind) {
    exists[kind] = found != m_sets.end() && found->second[kind].count != 0 ? 1 : 0;
  }
}

void GeomPool::GetItrGsetTypeList(iterator gset, int kind, std::vector<iterator>& itrs) const {
  if (kind < 0 || kind >= 5) return;
  if (const Members* members = Find(gset, kind))
    itrs.insert(itrs.end(), members->itrs.begin(), members->itrs.end());
}

std::vector<iterator> GeomPool::PartsOf(iterator gset) const {
  std::vector<iterator> parts;
  for (int kind = 0; kind < 5; ++kind) GetItrGsetTypeList(gset, kind, parts);
  return parts;
}

int GeomPool::Private_ApplyGset(const std::vector<iterator>& itrs, iterator gset) {
  for (const iterator itr : itrs) {
    const auto old = std::static_pointer_cast<const tagTGeom>(Get(itr));
    if (old == nullptr) return 0;
    tagTGeom record = *old;
    record.gset = gset;
    if (Change(itr, std::move(record)) == 0) return 0;
  }
  return 1;
}

void GeomPool::GetHCADItemArray(const std::vector<iterator>& itrs, std::vector<int>& cadItems) const {
  for (const iterator itr : itrs) {
    if (const tagTGeom* record = GetAtNU(itr)) cadItems.push_back(record->cadItem);
  }
}

int GeomPool::IsSolid(iterator itr) const {
  const tagTGeom* record = GetAtNU(itr);
  return record != nullptr && record->kind == TopologyKind::Solid ? 1 : 0;
}

// ---- settings -------------------------------------------------------------------------------------------

tagTSettings SettingsPool::Current() const {
  const iterator itr = First();
  return itr == 0 ? tagTSettings{} : *GetAtNU(itr);
}

int SettingsPool::Store(const tagTSettings& settings) {
  const iterator itr = First();
  return itr == 0 ? Add(settings) != 0 : Change(itr, settings);
}

void SettingsPool::Put(const tagTSettings& settings) {
  const iterator first = First();
  const iterator itr = first == 0 ? ItrOfNumber(NextNumber()) : first;
  auto record = std::make_shared<tagTSettings>(settings);
  record->id = static_cast<std::int32_t>(NumberOf(itr));
  Keeper().PutAside({itr, Get(itr), std::move(record)});
}

// ---- generation of meshes -------------------------------------------------------------------------------

iterator MGInfoPool::GetItrByKey(std::uint32_t key) const {
  const iterator itr = key != 0 ? ItrOfNumber(static_cast<int>(key)) : 0;
  return itr != 0 && Get(itr) != nullptr ? itr : 0;
}

int MGInfoPool::GetAt(iterator itr, tagMGInfo& record) const {
  const tagMGInfo* stored = GetAtNU(itr);
  if (stored == nullptr) return 0;
  record = *stored;
  return 1;
}

// ---- geometry sets --------------------------------------------------------------------------------------

void GsetPool::OnLeave(iterator, const tagTGset& record) {
  const auto name = m_names.find(record.name);
  if (name != m_names.end() && --name->second == 0) m_names.erase(name);
}

CString GsetPool::GetNewCopyName(const CString& text) const {
  return CopyName(text, Count() + 1, [this](const CString& name) { return Exist(name) != 0; });
}

iterator GsetPool::GetCurrentSet() const {
  const iterator current = m_settings.Current().currentGset;
  return Get(current) != nullptr ? current : First();
}

void GsetPool::PutCurrentSet(iterator itr) {
  if (itr != 0 && Get(itr) == nullptr) return;
  tagTSettings settings = m_settings.Current();
  settings.currentGset = itr;
  m_settings.Put(settings);
}

int GsetPool::SetCurrentSet(iterator itr) {
  tagTSettings settings = m_settings.Current();
  settings.currentGset = itr;
  return m_settings.Store(settings);
}

iterator GsetPool::HeirOf(const std::function<bool(iterator)>& goes) const {
  const iterator current = GetCurrentSet();
  if (current != 0 && !goes(current)) return current;
  return FirstThat([&goes](iterator itr) { return !goes(itr); });
}

int GsetPool::TR_Del(const std::vector<iterator>& itrs) {
  const std::set<iterator> gone(itrs.begin(), itrs.end());
  if (HeirOf([&gone](iterator itr) { return gone.contains(itr); }) == 0) {
    qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_LAST_SET"));
    return 0;
  }
  return Pool::TR_Del({gone.begin(), gone.end()});
}

}  // namespace qd::workbench

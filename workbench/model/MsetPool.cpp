#include "workbench/model/MsetPool.h"

#include <vector>

#include "host/CMSGFunction.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/model/CopyName.h"

namespace qd::workbench {

namespace {

std::uint32_t KeyOf(const tagTMset& record) {
  return record.key & kMsetKeyMask;
}

}  // namespace

// ---- indexes --------------------------------------------------------------------------------------------

void MsetPool::OnEnter(iterator itr, const tagTMset& record) {
  if (record.geom != 0) m_msetsOfGeoms.emplace(record.geom, itr);
  m_msetOfKey.Assign(KeyOf(record), itr);
  m_names.emplace(record.name, itr);
  std::set<iterator>& siblings = m_children[record.parent];
  siblings.insert(siblings.end(), itr);
  m_lastKey = std::max(m_lastKey, KeyOf(record));
}

void MsetPool::OnLeave(iterator itr, const tagTMset& record) {
  m_msetsOfGeoms.erase({record.geom, itr});
  m_msetOfKey.Erase(KeyOf(record));
  m_names.erase({record.name, itr});
  const auto siblings = m_children.find(record.parent);
  siblings->second.erase(itr);
  if (siblings->second.empty()) m_children.erase(siblings);
}

void MsetPool::GetItrListByParentMsetK(std::uint32_t key, TArray<iterator>& itrs) const {
  const auto found = m_children.find(key & kMsetKeyMask);
  if (found != m_children.end()) itrs.insert(itrs.end(), found->second.begin(), found->second.end());
}

iterator MsetPool::GetItrByKey(std::uint32_t key) const {
  const std::uint64_t* found = m_msetOfKey.Find(key & kMsetKeyMask);
  return found != nullptr ? *found : 0;
}

iterator MsetPool::GetItrByGeomItr(iterator geom) const {
  // The newest one, of several.
  const auto behind = m_msetsOfGeoms.lower_bound({geom + 1, 0});
  if (geom == 0 || behind == m_msetsOfGeoms.begin()) return 0;
  const auto& [meshed, mset] = *std::prev(behind);
  return meshed == geom ? mset : 0;
}

iterator MsetPool::GetItr(const CString& name) const {
  const auto found = m_names.lower_bound({name, 0});
  return found != m_names.end() && found->first == name ? found->second : 0;
}

CString MsetPool::GetNewCopyName(const CString& text) const {
  return CopyName(text, Count() + 1, [this](const CString& name) { return Exist(name) != 0; });
}

std::uint32_t MsetPool::GetNewKey() const {
  // Places are kept for deleted sets too, so that a document that was opened anew gives out no key again.
  const std::uint32_t key = std::max(m_lastKey + 1, static_cast<std::uint32_t>(NextNumber()));
  return key <= kMsetKeyMask ? key : 0;
}

// ---- writes ---------------------------------------------------------------------------------------------

/// Walks up from the parent; meeting the set itself would make a circle.
bool MsetPool::MayStandBelow(std::uint32_t key, std::uint32_t parent) const {
  while (parent != 0) {
    const iterator above = parent != key ? GetItrByKey(parent) : 0;
    if (above == 0) return false;
    parent = GetAtNU(above)->parent;
  }
  return true;
}

iterator MsetPool::Add(tagTMset record) {
  if (KeyOf(record) == 0) record.key |= GetNewKey();
  record.parent &= kMsetKeyMask;
  // Nothing stands below a new key, so there is no circle to look for.
  const bool homeless = record.parent != 0 && GetItrByKey(record.parent) == 0;
  const bool refused = KeyOf(record) == 0 || GetItrByKey(record.key) != 0 || homeless;
  return refused ? 0 : Pool::Add(std::move(record));
}

int MsetPool::Modify(iterator itr, const tagTMset& record) {
  const auto before = std::static_pointer_cast<const tagTMset>(Get(itr));
  if (before == nullptr || KeyOf(*before) != KeyOf(record)) return 0;
  tagTMset changed = record;
  changed.parent &= kMsetKeyMask;
  if (changed.parent != before->parent && !MayStandBelow(KeyOf(changed), changed.parent)) return 0;
  return Change(itr, std::move(changed));
}

int MsetPool::TR_Del(const std::vector<iterator>& itrs) {
  return Keeper().InTransaction("IDS_QD_TRANS_Delete", [&] { return Delete({itrs.begin(), itrs.end()}); });
}

int MsetPool::Merge(iterator target, const TArray<iterator>& itrs) {
  const auto into = std::static_pointer_cast<const tagTMset>(Get(target));
  const std::set<iterator> merged(itrs.begin(), itrs.end());
  if (into == nullptr || merged.empty()) return 0;
  std::vector<MeshPtr> meshes{into->mesh};
  for (const iterator itr : merged) {
    const auto record = std::static_pointer_cast<const tagTMset>(Get(itr));
    // A set above the target cannot go into it.
    if (record == nullptr || itr == target || !MayStandBelow(KeyOf(*record), into->parent)) return 0;
    meshes.push_back(record->mesh);
  }
  return Keeper().InTransaction("IDS_QD_TRANS_Merge_Mesh_Set", [&] {
    tagTMset record = *into;
    PutMesh(record, JoinMeshes(meshes));
    if (Modify(target, record) == 0) return 0;
    for (const iterator itr : merged) {
      TArray<iterator> nested;
      GetItrListByParentMsetK(GetAtNU(itr)->key, nested);
      for (const iterator child : nested) {
        if (merged.contains(child)) continue;
        tagTMset moved = *GetAtNU(child);
        moved.parent = KeyOf(record);
        if (Modify(child, moved) == 0) return 0;
      }
    }
    return Delete(merged);
  });
}

int MsetPool::TR_Del_All() {
  const iterator spared = GetDefaultMset();
  std::set<iterator> gone;
  for (const iterator itr : GetItrList()) {
    if (itr != spared) gone.insert(itr);
  }
  return Keeper().InTransaction("IDS_QD_WRT_DELETE_ALL_MESH_SET", [&] {
    if (spared != 0) {
      tagTMset emptied = *GetAtNU(spared);
      emptied.parent = 0;
      PutMesh(emptied, nullptr);
      if (Modify(spared, emptied) == 0) return 0;
    }
    return Delete(gone);
  });
}

int MsetPool::TR_Del_EmptyMset() {
  std::set<iterator> gone;
  for (const iterator itr : GetItrList()) {
    if (GetAtNU(itr)->nodeCount == 0 && itr != GetDefaultMset()) gone.insert(itr);
  }
  if (gone.empty()) return 1;
  return Keeper().InTransaction("IDS_QD_WRT_DELETE_EMPTY_MESH_SET", [&] { return Delete(gone); });
}

// ---- the default set ------------------------------------------------------------------------------------

iterator MsetPool::GetDefaultMset() const {
  const iterator itr = m_settings.Current().defaultMset;
  return Get(itr) != nullptr ? itr : 0;
}

iterator MsetPool::NeedDefaultMset() {
  if (const iterator known = GetDefaultMset(); known != 0) return known;
  tagTMset record;
  record.name = CMSGFunction::GetValue("IDS_WB_DEFAULT_MESH_SET");
  if (Exist(record.name) != 0) record.name = GetNewCopyName(record.name);
  record.colour = GetNewColor();
  tagTSettings settings = m_settings.Current();
  settings.defaultMset = Add(record);
  return settings.defaultMset != 0 && m_settings.Store(settings) != 0 ? settings.defaultMset : 0;
}

}  // namespace qd::workbench

#include "workbench/model/CordPool.h"

#include <algorithm>

#include "host/CMSGFunction.h"
#include "workbench/model/CopyName.h"

namespace qd::workbench {

void CordPool::MakeDefault() {
  tagTCord global;
  global.SetName(CMSGFunction::GetValue("IDS_WB_GLOBAL_CORD"));
  PutFirst(global);
}

// ---- indexes --------------------------------------------------------------------------------------------

void CordPool::OnEnter(iterator itr, const tagTCord& record) {
  ++m_names[record.GetName()];
  if (record.parent != 0) m_children[record.parent].insert(itr);
}

void CordPool::OnLeave(iterator itr, const tagTCord& record) {
  const auto name = m_names.find(record.GetName());
  if (--name->second == 0) m_names.erase(name);
  const auto siblings = m_children.find(record.parent);
  if (siblings == m_children.end()) return;
  siblings->second.erase(itr);
  if (siblings->second.empty()) m_children.erase(siblings);
}

std::vector<iterator> CordPool::ChildrenOf(iterator itr) const {
  const auto found = m_children.find(itr);
  if (found == m_children.end()) return {};
  return {found->second.begin(), found->second.end()};
}

CString CordPool::GetNewCopyName(const CString& text) const {
  return CopyName(text, Count(), [this](const CString& name) { return Exist(name) != 0; });
}

Placement CordPool::GlobalPlacement(iterator itr) const {
  Placement placement;
  for (const tagTCord* record = GetAtNU(itr); record != nullptr; record = GetAtNU(record->parent)) {
    placement = Compose(PlacementOf(*record), placement);
  }
  return placement;
}

// ---- writes ---------------------------------------------------------------------------------------------

bool CordPool::IsSound(const tagTCord& record) const {
  return record.name[0] != 0 && IsPlaceable(record) && Get(record.parent) != nullptr;
}

bool CordPool::StandsOn(iterator itr, iterator other) const {
  while (itr != 0 && itr != other) itr = GetAtNU(itr)->parent;
  return itr == other;
}

iterator CordPool::Add(tagTCord record) {
  if (record.parent == 0) record.parent = GetDefaultCord();
  return IsSound(record) ? Pool::Add(record) : 0;
}

int CordPool::Modify(iterator itr, const tagTCord& record) {
  if (IsDefaultCord(itr) != 0 || Get(itr) == nullptr) return 0;
  tagTCord changed = record;
  if (changed.parent == 0) changed.parent = GetDefaultCord();
  return IsSound(changed) && !StandsOn(changed.parent, itr) ? Change(itr, changed) : 0;
}

int CordPool::TR_Del(const std::vector<iterator>& itrs) {
  if (std::find(itrs.begin(), itrs.end(), GetDefaultCord()) != itrs.end()) return 0;
  return Keeper().InTransaction("IDS_QD_TRANS_Delete_CORD", [&] { return Pool::TR_Del(itrs); });
}

}  // namespace qd::workbench

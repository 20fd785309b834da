#include "qd_wrt/core/CQDTreeBranch.h"

#include <algorithm>

#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

CQDTreeItem* CQDTreeBranch::FindChild(iterator itr) const {
  CQDTreeItem* node = GetControl()->FindNode(itr);
  if (node != nullptr && node->GetParent() == this) return node;
  const std::uint64_t* found = m_unmapped.Find(itr);
  return found != nullptr ? reinterpret_cast<CQDTreeItem*>(*found) : nullptr;
}

std::vector<CQDTreeItem*> CQDTreeBranch::ChildrenByRecord() const {
  std::vector<CQDTreeItem*> children = Children();
  const auto before = [](const CQDTreeItem* a, const CQDTreeItem* b) {
    return a->GetIterator() < b->GetIterator();
  };
  if (!std::is_sorted(children.begin(), children.end(), before)) {
    std::stable_sort(children.begin(), children.end(), before);
  }
  return children;
}

int CQDTreeBranch::MakeChildItems() {
  if (GetDBSession() == nullptr) return 0;
  for (const iterator itr : Records()) MakeChildItem(itr);
  return 1;
}

int CQDTreeBranch::MakeChildItem(iterator itr) {
  if (FindChild(itr) != nullptr) return ModifyChildItem(itr);
  CQDTreeItem* child = MakeNode(itr);
  if (child == nullptr) return 0;
  AddChild(itr, child);
  return 1;
}

/// From here on the child is found.
void CQDTreeBranch::AddChild(iterator itr, CQDTreeItem* child) {
  if (!child->IsGeom() && !child->IsMesh() && !child->IsDatum()) {
    m_unmapped.Assign(itr, reinterpret_cast<std::uint64_t>(child));
  }
  child->MakeItem(kInsertLast);
}

int CQDTreeBranch::DeleteChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child == nullptr) return 0;
  m_unmapped.Erase(itr);
  DeleteChild(child);
  return 1;
}

void CQDTreeBranch::ApplyChange(const tagTRNotify& change) {
  switch (change.kind) {
    case kChangeAdded:
      MakeChildItem(change.itr);
      break;
    case kChangeDeleted:
      DeleteChildItem(change.itr);
      break;
    case kChangeModified:
      ModifyChildItem(change.itr);
      break;
    default:
      break;
  }
}

}  // namespace qd

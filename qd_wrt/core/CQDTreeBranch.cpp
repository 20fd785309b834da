#include "qd_wrt/core/CQDTreeBranch.h"

#include <algorithm>

#include "host/CMSGFunction.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

CQDTreeBranch::CQDTreeBranch(CQDTreeListCtrl* control, CQDTreeItem* parent, const BranchKind& kind)
    : CQDTreeItem(control, parent, CMSGFunction::GetValue(kind.titleKey), kind.icon, kind.hasCheck ? 1 : 0) {
  SetTreeItemType(kind.treeItemType);
}

void CQDTreeBranch::RegisterReceiveDataType() {
  if (GetBranchKind() == nullptr) return;
  for (const unsigned short type : GetBranchKind()->dataTypes) FollowDataType(type);
}

void CQDTreeBranch::SetTitleIncludeType() {
  if (GetBranchKind() != nullptr) ChangeTitle(CMSGFunction::GetValue(GetBranchKind()->titleKey));
}

void CQDTreeBranch::CreateContextMenu(CPoint& screen) {
  const BranchKind* kind = GetBranchKind();
  if (kind == nullptr || kind->menu == nullptr) return;
  if (kind->menuOfOneRow && GetControl()->GetSelectedCount() != 1) return;
  TableMenu menu(kind->menu(), FillMenu());
  GetControl()->TrackMenu(menu.Menu(), screen);
}

CQDTreeItem* CQDTreeBranch::FindChild(iterator itr) const {
  return GetControl()->FindNodeBelow(this, itr);
}

std::vector<CQDTreeItem*> CQDTreeBranch::ChildrenByRecord() const {
  std::vector<CQDTreeItem*> children = Children();
  const auto before = [](const CQDTreeItem* a, const CQDTreeItem* b) { return a->GetRecord() < b->GetRecord(); };
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
  child->MakeItem(kInsertLast);
  return 1;
}

int CQDTreeBranch::DeleteChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child == nullptr) return 0;
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

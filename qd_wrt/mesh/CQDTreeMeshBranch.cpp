#include "qd_wrt/mesh/CQDTreeMeshBranch.h"

#include <algorithm>
#include <utility>

#include "host/Act.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/mesh/CQDTreeItemMeshData.h"
#include "qd_wrt/mesh/MsetSwitch.h"

namespace qd {

/// How the rows of mesh sets looked that are deleted and made anew.
class CQDTreeMeshBranch::RowLooks {
 public:
  explicit RowLooks(CQDTreeListCtrl& control) : m_control(control) {}

  void Keep(const CQDTreeItem& node) {
    const auto keep = [this](const CQDTreeItem* kept) {
      const HTREEITEM row = kept->GetTreeItemHandle();
      const Look look{kept->GetIterator(), m_control.IsExpanded(row), m_control.IsSelected(row),
                      m_control.GetFocusedItem() == row};
      if (look.expanded || look.selected || look.focused) m_looks.push_back(look);
    };
    keep(&node);
    node.ForEachBelow(keep);
  }
  void Restore() const {
    for (const Look& look : m_looks) {
      CQDTreeItem* node = m_control.FindMeshNode(look.itr);
      if (node == nullptr) continue;
      if (look.expanded) node->Expand(1);
      if (look.selected) m_control.SetItemState(node->GetTreeItemHandle(), kRowSelected, kRowSelected);
      if (look.focused) m_control.SetItemState(node->GetTreeItemHandle(), kRowFocused, kRowFocused);
    }
  }

 private:
  struct Look {
    iterator itr;
    bool expanded;
    bool selected;
    bool focused;
  };
  CQDTreeListCtrl& m_control;
  std::vector<Look> m_looks;
};

// ---- children -------------------------------------------------------------------------------------------

std::vector<iterator> CQDTreeMeshBranch::Records() const {
  TArray<iterator> itrs;
  GetDBSession()->GetMsetPool().GetItrListByParentMsetK(ParentKey(), itrs);
  return itrs;
}

CQDTreeItem* CQDTreeMeshBranch::MakeNode(iterator itr) {
  const DPoolMset& pool = GetDBSession()->GetMsetPool();
  if (pool.GetAtNU(itr) == nullptr) return nullptr;
  auto* node = new CQDTreeItemMeshData(GetControl(), this, itr);
  if (itr == pool.GetDefaultMset()) node->LockTitle();
  return node;
}

int CQDTreeMeshBranch::MakeChildItems() {
  CQDTreeBranch::MakeChildItems();
  // The base sorts only where a child may be renamed, which the default set may not.
  SortBranchesFromHere(0);
  return 1;
}

int CQDTreeMeshBranch::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child == nullptr) return MakeChildItem(itr);
  const tagTMset* record = GetDBSession()->GetMsetPool().GetAtNU(itr);
  if (record == nullptr) return 1;
  if (record->name != child->GetTitle()) child->SetTitleIncludeType();
  if (record->colour != child->GetColor()) {
    child->SetColor(record->colour);
    GetControl()->SetItemColor(child->GetTreeItemHandle(), record->colour, 1);
  }
  return 1;
}

void CQDTreeMeshBranch::GetChildItemMset(std::vector<CQDTreeItem*>& nodes) const {
  std::vector<CQDTreeItem*> waiting;
  const auto visit = [&waiting](const CQDTreeMeshBranch& branch) {
    const std::vector<CQDTreeItem*> children = branch.ChildrenByRecord();
    waiting.insert(waiting.end(), children.rbegin(), children.rend());
  };
  visit(*this);
  while (!waiting.empty()) {
    CQDTreeItem* node = waiting.back();
    waiting.pop_back();
    nodes.push_back(node);
    visit(*static_cast<const CQDTreeMeshBranch*>(node));
  }
}

// ---- changes --------------------------------------------------------------------------------------------

/// Whether a node stands no more where its record belongs. A deleted record is not asked.
bool CQDTreeMeshBranch::HasLeft(const CQDTreeItem& node, const tagTRNotify& change) const {
  if (change.kind == kChangeDeleted) return true;
  const tagTMset* record = GetDBSession()->GetMsetPool().GetAtNU(change.itr);
  const auto* parent = dynamic_cast<const CQDTreeMeshBranch*>(node.GetParent());
  return record == nullptr || parent == nullptr || parent->ParentKey() != record->parent;
}

void CQDTreeMeshBranch::ClearParentChangedItem(const std::vector<tagTRNotify>& changes, RowLooks& looks) {
  for (const tagTRNotify& change : changes) {
    CQDTreeItem* node = FindMset(change.itr);
    if (node == nullptr || !HasLeft(*node, change)) continue;
    looks.Keep(*node);
    node->GetParent()->DeleteChild(node);
  }
}

void CQDTreeMeshBranch::OnUpdate() {
  std::vector<tagTRNotify> changes = PendingRecords();
  std::erase_if(changes, [](const tagTRNotify& change) {
    return change.dataType != kDataMset || change.kind < kChangeAdded || change.kind > kChangeModified;
  });
  RowLooks looks(*GetControl());
  ClearParentChangedItem(changes, looks);
  for (const tagTRNotify& change : changes) {
    if (change.kind == kChangeDeleted || GetDBSession()->GetDataType(change.itr) != kDataMset) continue;
    // A parent without node makes its children itself when it is made.
    CQDTreeMeshBranch* branch = BranchOf(GetDBSession()->GetMsetPool().GetAtNU(change.itr)->parent);
    if (branch != nullptr) branch->MakeChildItem(change.itr);
  }
  looks.Restore();
}

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeMeshBranch::CheckOnlyInChild(CQDTreeItem* except, int state, int recurse) {
  if (recurse == 0) return CQDTreeBranch::CheckOnlyInChild(except, state, 0);
  MsetSwitch others(state);
  std::vector<CQDTreeItem*> waiting;
  const auto goBelow = [&waiting](const CQDTreeItem& node) {
    const std::vector<CQDTreeItem*> below = node.Children();
    waiting.insert(waiting.end(), below.rbegin(), below.rend());
  };
  const CQDTreeListCtrl::Handler handler(*GetControl());  // a host may delete nodes when it hears of a box
  goBelow(*this);
  while (!waiting.empty()) {
    CQDTreeItem* node = waiting.back();
    waiting.pop_back();
    if (node->IsDetached()) continue;
    if (node == except) {
      node->OnClickCheck(state != kChecked ? kChecked : kUnchecked);
      continue;
    }
    if (auto* set = dynamic_cast<CQDTreeItemMeshData*>(node)) {
      others.Switch(*set);
    } else {
      node->OnClickCheck(state);  // a host's own row
    }
    if (!node->IsDetached()) goBelow(*node);
  }
}

// ---- shared by the commands -----------------------------------------------------------------------------

void RefreshMeshDisplay(CQDTreeItem& node) {
  node.ResetSelection(1);
  node.RedrawView();
}

int ModifyMsets(CQDDBSession& session, const char* titleKey, const std::vector<iterator>& itrs,
                const std::function<void(tagTMset&)>& change) {
  DPoolMset& pool = session.GetMsetPool();
  return RunAct(&session, titleKey, [&] {
    for (const iterator itr : itrs) {
      const tagTMset* old = pool.GetAtNU(itr);
      if (old == nullptr) return 0;
      tagTMset record = *old;
      change(record);
      if (pool.Modify(itr, record) == 0) return 0;
    }
    return 1;
  });
}

std::vector<iterator> MsetsOf(const std::vector<CQDTreeItem*>& nodes) {
  std::vector<iterator> itrs;
  for (const CQDTreeItem* node : nodes) {
    if (node->IsMesh() && !node->IsDetached()) itrs.push_back(node->GetIterator());
  }
  return itrs;
}

std::vector<std::uint32_t> MsetKeysOf(const std::vector<CQDTreeItem*>& nodes) {
  std::vector<std::uint32_t> keys;
  for (const CQDTreeItem* node : nodes) {
    const tagTMset* record = node->IsMesh() && node->GetDBSession() != nullptr
                                 ? node->GetDBSession()->GetMsetPool().GetAtNU(node->GetIterator())
                                 : nullptr;
    if (record != nullptr) keys.push_back(record->key & kMsetKeyMask);
  }
  return keys;
}

}  // namespace qd

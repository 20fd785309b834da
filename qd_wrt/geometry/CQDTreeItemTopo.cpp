#include "qd_wrt/geometry/CQDTreeItemTopo.h"

#include <algorithm>

#include "host/CMSGFunction.h"
#include "host/CQDCommandObj.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "qd_wrt/geometry/GeomMenus.h"

namespace qd {

namespace {
constexpr unsigned short kDataTypes[] = {kDataGset, kDataMset, kDataMaterial, kDataMaterialTitle};
constexpr BranchKind kKind = GeometryRoot(true, kDataTypes, TopologyRootMenu);
}  // namespace

CQDTreeItemTopo::CQDTreeItemTopo(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeGeomRoot(control, parent, kKind) {}

const BranchKind* CQDTreeItemTopo::GetBranchKind() const {
  return &kKind;
}

// ---- children -------------------------------------------------------------------------------------------

std::vector<iterator> CQDTreeItemTopo::Records() const {
  return GetDBSession()->GetGsetPool().GetItrList();
}

CQDTreeItem* CQDTreeItemTopo::MakeNode(iterator itr) {
  const bool readable = GetDBSession()->GetGsetPool().GetAtNU(itr) != nullptr;
  return readable ? new CQDTreeItemGset(GetControl(), this, itr) : nullptr;
}

int CQDTreeItemTopo::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  const tagTGset* record = GetDBSession()->GetGsetPool().GetAtNU(itr);
  if (child == nullptr || record == nullptr) return 0;
  if (record->name != child->GetTitle()) child->SetTitleIncludeType();
  return 1;
}

void CQDTreeItemTopo::OnUpdate() {
  for (const tagTRNotify& change : PendingRecords()) {
    if (change.dataType == kDataGset) ApplyChange(change);
  }
}

void CQDTreeItemTopo::AppendConcerned(const tagTRNotify& change, std::vector<CQDTreeItem*>& nodes) const {
  if (GetDBSession() == nullptr) return;
  const tagTGeom* record = GetDBSession()->GetGeomPool().GetAtNU(change.itr);
  // What was deleted can still be read, but it is in no set any more.
  const bool alive = record != nullptr && GetDBSession()->GetDataType(change.itr) != 0;
  if (CQDTreeItem* set = alive ? FindChild(record->gset) : nullptr) nodes.push_back(set);
  const CQDTreeItem* part = GetControl()->FindGeomNode(change.itr);
  CQDTreeItem* group = part != nullptr ? part->GetParent() : nullptr;
  CQDTreeItem* before = group != nullptr ? group->GetParent() : nullptr;
  if (before != nullptr && before->GetParent() == this) nodes.push_back(before);
}

CQDTreeItem* CQDTreeItemTopo::NodeOfRecord(iterator itr) const {
  CQDTreeItem* set = FindChild(itr);
  return set != nullptr ? set : GetControl()->FindGeomNode(itr);
}

void CQDTreeItemTopo::GetGeomItems(std::vector<CQDTreeItem*>& parts) const {
  parts.clear();
  for (CQDTreeItem* child : Children()) static_cast<CQDTreeItemGset*>(child)->GetGeomItems(parts);
  std::sort(parts.begin(), parts.end(),
            [](const CQDTreeItem* a, const CQDTreeItem* b) { return a->GetIterator() < b->GetIterator(); });
}

int CQDTreeItemTopo::OnClickCheck(int oldState) {
  CQDTreeItem::OnClickCheck(oldState);
  for (CQDTreeItem* child : Children()) child->OnClickCheck(oldState);
  return 1;
}

void CQDTreeItemTopo::RereadBox(const RowBox& box) {
  if (box.branch != kDataGset) return;
  if (box.itr == 0) return OnInitialize();
  auto* set = static_cast<CQDTreeItemGset*>(FindChild(box.itr));
  CQDTreeItem* node = set == nullptr || box.kind < 0 ? set : set->FindGroup(static_cast<TopologyKind>(box.kind));
  if (node != nullptr) node->OnInitialize();
}

// ---- menu and commands -----------------------------------------------------------------------------------

bool CQDTreeItemTopo::RunOwn(unsigned command) {
  if (command != kCommandNewSet) return false;
  NewGeometrySet();
  return true;
}

void CQDTreeItemTopo::SetGeomRenderMode(const TArray<iterator>& itrs) {
  for (const iterator itr : itrs) {
    if (CQDTreeItem* part = NodeOfRecord(itr)) part->RefreshImage();
  }
}

/// Without naming a set beside the new one, unlike the command of a set.
void CQDTreeItemTopo::NewGeometrySet() {
  tagTGset record;
  record.name = GetDBSession()->GetGsetPool().GetNewCopyName(CMSGFunction::GetValue("IDS_QD_WRT_GEOMSET"));
  record.name = CutName(record.name);
  CQDCommandObj(GetDocument(), L"GeomSet").Set(L"Action", 0).Set(L"Data", std::vector<tagTGset>{record}).Execute();
}

}  // namespace qd

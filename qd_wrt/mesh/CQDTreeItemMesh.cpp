#include "qd_wrt/mesh/CQDTreeItemMesh.h"

#include <algorithm>

#include "host/CQDColorGenerator.h"
#include "platform/Toolkit.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/mesh/CQDTreeItemMeshData.h"
#include "qd_wrt/mesh/MeshMenus.h"
#include "qd_wrt/mesh/MsetSwitch.h"

namespace qd {

namespace {

constexpr unsigned short kDataTypes[] = {kDataMset};
constexpr BranchKind kKind{.titleKey = "IDS_QD_WRT_MESH",
                           .icon = 1,
                           .hasCheck = true,
                           .treeItemType = kTreeItemTypeMesh,
                           .dataTypes = kDataTypes,
                           .menu = MeshRootMenu,
                           .menuOfOneRow = false};

}  // namespace

CQDTreeItemMesh::CQDTreeItemMesh(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeMeshBranch(control, parent, kKind) {}

const BranchKind* CQDTreeItemMesh::GetBranchKind() const {
  return &kKind;
}

CQDTreeMeshBranch* CQDTreeItemMesh::BranchOf(std::uint32_t parentKey) {
  if (parentKey == 0) return this;
  return dynamic_cast<CQDTreeMeshBranch*>(FindMset(GetDBSession()->GetMsetPool().GetItrByKey(parentKey)));
}

CQDTreeItem* CQDTreeItemMesh::FindMset(iterator itr) const {
  return itr != 0 ? GetControl()->FindMeshNode(itr) : nullptr;
}

// ---- visibility -----------------------------------------------------------------------------------------

int CQDTreeItemMesh::OnClickCheck(int oldState) {
  WriteBox(oldState == kChecked ? kUnchecked : kChecked);
  std::vector<CQDTreeItem*> sets;
  GetChildItemMset(sets);
  MsetSwitch(oldState).Switch(sets, m_redraws);
  return 1;
}

void CQDTreeItemMesh::HandleFirst(unsigned command) {
  struct Quiet {
    bool& redraws;
    explicit Quiet(bool& flag) : redraws(flag) { redraws = false; }
    ~Quiet() { redraws = true; }
  };
  const Quiet quiet(m_redraws);
  OnMenuEvent(command);
}

void CQDTreeItemMesh::RereadBox(const RowBox& box) {
  if (box == GetRowBox()) OnInitialize();
}

void CQDTreeItemMesh::SwitchTopLevel(const std::set<iterator>& itrs, int oldState) {
  for (const iterator itr : itrs) {
    if (CQDTreeItem* node = FindChild(itr)) node->OnClickCheck(oldState);
  }
}

void CQDTreeItemMesh::ShowMesh(const std::set<iterator>& itrs) {
  SwitchTopLevel(itrs, kUnchecked);
}

void CQDTreeItemMesh::HideMesh(const std::set<iterator>& itrs) {
  SwitchTopLevel(itrs, kChecked);
}

void CQDTreeItemMesh::ShowHideNode(const std::vector<CQDTreeItem*>& items, int show) {
  for (CQDTreeItem* item : items) {
    if (item->IsMesh()) static_cast<CQDTreeItemMeshData*>(item)->ShowHideNode(show);
  }
}

// ---- how meshes are drawn -------------------------------------------------------------------------------

void CQDTreeItemMesh::SetMeshRenderMode(const std::vector<CQDTreeItem*>& items, unsigned mode) {
  if (items.empty() || GetDocument()->GetMPUData() == nullptr) return;
  GetDocument()->GetMPUData()->SetRenderMode(MsetKeysOf(items), mode);
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMesh::SetMeshTransparancy(const std::vector<CQDTreeItem*>& items, unsigned char value) {
  if (items.empty() || GetDocument()->GetMPUData() == nullptr) return;
  GetDocument()->GetMPUData()->SetTransparency(MsetKeysOf(items), value);
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMesh::SetMeshColorMode(const std::vector<CQDTreeItem*>& items, unsigned mode) {
  if (items.empty() || GetDocument()->GetMeshManager() == nullptr) return;
  GetDocument()->GetMeshManager()->SetMeshColorMode(mode);
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMesh::SetMeshRandomColor(const std::vector<CQDTreeItem*>& items) {
  const std::vector<iterator> itrs = MsetsOf(items);
  if (itrs.empty()) return;
  IToolkit::Instance().SetWaitCursor(true);
  CQDColorGenerator colours;
  const int done = ModifyMsets(*GetDBSession(), "IDS_QD_TRANS_Modify_Mset", itrs,
                               [&colours](tagTMset& record) { record.colour = colours.GetNextColor(); });
  if (done != 0) {
    if (CQDMeshManager* meshes = GetDocument()->GetMeshManager()) meshes->UpdateMeshColor();
    RefreshMeshDisplay(*this);
  }
  IToolkit::Instance().SetWaitCursor(false);
}

// ---- drop -----------------------------------------------------------------------------------------------

void CQDTreeItemMesh::OnDrop(std::vector<CQDTreeItem*>&) {
  CQDDBSession* session = GetDBSession();
  std::vector<CQDTreeItem*> selected;
  GetControl()->GetSelectedTreeItems(selected, 0);
  std::vector<iterator> sets;
  for (const CQDTreeItem* node : selected) {
    const iterator itr = node->GetIterator();
    if (session->GetDataType(itr) != kDataMset) return;
    const tagTMset* record = session->GetMsetPool().GetAtNU(itr);
    const bool stays = itr == session->GetMsetPool().GetDefaultMset() || record == nullptr || record->parent == 0;
    if (!stays) sets.push_back(itr);
  }
  if (sets.empty()) return;
  ModifyMsets(*session, "IDS_QD_TRANS_Modify_Mesh_Set", sets, [](tagTMset& record) { record.parent = 0; });
}

}  // namespace qd

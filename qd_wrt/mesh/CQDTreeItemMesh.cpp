#include "qd_wrt/mesh/CQDTreeItemMesh.h"

#include <algorithm>

#include "host/CMSGFunction.h"
#include "host/CQDColorGenerator.h"
#include "host/MessageOutput.h"
#include "platform/FlatMap.h"
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

// ---- sets that stand below themselves -------------------------------------------------------------------

namespace {

/// How many sets the top level leads to.
std::size_t CountBelowTop(const DPoolMset& pool) {
  std::size_t count = 0;
  std::vector<iterator> waiting;
  pool.GetItrListByParentMsetK(0, waiting);
  while (!waiting.empty()) {
    const tagTMset* record = pool.GetAtNU(waiting.back());
    waiting.pop_back();
    ++count;
    const std::uint32_t key = record != nullptr ? record->key & kMsetKeyMask : 0;
    if (key != 0) pool.GetItrListByParentMsetK(key, waiting);
  }
  return count;
}

/// Whether the way up from a set never ends. `known` is what came out for others before: 1 it ends, 2 it does not.
bool NeverEnds(const DPoolMset& pool, iterator itr, FlatMap& known) {
  constexpr std::uint64_t kEnds = 1;
  constexpr std::uint64_t kGoesRound = 2;
  std::vector<iterator> way;
  for (iterator at = itr; at != 0 && !known.Contains(at);) {
    known.Assign(at, kGoesRound);  // when the way comes back to it
    way.push_back(at);
    const tagTMset* record = pool.GetAtNU(at);
    const std::uint32_t parent = record != nullptr ? record->parent & kMsetKeyMask : 0;
    at = parent != 0 ? pool.GetItrByKey(parent) : 0;
    const std::uint64_t* before = known.Find(at);
    if (at == 0 || (before != nullptr && *before == kEnds)) {
      for (const iterator passed : way) known.Assign(passed, kEnds);
      return false;
    }
  }
  return *known.Find(itr) == kGoesRound;
}

}  // namespace

void CQDTreeItemMesh::WarnOfCircles() {
  constexpr std::size_t kMostNames = 5;
  const DPoolMset& pool = GetDBSession()->GetMsetPool();
  FlatMap known;
  CString names;
  std::size_t count = 0;
  for (const iterator itr : pool.GetItrList()) {
    const tagTMset* record = pool.GetAtNU(itr);
    if (record == nullptr || !NeverEnds(pool, itr, known)) continue;
    if (++count > kMostNames) break;
    names += (count > 1 ? L", " : L"") + record->name;
  }
  if (count == 0) return;
  m_hasWarned = true;
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_WRT_MESH_CIRCLE"),
                        {count > kMostNames ? names + L" \u2026" : names});
}

int CQDTreeItemMesh::MakeChildItems() {
  const int made = CQDTreeMeshBranch::MakeChildItems();
  if (GetDBSession() == nullptr || m_hasWarned) return made;
  const DPoolMset& pool = GetDBSession()->GetMsetPool();
  if (CountBelowTop(pool) < pool.GetItrList().size()) WarnOfCircles();
  return made;
}

void CQDTreeItemMesh::OnUpdate() {
  std::vector<iterator> changed;
  if (!m_hasWarned) {
    for (const tagTRNotify& change : PendingRecords()) {
      if (change.dataType == kDataMset && change.kind != kChangeDeleted) changed.push_back(change.itr);
    }
  }
  CQDTreeMeshBranch::OnUpdate();
  FlatMap known;
  const bool goesRound = std::any_of(changed.begin(), changed.end(), [&](iterator itr) {
    return FindMset(itr) == nullptr && NeverEnds(GetDBSession()->GetMsetPool(), itr, known);
  });
  if (goesRound) WarnOfCircles();
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

#include "qd_wrt/mesh/CQDTreeItemMeshData.h"

#include <algorithm>
#include <optional>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "host/ShowPage.h"
#include "platform/CDialog.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/mesh/CQDMsetOperation.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "qd_wrt/mesh/MsetSwitch.h"
#include "qd_wrt/properties/CPropertySetMesh.h"
#include "qd_wrt/properties/MsetName.h"

namespace qd {

namespace {
constexpr unsigned kIcon = 1;
}

CQDTreeItemMeshData::CQDTreeItemMeshData(CQDTreeListCtrl* control, CQDTreeItem* parent, iterator itr)
    : CQDTreeMeshBranch(control, parent, CString(), kIcon, 1), m_itr(itr) {
  m_isMesh = true;
  m_showID = true;
  m_showColour = true;
  m_editable = true;
  m_leftDrag = m_multiLeftDrag = true;
  RegsiterDragEnableType(kTreeItemTypeMesh);
  if (const tagTMset* record = Record()) {
    SetTitle(record->name);
    m_id = static_cast<std::int32_t>(record->key & kMsetKeyMask);
    m_colour = record->colour;
  }
}

const tagTMset* CQDTreeItemMeshData::Record() const {
  return GetDBSession() != nullptr ? GetDBSession()->GetMsetPool().GetAtNU(m_itr) : nullptr;
}

void CQDTreeItemMeshData::AppendMaterials(TArray<CString>& names) const {
  const tagTMset* record = Record();
  const tagTGeom* part = record != nullptr ? GetDBSession()->GetGeomPool().GetAtNU(record->geom) : nullptr;
  if (part == nullptr) return;
  if (const auto* found = GetDBSession()->GetMaterialPool().GetAtNU(part->material)) names.push_back(found->name);
}

CQDTreeMeshBranch* CQDTreeItemMeshData::BranchOf(std::uint32_t parentKey) {
  return parentKey == ParentKey() ? this : nullptr;
}

void CQDTreeItemMeshData::OnInitialize() {
  const CQDMeshManager* meshes = GetDocument()->GetMeshManager();
  const bool shown = meshes == nullptr || meshes->IsMsetShown(m_itr) != 0;
  GetControl()->SetChecked(GetTreeItemHandle(), shown ? kChecked : kUnchecked);
}

void CQDTreeItemMeshData::SetTitleIncludeType() {
  if (const tagTMset* record = Record()) ChangeTitle(record->name);
}

CQDTreeItemMesh* CQDTreeItemMeshData::GetMeshTreeItem() const {
  CQDTreeItem* above = GetParent();
  while (above != nullptr && above->IsMesh()) above = above->GetParent();
  return dynamic_cast<CQDTreeItemMesh*>(above);
}

int CQDTreeItemMeshData::IsAncestor(const CQDTreeItem* node, const CQDTreeItem* candidate) {
  for (const CQDTreeItem* above = node->GetParent(); above != nullptr && above->GetIterator() != 0;
       above = above->GetParent()) {
    if (above == candidate) return 1;
  }
  return 0;
}

void CQDTreeItemMeshData::SortChildItem(int byName, FlatMap* walked) {
  SortBranchesFromHere(byName, walked);
}

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeItemMeshData::SetMsetShowHIde(int state) {
  const int show = state != kChecked ? 1 : 0;
  CQDDocBase* doc = GetDocument();
  if (CQDMeshManager* meshes = doc->GetMeshManager(); meshes != nullptr && m_itr != 0) {
    if (!IsViewUpdate()) {
      meshes->ShowHideMsetUnit(m_itr, show);
    } else {
      meshes->ShowHideMset(m_itr, show);
      ResetSelection(1);
      doc->ReMakeAllLabel(0);
      if (CQDViewBase* view = doc->GetActiveView()) {
        if (ISectionAPI* sections = doc->GetSectionAPI()) {
          sections->UpdateClipSlice(*view);
          sections->UpdateClipVect(*view);
        }
        if (view->IsPostMode() != 0 && doc->GetPostManager() != nullptr) {
          doc->GetPostManager()->UpdateShowHideMSet(*view, 1);
        } else {
          view->Redraw(0);
        }
      }
    }
  }
  if (HasCheck()) GetControl()->SetChecked(GetTreeItemHandle(), show != 0 ? kChecked : kUnchecked);
}

int CQDTreeItemMeshData::OnClickCheck(int oldState) {
  MsetSwitch(oldState).Switch(*this);
  return 1;
}

void CQDTreeItemMeshData::ShowHideNode(int show) {
  CMPUData* display = GetDocument()->GetMPUData();
  const std::vector<std::uint32_t> keys = MsetKeysOf({this});
  if (display == nullptr || keys.empty()) return;
  if ((display->HasAddOnInfo(keys, kAddOnNodes) != 0) == (show != 0)) return;
  if (show != 0) {
    display->SetAddOnInfo(keys, kAddOnNodes);
  } else {
    display->DelAddOnInfo(keys, kAddOnNodes);
  }
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMeshData::ToggleShrink(const std::vector<CQDTreeItem*>& items) {
  const std::vector<std::uint32_t> keys = MsetKeysOf(items);
  if (keys.empty() || GetDocument()->GetMPUData() == nullptr) return;
  GetDocument()->GetMPUData()->ToggleShrink(keys);
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMeshData::ToggleMeshAddOn(const std::vector<CQDTreeItem*>& items, std::uint32_t bit) {
  CMPUData* display = GetDocument()->GetMPUData();
  const std::vector<std::uint32_t> keys = MsetKeysOf(items);
  if (keys.empty() || display == nullptr) return;
  if (display->HasAddOnInfo(keys, bit) != 0) {
    display->DelAddOnInfo(keys, bit);
  } else {
    display->SetAddOnInfo(keys, bit);
  }
  RefreshMeshDisplay(*this);
}

// ---- name, properties -----------------------------------------------------------------------------------

bool CQDTreeItemMeshData::IsNameTaken(const CString& name) const {
  return GetDBSession()->GetMsetPool().GetItr(name) != 0;
}

void CQDTreeItemMeshData::OnEditChange(const wchar_t* text) {
  const tagTMset* old = Record();
  if (old == nullptr) return;
  CQDDBSession* session = GetDBSession();
  if (const auto name = IsEditable() ? NewMsetName(*session, *old, text) : std::nullopt) {
    tagTMset record = *old;
    record.name = *name;
    constexpr int kNoRedraw = 0;  // views show no names
    const auto write = [&] { return session->GetMsetPool().Modify(m_itr, record); };
    RunAct(session, "IDS_QD_TRANS_Modify_Mset", write, kNoRedraw);
  }
  // The row has the text as it was typed; the name may be shorter, or the old one.
  if (!IsDetached()) SetTitleIncludeType();
}

void CQDTreeItemMeshData::SetPropertyView() {
  ShowPropertyPage(GetDocument(), std::make_unique<CPropertySetMesh>(GetDocument(), m_itr, kDataMset));
}

void CQDTreeItemMeshData::SetMultiPropertyView() {
  auto page = std::make_unique<CPropertySetMesh>(GetDocument(), m_itr, kDataMset);
  page->SetSets(MsetsOf(SelectedSets()));
  ShowPropertyPage(GetDocument(), std::move(page));
}

// ---- merge, delete, drop --------------------------------------------------------------------------------

std::vector<CQDTreeItem*> CQDTreeItemMeshData::SelectedSets() const {
  std::vector<CQDTreeItem*> selected;
  GetControl()->GetSelectedTreeItems(selected, 0);
  std::erase_if(selected, [](const CQDTreeItem* node) { return !node->IsMesh(); });
  return selected;
}

int CQDTreeItemMeshData::MergeMeshSet(iterator target, const TArray<iterator>& list) {
  CQDDBSession* session = GetDBSession();
  const tagTMset* record = session->GetMsetPool().GetAtNU(target);
  if (record == nullptr) return 0;
  return RunAct(session, "IDS_QD_TRANS_Merge_Mesh_Set", [&] {
    // The merged mesh is not any more what was generated.
    const iterator generation = session->GetMGInfoPool().GetItrByKey(record->mgInfo);
    if (generation != 0 && session->GetMGInfoPool().Delete(generation) == 0) return 0;
    return session->GetMsetPool().Merge(target, list);
  });
}

void CQDTreeItemMeshData::DeleteSelectedItems() {
  CQDDocBase* doc = GetDocument();
  const std::vector<CQDTreeItem*> selected = SelectedSets();
  FlatMap isSelected;
  for (const CQDTreeItem* set : selected) isSelected.Assign(set->GetIterator(), 1);
  const auto standsBelowSelected = [&isSelected](const CQDTreeItem* set) {
    for (const CQDTreeItem* above = set->GetParent(); above->IsMesh(); above = above->GetParent()) {
      if (isSelected.Contains(above->GetIterator())) return true;
    }
    return false;
  };
  bool nestedToo = false;
  const bool anyNested = std::any_of(selected.begin(), selected.end(),
                                     [](const CQDTreeItem* set) { return set->GetChildCount() != 0; });
  // Who selects a set and one nested in it has chosen what goes.
  if (anyNested && std::none_of(selected.begin(), selected.end(), standsBelowSelected)) {
    const CString question = CMSGFunction::GetValue("IDS_QD_WRT_DELETE_SUB_MESHSET");
    const MessageAnswer answer = AfxMessageBox(question, MessageButtons::YesNoCancel);
    if (answer == MessageAnswer::Cancel) return;
    nestedToo = answer == MessageAnswer::Yes;
  }
  std::vector<iterator> gone;
  FlatMap listed;  // a record twice would make the deletion fail
  const auto list = [&](const CQDTreeItem* set) {
    if (set->IsDetached() || listed.Contains(set->GetIterator())) return;
    listed.Assign(set->GetIterator(), 1);
    gone.push_back(set->GetIterator());
  };
  for (const CQDTreeItem* set : selected) {
    if (nestedToo && !set->IsDetached()) {
      std::vector<CQDTreeItem*> nested;
      static_cast<const CQDTreeMeshBranch*>(set)->GetChildItemMset(nested);
      for (const CQDTreeItem* below : nested) list(below);
    }
    list(set);
  }
  if (!gone.empty()) doc->DeleteData(kDeleteModelData, gone);
}

void CQDTreeItemMeshData::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  CQDDBSession* session = GetDBSession();
  CQDDocBase* doc = GetDocument();
  std::erase_if(nodes, [](const CQDTreeItem* node) { return node->IsDetached(); });
  std::vector<iterator> sets;
  bool onItself = false;
  for (const CQDTreeItem* node : nodes) {
    if (session->GetDataType(node->GetIterator()) != kDataMset) return;
    sets.push_back(node->GetIterator());
    onItself = onItself || node == this || IsAncestor(this, node) != 0;
  }
  if (sets.empty()) return;
  if (onItself) {
    AfxMessageBox(CMSGFunction::GetValue("IDS_QD_WRT_MESHSET_OPERATION_ERR"));
    return;
  }
  const CQDTreeListCtrl::Handler handler(*GetControl());  // this node may be deleted meanwhile
  CQDMsetOperation dialog(doc);
  if (dialog.DoModal() != kDialogOk || IsDetached()) return;
  int done = 0;
  if (dialog.GetOperation() == CQDMsetOperation::kMove) {
    const std::uint32_t parent = ParentKey();
    done = ModifyMsets(*session, "IDS_QD_TRANS_Modify_Mesh_Set", sets,
                       [parent](tagTMset& record) { record.parent = parent; });
  }
  if (dialog.GetOperation() == CQDMsetOperation::kMerge) done = MergeMeshSet(m_itr, sets);
  if (done != 0) RefreshMeshDisplay(*this);
}

}  // namespace qd

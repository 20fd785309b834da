// Commands on the selected mesh sets.

#include <algorithm>

#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "platform/CDialog.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/IAppWrt.h"
#include "qd_wrt/core/MenuTable.h"
#include "qd_wrt/core/ViewUpdate.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "qd_wrt/mesh/CQDTreeItemMeshData.h"
#include "qd_wrt/mesh/MeshMenus.h"
#include "qd_wrt/mesh/MsetSwitch.h"

namespace qd {

struct CQDTreeItemMeshData::Entry {
  unsigned first;
  unsigned last;
  void (CQDTreeItemMeshData::*run)(unsigned command);
};

const std::vector<CQDTreeItemMeshData::Entry>& CQDTreeItemMeshData::Table() {
  using Set = CQDTreeItemMeshData;
  static const std::vector<Entry> kTable{
      {kCommandDelete, kCommandDelete, &Set::Delete},
      {kCommandRename, kCommandRename, &Set::Rename},
      {kCommandReverseAll, kCommandReverseAll, &Set::Reverse},
      {kCommandShowMesh, kCommandHideMesh, &Set::ShowHide},
      {kCommandShowAllMeshes, kCommandHideAllMeshes, &Set::ShowHideAll},
      {kCommandClearAddOns, kCommandClearAddOns, &Set::ClearAddOns},
      {kCommandShowMeshOnly, kCommandHideMeshOnly, &Set::ShowHideOnly},
      {kCommandMeshSmooth, kCommandMeshFeatureEdges, &Set::SetRenderMode},
      {kCommandNodes, kCommandMaterialSystems, &Set::ToggleAddOn},
      {kCommandMeshTransparent, kCommandMeshOpaque, &Set::SetTransparency},
      {kCommandShrink, kCommandShrink, &Set::Shrink},
      {kCommandMeshIncludeExclude, kCommandMeshIncludeExclude, &Set::OpenIncludeExclude},
      {kCommandMergeMeshSets, kCommandMergeMeshSets, &Set::Merge},
      {kCommandDeleteMesh, kCommandDeleteMesh, &Set::Delete},
      {kCommandMeshTranslate, kCommandMeshSweep, &Set::OpenTransform},
      {kCommandRemesh, kCommandRemesh, &Set::OpenRemesh}};
  return kTable;
}

namespace {

/// Commands after which a save keeps more than the model. Shading is not among them, nor what shows or hides all
/// or only some.
bool ChangesModelInfo(unsigned command) {
  constexpr unsigned kCommands[] = {kCommandShowOnly, kCommandHideOnly,    kCommandReverse,    kCommandShowMesh,
                                    kCommandHideMesh, kCommandClearAddOns, kCommandMeshSmooth, kCommandShrink};
  if (std::find(std::begin(kCommands), std::end(kCommands), command) != std::end(kCommands)) return true;
  if (command >= kCommandMeshFeatureShading && command <= kCommandNodes) return true;
  return command >= kCommandNodeIds && command <= kCommandMeshOpaque;
}

}  // namespace

void CQDTreeItemMeshData::CreateContextMenu(CPoint& screen) {
  const std::vector<CQDTreeItem*> sets = SelectedSets();
  const std::vector<std::uint32_t> keys = MsetKeysOf(sets);
  const CMPUData* display = GetDocument()->GetMPUData();
  const bool single = GetControl()->GetSelectedCount() == 1;
  const bool mayRename = GetDBSession()->GetMsetPool().GetDefaultMset() != m_itr;
  TableMenu menu(MeshSetMenu(single, mayRename), {.isChecked = [&](unsigned command) {
                   return display != nullptr && display->HasAddOnInfo(keys, AddOnOf(command)) != 0;
                 }});
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemMeshData::OnMenuEvent(unsigned command) {
  CQDDocBase* doc = GetDocument();
  if (doc == nullptr || GetDBSession() == nullptr) return;
  const auto& table = Table();
  const auto entry = std::find_if(table.begin(), table.end(), [command](const Entry& candidate) {
    return command >= candidate.first && command <= candidate.last;
  });
  if (entry != table.end()) (this->*entry->run)(command);
  if (ChangesModelInfo(command)) doc->SetModelInfoChangedFlag(1);
}

void CQDTreeItemMeshData::Rename(unsigned) {
  GetControl()->OnChangeTitle();
}

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeItemMeshData::Reverse(unsigned) {
  const std::vector<CQDTreeItem*> sets = SelectedSets();
  CQDTreeItemMesh* root = GetMeshTreeItem();
  if (sets.empty() || root == nullptr) return;
  const QuietNode quiet(*root);
  const LastRedraws redraws(sets);
  for (CQDTreeItem* set : sets) {
    redraws.SayTo(*set);
    set->OnClickCheck(set->GetCheckStatus());
  }
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMeshData::ShowHide(unsigned command) {
  MsetSwitch(command == kCommandShowMesh ? kUnchecked : kChecked).Switch(SelectedSets(), true);
}

void CQDTreeItemMeshData::ShowHideAll(unsigned command) {
  if (CQDTreeItemMesh* root = GetMeshTreeItem()) {
    root->OnClickCheck(command == kCommandShowAllMeshes ? kUnchecked : kChecked);
  }
}

void CQDTreeItemMeshData::ShowHideOnly(unsigned command) {
  // The first switch resets the selection.
  const std::vector<CQDTreeItem*> sets = SelectedSets();
  CQDTreeItemMesh* root = GetMeshTreeItem();
  if (sets.empty() || root == nullptr) return;
  const bool showOnly = command == kCommandShowMeshOnly;
  const QuietNode quiet(*root);
  if (showOnly) GetDocument()->OnShowOnly();
  root->HandleFirst(showOnly ? kCommandHideAllMeshes : kCommandShowAllMeshes);
  MsetSwitch(showOnly ? kUnchecked : kChecked).Switch(sets, true);
  root->WriteBox(kChecked);
}

// ---- how meshes are drawn -------------------------------------------------------------------------------

void CQDTreeItemMeshData::ClearAddOns(unsigned) {
  const std::vector<std::uint32_t> keys = MsetKeysOf(SelectedSets());
  if (keys.empty() || GetDocument()->GetMPUData() == nullptr) return;
  GetDocument()->GetMPUData()->DelAddOnInfo(keys, kAddOnAll);
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMeshData::SetRenderMode(unsigned command) {
  if (CQDTreeItemMesh* root = GetMeshTreeItem())
    root->SetMeshRenderMode(SelectedSets(), MeshRenderModeOf(command));
}

void CQDTreeItemMeshData::ToggleAddOn(unsigned command) {
  if (const std::uint32_t bit = AddOnOf(command); bit != 0) ToggleMeshAddOn(SelectedSets(), bit);
}

void CQDTreeItemMeshData::SetTransparency(unsigned command) {
  if (CQDTreeItemMesh* root = GetMeshTreeItem()) {
    root->SetMeshTransparancy(SelectedSets(), MeshTransparencyOf(command));
  }
}

void CQDTreeItemMeshData::Shrink(unsigned) {
  ToggleShrink(SelectedSets());
}

// ---- merge and dialogs ----------------------------------------------------------------------------------

/// The topmost selected set above this one takes the others in, so that no set is merged into one below it.
void CQDTreeItemMeshData::Merge(unsigned command) {
  const std::vector<CQDTreeItem*> sets = SelectedSets();
  if (sets.size() < 2) return;
  FlatMap isSelected;
  for (const CQDTreeItem* set : sets) isSelected.Assign(set->GetIterator(), 1);
  CQDTreeItem* topmost = nullptr;
  for (CQDTreeItem* above = GetParent(); above->IsMesh(); above = above->GetParent()) {
    if (isSelected.Contains(above->GetIterator())) topmost = above;
  }
  if (topmost != nullptr) return topmost->OnMenuEvent(command);
  TArray<iterator> others = MsetsOf(sets);
  std::erase(others, m_itr);
  const CString question = CMSGFunction::GetValue("IDS_QD_WRT_MERGE_MESHSET");
  if (AfxMessageBox(question, MessageButtons::YesNo) != MessageAnswer::Yes) return;
  if (MergeMeshSet(m_itr, others) != 0) RefreshMeshDisplay(*this);
}

void CQDTreeItemMeshData::OpenIncludeExclude(unsigned) {
  IQDMeshgDialog::DoModeless(GetDocument(), L"CQDMeshIncludeExcludeDlg", &m_itr, nullptr);
}

void CQDTreeItemMeshData::OpenTransform(unsigned command) {
  IQueryMenuID2Idx::Instance().SetLastCommand(command);
  IQDMeshgDialog::DoModeless(GetDocument(), L"CQDMeshTransformDlg", nullptr, nullptr);
}

void CQDTreeItemMeshData::OpenRemesh(unsigned) {
  const tagTMset* record = Record();
  const IAppWrt* app = IAppWrt::Instance();
  tagMGInfo generation;
  const DPoolMGInfo& pool = GetDBSession()->GetMGInfoPool();
  if (record == nullptr || app == nullptr || pool.GetAt(pool.GetItrByKey(record->mgInfo), generation) == 0) return;
  int (IAppWrt::*const kModes[])() const = {&IAppWrt::GetMenuIndexOfAutoSolid, &IAppWrt::GetMenuIndexOfMapSolid,
                                            &IAppWrt::GetMenuIndexOf2D3D, &IAppWrt::GetMenuIndexOfAutoLayer};
  if (generation.method < 0 || static_cast<std::size_t>(generation.method) >= std::size(kModes)) return;
  tagTMeshGUI arguments;
  arguments.Init();
  arguments.targets = generation.targets;
  arguments.remesh = true;
  IQueryMenuID2Idx::Instance().SetLastCommand(static_cast<unsigned>((app->*kModes[generation.method])()));
  IQDMeshgDialog::DoModeless(GetDocument(), L"CQDMeshGen3DDlg", &arguments, &m_itr);
}

}  // namespace qd

// Commands on the mesh branch as a whole or on the selected mesh sets.

#include <algorithm>
#include <map>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "host/ProductVariant.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/MenuTable.h"
#include "qd_wrt/core/ViewUpdate.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "qd_wrt/mesh/CQDTreeItemMeshData.h"
#include "qd_wrt/mesh/MeshMenus.h"

namespace qd {

struct CQDTreeItemMesh::Entry {
  unsigned first;
  unsigned last;
  void (CQDTreeItemMesh::*run)(unsigned command, const Targets& targets);
  enum class ActsOn : std::uint8_t { NoSets, Chosen, All, Order };
  ActsOn acts = ActsOn::NoSets;  // those that are chosen, or their order, are collected for it
};

const std::vector<CQDTreeItemMesh::Entry>& CQDTreeItemMesh::Table() {
  using Root = CQDTreeItemMesh;
  static const std::vector<Entry> kTable{
      {kCommandNewSet, kCommandNewSet, &Root::NewMeshSet},
      {kCommandReverseAll, kCommandReverseAll, &Root::Reverse, Entry::ActsOn::Chosen},
      {kCommandSortByCreation, kCommandSortByName, &Root::Sort, Entry::ActsOn::Order},
      {kCommandShowMesh, kCommandHideMesh, &Root::Forward, Entry::ActsOn::Chosen},
      {kCommandShowAllMeshes, kCommandHideAllMeshes, &Root::ShowHideAll, Entry::ActsOn::All},
      {kCommandClearAddOns, kCommandClearAddOns, &Root::Forward, Entry::ActsOn::Chosen},
      {kCommandShowMeshOnly, kCommandHideMeshOnly, &Root::Forward, Entry::ActsOn::Chosen},
      {kCommandMeshSmooth, kCommandMeshFeatureEdges, &Root::RenderMode, Entry::ActsOn::Chosen},
      {kCommandNodes, kCommandMaterialSystems, &Root::Forward, Entry::ActsOn::Chosen},
      {kCommandMeshTransparent, kCommandMeshOpaque, &Root::Transparency, Entry::ActsOn::Chosen},
      {kCommandMeshColourMode, kCommandLastMeshColourMode, &Root::ColourMode, Entry::ActsOn::Chosen},
      {kCommandMeshRandomColour, kCommandMeshRandomColour, &Root::RandomColour, Entry::ActsOn::Chosen},
      {kCommandDeleteAllMeshSets, kCommandDeleteEmptyMeshSets, &Root::DeleteSets, Entry::ActsOn::All},
      {kCommandMeshIncludeExclude, kCommandMeshReserved, &Root::Forward, Entry::ActsOn::Chosen},
      {kCommandMeshTranslate, kCommandMeshRotate, &Root::Forward, Entry::ActsOn::Chosen},
      {kCommandAllNodes, kCommandAllMaterialSystems, &Root::ToggleMeshAllAddOn, Entry::ActsOn::All},
      {kCommandClearAllAddOns, kCommandClearAllAddOns, &Root::ClearAddOns, Entry::ActsOn::All},
      {kCommandMeshNode, kCommandMeshMap3D, &Root::OpenDialog}};
  return kTable;
}

namespace {

/// The command that a shortcut stands for; the number itself for any other.
unsigned CommandOfShortcut(unsigned command) {
  if (command >= kCommandFirstMeshModeShortcut && command <= kCommandLastMeshModeShortcut) {
    return command - (kCommandFirstMeshModeShortcut - kCommandMeshSmooth);
  }
  if (command >= kCommandFirstMeshLookShortcut && command <= kCommandLastMeshLookShortcut) {
    return command - (kCommandFirstMeshLookShortcut - kCommandMeshTransparent);
  }
  return command;
}

}  // namespace

MenuFill CQDTreeItemMesh::FillMenu() {
  if (IsKSL() == 0) {
    // The dialogs for both kinds of mesh tell by these which one they are opened for.
    IQueryMenuID2Idx::Instance().SetMenuID(kCommandMeshMap2D, 2);
    IQueryMenuID2Idx::Instance().SetMenuID(kCommandMeshMap3D, 1);
  }
  const CMPUData* display = GetDocument()->GetMPUData();
  return {.isChecked = [display](unsigned command) {
    return display != nullptr && display->HasAddOnInfoAll(AddOnOf(command)) != 0;
  }};
}

CQDTreeItemMesh::Targets CQDTreeItemMesh::TargetsOf(bool all, bool& meansAll) const {
  Targets targets;
  if (!all) GetControl()->GetSelectedTreeItems(GetTreeItemHandle(), targets);
  meansAll = targets.empty() || targets.front()->GetIterator() == 0;
  if (!meansAll) return targets;
  targets.clear();
  GetChildItemMset(targets);
  return targets;
}

void CQDTreeItemMesh::OnMenuEvent(unsigned command) {
  IQueryMenuID2Idx::Instance().SetLastCommand(command);
  if (GetDBSession() == nullptr) return;
  const unsigned meant = CommandOfShortcut(command);
  const auto& table = Table();
  const auto entry = std::find_if(table.begin(), table.end(), [meant](const Entry& candidate) {
    return meant >= candidate.first && meant <= candidate.last;
  });
  if (entry == table.end()) return;
  using ActsOn = Entry::ActsOn;
  const bool collects = entry->acts == ActsOn::Chosen || entry->acts == ActsOn::Order;
  bool meansAll = false;
  const Targets targets = collects ? TargetsOf(meant != command, meansAll) : Targets();
  if (entry->acts == ActsOn::All || (entry->acts == ActsOn::Chosen && meansAll)) SayThatAllAreMeant();
  (this->*entry->run)(meant, targets);
}

void CQDTreeItemMesh::Forward(unsigned command, const Targets& targets) {
  if (!targets.empty() && targets.front()->GetIterator() != 0) targets.front()->OnMenuEvent(command);
}

// ---- visibility and order -------------------------------------------------------------------------------

void CQDTreeItemMesh::ShowHideAll(unsigned command, const Targets&) {
  OnClickCheck(command == kCommandShowAllMeshes ? kUnchecked : kChecked);
}

void CQDTreeItemMesh::Reverse(unsigned, const Targets& targets) {
  const LastRedraws redraws(targets);
  for (CQDTreeItem* node : targets) {
    if (!node->IsMesh()) continue;
    redraws.SayTo(*node);
    static_cast<CQDTreeItemMeshData*>(node)->SetMsetShowHIde(node->GetCheckStatus());
  }
}

/// Sorts the level of the root, then below as many targets as there are sets at top level. With a selection the
/// selected ones come first, so they are the ones sorted.
void CQDTreeItemMesh::Sort(unsigned command, const Targets& targets) {
  const int byName = command == kCommandSortByName ? 1 : 0;
  SortBranchesFromHere(byName);
  Targets asked = targets;
  GetChildItemMset(asked);
  asked.resize(std::min(asked.size(), static_cast<std::size_t>(GetChildCount())));
  FlatMap walked;
  for (CQDTreeItem* node : asked) {
    if (node->IsMesh()) static_cast<CQDTreeItemMeshData*>(node)->SortChildItem(byName, &walked);
  }
}

// ---- how meshes are drawn -------------------------------------------------------------------------------

void CQDTreeItemMesh::RenderMode(unsigned command, const Targets& targets) {
  SetMeshRenderMode(targets, MeshRenderModeOf(command));
}

void CQDTreeItemMesh::Transparency(unsigned command, const Targets& targets) {
  SetMeshTransparancy(targets, MeshTransparencyOf(command));
}

void CQDTreeItemMesh::ColourMode(unsigned command, const Targets& targets) {
  SetMeshColorMode(targets, command - kCommandMeshColourMode);
}

void CQDTreeItemMesh::RandomColour(unsigned, const Targets& targets) {
  SetMeshRandomColor(targets);
}

void CQDTreeItemMesh::ToggleMeshAllAddOn(unsigned command, const Targets&) {
  CMPUData* display = GetDocument()->GetMPUData();
  const std::uint32_t bit = AddOnOf(command);
  if (display == nullptr || bit == 0) return;
  if (display->HasAddOnInfoAll(bit) != 0) {
    display->DelAddOnInfoAll(bit);
  } else {
    display->SetAddOnInfoAll(bit);
  }
  RefreshMeshDisplay(*this);
}

void CQDTreeItemMesh::ClearAddOns(unsigned, const Targets&) {
  if (GetDocument()->GetMPUData() == nullptr) return;
  GetDocument()->GetMPUData()->DelAddOnInfoAll(kAddOnAll);
  RefreshMeshDisplay(*this);
}

// ---- the model ------------------------------------------------------------------------------------------

void CQDTreeItemMesh::NewMeshSet(unsigned, const Targets&) {
  DPoolMset& pool = GetDBSession()->GetMsetPool();
  tagTMset record;
  record.Init();
  record.key = pool.GetNewKey();
  record.colour = pool.GetNewColor();
  record.name = CMSGFunction::GetValue("IDS_QD_WRT_NEW_MESHSET");
  if (pool.Exist(record.name) != 0) record.name = pool.GetNewCopyName(record.name);
  record.name = CutName(record.name);
  RunAct(GetDBSession(), "IDS_QD_TRANS_Add_Mset", [&] { return pool.AddMset(record) != 0 ? 1 : 0; });
}

void CQDTreeItemMesh::DeleteSets(unsigned command, const Targets&) {
  CQDDocBase* doc = GetDocument();
  DPoolMset& pool = GetDBSession()->GetMsetPool();
  if (command == kCommandDeleteAllMeshSets) {
    pool.TR_Del_All();
  } else {
    pool.TR_Del_EmptyMset();
  }
  if (IQDCurrentDialog* dialog = doc->GetCurrentDialog()) dialog->Update(0);
}

void CQDTreeItemMesh::OpenDialog(unsigned command, const Targets&) {
  static const std::map<unsigned, const wchar_t*> kDialogs{
      {kCommandMeshNode, L"CQDMeshNodeDlg"},    {kCommandMeshElement, L"CQDMeshElemDlg"},
      {kCommandMeshAuto2D, L"CQDMeshGen2DDlg"}, {kCommandMeshMap2D, L"CQDMeshGen2DDlg"},
      {kCommandMeshAuto3D, L"CQDMeshGen3DDlg"}, {kCommandMeshMap3D, L"CQDMeshGen3DDlg"}};
  tagTMeshGUI arguments;
  arguments.Init();
  IQDMeshgDialog::DoModeless(GetDocument(), kDialogs.at(command), &arguments, nullptr);
}

}  // namespace qd

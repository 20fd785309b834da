#include "workbench/tree/DocumentNode.h"

#include <algorithm>
#include <array>
#include <utility>

#include "qd_wrt/coords/CQDTreeItemCord.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/MenuTable.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/geometry/CQDTreeItemTopo.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "workbench/tree/MaterialNodes.h"

namespace qd::workbench {

namespace {

constexpr unsigned kIcon = 0;
/// Kinds of records in requests to show or hide; of the others the workbench has none.
constexpr int kShowHideAny = 0;
constexpr int kShowHideCords = 1;
constexpr int kShowIcon = 0;
constexpr int kHideIcon = 1;
constexpr std::array<MenuEntry, 2> kMenu{
    {{kCommandShowAll, "IDS_QD_WRT_SHOW_ALL", kShowIcon}, {kCommandHideAll, "IDS_QD_WRT_HIDE_ALL", kHideIcon}}};

}  // namespace

DocumentNode::DocumentNode(CQDTreeListCtrl* control, int treeType)
    : CQDTreeItem(control, nullptr, control->GetDocument()->GetPathName(), kIcon, 0), m_treeType(treeType) {}

int DocumentNode::MakeChildItems() {
  if (m_treeType == kGeometrySetTree) {
    m_sets = new CQDTreeItemTopo(GetControl(), this);
    m_sets->MakeItem(kInsertLast);
    m_sets->Expand(1);
    return 1;
  }
  m_coordinates = new CQDTreeItemCord(GetControl(), this);
  m_coordinates->MakeItem(kInsertLast);
  m_geometry = new CQDTreeItemGeom(GetControl(), this);
  m_geometry->MakeItem(kInsertLast);
  m_geometry->Expand(1);
  MakeMaterials();
  m_meshes = new CQDTreeItemMesh(GetControl(), this);
  m_meshes->MakeItem(kInsertLast);
  m_meshes->Expand(1);
  return 1;
}

void DocumentNode::RegisterReceiveDataType() {
  if (m_treeType == kModelTree) FollowDataType(kDataMaterial);
}

void DocumentNode::OnUpdate() {
  if (m_materials == nullptr) return MakeMaterials();
  const std::vector<tagTRNotify> changes = PendingRecords();
  const auto gone = std::count_if(changes.begin(), changes.end(),
                                  [](const tagTRNotify& change) { return change.kind == kChangeDeleted; });
  // The branch may hear of it before or behind this node; the pool is asked only when the last row may be among
  // them.
  if (gone == 0 || m_materials->GetChildCount() > gone) return;
  if (GetDBSession()->GetMaterialPool().GetItrList().empty()) DeleteChild(std::exchange(m_materials, nullptr));
}

void DocumentNode::MakeMaterials() {
  if (GetDBSession() == nullptr || GetDBSession()->GetMaterialPool().GetItrList().empty()) return;
  m_materials = new MaterialBranch(GetControl(), this);
  m_materials->MakeItem(m_geometry->GetTreeItemHandle());  // meshes stay last
  m_materials->Expand(1);
}

CQDTreeGeomRoot* DocumentNode::Parts() const {
  return m_geometry != nullptr ? static_cast<CQDTreeGeomRoot*>(m_geometry) : m_sets;
}

void DocumentNode::CreateContextMenu(CPoint& screen) {
  TableMenu menu(kMenu);
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void DocumentNode::OnMenuEvent(unsigned command) {
  CQDTreeGeomRoot* parts = Parts();
  if (parts == nullptr) return;
  if (command == kCommandShowAll) parts->ShowPartAll();
  if (command == kCommandHideAll) parts->HidePartAll();
  if (m_coordinates != nullptr) m_coordinates->OnMenuEvent(command);
  if (m_meshes == nullptr) return;
  if (command == kCommandShowAll) m_meshes->OnClickCheck(kUnchecked);
  if (command == kCommandHideAll) m_meshes->OnClickCheck(kChecked);
}

void DocumentNode::SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags) {
  // Branches do not ask what kind of records they get.
  if (kind == kShowHideCords) {
    if (m_coordinates != nullptr) m_coordinates->SetShowHideItem(kind, itrs, show, flags);
  } else if (kind == kShowHideAny) {
    if (CQDTreeGeomRoot* parts = Parts()) parts->SetShowHideItem(kind, itrs, show, flags);
  }
}

void DocumentNode::OnMenuEventGeomRoot(unsigned command) {
  if (CQDTreeGeomRoot* parts = Parts()) parts->OnMenuEvent(command);
}

void DocumentNode::OnMenuEventMeshRoot(unsigned command) {
  if (m_meshes != nullptr) m_meshes->OnMenuEvent(command);
}

void DocumentNode::ChangeGeomTitle(CQDDocBase* doc, int mode) {
  if (m_geometry != nullptr) m_geometry->ChangeGeomTitle(doc, mode);
}

void DocumentNode::GetGeomTitleAndColor(int& title, int& colour) {
  if (m_geometry != nullptr) m_geometry->GetGeomTitleAndColor(title, colour);
}

void DocumentNode::ChangeGeomColor(int mode) {
  if (m_geometry != nullptr) m_geometry->ChangeGeomColor(mode);
}

CQDTreeItem* TreeFactory::CreateRootItem(int treeType, CQDTreeListCtrl* control) {
  return new DocumentNode(control, treeType);
}

}  // namespace qd::workbench

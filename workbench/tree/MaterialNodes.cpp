#include "workbench/tree/MaterialNodes.h"

#include <array>
#include <list>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/IAppWrt.h"
#include "qd_wrt/core/MenuTable.h"

namespace qd::workbench {

namespace {

constexpr const char* kTitleKey = "IDS_WB_MATERIALS";
constexpr unsigned kIcon = 10;
constexpr std::uint16_t kTreeItemTypeGeom = 9;
constexpr std::array<MenuEntry, 1> kBranchMenu{
    {{.command = kCommandNewMaterial, .key = "IDS_WB_MATERIAL_NEW", .opensDialog = true}}};
constexpr std::array<MenuEntry, 2> kMenu{
    {{.command = kCommandEditMaterial, .key = "IDS_WB_TRANS_MATERIAL", .opensDialog = true},
     {.command = kCommandDeleteMaterial, .key = "IDS_QD_WRT_PART_DELETE"}}};

void OpenMaterials(CQDDocBase* doc) {
  std::list<iterator> none;
  if (IAppWrt* app = IAppWrt::Instance()) app->OpenDialog(0, doc, L"CLbcMaterialMainDlg", &none);
}

}  // namespace

// ---- branch ---------------------------------------------------------------------------------------------

MaterialBranch::MaterialBranch(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeBranch(control, parent, CMSGFunction::GetValue(kTitleKey), kIcon, 0) {}

std::vector<iterator> MaterialBranch::Records() const {
  return GetDBSession()->GetMaterialPool().GetItrList();
}

CQDTreeItem* MaterialBranch::MakeNode(iterator itr) {
  const bool readable = GetDBSession()->GetMaterialPool().GetAtNU(itr) != nullptr;
  return readable ? new MaterialNode(GetControl(), this, itr) : nullptr;
}

int MaterialBranch::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child == nullptr) return 0;
  child->SetTitleIncludeType();
  return 1;
}

void MaterialBranch::OnUpdate() {
  for (const tagTRNotify& change : PendingRecords()) ApplyChange(change);
}

void MaterialBranch::SetTitleIncludeType() {
  ChangeTitle(CMSGFunction::GetValue(kTitleKey));
}

void MaterialBranch::CreateContextMenu(CPoint& screen) {
  TableMenu menu(kBranchMenu);
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void MaterialBranch::OnMenuEvent(unsigned command) {
  if (command == kCommandNewMaterial) OpenMaterials(GetDocument());
}

// ---- material -------------------------------------------------------------------------------------------

MaterialNode::MaterialNode(CQDTreeListCtrl* control, CQDTreeItem* branch, iterator itr)
    : CQDTreeItem(control, branch, CString(), kIcon, 0), m_itr(itr) {
  m_leftDrag = true;
  m_showID = true;
  m_showColour = true;
  RegsiterDragEnableType(kTreeItemTypeGeom);
  if (const tagTMaterial* record = GetDBSession()->GetMaterialPool().GetAtNU(itr)) {
    SetTitle(record->name);
    m_id = record->id;
    m_colour = record->colour;
  }
}

void MaterialNode::SetTitleIncludeType() {
  if (const tagTMaterial* record = GetDBSession()->GetMaterialPool().GetAtNU(m_itr)) ChangeTitle(record->name);
}

void MaterialNode::OnEditChange(const wchar_t*) {
  SetTitleIncludeType();  // names are edited in the dialog
}

void MaterialNode::CreateContextMenu(CPoint& screen) {
  TableMenu menu(kMenu);
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void MaterialNode::OnMenuEvent(unsigned command) {
  if (command == kCommandEditMaterial) OpenMaterials(GetDocument());
  if (command == kCommandDeleteMaterial) GetDBSession()->GetMaterialPool().TR_Del({m_itr});
}

}  // namespace qd::workbench

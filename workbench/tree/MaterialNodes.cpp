#include "workbench/tree/MaterialNodes.h"

#include <list>

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/IAppWrt.h"
#include "qd_wrt/core/MenuTable.h"
#include "qd_wrt/find/IRow.h"

namespace qd::workbench {

namespace {

constexpr unsigned kIcon = 10;
constexpr unsigned short kDataTypes[] = {kDataMaterial};

std::vector<MenuEntry> BranchMenu() {
  return {{.command = kCommandNewMaterial, .key = "IDS_WB_MATERIAL_NEW", .opensDialog = true}};
}
std::vector<MenuEntry> Menu() {
  return {{.command = kCommandEditMaterial, .key = "IDS_WB_TRANS_MATERIAL", .opensDialog = true},
          {.command = kCommandDeleteMaterial, .key = "IDS_QD_WRT_PART_DELETE"}};
}

std::optional<RecordRow> Read(const CQDTreeItem& root, iterator itr) {
  const tagTMaterial* record = root.GetDBSession()->GetMaterialPool().GetAtNU(itr);
  if (record == nullptr) return std::nullopt;
  return RecordRow{record->name, record->id, record->colour};
}

void Delete(const CQDTreeItem& branch) {
  std::vector<CQDTreeItem*> selected;
  branch.GetControl()->GetSelectedTreeItems(branch.GetTreeItemHandle(), selected);
  std::vector<iterator> materials;
  materials.reserve(selected.size());
  for (const CQDTreeItem* row : selected) materials.push_back(row->GetIterator());
  branch.GetDBSession()->GetMaterialPool().TR_Del(materials);
}

void OpenDialog(const CQDTreeItem& node, std::list<iterator> edited) {
  if (IAppWrt* app = IAppWrt::Instance()) app->OpenDialog(0, node.GetDocument(), L"CLbcMaterialMainDlg", &edited);
}

void Run(CQDTreeItem& node, unsigned command) {
  if (command == kCommandNewMaterial) OpenDialog(node, {});
  if (node.GetIterator() == 0) return;
  if (command == kCommandEditMaterial) OpenDialog(node, {node.GetIterator()});
  if (command == kCommandDeleteMaterial) Delete(*node.GetParent());
}

/// Names are edited in the dialog.
std::shared_ptr<const RecordBranchKind> Materials() {
  static const auto kKind = std::make_shared<const RecordBranchKind>(RecordBranchKind{
      .root = {.titleKey = "IDS_WB_MATERIALS",
               .icon = kIcon,
               .dataTypes = kDataTypes,
               .menu = BranchMenu,
               .menuOfOneRow = false},
      .list = [](const CQDTreeItem& root) { return root.GetDBSession()->GetMaterialPool().GetItrList(); },
      .read = Read,
      .rowKinds = kRowMaterial,
      .icon = kIcon,
      .dropsOn = kDataGeom,
      .menu = Menu,
      .run = Run});
  return kKind;
}

}  // namespace

MaterialBranch::MaterialBranch(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeRecordBranch(control, parent, Materials()) {}

}  // namespace qd::workbench

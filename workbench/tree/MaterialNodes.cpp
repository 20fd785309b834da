#include "workbench/tree/MaterialNodes.h"

#include <list>

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/IAppWrt.h"
#include "qd_wrt/core/MenuTable.h"

namespace qd::workbench {

namespace {

constexpr unsigned kIcon = 10;
constexpr std::uint16_t kTreeItemTypeGeom = 9;
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

void Run(CQDTreeItem& node, unsigned command) {
  if (command == kCommandDeleteMaterial && node.GetIterator() != 0)
    node.GetDBSession()->GetMaterialPool().TR_Del({node.GetIterator()});
  if (command != kCommandNewMaterial && command != kCommandEditMaterial) return;
  std::list<iterator> none;
  if (IAppWrt* app = IAppWrt::Instance()) app->OpenDialog(0, node.GetDocument(), L"CLbcMaterialMainDlg", &none);
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
      .icon = kIcon,
      .dropsOn = kTreeItemTypeGeom,
      .menu = Menu,
      .run = Run});
  return kKind;
}

}  // namespace

MaterialBranch::MaterialBranch(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeRecordBranch(control, parent, Materials()) {}

}  // namespace qd::workbench

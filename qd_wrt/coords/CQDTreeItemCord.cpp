#include "qd_wrt/coords/CQDTreeItemCord.h"

#include <string_view>

#include "host/Dialogs.h"
#include "qd_wrt/coords/CQDTreeItemCordData.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"

namespace qd {

namespace {

constexpr unsigned short kDataTypes[] = {kDataCord};
std::vector<MenuEntry> Menu() {
  return {{.command = kCommandAddCord, .key = "IDS_QD_WRT_ADD"}};
}
constexpr BranchKind kKind{
    .titleKey = "IDS_QD_WRT_Coordinate_System", .icon = 161, .dataTypes = kDataTypes, .menu = Menu};

}  // namespace

CQDTreeItemCord::CQDTreeItemCord(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeBranch(control, parent, kKind) {}

const BranchKind* CQDTreeItemCord::GetBranchKind() const {
  return &kKind;
}

// ---- following the database -----------------------------------------------------------------------------

std::vector<iterator> CQDTreeItemCord::Records() const {
  return GetDBSession()->GetCordPool().GetItrList();
}

CQDTreeItem* CQDTreeItemCord::MakeNode(iterator itr) {
  const bool readable = GetDBSession()->GetCordPool().GetAtNU(itr) != nullptr;
  return readable ? new CQDTreeItemCordData(GetControl(), this, itr) : nullptr;
}

int CQDTreeItemCord::DeleteChildItem(iterator itr) {
  CQDTreeBranch::DeleteChildItem(itr);
  return 1;
}

int CQDTreeItemCord::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child == nullptr) return MakeChildItem(itr);
  const tagTCord* record = GetDBSession()->GetCordPool().GetAtNU(itr);
  if (record != nullptr && std::wstring_view(record->name) != child->GetTitle()) child->SetTitleIncludeType();
  return 1;
}

void CQDTreeItemCord::OnUpdate() {
  for (const tagTRNotify& change : PendingRecords()) ApplyChange(change);
}

// ---- visibility -----------------------------------------------------------------------------------------

int CQDTreeItemCord::OnClickCheck(int oldState) {
  CQDTreeBranch::OnClickCheck(oldState);  // its own box, for who gives it one
  for (CQDTreeItem* child : Children()) child->OnClickCheck(oldState);
  return 1;
}

void CQDTreeItemCord::SetShowHideItem(int, TArray<iterator>& itrs, int show, unsigned) {
  for (const iterator itr : itrs) {
    CQDTreeItem* child = FindChild(itr);
    if (child == nullptr) continue;
    child->SetViewUpdate(0);  // and stays so: who shows systems by record asks for the frame himself
    child->OnClickCheck(show != 0 ? kUnchecked : kChecked);
  }
  RedrawView();
}

void CQDTreeItemCord::RereadBoxes(iterator itr) {
  if (itr == 0) {
    for (CQDTreeItem* child : Children()) child->OnInitialize();
  } else if (CQDTreeItem* child = FindChild(itr)) {
    child->OnInitialize();
  }
}

// ---- commands -------------------------------------------------------------------------------------------

void CQDTreeItemCord::OnMenuEvent(unsigned command) {
  switch (command) {
    case kCommandAddCord:
      return IQDCmdDialog::DoModeless(GetDocument(), L"CQDCmdCordDlg", nullptr, nullptr);
    case kCommandShowAll:
    case kCommandHideAll:
      SayThatAllAreMeant();
      for (CQDTreeItem* child : ChildrenByRecord()) {
        child->OnClickCheck(command == kCommandShowAll ? kUnchecked : kChecked);
      }
      return RedrawView();
    default:
      return;
  }
}

}  // namespace qd

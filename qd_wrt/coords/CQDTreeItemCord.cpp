#include "qd_wrt/coords/CQDTreeItemCord.h"

#include <array>
#include <string_view>

#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "qd_wrt/coords/CQDTreeItemCordData.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/MenuTable.h"

namespace qd {

namespace {

constexpr const char* kTitleKey = "IDS_QD_WRT_Coordinate_System";
constexpr unsigned kIcon = 161;
constexpr std::array<MenuEntry, 1> kMenu{{{kCommandAddCord, "IDS_QD_WRT_ADD"}}};

}  // namespace

CQDTreeItemCord::CQDTreeItemCord(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeBranch(control, parent, CMSGFunction::GetValue(kTitleKey), kIcon, 0) {}

// ---- following the database -----------------------------------------------------------------------------

void CQDTreeItemCord::RegisterReceiveDataType() {
  FollowDataType(kDataCord);
}

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

void CQDTreeItemCord::OnChangeLanguage() {
  ChangeTitle(CMSGFunction::GetValue(kTitleKey));
  CQDTreeBranch::OnChangeLanguage();
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

void CQDTreeItemCord::CreateContextMenu(CPoint& screen) {
  if (GetControl()->GetSelectedCount() != 1) return;
  TableMenu menu(kMenu);
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemCord::OnMenuEvent(unsigned command) {
  switch (command) {
    case kCommandAddCord:
      return IQDCmdDialog::DoModeless(GetDocument(), L"CQDCmdCordDlg", nullptr, nullptr);
    case kCommandShowAll:
    case kCommandHideAll:
      for (CQDTreeItem* child : ChildrenByRecord()) {
        child->OnClickCheck(command == kCommandShowAll ? kUnchecked : kChecked);
      }
      return RedrawView();
    default:
      return;
  }
}

}  // namespace qd

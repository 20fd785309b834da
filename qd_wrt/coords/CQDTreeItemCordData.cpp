#include "qd_wrt/coords/CQDTreeItemCordData.h"

#include <array>
#include <span>
#include <vector>

#include "host/Act.h"
#include "host/Dialogs.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/MenuTable.h"

namespace qd {

namespace {

constexpr unsigned kIcon = 161;
constexpr std::array<MenuEntry, 4> kMenuOfOne{{{kCommandEditCord, "IDS_QD_WRT_EDIT"},
                                               {kCommandDelete, "IDS_QD_WRT_DELETE"},
                                               {},
                                               {kCommandRename, "IDS_QD_WRT_RENAME"}}};
constexpr std::array<MenuEntry, 1> kMenuOfSeveral{{{kCommandDelete, "IDS_QD_WRT_DELETE"}}};

}  // namespace

CQDTreeItemCordData::CQDTreeItemCordData(CQDTreeListCtrl* control, CQDTreeItem* root, iterator itr)
    : CQDTreeItem(control, root, CString(), kIcon, 1),
      m_itr(itr),
      m_isDefault(GetDBSession()->GetCordPool().IsDefaultCord(itr)) {
  m_editable = m_isDefault == 0;
  if (const tagTCord* record = Record()) SetTitle(record->GetName());
}

const tagTCord* CQDTreeItemCordData::Record() const {
  return GetDBSession() != nullptr ? GetDBSession()->GetCordPool().GetAtNU(m_itr) : nullptr;
}

void CQDTreeItemCordData::SetTitleIncludeType() {
  if (const tagTCord* record = Record()) ChangeTitle(record->GetName());
}

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeItemCordData::OnInitialize() {
  CQDLabelManager* labels = GetDocument()->GetLabelManager();
  if (!HasCheck() || labels == nullptr || GetDBSession() == nullptr) return;
  const bool shown = labels->GetShowHide(kLabelCord, GetDBSession()->GetRecordID(m_itr)) != 0;
  GetControl()->SetChecked(GetTreeItemHandle(), shown ? kChecked : kUnchecked);
}

int CQDTreeItemCordData::OnClickCheck(int oldState) {
  CQDDocBase* doc = GetDocument();
  if (doc->GetLabelManager() != nullptr && GetDBSession() != nullptr) {
    const int show = oldState != kChecked ? 1 : 0;
    doc->GetLabelManager()->SetShowHide(show, kLabelCord, GetDBSession()->GetRecordID(m_itr));
  }
  doc->SetPendingUpdate(1);
  return CQDTreeItem::OnClickCheck(oldState);
}

// ---- commands -------------------------------------------------------------------------------------------

void CQDTreeItemCordData::CreateContextMenu(CPoint& screen) {
  const std::size_t selected = GetControl()->GetSelectedCount();
  if (selected == 0) return;
  std::span<const MenuEntry> entries = kMenuOfSeveral;
  // One default system gets an empty menu: there is nothing that may be done with it.
  if (selected == 1) entries = IsDefault() ? std::span<const MenuEntry>() : std::span<const MenuEntry>(kMenuOfOne);
  TableMenu menu(entries);
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemCordData::OnMenuEvent(unsigned command) {
  if (command == kCommandDelete) return DeleteSelectedItems();
  if (command == kCommandRename) return GetControl()->OnChangeTitle();
  if (command != kCommandEditCord) return;
  tagTCordGUI arguments;
  arguments.mode = tagTCordGUI::kEdit;
  arguments.itr = m_itr;
  IQDCmdDialog::DoModeless(GetDocument(), L"CQDCmdCordDlg", &arguments, nullptr);
}

void CQDTreeItemCordData::DeleteSelectedItems() {
  std::vector<CQDTreeItem*> selected;
  GetControl()->GetSelectedTreeItems(selected, 0);
  DPoolCord& pool = GetDBSession()->GetCordPool();
  RunAct(GetDBSession(), "IDS_QD_TRANS_Delete_CORD", [&] {
    for (const CQDTreeItem* node : selected) {
      const auto* system = dynamic_cast<const CQDTreeItemCordData*>(node);
      if (system != nullptr && pool.Delete(system->GetRecord()) == 0) return 0;
    }
    return pool.UpdateAfterDeletion();
  });
}

bool CQDTreeItemCordData::IsNameTaken(const CString& name) const {
  return GetDBSession()->GetCordPool().Exist(name) != 0;
}

void CQDTreeItemCordData::OnEditChange(const wchar_t* text) {
  const tagTCord* old = Record();
  if (old == nullptr) return;
  DPoolCord& pool = GetDBSession()->GetCordPool();
  const auto isTaken = [this](const CString& name) { return IsNameTaken(name); };
  if (const auto name = NewName(old->GetName(), text, isTaken)) {
    tagTCord record = *old;
    record.SetName(*name);
    RunAct(GetDBSession(), "IDS_QD_TRANS_Modify_CORD", [&] { return pool.Modify(m_itr, record); });
  }
  // The row has the text as it was typed; it was refused, or cut.
  if (!IsDetached()) SetTitleIncludeType();
}

}  // namespace qd

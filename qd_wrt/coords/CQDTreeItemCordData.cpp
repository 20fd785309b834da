#include "qd_wrt/coords/CQDTreeItemCordData.h"

#include <array>
#include <span>
#include <vector>

#include "host/CMSGFunction.h"
#include "host/CTransaction.h"
#include "host/Dialogs.h"
#include "host/MessageOutput.h"
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
  CTransaction transaction(GetDBSession());
  if (transaction.Begin(CMSGFunction::GetValue("IDS_QD_TRANS_Delete_CORD")) == 0) return;
  for (const CQDTreeItem* node : selected) {
    const auto* system = dynamic_cast<const CQDTreeItemCordData*>(node);
    if (system != nullptr && pool.Delete(system->GetRecord()) == 0) return;  // takes everything back
  }
  if (pool.UpdateAfterDeletion() != 0) transaction.Commit(1);
}

void CQDTreeItemCordData::OnEditChange(const wchar_t* text) {
  const tagTCord* old = Record();
  const CString name = text;
  if (old == nullptr || name == old->GetName()) return SetTitleIncludeType();
  DPoolCord& pool = GetDBSession()->GetCordPool();
  tagTCord record = *old;
  record.SetName(name);
  const CString kept = record.GetName();
  // A name that only becomes another's by being cut is taken too. Looked for before the name is found empty.
  if (pool.Exist(name) != 0 || (kept != old->GetName() && pool.Exist(kept) != 0)) {
    qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_EXIST_NEW_DATA_NAME"), {name});
  } else if (kept.empty()) {
    qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_NAME_EMPTY"));
  } else if (kept != old->GetName()) {
    CTransaction transaction(GetDBSession());
    if (transaction.Begin(CMSGFunction::GetValue("IDS_QD_TRANS_Modify_CORD")) != 0 &&
        pool.Modify(m_itr, record) != 0) {
      transaction.Commit(1);
    }
  }
  // The row has the text as it was typed; it was refused, or cut.
  if (!IsDetached()) SetTitleIncludeType();
}

}  // namespace qd

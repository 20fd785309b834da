// Titles edited in place, and many at once.

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/RenameDialog.h"

namespace qd {

namespace {

/// What the title shows behind the name.
CString TitleBehindName(const CQDTreeItem& node) {
  const CString title = node.GetTitle();
  const CString name = node.GetName();
  return title.starts_with(name) ? title.substr(name.size()) : CString();
}

/// Rows that go while the user is asked have no name.
RenamePlan PlanOf(const std::vector<CQDTreeItem*>& nodes) {
  const auto read = [&nodes](std::size_t row) -> RenamePlan::Row {
    const CQDTreeItem& node = *nodes[row];
    if (node.IsDetached()) return {};
    return {node.GetName(), node.GetID(), node.GetNameScope()};
  };
  return {nodes.size(), read, [&nodes](std::size_t row, const CString& name) {
            return !nodes[row]->IsDetached() && nodes[row]->IsNameTaken(name);
          }};
}

/// 0 as soon as a name is refused.
int GiveNames(const std::vector<CQDTreeItem*>& nodes, RenamePlan& plan) {
  for (const RenamePlan::Step& step : plan.Steps()) {
    CQDTreeItem& node = *nodes[step.row];
    if (node.IsDetached()) return 0;
    const CString name = plan.NameIn(step);
    node.OnEditChange((name + TitleBehindName(node)).c_str());
    if (node.IsDetached() || node.GetName() != name) return 0;
  }
  return 1;
}

}  // namespace

void CQDTreeListCtrl::OnChangeTitle() {
  EditTitle(GetFirstSelectedItem());
}

void CQDTreeListCtrl::EditTitle(HTREEITEM row) {
  if (!row) return;
  SetSelectedItem(row);
  ShowEdit(row);
  CQDTreeItem* node = NodeOf(row);
  if (node != nullptr) node->m_editing = IsEditing() != 0;
}

bool CQDTreeListCtrl::CanRename() const {
  for (HTREEITEM row = GetFirstSelectedItem(); row; row = GetNextSelectedItem(row)) {
    const CQDTreeItem* node = NodeOf(row);
    if (node != nullptr && node->IsEditable()) return true;
  }
  return false;
}

void CQDTreeListCtrl::RenameSelected() {
  if (IsEditing() != 0) return;
  std::vector<CQDTreeItem*> nodes;
  GetSelectedTreeItems(nodes, 0);
  std::erase_if(nodes, [](const CQDTreeItem* node) { return !node->IsEditable(); });
  if (nodes.empty()) return;
  if (nodes.size() == 1) {
    EnsureVisible(nodes.front()->GetTreeItemHandle());
    return EditTitle(nodes.front()->GetTreeItemHandle());
  }
  const Handler handler(*this);  // nodes that go while the user is asked stay readable
  const std::weak_ptr<void> life = Life();
  RenamePlan plan = PlanOf(nodes);
  if (RenameDialog(m_doc, plan).DoModal() != kDialogOk || life.expired() || m_doc == nullptr) return;
  CQDDBSession* session = m_doc->GetDBSession();
  const auto writes = [&] { return GiveNames(nodes, plan); };
  const int done = session != nullptr ? RunAct(session, "IDS_QD_TRANS_RENAME", writes) : writes();
  if (done != 0 || life.expired()) return;
  // Titles were written with the names that are taken back now.
  for (CQDTreeItem* node : nodes) {
    if (!node->IsDetached()) node->SetTitleIncludeType();
  }
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_WRT_RENAME_REFUSED"));
}

/// The Escape key takes the edit back; a click elsewhere keeps it, as Enter and Tab do.
void CQDTreeListCtrl::OnEditChange(HTREEITEM row, int column, const CString& text, int escape) {
  CQDTreeItem* node = NodeOf(row);
  if (node == nullptr) return;
  node->m_editing = false;
  if (escape != 0 && GetEditBox() != nullptr && GetEditBox()->IsEscapeKey()) return;
  const CString title = text.substr(0, text.find(L'\0'));
  if (title == GetItemText(row, column)) return;
  const Handler handler(*this);
  if (node->ShowsTypedTitle()) SetTextOf(row, column, title);
  node->OnEditChange(title.c_str());
}

}  // namespace qd

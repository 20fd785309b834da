#include "qd_wrt/geometry/CQDTreeItemTopoGroup.h"

#include "host/CMSGFunction.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "qd_wrt/geometry/GeomMenus.h"
#include "qd_wrt/geometry/PartCommands.h"
#include "qd_wrt/geometry/TopologyCommands.h"

namespace qd {

namespace {
constexpr unsigned kIcon = 21;
}

CQDTreeItemTopoGroup::CQDTreeItemTopoGroup(CQDTreeListCtrl* control, CQDTreeItem* set, TopologyKind kind,
                                           const char* key)
    : CQDTreeBranch(control, set, CMSGFunction::GetValue(key), kIcon, 1), m_kind(kind), m_key(key) {}

CQDTreeItemGset& CQDTreeItemTopoGroup::Set() const {
  return *static_cast<CQDTreeItemGset*>(GetParent());
}

std::optional<RowBox> CQDTreeItemTopoGroup::GetRowBox() const {
  return RowBox{kDataGset, Set().GetIterator(), static_cast<int>(m_kind)};
}

// ---- children -------------------------------------------------------------------------------------------

int CQDTreeItemTopoGroup::MakeChildItems() {
  const int made = CQDTreeBranch::MakeChildItems();
  RefreshTitle();
  return made;
}

std::vector<iterator> CQDTreeItemTopoGroup::Records() const {
  std::vector<iterator> parts;
  GetDBSession()->GetGeomPool().GetItrGsetTypeList(Set().GetIterator(), static_cast<int>(m_kind), parts);
  return parts;
}

int CQDTreeItemTopoGroup::MakeChildItem(iterator itr) {
  if (GetDBSession()->GetGeomPool().GetAtNU(itr) == nullptr) return 0;
  CQDTreeItem* standing = GetControl()->FindGeomNode(itr);
  auto* group = standing != nullptr ? dynamic_cast<CQDTreeItemTopoGroup*>(standing->GetParent()) : nullptr;
  if (group != nullptr && group != this) {
    group->DeleteChildItem(itr);
    group->RefreshTitle();
    group->Set().DropEmptyGroups();
  }
  return CQDTreeBranch::MakeChildItem(itr);
}

int CQDTreeItemTopoGroup::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  return child != nullptr ? static_cast<CQDTreeItemPart*>(child)->FollowRecord() : MakeChildItem(itr);
}

/// The set hands over only records of parts that are or were in this group.
void CQDTreeItemTopoGroup::OnUpdate() {
  for (const tagTRNotify& change : PendingRecords()) {
    const tagTGeom* record = GetDBSession()->GetGeomPool().GetAtNU(change.itr);
    const bool here = record != nullptr && record->gset == Set().GetIterator() && record->kind == m_kind;
    if (change.kind == kChangeDeleted || !here) {
      DeleteChildItem(change.itr);
    } else {
      ApplyChange(change);
    }
  }
  RefreshTitle();
}

CString CQDTreeItemTopoGroup::MakeTitle() const {
  return CMSGFunction::GetValue(m_key) + L" [" + std::to_wstring(GetChildCount()) + L"]";
}

void CQDTreeItemTopoGroup::RefreshTitle() {
  const CString title = MakeTitle();
  if (title != GetTitle()) ChangeTitle(title);
}

void CQDTreeItemTopoGroup::OnChangeLanguage() {
  RefreshTitle();
  CQDTreeBranch::OnChangeLanguage();
}

void CQDTreeItemTopoGroup::Sort(bool byName) {
  GetControl()->SortItem(GetTreeItemHandle(), 0, byName ? 1 : 0);
}

// ---- visibility, menu, drop -----------------------------------------------------------------------------

int CQDTreeItemTopoGroup::OnClickCheck(int oldState) {
  CQDTreeItem::OnClickCheck(oldState);
  for (CQDTreeItem* child : Children()) child->OnClickCheck(oldState);
  return 1;
}

void CQDTreeItemTopoGroup::CreateContextMenu(CPoint& screen) {
  TableMenu menu(TopologyGroupMenu(m_kind, IsAnySelectedHidden(*GetControl())));
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemTopoGroup::OnMenuEvent(unsigned command) {
  if (command != kCommandSortByCreation && command != kCommandSortByName)
    return RunTopologyCommand(*this, command);
  std::vector<CQDTreeItem*> selected;
  GetControl()->GetSelectedTreeItems(selected, 0);
  for (CQDTreeItem* node : selected) {
    if (auto* group = dynamic_cast<CQDTreeItemTopoGroup*>(node)) group->Sort(command == kCommandSortByName);
  }
}

void CQDTreeItemTopoGroup::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  Set().OnDrop(nodes);
}

}  // namespace qd

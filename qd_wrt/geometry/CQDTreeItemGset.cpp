#include "qd_wrt/geometry/CQDTreeItemGset.h"

#include <algorithm>
#include <set>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "host/CQDCommandObj.h"
#include "host/ProductVariant.h"
#include "platform/CDialog.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemTopo.h"
#include "qd_wrt/geometry/CQDTreeItemTopoGroup.h"
#include "qd_wrt/geometry/GeomMenus.h"
#include "qd_wrt/geometry/PartCommands.h"
#include "qd_wrt/geometry/TopologyCommands.h"

namespace qd {

namespace {
constexpr unsigned kIcon = 21;
}

CQDTreeItemGset::CQDTreeItemGset(CQDTreeListCtrl* control, CQDTreeItem* parent, iterator itr)
    : CQDTreeItem(control, parent, CString(), kIcon, 1), m_itr(itr) {
  m_editable = true;
  m_leftDrag = m_multiLeftDrag = true;
  RegsiterDragEnableType(kDataGeom);
  if (const tagTGset* record = Record()) SetTitle(record->name);
}

const tagTGset* CQDTreeItemGset::Record() const {
  return GetDBSession() != nullptr ? GetDBSession()->GetGsetPool().GetAtNU(m_itr) : nullptr;
}

void CQDTreeItemGset::OnInitialize() {
  CQDTreeItem::OnInitialize();
  const bool current = GetDBSession() != nullptr && GetDBSession()->GetGsetPool().GetCurrentSet() == m_itr;
  GetControl()->SetItemBold(GetTreeItemHandle(), current ? 1 : 0, 1);
}

void CQDTreeItemGset::RegisterReceiveDataType() {
  FollowDataType(kDataGeom);
}

CQDTreeItem* CQDTreeItemGset::FollowsThrough(unsigned short type) const {
  // A set that a host puts elsewhere hears of all parts.
  return type == kDataGeom ? dynamic_cast<CQDTreeItemTopo*>(GetParent()) : nullptr;
}

void CQDTreeItemGset::SetTitleIncludeType() {
  if (const tagTGset* record = Record()) ChangeTitle(record->name);
}

// ---- groups ---------------------------------------------------------------------------------------------

CQDTreeItemTopoGroup* CQDTreeItemGset::MakeGroup(int kind) {
  CQDTreeListCtrl* control = GetControl();
  CQDTreeItemTopoGroup* group = nullptr;
  switch (static_cast<TopologyKind>(kind)) {
    case TopologyKind::Point:
      group = new CQDTreeItemTopoPoint(control, this);
      break;
    case TopologyKind::Curve:
      group = new CQDTreeItemTopoCurve(control, this);
      break;
    case TopologyKind::Surface:
      group = new CQDTreeItemTopoSurface(control, this);
      break;
    case TopologyKind::Solid:
      group = new CQDTreeItemTopoSolid(control, this);
      break;
    case TopologyKind::Compound:
      group = new CQDTreeItemTopoCompound(control, this);
      break;
  }
  // Entities that come from another set may take that set's last of a kind with them.
  m_groups[static_cast<std::size_t>(kind)] = group;
  group->MakeItem(kInsertLast);
  control->SetItemData(group->GetTreeItemHandle(), static_cast<std::uint32_t>(kind));
  control->OpenAsBefore(*group);
  return group;
}

int CQDTreeItemGset::MakeChildItems() {
  int exists[5];
  GetDBSession()->GetGeomPool().GetTypeExist(m_itr, exists);
  for (int kind = 0; kind < 5; ++kind) {
    if (exists[kind] != 0) MakeGroup(kind);
  }
  return 1;
}

void CQDTreeItemGset::DropEmptyGroups() {
  int exists[5];
  GetDBSession()->GetGeomPool().GetTypeExist(m_itr, exists);
  for (std::size_t kind = 0; kind < m_groups.size(); ++kind) {
    if (exists[kind] != 0 || m_groups[kind] == nullptr) continue;
    DeleteChild(m_groups[kind]);
    m_groups[kind] = nullptr;
  }
}

/// Whether a part is in this set, or still stands below it.
bool CQDTreeItemGset::Concerns(const tagTRNotify& change) const {
  const tagTGeom* record = GetDBSession()->GetGeomPool().GetAtNU(change.itr);
  if (record != nullptr && record->gset == m_itr) return true;
  const CQDTreeItem* part = GetControl()->FindGeomNode(change.itr);
  return part != nullptr && part->GetParent() != nullptr && part->GetParent()->GetParent() == this;
}

void CQDTreeItemGset::OnUpdate() {
  // The root of the tree of sets hands over what concerns a set; one that a host has put elsewhere hears of every
  // part of the model and must not keep its groups busy with strangers.
  std::vector<tagTRNotify> mine = PendingRecords();
  std::erase_if(mine, [this](const tagTRNotify& change) { return !Concerns(change); });
  const std::array<CQDTreeItemTopoGroup*, 5> before = m_groups;
  DropEmptyGroups();
  int exists[5];
  GetDBSession()->GetGeomPool().GetTypeExist(m_itr, exists);
  bool made = false;
  for (std::size_t kind = 0; kind < m_groups.size(); ++kind) {
    if (exists[kind] != 0 && m_groups[kind] == nullptr) {
      MakeGroup(static_cast<int>(kind));
      made = true;
    } else if (m_groups[kind] != nullptr && m_groups[kind] == before[kind]) {
      for (const tagTRNotify& change : mine) m_groups[kind]->PushUpdateInfo(change);
      m_groups[kind]->Update();
    }
  }
  if (made) SortChild();
}

CQDTreeItem* CQDTreeItemGset::FindGroup(TopologyKind kind) const {
  return m_groups[static_cast<std::size_t>(kind)];
}

void CQDTreeItemGset::SortChild() {
  GetControl()->SortByData(GetTreeItemHandle());
}

void CQDTreeItemGset::GetGeomItems(std::vector<CQDTreeItem*>& parts) const {
  for (const CQDTreeItemTopoGroup* group : m_groups) {
    if (group == nullptr) continue;
    const std::vector<CQDTreeItem*> children = group->Children();
    parts.insert(parts.end(), children.begin(), children.end());
  }
}

int CQDTreeItemGset::GetGeomItrs(std::map<iterator, int>& itrs) const {
  std::vector<CQDTreeItem*> parts;
  GetGeomItems(parts);
  const std::size_t before = itrs.size();
  for (const CQDTreeItem* part : parts) itrs.emplace(part->GetIterator(), 1);
  return static_cast<int>(itrs.size() - before);
}

void CQDTreeItemGset::GetCadItemArray(std::vector<int>& cadItems) const {
  std::vector<CQDTreeItem*> parts;
  GetGeomItems(parts);
  GetDBSession()->GetGeomPool().GetHCADItemArray(IteratorsOf(parts), cadItems);
}

void CQDTreeItemGset::ChangeRenderMode() {
  std::vector<CQDTreeItem*> parts;
  GetGeomItems(parts);
  for (CQDTreeItem* part : parts) ChangeStateImage(part, part->GetIterator());
}

void CQDTreeItemGset::ChangeStateImage(CQDTreeItem* part, iterator) {
  part->RefreshImage();
}

int CQDTreeItemGset::OnClickCheck(int oldState) {
  CQDTreeItem::OnClickCheck(oldState);
  for (CQDTreeItemTopoGroup* group : m_groups) {
    if (group != nullptr) group->OnClickCheck(oldState);
  }
  return 1;
}

// ---- menu and commands ----------------------------------------------------------------------------------

void CQDTreeItemGset::CreateContextMenu(CPoint& screen) {
  if (IsKSL() != 0) return CreateContextMenuKSL(screen);
  CreateContextMenuMPQRVT(screen);
}

void CQDTreeItemGset::CreateContextMenuKSL(CPoint& screen) {
  TableMenu menu(GeometrySetMenuKSL(IsAnySelectedHidden(*GetControl())));
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemGset::CreateContextMenuMPQRVT(CPoint& screen) {
  const bool single = GetControl()->GetSelectedCount() == 1;
  TableMenu menu(GeometrySetMenuMPQRVT(IsAnySelectedHidden(*GetControl()), single));
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemGset::OnMenuEvent(unsigned command) {
  if (command < kCommandFirstOfSets || command > kCommandLastOfSets) return;
  if (command == kCommandDelete) return DeleteSelectedItems();
  if (command == kCommandCurrentSet) return GetDBSession()->GetGsetPool().PutCurrentSet(m_itr);
  RunTopologyCommand(*this, command);
}

void CQDTreeItemGset::NewGeometrySet() {
  tagTGset record;
  record.name = GetDBSession()->GetGsetPool().GetNewCopyName(CMSGFunction::GetValue("IDS_QD_WRT_GEOMSET"));
  record.name = CutName(record.name);
  CQDCommandObj(GetDocument(), L"GeomSet")
      .Set(L"Action", 0)
      .Set(L"Itr", std::vector<iterator>{m_itr})
      .Set(L"Data", std::vector<tagTGset>{record})
      .Execute();
}

void CQDTreeItemGset::DeleteSelectedItems() {
  std::vector<CQDTreeItem*> selected;
  GetControl()->GetSelectedTreeItems(selected, 0);
  std::vector<iterator> sets;
  for (const CQDTreeItem* node : selected) {
    if (dynamic_cast<const CQDTreeItemGset*>(node) != nullptr) sets.push_back(node->GetIterator());
  }
  if (!sets.empty()) GetDBSession()->GetGsetPool().TR_Del(sets);
}

bool CQDTreeItemGset::IsNameTaken(const CString& name) const {
  return GetDBSession()->GetGsetPool().Exist(name) != 0;
}

void CQDTreeItemGset::OnEditChange(const wchar_t* text) {
  const tagTGset* old = Record();
  if (old == nullptr) return;
  const auto isTaken = [this](const CString& name) { return IsNameTaken(name); };
  if (const auto name = NewName(old->name, text, isTaken)) {
    tagTGset record = *old;
    record.name = *name;
    CQDCommandObj(GetDocument(), L"GeomSet")
        .Set(L"Action", 1)
        .Set(L"Itr", std::vector<iterator>{m_itr})
        .Set(L"Data", std::vector<tagTGset>{record})
        .Execute();
  }
  if (!IsDetached()) SetTitleIncludeType();
}

// ---- drop -----------------------------------------------------------------------------------------------

void CQDTreeItemGset::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  CQDDBSession* session = GetDBSession();
  std::map<iterator, int> parts;
  std::set<iterator> merged;
  for (const CQDTreeItem* node : nodes) {
    const iterator itr = node->GetIterator();
    const std::uint16_t type = session->GetDataType(itr);
    if (type == kDataGeom && session->GetGeomPool().GetAtNU(itr)->gset != m_itr) parts.emplace(itr, 1);
    const auto* set = type == kDataGset && itr != m_itr ? dynamic_cast<const CQDTreeItemGset*>(node) : nullptr;
    if (set == nullptr) continue;
    merged.insert(itr);
    set->GetGeomItrs(parts);
  }
  std::vector<iterator> itrs;
  itrs.reserve(parts.size());
  for (const auto& [itr, mark] : parts) itrs.push_back(itr);
  if (!merged.empty()) return Merge({merged.begin(), merged.end()}, itrs);
  if (itrs.empty()) return;
  CQDCommandObj(GetDocument(), L"Geom")
      .Set(L"Action", CString(L"ApplyGset"))
      .Set(L"Itr", itrs)
      .Set(L"ItrGset", m_itr)
      .Execute();
}

/// All parts of the sets come here and the sets go; all of it or nothing.
void CQDTreeItemGset::Merge(std::vector<iterator> sets, std::vector<iterator> parts) {
  CQDDBSession* session = GetDBSession();
  const iterator target = m_itr;
  const CString question = CMSGFunction::GetValue("IDS_QD_WRT_MERGE_GEOMSET");
  if (AfxMessageBox(question, MessageButtons::YesNo) != MessageAnswer::Yes) return;
  // While the user thought about it, anything may have been deleted, this node too.
  if (session->GetDataType(target) != kDataGset) return;
  const auto gone = [session](std::uint16_t type) {
    return [session, type](iterator itr) { return session->GetDataType(itr) != type; };
  };
  std::erase_if(sets, gone(kDataGset));
  std::erase_if(parts, gone(kDataGeom));
  if (sets.empty()) return;
  RunAct(session, "IDS_QD_TRANS_Merge_GeomSet", [&] {
    if (session->GetGeomPool().Private_ApplyGset(parts, target) == 0) return 0;
    const iterator current = session->GetGsetPool().GetCurrentSet();
    for (const iterator set : sets) {
      if (set == current && session->GetGsetPool().SetCurrentSet(target) == 0) return 0;
      if (session->GetGsetPool().Delete(set) == 0) return 0;
    }
    return 1;
  });
}

}  // namespace qd

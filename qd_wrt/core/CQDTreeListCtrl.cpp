#include "qd_wrt/core/CQDTreeListCtrl.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "platform/text/Utf8.h"
#include "qd_wrt/core/CQDTreeMenu.h"

namespace qd {

CQDTreeListCtrl::Handler::~Handler() {
  if (m_life.expired() || --m_control.m_handlers > 0) return;
  // Freeing a node runs no handler, but its destructor may be any class's: empty the list first.
  std::vector<std::unique_ptr<CQDTreeItem>>().swap(m_control.m_graveyard);
}

/// What a step that ends early has put off is put off for good.
CQDTreeListCtrl::Deeper::~Deeper() {
  if (!m_life.expired() && --m_control.m_depth == 0) m_control.m_deferred.clear();
}

CQDTreeListCtrl::CQDTreeListCtrl() {
  GetFinder().SetFacts(this);
}

CQDTreeListCtrl::~CQDTreeListCtrl() {
  DestroyTreeItems();
  SetDocument(nullptr);
}

void CQDTreeListCtrl::OnDestroy() {
  DestroyTreeItems();
  CTreeListCtrl::OnDestroy();
}

// ---- building and taking down ---------------------------------------------------------------------------

void CQDTreeListCtrl::CreateTreeItems(int treeType, CQDDocBase* doc, IQDTreeGroupFactory* factory, int active) {
  IToolkit::NeedThread();
  m_treeType = treeType;
  SetDocument(doc);
  m_groupFactory = factory;
  DestroyTreeItems();
  ResetWords();
  const Handler handler(*this);
  if (factory != nullptr && doc != nullptr) m_root = factory->CreateRootItem(treeType, this);
  if (m_root != nullptr) {
    m_root->MakeItem(kInsertLast);
    Expand(m_root->GetTreeItemHandle(), ExpandAction::Expand);
  }
  SetOneTree(m_root != nullptr && !m_root->HasOwnRow());
  m_active = active != 0;  // who asks meanwhile is told of the tree before
}

void CQDTreeListCtrl::SetDocument(CQDDocBase* doc) {
  if (m_doc != nullptr) m_doc->Unfollow(*this);
  m_doc = doc;
  if (m_doc != nullptr) m_doc->Follow(*this);
}

void CQDTreeListCtrl::OnDocumentGone() {
  m_doc = nullptr;
  DestroyTreeItems();
}

void CQDTreeListCtrl::DestroyTreeItems() {
  DeleteBoxes();
  CQDTreeItem::Destroy(std::exchange(m_root, nullptr));
  m_leftOpen.clear();
}

/// The record, or for a row that gathers some of a record's below it, that record and which row it is.
std::optional<std::pair<iterator, unsigned>> CQDTreeListCtrl::PlaceOf(const CQDTreeItem& node) const {
  if (const iterator itr = node.GetRecord(); itr != 0) return std::pair{itr, 0U};
  const iterator above = node.GetParent() != nullptr ? node.GetParent()->GetRecord() : 0;
  return above != 0 ? std::optional(std::pair{above, GetItemData(node.GetTreeItemHandle()) + 1U}) : std::nullopt;
}

void CQDTreeListCtrl::KeepWhetherOpen(const CQDTreeItem& node) {
  const HTREEITEM row = node.GetTreeItemHandle();
  const bool open = IsLive(row) && WasExpanded(row);
  if (!open && m_leftOpen.empty()) return;  // as of most rows
  const auto place = PlaceOf(node);
  if (!place) return;
  if (open) {
    m_leftOpen.insert(*place);
  } else {
    m_leftOpen.erase(*place);
  }
}

void CQDTreeListCtrl::OpenAsBefore(const CQDTreeItem& node) {
  if (m_leftOpen.empty() || !ItemHasChildren(node.GetTreeItemHandle())) return;
  const auto place = PlaceOf(node);
  if (place && m_leftOpen.erase(*place) != 0) ExpandForGood(node.GetTreeItemHandle());
}

void CQDTreeListCtrl::Bury(std::unique_ptr<CQDTreeItem> node) {
  if (m_handlers > 0) m_graveyard.push_back(std::move(node));
}

void CQDTreeListCtrl::RunDeep(CQDTreeItem* node, const std::function<void()>& step) {
  constexpr int kMostNested = 64;
  if (m_depth >= kMostNested) {
    m_deferred.emplace_back(node, step);
    return;
  }
  const Handler handler(*this);
  const Deeper deeper(*this);
  step();
  if (m_depth > 1) return;
  while (!m_deferred.empty()) {
    const auto batch = std::exchange(m_deferred, {});
    for (const auto& [waiting, deferredStep] : batch) {
      if (!waiting->IsDetached()) deferredStep();
    }
  }
}

// ---- rows -----------------------------------------------------------------------------------------------

/// A node of several kinds stands in several maps.
template <typename Visit>
void CQDTreeListCtrl::ForRecordMapsOf(const CQDTreeItem* node, const Visit& visit) {
  if (node->IsGeom()) visit(m_geomMap);
  if (node->IsMesh()) visit(m_meshMap);
  if (node->IsDatum()) visit(m_datumMap);
  if (!node->IsGeom() && !node->IsMesh() && !node->IsDatum()) visit(m_otherMap);
}

HTREEITEM CQDTreeListCtrl::InsertItem(CQDTreeItem* node, HTREEITEM insertAfter) {
  IToolkit::NeedThread();
  const CQDTreeItem* parent = node->GetParent();
  const HTREEITEM above = parent != nullptr ? parent->GetTreeItemHandle() : HTREEITEM{};
  if (parent != nullptr && parent->HasOwnRow() && !IsLive(above)) return {};
  const int icon = static_cast<int>(node->GetIconIndex());
  const HTREEITEM row =
      InsertItem(node->GetTitle(), icon, icon, node->IsEditable() ? 1 : 0, 0, above, insertAfter);
  if (row) ShowNode(node, row);
  return row;
}

/// A row shows a node from now on.
void CQDTreeListCtrl::ShowNode(CQDTreeItem* node, HTREEITEM row) {
  ++m_rowCount;
  m_rowMap.set(row, node);
  if (const iterator itr = node->GetRecord(); itr != 0) {
    ForRecordMapsOf(node, [itr, node](bothitrmap& map) { map.set(itr, node); });
  }
  if (node->HasCheck()) SetChecked(row, kChecked);
  if (node->IsShowID() && node->GetID() > 0) {
    // Padded here, plain when the number changes later: column 1 is compared as a number only.
    constexpr std::size_t kWidth = 3;
    CString text = std::to_wstring(node->GetID());
    text.resize(std::max(text.size(), kWidth), L' ');
    SetItemText(row, 1, text);
  }
  if (node->IsShowColor()) SetItemColor(row, node->GetColor(), 0);
}

void CQDTreeListCtrl::DeleteItem(CQDTreeItem* node) {
  IToolkit::NeedThread();
  const HTREEITEM row = node->GetTreeItemHandle();
  if (!node->IsDetached()) {
    EraseHTREEITEM(node, 0);  // the node stays
  } else if (GetRecord(row) != nullptr) {
    --m_rowCount;
    CTreeListCtrl::DeleteItem(row);
  }
  if (node->m_supplies && node->m_parent == nullptr && !row) DeleteTopRows();
  m_rowMap.remove(node);
  ForRecordMapsOf(node, [node](bothitrmap& map) { map.remove(node); });
}

void CQDTreeListCtrl::EraseHTREEITEM(CQDTreeItem* node, int) {
  if (!IsLive(node->GetTreeItemHandle())) return;
  const auto release = [this](CQDTreeItem* released) {
    released->SetTitle(released->GetTitle());  // it stood in the row
    if (GetRecord(released->m_row) != nullptr) --m_rowCount;
    m_rowMap.remove(released);
    released->m_row = {};
    // It follows its data types anew when it gets a row again.
    RemoveItemFromDataTypeMap(released);
    if (released->m_extras != nullptr) released->m_extras->pending = {};
  };
  const HTREEITEM row = node->m_row;
  node->ForEachBelow(release);
  release(node);
  DeleteSubItems(row);
  CTreeListCtrl::DeleteItem(row);
}

int CQDTreeListCtrl::MoveItem(CQDTreeItem* node, CQDTreeItem* newParent) {
  if (!MayMove(node, newParent) || node->GetChildCount() != 0) return 0;
  const HTREEITEM moved = CTreeListCtrl::MoveItem(node->m_row, newParent->m_row, kInsertLast);
  if (!moved) return 0;
  Rebind(node, moved);
  Reparent(node, newParent);
  return 1;
}

int CQDTreeListCtrl::MoveBranch(CQDTreeItem* node, CQDTreeItem* newParent, HTREEITEM after) {
  if (!MayMove(node, newParent)) return 0;
  const Handler handler(*this);
  const auto rebind = [this](HTREEITEM from, HTREEITEM to) {
    if (CQDTreeItem* moved = NodeOf(from)) Rebind(moved, to);
  };
  if (!CTreeListCtrl::MoveBranch(node->m_row, newParent->m_row, after, rebind)) return 0;
  Reparent(node, newParent);
  return 1;
}

bool CQDTreeListCtrl::MayMove(const CQDTreeItem* node, const CQDTreeItem* newParent) const {
  return newParent != nullptr && newParent->GetControl() == this && !newParent->IsDetached() &&
         node->m_parent != nullptr && newParent != node && node->m_move && IsLive(node->m_row) &&
         (IsLive(newParent->m_row) || !newParent->HasOwnRow()) && !newParent->m_supplies &&
         !node->m_parent->m_supplies;
}

void CQDTreeListCtrl::Rebind(CQDTreeItem* node, HTREEITEM row) {
  m_rowMap.remove(node);  // before the new pair: an old one would win
  node->m_row = row;
  m_rowMap.set(row, node);
}

void CQDTreeListCtrl::Reparent(CQDTreeItem* node, CQDTreeItem* newParent) {
  node->m_parent->RegistToChild(node, 0);
  newParent->RegistToChild(node, 1);
  node->SetParent(newParent);
}

void CQDTreeListCtrl::OnMakeChildren(HTREEITEM row) {
  CQDTreeItem* node = NodeOf(row);
  if (node == nullptr) return;
  const Handler handler(*this);
  const std::weak_ptr<void> life = Life();
  node->OnMakeChildren();
  if (!life.expired() && m_sortedBy.direction != 0 && !node->IsDetached()) SortBelow(node->m_row);
}

CQDTreeItem* CQDTreeListCtrl::FindGeomNode(iterator itr) const {
  return NodeOfRecord(1, itr);
}
CQDTreeItem* CQDTreeListCtrl::FindMeshNode(iterator itr) const {
  return NodeOfRecord(2, itr);
}
CQDTreeItem* CQDTreeListCtrl::FindDatumNode(iterator itr) const {
  return NodeOfRecord(3, itr);
}

CQDTreeItem* CQDTreeListCtrl::NodeOfRecord(int kind, iterator itr) const {
  constexpr int kAny = 0;
  CQDTreeItem* node = nullptr;
  const std::array<const bothitrmap*, 4> maps{&m_geomMap, &m_meshMap, &m_datumMap, &m_otherMap};
  for (std::size_t i = 0; i < maps.size() && node == nullptr; ++i) {
    if (kind == kAny || kind == static_cast<int>(i) + 1) maps[i]->find(itr, node);
  }
  return node;
}

CQDTreeItem* CQDTreeListCtrl::FindNodeBelow(const CQDTreeItem* parent, iterator itr) const {
  for (const bothitrmap* map : {&m_geomMap, &m_meshMap, &m_datumMap, &m_otherMap}) {
    CQDTreeItem* node = nullptr;
    if (map->find(itr, node) != 0 && node->GetParent() == parent) return node;
  }
  return nullptr;
}

bool CQDTreeListCtrl::HasNodes(const std::vector<iterator>& itrs) const {
  return std::all_of(itrs.begin(), itrs.end(), [this](iterator itr) { return FindNode(itr) != nullptr; });
}

int CQDTreeListCtrl::ChangeImage(CQDTreeItem* node, int icon) {
  return node->ChangeImage(icon);
}

int CQDTreeListCtrl::ChangeItemColor(HTREEITEM row, COLORREF colour, int invalidate) {
  return SetItemColor(row, colour, invalidate);
}

void CQDTreeListCtrl::SetTextOf(HTREEITEM row, int column, const CString& text) {
  if (SetItemText(row, column, text) != 0) InvalidateRow(row);
}

void CQDTreeListCtrl::SortByData(HTREEITEM parent) {
  if (!IsLive(parent) || KeepsOrder(parent)) return;
  SortRows(parent, [](std::uint64_t a, std::uint64_t b) {
    const auto data = [](std::uint64_t word) {
      const auto* record = reinterpret_cast<const CTLItem*>(word);
      return record != nullptr ? static_cast<int>(record->GetData()) : 0;
    };
    return data(a) - data(b);
  });
}

void CQDTreeListCtrl::SetTitle(const CString& title) {
  if (m_root != nullptr) m_root->ChangeTitle(title);
}

// ---- requests of the host -------------------------------------------------------------------------------

void CQDTreeListCtrl::OnChangeLanguage() {
  if (m_root == nullptr) return;
  const Handler handler(*this);
  m_root->OnChangeLanguage();
  ResetWords();
  Invalidate();
}

void CQDTreeListCtrl::OnChangeProgram() {
  Invalidate();
}  // menus ask for the variant when they open

void CQDTreeListCtrl::OnPrePostMode(int) {
  Invalidate();
}

/// Labels of an item type have changed: those of one record, or of all for 0.
void CQDTreeListCtrl::RereadBoxes(int itemType, iterator itr) {
  if (m_root == nullptr) return;
  for (CQDTreeItem* below : m_root->Children()) {
    if (below->GetItemType() == itemType) below->RereadBoxes(itr);
  }
}

void CQDTreeListCtrl::RestoreLabel() {
  if (m_root == nullptr) return;
  m_root->SetRestoreLabel();
  for (CQDTreeItem* below : m_root->Children()) below->RereadBoxes(0);
}

void CQDTreeListCtrl::ShowHideLabel(int itemType, iterator itr, int show) {
  if (m_doc == nullptr || m_doc->GetLabelManager() == nullptr || m_doc->GetDBSession() == nullptr) return;
  CQDLabel* label = m_doc->GetLabelManager()->GetLabel(itemType);
  if (label == nullptr) return;
  const std::int32_t id = m_doc->GetDBSession()->GetRecordID(itr);
  if (show != 0) {
    label->Show(id);
  } else {
    label->Hide(id);
  }
  RereadBoxes(itemType, itr);
}

void CQDTreeListCtrl::ShowHideLabel(const TArray<iterator>& itrs, int show) {
  if (m_root == nullptr) return;
  if (show != 0) {
    std::vector<iterator> wanted = itrs;
    m_root->SetShowHide(wanted, 0, 0);
    return;
  }
  // The walk cannot hide single records, so their labels are hidden one by one.
  for (const iterator itr : itrs) {
    const CQDTreeItem* node = NodeOfRecord(0, itr);
    if (node != nullptr && node->GetParent() != nullptr) ShowHideLabel(node->GetParent()->GetItemType(), itr, 0);
  }
}

void CQDTreeListCtrl::ShowHideAllLabel(int show) {
  std::vector<iterator> none;
  if (m_root != nullptr) m_root->SetShowHide(none, 1, show);
}

void CQDTreeListCtrl::ShowHideAllSection(int show) {
  if (m_root == nullptr) return;
  m_root->ForEachBelow([show](CQDTreeItem* node) {
    if (node->IsSection() && node->GetIterator() != 0) node->OnClickCheck(show != 0 ? kUnchecked : kChecked);
  });
}

void CQDTreeListCtrl::SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags) {
  const Handler handler(*this);
  if (m_root != nullptr) m_root->SetShowHideItem(kind, itrs, show, flags);
}

void CQDTreeListCtrl::ChangeGeomTitle(int mode) {
  if (m_root != nullptr) m_root->ChangeGeomTitle(m_doc, mode);
}

void CQDTreeListCtrl::ChangeGeomColor(int mode) {
  if (m_root != nullptr) m_root->ChangeGeomColor(mode);
}

void CQDTreeListCtrl::GetGeomTitleAndColor(int& title, int& colour) const {
  if (m_root != nullptr) m_root->GetGeomTitleAndColor(title, colour);
}

void CQDTreeListCtrl::SetGeomRenderMode(const TArray<iterator>& itrs) {
  for (const iterator itr : itrs) {
    CQDTreeItem* node = FindGeomNode(itr);
    if (node != nullptr) node->RefreshImage();
  }
  Invalidate();
}

void CQDTreeListCtrl::RefreshRows(const TArray<iterator>& itrs) {
  for (const iterator itr : itrs) {
    CQDTreeItem* node = FindNode(itr);
    if (node == nullptr) continue;
    node->OnInitialize();
    node->RefreshImage();
  }
}

void CQDTreeListCtrl::RefreshBox(const RowBox& box) {
  if (m_root == nullptr) return;
  for (CQDTreeItem* below : m_root->Children()) below->RereadBox(box);
}

void CQDTreeListCtrl::ShowHideGeom(const TArray<iterator>& itrs, int show) {
  const Handler handler(*this);
  for (const iterator itr : itrs) {
    if (CQDTreeItem* node = FindGeomNode(itr)) node->OnClickCheck(show != 0 ? kUnchecked : kChecked);
  }
}

void CQDTreeListCtrl::ShowHideNode(const TArray<iterator>& itrs, int show) {
  const Handler handler(*this);
  for (const iterator itr : itrs) {
    if (CQDTreeItem* node = NodeOfRecord(0, itr)) node->ShowHideNode(show);
  }
}

// ---- menus ----------------------------------------------------------------------------------------------

void CQDTreeListCtrl::OnMenuEvent(unsigned command) {
  const Handler handler(*this);
  const HTREEITEM first = GetFirstSelectedItem();
  CQDTreeItem* node = first ? NodeOf(first) : nullptr;
  const bool armed = std::exchange(m_menuArmed, true);
  if (node == nullptr || !armed) return;
  node->OnMenuEvent(command);
}

void CQDTreeListCtrl::ForwardToRoot(void (CQDTreeItem::*hook)(unsigned), unsigned command) {
  const Handler handler(*this);
  if (m_root != nullptr) (m_root->*hook)(command);
}

void CQDTreeListCtrl::OnMenuEventGeomRoot(unsigned command) {
  ForwardToRoot(&CQDTreeItem::OnMenuEventGeomRoot, command);
}
void CQDTreeListCtrl::OnMenuEventMeshRoot(unsigned command) {
  ForwardToRoot(&CQDTreeItem::OnMenuEventMeshRoot, command);
}
void CQDTreeListCtrl::OnMenuEventSLoadRoot(unsigned command) {
  ForwardToRoot(&CQDTreeItem::OnMenuEventSLoadRoot, command);
}
void CQDTreeListCtrl::OnMenuEventBCRoot(unsigned command) {
  ForwardToRoot(&CQDTreeItem::OnMenuEventBCRoot, command);
}
void CQDTreeListCtrl::OnMenuEventDLoadRoot(unsigned command) {
  ForwardToRoot(&CQDTreeItem::OnMenuEventDLoadRoot, command);
}

void CQDTreeListCtrl::ShowContextMenu(CPoint screen) {
  if (!std::exchange(m_menuArmed, true)) return;
  const Handler handler(*this);
  const HTREEITEM first = GetFirstSelectedItem();
  if (CQDTreeItem* node = first ? NodeOf(first) : nullptr) node->CreateContextMenu(screen);
}

void CQDTreeListCtrl::TrackMenu(const CQDTreeMenu& menu, CPoint screen) {
  // Anything may happen while the menu is open, so the command looks for its node anew.
  const std::weak_ptr<void> life = Life();
  std::vector<MenuEntry> more;
  if (m_moreEntries.list) more = m_moreEntries.list();
  CQDTreeMenu whole = menu;
  if (!more.empty() && !menu.Entries().empty()) whole.AddSeparator();
  for (const MenuEntry& entry : more) {
    const CString text =
        entry.literal ? DecodeUtf8(entry.key).value_or(CString()) : CMSGFunction::GetValue(entry.key);
    whole.AddMenu(entry.command, (text + (entry.opensDialog ? L"..." : L"")).c_str(), entry.icon);
  }
  const unsigned command = whole.Track(screen, *this);
  if (life.expired() || command == 0) return;
  const bool isMore = std::any_of(more.begin(), more.end(),
                                  [command](const MenuEntry& entry) { return entry.command == command; });
  isMore ? m_moreEntries.run(command) : OnMenuEvent(command);
}

}  // namespace qd

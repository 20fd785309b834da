#include "qd_wrt/core/CQDTreeListCtrl.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/Dialogs.h"
#include "qd_wrt/core/CQDTreeBranch.h"
#include "qd_wrt/core/CQDTreeMenu.h"

namespace qd {

CQDTreeListCtrl::Handler::~Handler() {
  if (m_life.expired() || --m_control.m_handlers > 0) return;
  // Freeing a node runs no handler, but its destructor may be any class's: empty the list first.
  std::vector<std::unique_ptr<CQDTreeItem>>().swap(m_control.m_graveyard);
}

CQDTreeListCtrl::~CQDTreeListCtrl() {
  DestroyTreeItems();
}

void CQDTreeListCtrl::OnDestroy() {
  DestroyTreeItems();
  CTreeListCtrl::OnDestroy();
}

// ---- building and taking down ---------------------------------------------------------------------------

void CQDTreeListCtrl::CreateTreeItems(int treeType, CQDDocBase* doc, IQDTreeGroupFactory* factory, int active) {
  m_treeType = treeType;
  m_doc = doc;
  m_groupFactory = factory;
  DestroyTreeItems();
  m_active = active != 0;
  if (factory == nullptr) return;
  const Handler handler(*this);
  m_root = factory->CreateRootItem(treeType, this);
  if (m_root == nullptr) return;
  m_root->MakeItem(kInsertLast);
  Expand(m_root->GetTreeItemHandle(), ExpandAction::Expand);
}

void CQDTreeListCtrl::DestroyTreeItems() {
  DeleteBoxes();
  CQDTreeItem::Destroy(std::exchange(m_root, nullptr));
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
  ++m_depth;
  step();
  --m_depth;
  if (m_depth > 0) return;
  while (!m_deferred.empty()) {
    const auto batch = std::exchange(m_deferred, {});
    for (const auto& [waiting, deferredStep] : batch) {
      if (waiting->IsDetached()) continue;
      ++m_depth;
      deferredStep();
      --m_depth;
    }
  }
}

// ---- rows -----------------------------------------------------------------------------------------------

bothitrmap* CQDTreeListCtrl::RecordMapOf(const CQDTreeItem* node) {
  if (node->IsGeom()) return &m_geomMap;
  if (node->IsMesh()) return &m_meshMap;
  return node->IsDatum() ? &m_datumMap : nullptr;
}

HTREEITEM CQDTreeListCtrl::InsertItem(CQDTreeItem* node, HTREEITEM insertAfter) {
  const CQDTreeItem* parent = node->GetParent();
  const HTREEITEM above = parent != nullptr ? parent->GetTreeItemHandle() : HTREEITEM{};
  if (parent != nullptr && !IsLive(above)) return {};
  const int icon = static_cast<int>(node->GetIconIndex());
  const HTREEITEM row =
      InsertItem(node->GetTitle(), icon, icon, node->IsEditable() ? 1 : 0, 0, above, insertAfter);
  if (!row) return {};
  ++m_rowCount;
  m_rowMap.set(row, node);
  if (const iterator itr = node->GetIterator(); itr != 0) {
    if (bothitrmap* map = RecordMapOf(node)) map->set(itr, node);
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
  return row;
}

void CQDTreeListCtrl::DeleteItem(CQDTreeItem* node) {
  const HTREEITEM row = node->GetTreeItemHandle();
  if (GetRecord(row) != nullptr) {
    --m_rowCount;
    CTreeListCtrl::DeleteItem(row);
  }
  m_rowMap.remove(node);
  if (bothitrmap* map = RecordMapOf(node)) map->remove(node);
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
  const HTREEITEM row = node->m_row;
  CQDTreeItem* parent = node->m_parent;
  const bool refused = newParent == nullptr || parent == nullptr || newParent == node || !node->m_move ||
                       node->GetChildCount() != 0 || !IsLive(row) || !IsLive(newParent->m_row);
  if (refused) return 0;
  m_rowMap.remove(node);  // before the new pair: an old one would win
  const HTREEITEM moved = CTreeListCtrl::MoveItem(row, newParent->m_row, kInsertLast);
  node->m_row = moved;
  if (!moved) return 0;
  m_rowMap.set(moved, node);
  parent->RegistToChild(node, 0);
  newParent->RegistToChild(node, 1);
  node->SetParent(newParent);
  return 1;
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
  const std::array<const bothitrmap*, 3> maps{&m_geomMap, &m_meshMap, &m_datumMap};
  for (std::size_t i = 0; i < maps.size() && node == nullptr; ++i) {
    if (kind == kAny || kind == static_cast<int>(i) + 1) maps[i]->find(itr, node);
  }
  return node;
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
  if (!IsLive(parent)) return;
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
    auto* branch = dynamic_cast<CQDTreeBranch*>(below);
    if (branch != nullptr && branch->GetItemType() == itemType) branch->RereadBoxes(itr);
  }
}

void CQDTreeListCtrl::RestoreLabel() {
  if (m_root == nullptr) return;
  m_root->SetRestoreLabel();
  RereadBoxes(kLabelCord, 0);
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

void CQDTreeListCtrl::ShowHideGeom(const TArray<iterator>& itrs, int show) {
  const Handler handler(*this);
  for (const iterator itr : itrs) {
    if (CQDTreeItem* node = FindGeomNode(itr)) node->OnClickCheck(show != 0 ? kUnchecked : kChecked);
  }
}

void CQDTreeListCtrl::ShowHideNode(const TArray<iterator>& itrs, int show) {
  const Handler handler(*this);
  for (const iterator itr : itrs) {
    if (CQDTreeItem* node = NodeOfRecord(0, itr)) node->OnClickCheck(show != 0 ? kUnchecked : kChecked);
  }
}

// ---- menus ----------------------------------------------------------------------------------------------

void CQDTreeListCtrl::OnMenuEvent(unsigned command) {
  const Handler handler(*this);
  const HTREEITEM first = GetFirstSelectedItem();
  CQDTreeItem* node = first ? NodeOf(first) : nullptr;
  const bool armed = std::exchange(m_menuArmed, true);
  if (node == nullptr || !armed) return;
  IQueryMenuID2Idx::Instance().SetLastCommand(command);  // the host asks which one it was
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
  const unsigned command = menu.Track(screen, *this);
  if (!life.expired() && command != 0) OnMenuEvent(command);
}

}  // namespace qd

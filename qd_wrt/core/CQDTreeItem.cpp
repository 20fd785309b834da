#include "qd_wrt/core/CQDTreeItem.h"

#include <algorithm>
#include <utility>

#include "host/CMSGFunction.h"
#include "host/CMainFrame.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

CQDTreeItem::CQDTreeItem(CQDTreeListCtrl* control, CQDTreeItem* parent, CString title, unsigned iconIndex,
                         int hasCheck)
    : m_hasCheck(hasCheck != 0), m_icon(iconIndex), m_control(control), m_parent(parent) {
  if (!title.empty()) m_ownTitle = std::make_unique<CString>(std::move(title));
  if (parent != nullptr) parent->AppendChild(this);
}

CQDTreeItem::~CQDTreeItem() {
  if (m_detached) return;
  RemoveAllChildItems();
  Detach();
}

// ---- children -------------------------------------------------------------------------------------------

const CQDTreeItem::ChildList& CQDTreeItem::ChildPlaces() const {
  static const ChildList kNone;
  return m_extras != nullptr ? m_extras->children : kNone;
}

int CQDTreeItem::GetChildCount() const {
  return m_extras != nullptr ? static_cast<int>(m_extras->children.size() - m_extras->holes) : 0;
}

void CQDTreeItem::AppendChild(CQDTreeItem* child) {
  Extras& extras = NeedExtras();
  child->m_slot = static_cast<std::uint32_t>(extras.children.size());
  extras.children.push_back(child);
  if (!extras.counts.IsOff()) extras.counts.Append(true);
}

/// Takes a child out in O(1): its place stays empty until enough have gathered.
bool CQDTreeItem::TakeOut(CQDTreeItem* child) {
  if (child->m_slot >= ChildPlaces().size() || ChildPlaces()[child->m_slot] != child) return false;
  Extras& extras = *m_extras;
  if (child->m_slot + 1 == extras.children.size()) {
    extras.children.pop_back();
    extras.counts.PopBack();
    while (!extras.children.empty() && extras.children.back() == nullptr) {
      extras.children.pop_back();
      extras.counts.PopBack();
      --extras.holes;
    }
    return true;
  }
  extras.children[child->m_slot] = nullptr;
  extras.counts.Empty(child->m_slot);
  if (++extras.holes > extras.children.size() / 2) CloseHoles();
  return true;
}

void CQDTreeItem::CloseHoles() {
  if (m_extras == nullptr || m_extras->holes == 0) return;
  ChildList& children = m_extras->children;
  std::erase(children, nullptr);
  m_extras->holes = 0;
  m_extras->counts.Clear();
  for (std::uint32_t slot = 0; slot < children.size(); ++slot) children[slot]->m_slot = slot;
}

CQDTreeItem* CQDTreeItem::GetChild(int index) {
  if (index < 0 || index >= GetChildCount()) return nullptr;
  auto place = static_cast<std::size_t>(index);
  if (m_extras->holes != 0) {
    // To close the holes here would renumber all children for each one that leaves between two questions.
    if (m_extras->counts.IsOff()) m_extras->counts.Count(m_extras->children);
    place = m_extras->counts.PlaceOf(place);
  }
  return m_extras->children[place];
}

std::vector<CQDTreeItem*> CQDTreeItem::Children() const {
  std::vector<CQDTreeItem*> children = ChildPlaces();
  if (m_extras != nullptr && m_extras->holes != 0) std::erase(children, nullptr);
  return children;
}

int CQDTreeItem::GetAllChildCount() const {
  int count = 0;
  ForEachBelow([&count](CQDTreeItem*) { ++count; });
  return count;
}

int CQDTreeItem::RegistToChild(CQDTreeItem* child, int add) {
  if (add == 0) {
    TakeOut(child);
  } else if (child->m_slot >= ChildPlaces().size() || ChildPlaces()[child->m_slot] != child) {
    // A child that stands in two lists would be deleted twice.
    if (child->m_parent != this) child->SetParent(this);
    AppendChild(child);
  }
  return 1;
}

void CQDTreeItem::SetParent(CQDTreeItem* parent) {
  if (m_parent != nullptr && m_parent != parent) m_parent->TakeOut(this);
  m_parent = parent;
}

void CQDTreeItem::DeleteChild(CQDTreeItem* child) {
  if (child != nullptr && child->m_parent == this) Destroy(child);
}

void CQDTreeItem::RemoveAllChildItems() {
  while (!ChildPlaces().empty()) Destroy(ChildPlaces().back());
}

void CQDTreeItem::Destroy(CQDTreeItem* node) {
  if (node == nullptr || node->m_detached) return;
  std::vector<CQDTreeItem*> branch{node};
  node->ForEachBelow([&branch](CQDTreeItem* below) { branch.push_back(below); });
  for (const CQDTreeItem* leaving : branch) leaving->m_control->KeepWhetherOpen(*leaving);
  // From the end: every node goes after all below it and after its later siblings.
  for (auto at = branch.rbegin(); at != branch.rend(); ++at) {
    CQDTreeListCtrl* control = (*at)->m_control;
    (*at)->Detach();
    control->Bury(std::unique_ptr<CQDTreeItem>(*at));
  }
}

/// Leaves the tree: parent, data types, row and maps.
void CQDTreeItem::Detach() {
  m_detached = true;
  if (m_parent != nullptr) m_parent->TakeOut(this);
  m_control->RemoveItemFromDataTypeMap(this);
  m_control->DeleteItem(this);
  m_row = {};
  m_extras.reset();
}

// ---- the row and the subtree ----------------------------------------------------------------------------

void CQDTreeItem::MakeItem(HTREEITEM where) {
  if (m_control->IsLive(m_row) || (m_parent != nullptr && m_parent->HasOwnRow() && !m_parent->m_row)) return;
  if (HasOwnRow()) {
    m_row = m_control->InsertItem(this, where);
    if (!m_row) return;
  }
  StandInRow();
}

/// Takes a row that stands already.
void CQDTreeItem::TakeRow(HTREEITEM row) {
  m_row = row;
  StandInRow();
}

void CQDTreeItem::StandInRow() {
  if (m_row) m_ownTitle.reset();  // the row has it now
  if (m_extras != nullptr) m_extras->dataTypes.clear();
  RegisterReceiveDataType();
  for (const unsigned short type : GetDataTypeList()) m_control->AddItemDataTypeMap(type, this);
  m_control->RunDeep(this, [this] { MakeSubtree(); });
}

void CQDTreeItem::MakeSubtree() {
  MakeChildItems();
  const auto editable = [](const CQDTreeItem* child) { return child != nullptr && child->m_editable; };
  const ChildList& children = ChildPlaces();
  if (std::any_of(children.begin(), children.end(), editable)) SortBranchesFromHere(0);
  if (GetRecord() != 0) m_control->OpenAsBefore(*this);
  OnInitialize();
}

/// Rows that follow are sorted too on purpose: branches that stand already keep one order with those that are made
/// in front of them.
void CQDTreeItem::SortBranchesFromHere(int byName, FlatMap* walked) {
  for (HTREEITEM row = m_row; row; row = m_control->GetNextSiblingItem(row)) {
    if (walked != nullptr) {
      if (walked->Contains(row.value)) return;
      walked->Assign(row.value, 1);
    }
    if (m_control->ItemHasChildren(row)) m_control->SortItems(0, byName, row);
  }
}

int CQDTreeItem::MoveItem(CQDTreeItem* newParent) {
  return m_control->MoveItem(this, newParent);
}

int CQDTreeItem::MoveBranch(CQDTreeItem* newParent) {
  return m_control->MoveBranch(this, newParent);
}

void CQDTreeItem::PromiseChildren(int promise) {
  m_control->SetPromised(m_row, promise != 0);
}

void CQDTreeItem::SupplyRows(std::size_t place, std::size_t count) {
  m_control->SupplyRows(*this, place, count);
}

void CQDTreeItem::TakeSupplied(std::size_t place, std::size_t count) {
  m_control->TakeSupplied(*this, place, count);
}

int CQDTreeItem::MoveSupplied(std::size_t place, std::size_t count, CQDTreeItem& target, std::size_t before) {
  return m_control->MoveSupplied(*this, {place, count}, target, before);
}

CString CQDTreeItem::GetTitle() const {
  if (m_ownTitle != nullptr) return *m_ownTitle;
  return m_row ? m_control->GetItemText(m_row, 0) : CString();
}

void CQDTreeItem::SetTitle(CString title) {
  m_ownTitle = std::make_unique<CString>(std::move(title));
}

void CQDTreeItem::ChangeTitle(CString title) {
  if (!m_row) return SetTitle(std::move(title));
  // A row without title may show another column's text in its place, which is not the node's title.
  m_ownTitle = title.empty() ? std::make_unique<CString>() : nullptr;
  m_control->SetTextOf(m_row, 0, title);
}

void CQDTreeItem::ChangeID(long id) {
  m_id = static_cast<std::int32_t>(id);
  m_control->SetTextOf(m_row, 1, std::to_wstring(m_id));
}

int CQDTreeItem::ChangeImage(int icon) {
  if (!m_row) return 0;
  if (static_cast<unsigned>(icon) == m_icon) return 1;
  m_icon = static_cast<unsigned>(icon);
  return m_control->SetItemImage(m_row, icon, icon);
}

void CQDTreeItem::Expand(int expand) {
  m_control->CTreeCtrl::Expand(m_row, expand != 0 ? ExpandAction::Expand : ExpandAction::Collapse);
}

void CQDTreeItem::Select(int recurse) {
  m_control->SetItemState(m_row, kRowSelected, kRowSelected);
  if (recurse == 0) return;
  ForEachBelow([](CQDTreeItem* node) { node->m_control->SetItemState(node->m_row, kRowSelected, kRowSelected); });
}

void CQDTreeItem::UnSelect(int recurse) {
  m_control->SetItemState(m_row, 0, kRowSelected);
  if (recurse == 0) return;
  ForEachBelow([](CQDTreeItem* node) { node->m_control->SetItemState(node->m_row, 0, kRowSelected); });
}

void CQDTreeItem::Select(HTREEITEM row) {
  m_control->ClearAllSelected();
  m_control->SetItemState(row, kRowSelected, kRowSelected);
  if (m_control->GetFocusedItem() != row) m_control->SetItemState(row, kRowFocused, kRowFocused);
}

void CQDTreeItem::ResetSelection(int clearBuffer) {
  const std::weak_ptr<void> life = m_control->Life();  // whoever hears of this may close the pane
  m_control->ResetSelection(1);
  if (life.expired()) return;
  CQDDocBase* doc = GetDocument();
  if (doc != nullptr && clearBuffer != 0 && doc->IsSelecting() == 0) doc->ClearSelectBuffer(1);
}

// ---- check boxes ----------------------------------------------------------------------------------------

int CQDTreeItem::GetCheckStatus() const {
  return m_control->WhichCheck(m_row);
}

void CQDTreeItem::OnInitialize() {
  if (!m_hasCheck) return;
  const std::optional<RowBox> box = GetRowBox();
  const CQDRowBoxes* kept = box && GetDocument() != nullptr ? GetDocument()->GetRowBoxes() : nullptr;
  m_control->SetChecked(m_row, kept != nullptr ? kept->GetBox(*box) : kChecked);
}

void CQDTreeItem::WriteBox(int state) {
  if (!m_hasCheck) return;
  m_control->SetChecked(m_row, state);
  const std::optional<RowBox> box = GetRowBox();
  CQDRowBoxes* kept = box && GetDocument() != nullptr ? GetDocument()->GetRowBoxes() : nullptr;
  if (kept != nullptr) kept->SetBox(*box, state);
}

void CQDTreeItem::ClickCheck() {
  m_control->OnSelchangAction();
}

int CQDTreeItem::OnClickCheck(int oldState) {
  WriteBox(oldState == kChecked ? kUnchecked : kChecked);
  return 1;
}

void CQDTreeItem::CheckOnlyInChild(CQDTreeItem* except, int state, int recurse) {
  for (CQDTreeItem* child : Children()) {
    if (child == except) {
      child->OnClickCheck(state != kChecked ? kChecked : kUnchecked);
      continue;
    }
    child->OnClickCheck(state);
    if (recurse == 0) continue;
    m_control->RunDeep(child, [=] { child->CheckOnlyInChild(except, state, recurse); });
  }
}

void CQDTreeItem::SetCheck(int state, int recurse) {
  const auto set = [state](CQDTreeItem* node) { node->WriteBox(state); };
  set(this);
  if (recurse != 0) ForEachBelow(set);
}

void CQDTreeItem::Show(int show, int recurse) {
  OnShowItem(show, 0, 1);
  WriteBox(show != 0 ? kChecked : kUnchecked);
  if (recurse == 0) return;
  for (CQDTreeItem* child : Children()) {
    m_control->RunDeep(child, [=] { child->Show(show, recurse); });
  }
}

void CQDTreeItem::GetChecked() {
  CQDDocBase* doc = GetDocument();
  if (doc == nullptr) return;
  constexpr std::uint16_t kMset = 10;
  constexpr std::uint16_t kPair = 13;
  constexpr std::uint16_t kLoad = 14;
  constexpr std::uint16_t kBoundary = 15;
  const auto collect = [doc](const CQDTreeItem* node, std::uint16_t type) {
    const iterator itr = node->GetIterator();
    if (node->GetCheckStatus() != kChecked || itr == 0 || node->IsRoot()) return;
    switch (type) {
      case kMset:
        return doc->AddCheckedMset(itr);
      case kPair:
        return doc->AddCheckedPair(itr);
      case kLoad:
        return doc->AddCheckedLoad(itr);
      case kBoundary:
        return doc->AddCheckedBoundary(itr);
      default:
        return;
    }
  };
  // Children before their parent, without recursion: the mirrored walk from the front, read from the back.
  // Each comes with its effective type, for which it would have to ask all nodes above it.
  using Typed = std::pair<const CQDTreeItem*, std::uint16_t>;
  std::vector<Typed> stack{{this, GetTreeItemType()}};
  std::vector<Typed> mirrored;
  while (!stack.empty()) {
    const auto [node, type] = stack.back();
    stack.pop_back();
    mirrored.emplace_back(node, type);
    for (const CQDTreeItem* child : node->ChildPlaces()) {
      if (child != nullptr) stack.emplace_back(child, child->m_treeItemType != 0 ? child->m_treeItemType : type);
    }
  }
  std::for_each(mirrored.rbegin(), mirrored.rend(),
                [&collect](const Typed& typed) { collect(typed.first, typed.second); });
}

void CQDTreeItem::SetMeshShowHide(iterator itr, int show) {
  CQDDocBase* doc = GetDocument();
  if (itr != 0 && doc != nullptr && doc->GetMeshManager() != nullptr)
    doc->GetMeshManager()->ShowHideMset(itr, show);
}

// ---- labels ---------------------------------------------------------------------------------------------

void CQDTreeItem::SetShowHide(std::vector<iterator>& iterators, int applyHide, int show) {
  CQDDocBase* doc = GetDocument();
  if (doc == nullptr || doc->GetLabelManager() == nullptr) return;
  FlatMap wanted;
  for (const iterator itr : iterators) {
    if (itr != 0) wanted.Assign(itr, 1);
  }
  const auto apply = [&](const CQDTreeItem* node, bool shown) {
    if (node->IsRoot() || (applyHide == 0 && !shown) || node->GetCheckStatus() == kUnchecked) return;
    CQDLabel* label = doc->GetLabelManager()->GetLabel(node->m_parent->GetItemType());
    const iterator itr = node->GetIterator();
    if (label == nullptr || itr == 0 || doc->GetDBSession() == nullptr) return;
    const std::int32_t id = doc->GetDBSession()->GetRecordID(itr);
    const bool isShown = label->IsShown(id) != 0;
    if (shown && !isShown) label->Show(id);
    if (!shown && isShown) label->Hide(id);
  };
  struct Frame {
    const CQDTreeItem* node;
    std::size_t next;
    bool shown;
  };
  const auto effective = [&wanted](const CQDTreeItem* node, bool above) {
    const iterator itr = node->GetIterator();
    return above || (itr != 0 && wanted.Contains(itr));
  };
  std::vector<Frame> path{{this, 0, effective(this, show != 0)}};
  while (!path.empty()) {
    Frame& frame = path.back();
    if (frame.next >= frame.node->ChildPlaces().size()) {
      apply(frame.node, frame.shown);
      path.pop_back();
      continue;
    }
    const CQDTreeItem* child = frame.node->ChildPlaces()[frame.next++];
    if (child != nullptr) path.push_back({child, 0, effective(child, frame.shown)});
  }
}

void CQDTreeItem::SetRestoreLabel() {
  CQDDocBase* doc = GetDocument();
  if (doc == nullptr || doc->GetLabelManager() == nullptr || doc->GetDBSession() == nullptr) return;
  ForEachBelow([doc](const CQDTreeItem* node) {
    const iterator itr = node->GetIterator();
    CQDLabel* label = itr != 0 ? doc->GetLabelManager()->GetLabel(node->m_parent->GetItemType()) : nullptr;
    if (label == nullptr || !node->m_hasCheck) return;
    const std::int32_t id = doc->GetDBSession()->GetRecordID(itr);
    if (node->GetCheckStatus() == kChecked) {
      label->Show(id);
    } else {
      label->Hide(id);
    }
  });
}

// ---- changes, language, properties ----------------------------------------------------------------------

CQDTreeItem::Extras& CQDTreeItem::NeedExtras() {
  if (m_extras == nullptr) m_extras = std::make_unique<Extras>();
  return *m_extras;
}

const std::list<unsigned short>& CQDTreeItem::GetDataTypeList() const {
  static const std::list<unsigned short> kNone;
  return m_extras != nullptr ? m_extras->dataTypes : kNone;
}

void CQDTreeItem::FollowDataType(unsigned short type) {
  NeedExtras().dataTypes.push_back(type);
}

void CQDTreeItem::PushUpdateInfo(const tagTRNotify& record) {
  NeedExtras().pending.Push(record);
}

void CQDTreeItem::PushUpdateInfo(std::shared_ptr<const UpdateBatch> batch) {
  NeedExtras().pending.Push(std::move(batch));
}

std::vector<tagTRNotify> CQDTreeItem::PendingRecords() const {
  return m_extras != nullptr ? m_extras->pending.Collect() : std::vector<tagTRNotify>();
}

void CQDTreeItem::Update() {
  CQDTreeListCtrl* control = m_control;
  const CQDTreeListCtrl::Handler handler(*control);  // the node may delete itself
  struct Drop {
    CQDTreeItem& node;
    ~Drop() {
      if (!node.m_detached && node.m_extras != nullptr) node.m_extras->pending = {};
    }
  };
  {
    const Drop drop{*this};
    OnUpdate();
  }
  control->Invalidate();
}

void CQDTreeItem::OnChangeLanguage() {
  SetTitleIncludeType();
  for (CQDTreeItem* child : Children()) {
    m_control->RunDeep(child, [child] { child->OnChangeLanguage(); });
  }
}

void CQDTreeItem::SetPropertyView() {
  m_control->ClearPropertyWindow();
}

void CQDTreeItem::SetMultiPropertyView() {
  CQDTreeItem::SetPropertyView();
}

void CQDTreeItem::RedrawView() {
  CQDDocBase* doc = GetDocument();
  if (m_viewUpdate && doc != nullptr && doc->GetActiveView() != nullptr) doc->GetActiveView()->Redraw(0);
}

// ---- flags ----------------------------------------------------------------------------------------------

std::uint16_t CQDTreeItem::GetTreeItemType() const {
  const CQDTreeItem* root = m_control->GetQDRootItem();
  for (const CQDTreeItem* node = this; node != nullptr && node != root; node = node->m_parent) {
    if (node->m_treeItemType != 0) return node->m_treeItemType;
  }
  return 0;
}

void CQDTreeItem::RegsiterDragEnableType(std::uint16_t type) {
  if (type == 0 || IsEnableDragType(type) != 0) return;
  NeedExtras().dragTypes.push_back(type);
}

int CQDTreeItem::IsEnableDragType(std::uint16_t type) const {
  if (m_extras == nullptr) return 0;
  const auto& types = m_extras->dragTypes;
  return std::find(types.begin(), types.end(), type) != types.end() ? 1 : 0;
}

void CQDTreeItem::SetMove(int move) {
  m_move = move != 0;
  ForEachBelow([move](CQDTreeItem* node) { node->m_move = move != 0; });
}

void CQDTreeItem::SetShowHide(int show) {
  m_showHide = show != 0;
  ForEachBelow([show](CQDTreeItem* node) { node->m_showHide = show != 0; });
}

CQDDocBase* CQDTreeItem::GetDocument() const {
  return m_control->GetDocument();
}

CQDDBSession* CQDTreeItem::GetDBSession() const {
  CQDDocBase* doc = GetDocument();
  return doc != nullptr ? doc->GetDBSession() : nullptr;
}

void CQDTreeItem::ChangeGeomShowHide() {
  if (GetIterator() != 0 && m_hasCheck && GetChildCount() == 0) {
    OnClickCheck(GetCheckStatus());
    return;
  }
  bool anyShown = false;
  for (CQDTreeItem* child : Children()) {
    m_control->RunDeep(child, [child] { child->ChangeGeomShowHide(); });
    anyShown |= child->GetCheckStatus() == kChecked;
  }
  WriteBox(anyShown ? kChecked : kUnchecked);
}

// ---- hooks that do nothing here -------------------------------------------------------------------------

void CQDTreeItem::SayThatAllAreMeant() const {
  if (!m_control->GetFinder().IsFiltering()) return;
  bool hides = false;
  ForEachBelow([&](const CQDTreeItem* node) { hides = hides || m_control->IsFilteredOut(node->m_row); });
  if (hides) qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_WRT_FIND_ALL_MEANT"));
}

void CQDTreeItem::OnMenuEvent(unsigned) {}
void CQDTreeItem::CreateContextMenu(CPoint&) {}
void CQDTreeItem::RegisterReceiveDataType() {}
void CQDTreeItem::OnEditChange(const wchar_t*) {}
void CQDTreeItem::OnDrop(std::vector<CQDTreeItem*>&) {}
void CQDTreeItem::OnRDrop(std::vector<CQDTreeItem*>&, CQDTreeItem*) {}
void CQDTreeItem::OnShowItem(int, int, int) {}
int CQDTreeItem::GetItemType() const {
  return -1;
}
void CQDTreeItem::SetTitleIncludeType() {}
iterator CQDTreeItem::GetIterator() const {
  return 0;
}
void CQDTreeItem::SetShowHideItem(int, TArray<iterator>&, int, unsigned) {}
void CQDTreeItem::OnMenuEventGeomRoot(unsigned) {}
void CQDTreeItem::OnDropToView(CPoint&) {}
void CQDTreeItem::OnMenuEventMeshRoot(unsigned) {}
void CQDTreeItem::OnMenuEventSLoadRoot(unsigned) {}
void CQDTreeItem::OnMenuEventBCRoot(unsigned) {}
void CQDTreeItem::OnMenuEventDLoadRoot(unsigned) {}
void CQDTreeItem::ChangeGeomTitle(CQDDocBase*, int) {}
void CQDTreeItem::GetGeomTitleAndColor(int&, int&) {}
void CQDTreeItem::ChangeGeomColor(int) {}
void CQDTreeItem::ShowHideGeom(std::vector<CQDTreeItem*>) {}
void CQDTreeItem::ShowHideGeom(std::vector<CQDTreeItem*>, int) {}
void CQDTreeItem::ShowHideGeom(std::vector<CQDTreeItem*>, int, int) {}
void CQDTreeItem::OnUpdate() {}
void CQDTreeItem::Slot13() {}
void CQDTreeItem::Slot16() {}
void CQDTreeItem::Slot18() {}
void CQDTreeItem::Slot19() {}
void CQDTreeItem::Slot20() {}
int CQDTreeItem::Slot22() {
  return 0;
}
void CQDTreeItem::RefreshImage() {}
void CQDTreeItem::Slot27() {}
void CQDTreeItem::Slot28() {}
void CQDTreeItem::Slot29() {}
void CQDTreeItem::Slot30() {}
void CQDTreeItem::Slot31() {}
void CQDTreeItem::Slot35() {}
void CQDTreeItem::Slot42() {}
void CQDTreeItem::Slot44() {}
void CQDTreeItem::Slot51() {}

}  // namespace qd

#include "qd_wrt/nodes/HostNode.h"

#include <string>
#include <utility>

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CQDTreeMenu.h"

namespace qd {

namespace {

/// Tree-item types: rows onto which others can be dropped, and others.
enum HostItemType : std::uint16_t { kPlain = 0xF000, kTakesDrops = 0xF001 };

}  // namespace

HostNode::HostNode(CQDTreeListCtrl* control, HostNode* parent, const HostRow& row,
                   std::shared_ptr<const HostNodeKind> kind)
    : CQDTreeItem(control, parent, row.title, row.icon, row.checked.has_value() ? 1 : 0),
      m_key(row.key),
      m_kind(std::move(kind)),
      m_checked(row.checked.value_or(false)) {
  m_showID = true;
  m_id = row.id;
  m_showColour = row.colour.has_value();
  m_colour = row.colour.value_or(0);
  m_editable = m_kind->renamed != nullptr;
  m_leftDrag = m_multiLeftDrag = m_kind->isDragged;
  SetTreeItemType(m_kind->dropped ? kTakesDrops : kPlain);
}

HostNode& HostNode::Add(HostRow row, std::shared_ptr<const HostNodeKind> kind) {
  auto* node = new HostNode(GetControl(), this, row, kind != nullptr ? std::move(kind) : m_kind);  // owned by this
  node->MakeItem(kInsertLast);
  return *node;
}

void HostNode::Remove() {
  if (GetParent() == nullptr) return Clear();
  Destroy(this);
}

void HostNode::Clear() {
  TakeSupplied(0, static_cast<std::size_t>(GetControl()->GetChildCount(GetTreeItemHandle())));
  RemoveAllChildItems();
}

HostNode* HostNode::Above() const {
  return static_cast<HostNode*>(GetParent());
}

void HostNode::OnInitialize() {
  if (HasCheck()) SetChecked(m_checked);
  if ((m_kind->children || m_kind->rowCount) && HasOwnRow()) PromiseChildren(1);
}

void HostNode::SetColour(COLORREF colour) {
  if (!m_showColour) return;
  SetColor(colour);
  GetControl()->ChangeItemColor(GetTreeItemHandle(), colour, 1);
}

// The kind may go with the row while one of its calls runs, and the whole tree too.

void HostNode::OnMakeChildren() {
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (kind->rowCount) {
    const std::weak_ptr<void> life = GetControl()->Life();
    const std::size_t count = kind->rowCount(*this);
    if (!life.expired() && !IsDetached()) SupplyRows(0, count);
  } else if (kind->children) {
    kind->children(*this);
  }
}

void HostNode::ShowRows(std::shared_ptr<const HostNodeKind> kind) {
  m_kind = std::move(kind);
  OnMakeChildren();
}

CQDTreeItem* HostNode::MakeSupplied(std::size_t place) {
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (!kind->row) return nullptr;
  const std::weak_ptr<void> life = GetControl()->Life();
  const HostRow row = kind->row(*this, place);
  if (life.expired() || IsDetached()) return nullptr;
  static const auto kNothing = std::make_shared<const HostNodeKind>();
  return new HostNode(GetControl(), this, row,
                      kind->rowKind != nullptr ? kind->rowKind : kNothing);  // owned by this
}

bool HostNode::DescribeSupplied(std::size_t place, LaterRow& shown) const {
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (!kind->row) return false;
  const HostRow row = kind->row(*this, place);
  shown.record.InsertItem(row.title);
  if (row.id > 0) shown.record.SetSubstring(1, std::to_wstring(row.id));
  if (row.colour.has_value()) shown.record.SetColor(*row.colour);
  if (row.checked.has_value()) shown.box = *row.checked ? kChecked : kUnchecked;
  return true;
}

void HostNode::DescribeCell(int column, TreeCell& cell) const {
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (kind->cell) cell = kind->cell(*this, column);
}

void HostNode::DescribeSuppliedCell(std::size_t place, int column, TreeCell& cell) const {
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (kind->rowCell) cell = kind->rowCell(*this, place, column);
}

void HostNode::PaintCell(int column, CDC& dc, const CRect& area) {
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (kind->paint) kind->paint(*this, column, dc, area);
}

void HostNode::RefreshCells() {
  if (!IsDetached() && HasOwnRow()) GetControl()->InvalidateRow(GetTreeItemHandle());
}

void HostNode::InsertRows(std::size_t place, std::size_t count) {
  const bool opened = SuppliesRows() || GetControl()->ItemHasChildren(GetTreeItemHandle());
  if (opened || !HasOwnRow()) return SupplyRows(place, count);
  PromiseChildren(1);
}

void HostNode::ChangeRows(std::size_t place, std::size_t count) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  const std::weak_ptr<void> life = GetControl()->Life();
  CQDTreeListCtrl& control = *GetControl();
  if (kind->rowCell) control.Invalidate();
  control.TellLaterChanged(control.GetChildAt(GetTreeItemHandle(), place), count);
  for (CQDTreeItem* child : Children()) {
    if (life.expired() || IsDetached() || !kind->row) return;
    if (child->IsDetached() || !child->GetTreeItemHandle()) continue;
    const std::size_t at = control.GetPlaceOf(child->GetTreeItemHandle());
    if (at >= place && at - place < count) static_cast<HostNode*>(child)->ShowAs(kind->row(*this, at));
  }
}

/// Shows what the host says of the row now; its key and whether it has a box stay.
void HostNode::ShowAs(const HostRow& row) {
  if (row.title != GetTitle()) ChangeTitle(row.title);
  if (row.id > 0 && row.id != GetID()) ChangeID(row.id);
  if (row.colour.has_value()) SetColour(*row.colour);
  if (row.checked.has_value()) SetChecked(*row.checked);
  ChangeImage(static_cast<int>(row.icon));
}

int HostNode::IsEnableDragType(std::uint16_t type) const {
  return m_kind->isDragged && type == kTakesDrops ? 1 : 0;
}

int HostNode::OnClickCheck(int oldState) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  SetChecked(oldState != kChecked);
  if (kind->switched) kind->switched(*this, oldState != kChecked);
  return 1;
}

void HostNode::OnEditChange(const wchar_t* text) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  const CString wanted = text;
  const std::weak_ptr<void> life = GetControl()->Life();
  const bool taken = kind->renamed && kind->renamed(*this, wanted);
  if (!life.expired() && !IsDetached() && taken) ChangeTitle(wanted);
}

void HostNode::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  std::vector<HostNode*> dragged;
  for (CQDTreeItem* node : nodes) {
    if (auto* own = dynamic_cast<HostNode*>(node)) dragged.push_back(own);
  }
  if (kind->dropped) kind->dropped(*this, dragged);
}

void HostNode::CreateContextMenu(CPoint& screen) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (!kind->menu) return;
  const std::weak_ptr<void> life = GetControl()->Life();
  CQDTreeMenu menu;
  for (const HostMenuEntry& entry : kind->menu(*this)) {
    if (entry.text.empty()) {
      menu.AddSeparator();
    } else {
      menu.Append({.kind = BCMenu::Entry::Kind::Command,
                   .id = entry.command,
                   .text = entry.text,
                   .checked = entry.checked});
    }
  }
  if (life.expired() || IsDetached() || menu.Entries().empty()) return;
  GetControl()->TrackMenu(menu, screen);
}

void HostNode::OnMenuEvent(unsigned command) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  if (kind->command) kind->command(*this, command);
}

void HostNode::SetPropertyView() {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::shared_ptr<const HostNodeKind> kind = m_kind;
  const std::weak_ptr<void> life = GetControl()->Life();
  CQDTreeItem::SetPropertyView();
  if (!life.expired() && !IsDetached() && kind->clicked) kind->clicked(*this);
}

}  // namespace qd

// Rows of the works tree whose nodes are made when they are looked at.

#include <utility>

#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

CQDTreeItem* CQDTreeListCtrl::NodeOf(HTREEITEM row) const {
  CQDTreeItem* made = MadeNodeOf(row);
  if (made != nullptr || !IsLater(row)) return made;
  static_cast<void>(GetRecord(row));
  return MadeNodeOf(row);
}

std::size_t CQDTreeListCtrl::PlaceOfLater(HTREEITEM row) const {
  if (m_asked.revision == Revision() && m_asked.row == row && IsLive(row)) return m_asked.place;
  const bool isNext =
      m_asked.revision == Revision() && IsLive(m_asked.row) && GetNextSiblingItem(m_asked.row) == row;
  m_asked = {row, isNext ? m_asked.place + 1 : GetPlaceOf(row), Revision()};
  return m_asked.place;
}

bool CQDTreeListCtrl::DescribeLater(HTREEITEM row, LaterRow& shown) const {
  const CQDTreeItem* above = SupplierOf(GetParentItem(row));
  return above != nullptr && above->m_supplies && above->DescribeSupplied(PlaceOfLater(row), shown);
}

bool CQDTreeListCtrl::KeepsOrder(HTREEITEM row) const {
  const CQDTreeItem* node = SupplierOf(row);
  return node != nullptr && node->m_supplies;
}

/// The host is asked what the row is, and may do anything meanwhile.
void CQDTreeListCtrl::OnMakeRecord(HTREEITEM row) {
  CQDTreeItem* above = SupplierOf(GetParentItem(row));
  if (above == nullptr || !above->m_supplies) return;
  const Handler handler(*this);
  const std::weak_ptr<void> life = Life();
  CQDTreeItem* node = above->MakeSupplied(PlaceOfLater(row));
  if (life.expired() || node == nullptr) return;
  if (!IsLater(row)) return CQDTreeItem::Destroy(node);
  GiveRecord(row, node->GetTitle(), node->IsEditable(), static_cast<int>(node->GetIconIndex()));
  ShowNode(node, row);
  node->TakeRow(row);
}

void CQDTreeListCtrl::SupplyRows(CQDTreeItem& node, std::size_t place, std::size_t count) {
  if (node.IsDetached() || count == 0 || (node.HasOwnRow() && !IsLive(node.m_row))) return;
  node.m_supplies = true;
  const HTREEITEM before = place == 0 ? HTREEITEM{} : GetChildAt(node.m_row, place - 1);
  HTREEITEM after = before ? before : kInsertFirst;
  if (place != 0 && !before) after = kInsertLast;
  InsertLater(node.m_row, after, count);
}

void CQDTreeListCtrl::TakeSupplied(CQDTreeItem& node, std::size_t place, std::size_t count) {
  if (!node.m_supplies) return;
  const Handler handler(*this);
  HTREEITEM row = GetChildAt(node.m_row, place);
  HTREEITEM first;  // of rows without nodes that stand side by side: they go at once
  HTREEITEM last;
  const auto flush = [&] {
    if (first) DeleteSiblings(first, last);
    first = {};
  };
  for (; row && count > 0; --count) {
    const HTREEITEM next = GetNextSiblingItem(row);
    if (CQDTreeItem* made = MadeNodeOf(row)) {
      flush();
      CQDTreeItem::Destroy(made);
    } else {
      if (!first) first = row;
      last = row;
    }
    row = next;
  }
  flush();
}

int CQDTreeListCtrl::MoveSupplied(CQDTreeItem& node, SuppliedRange rows, CQDTreeItem& target, std::size_t before) {
  if (!node.m_supplies || target.GetControl() != this || target.IsDetached()) return 0;
  std::vector<HTREEITEM> moving;
  HTREEITEM row = GetChildAt(node.m_row, rows.place);
  for (; row && moving.size() < rows.count; row = GetNextSiblingItem(row)) {
    if (row == target.m_row || (target.m_row && Rows().IsBelow(target.m_row, row))) return 0;
    moving.push_back(row);
  }
  const std::size_t count = static_cast<std::size_t>(GetChildCount(target.m_row));
  const bool ontoItself = &node == &target && before >= rows.place && before <= rows.place + rows.count;
  if (moving.size() != rows.count || before > count || ontoItself) return 0;
  const Handler handler(*this);
  target.m_supplies = true;
  HTREEITEM after = before == 0 ? kInsertFirst : GetChildAt(target.m_row, before - 1);
  for (const HTREEITEM from : moving) {
    CQDTreeItem* made = MadeNodeOf(from);
    after = CTreeListCtrl::MoveBranch(from, target.m_row, after, [this](HTREEITEM left, HTREEITEM to) {
      if (CQDTreeItem* moved = MadeNodeOf(left)) Rebind(moved, to);
    });
    if (made != nullptr && &node != &target) Reparent(made, &target);
  }
  return 1;
}

/// The rows below a root that has none itself.
void CQDTreeListCtrl::DeleteTopRows() {
  HTREEITEM last = GetRootItem();
  for (HTREEITEM next = last; next; next = GetNextSiblingItem(last)) last = next;
  if (last) DeleteSiblings(GetRootItem(), last);
}

}  // namespace qd

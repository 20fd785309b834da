// What columns that a host has added ask of nodes, and rows in the order of a column.

#include <algorithm>

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/treelist/RowSort.h"

namespace qd {

void CQDTreeListCtrl::DescribeCell(HTREEITEM row, int column, TreeCell& cell) const {
  const CQDTreeItem* above = SupplierOf(GetParentItem(row));
  if (above != nullptr && above->m_supplies) return above->DescribeSuppliedCell(PlaceOfLater(row), column, cell);
  if (const CQDTreeItem* node = MadeNodeOf(row)) node->DescribeCell(column, cell);
}

void CQDTreeListCtrl::PaintCell(HTREEITEM row, int column, CDC& dc, const CRect& area) {
  CQDTreeItem* node = NodeOf(row);
  if (node == nullptr) return;
  const Handler handler(*this);
  node->PaintCell(column, dc, area);
}

void CQDTreeListCtrl::SortByColumn(int column, int direction) {
  if (GetHeader().GetItem(column) == nullptr) return;
  m_sortedBy = {column, std::clamp(direction, -1, 1)};
  for (int other = 0; other < GetColumnsNum(); ++other) {
    GetHeader().SetItemSort(other, other == column ? m_sortedBy.direction : 0);
  }
  const Handler handler(*this);
  const std::weak_ptr<void> life = Life();
  std::vector<HTREEITEM> parents{{}};
  while (!parents.empty()) {
    const HTREEITEM parent = parents.back();
    parents.pop_back();
    if (parent && !IsLive(parent)) continue;
    SortBelow(parent);
    if (life.expired()) return;
    if (parent && !IsLive(parent)) continue;
    for (HTREEITEM row = GetChildItem(parent); row; row = GetNextSiblingItem(row)) {
      if (GetChildItem(row)) parents.push_back(row);
    }
  }
  const auto call = m_onSorted;
  if (call) call(m_sortedBy.column, m_sortedBy.direction);
}

/// The children of a row in the order in which their nodes were made; nothing when some have no nodes.
std::vector<HTREEITEM> CQDTreeListCtrl::AsMade(HTREEITEM parent) const {
  std::vector<HTREEITEM> rows;
  const CQDTreeItem* node = SupplierOf(parent);
  if (node == nullptr) return rows;
  for (const CQDTreeItem* child : node->Children()) {
    if (child->m_row && GetParentItem(child->m_row) == parent) rows.push_back(child->m_row);
  }
  if (rows.size() != static_cast<std::size_t>(GetChildCount(parent))) rows.clear();
  return rows;
}

/// Who is asked for cells may change rows, which then stay as they stand.
void CQDTreeListCtrl::SortBelow(HTREEITEM parent) {
  if (KeepsOrder(parent)) return;
  const int direction = m_sortedBy.direction;
  std::vector<HTREEITEM> rows = AsMade(parent);
  if (rows.empty()) return;
  if (direction != 0) {
    const std::weak_ptr<void> life = Life();
    const std::uint64_t revision = Revision();
    std::vector<TreeCell> cells;
    cells.reserve(rows.size());
    for (const HTREEITEM row : rows) {
      cells.push_back(GetCell(row, m_sortedBy.column));
      if (life.expired() || Revision() != revision) return;
    }
    const std::vector<std::uint32_t> order = OrderOfCells(cells, direction);
    std::vector<HTREEITEM> sorted(rows.size());
    std::transform(order.begin(), order.end(), sorted.begin(), [&rows](std::uint32_t at) { return rows[at]; });
    rows = std::move(sorted);
  }
  Rows().ReorderChildren(parent, rows);
  ScheduleLayout();
  Invalidate();
}

}  // namespace qd

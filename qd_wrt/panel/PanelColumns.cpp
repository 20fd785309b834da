// The columns of a panel: what a host adds, and what its users make of them.

#include <algorithm>

#include "host/CMSGFunction.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd {

namespace {

/// Commands of the captions' menu; above them the numbers of columns are counted.
enum ColumnCommand : unsigned { kMoveLeft = 1, kMoveRight, kReset, kFirstColumn = 0x100 };

BCMenu::Entry Entry(unsigned command, const char* key) {
  return {.id = command, .text = CMSGFunction::GetValue(key)};
}

}  // namespace

int CWorksTreeBar::AddColumn(const TreeColumn& column) {
  const int index = m_tree.AddColumn(column);
  m_offersColumns = true;
  StretchWidth();
  return index;
}

int CWorksTreeBar::RemoveLastColumn() {
  if (m_tree.RemoveLastColumn() == 0) return 0;
  StretchWidth();
  return 1;
}

void CWorksTreeBar::SetColumnTitle(int column, const CString& title) {
  if (m_tree.GetHeader().GetItem(column) == nullptr) return;
  const auto at = static_cast<std::size_t>(column);
  if (at >= m_ownTitles.size()) m_ownTitles.resize(at + 1);
  m_ownTitles[at] = true;
  m_tree.GetHeader().SetItemText(column, title);
}

int CWorksTreeBar::ShowColumns(const std::vector<int>& columns) {
  if (m_tree.ShowColumns(columns) == 0) return 0;
  StretchWidth();
  return 1;
}

ColumnLayout CWorksTreeBar::GetColumnLayout() const {
  ColumnLayout layout{.widths = GetColumnWidths(), .order = m_tree.GetShownColumns()};
  if (layout.order == m_tree.GetColumns().ShownAtFirst()) layout.order.clear();
  layout.sorted = m_tree.GetSortedColumn();
  layout.descending = m_tree.GetSortDirection() < 0;
  return layout;
}

void CWorksTreeBar::SetColumnLayout(const ColumnLayout& layout) {
  SetColumnWidths(layout.widths);
  ShowColumns(layout.order.empty() ? m_tree.GetColumns().ShownAtFirst() : layout.order);
  if (m_tree.GetColumns().IsSortable(layout.sorted)) {
    m_tree.SortByColumn(layout.sorted, layout.descending ? -1 : 1);
  } else if (m_tree.GetSortedColumn() >= 0) {
    m_tree.SortByColumn(m_tree.GetSortedColumn(), 0);
  }
}

void CWorksTreeBar::OnCaptionClicked(int column) {
  if (!m_tree.GetColumns().IsSortable(column)) return;
  m_tree.EndEditors();
  const int now = m_tree.GetSortedColumn() == column ? m_tree.GetSortDirection() : 0;
  m_tree.SortByColumn(column, now == 0 ? 1 : now == 1 ? -1 : 0);
}

/// The title is always there, on the left.
void CWorksTreeBar::ShowColumnMenu(int column, CPoint screen) {
  BCMenu menu;
  std::vector<int> shown = m_tree.GetShownColumns();
  for (int other = 1; other < m_tree.GetColumnsNum(); ++other) {
    const CString& title = m_tree.GetHeader().GetItem(other)->text;
    menu.Append({.id = kFirstColumn + static_cast<unsigned>(other),
                 .text = title.empty() ? std::to_wstring(other + 1) : title,
                 .checked = std::find(shown.begin(), shown.end(), other) != shown.end()});
  }
  auto place = std::find(shown.begin(), shown.end(), column) - shown.begin();
  const auto count = static_cast<std::ptrdiff_t>(shown.size());
  menu.Append({.kind = BCMenu::Entry::Kind::Separator, .text = {}});
  if (place > 1 && place < count) menu.Append(Entry(kMoveLeft, "IDS_QD_WRT_COLUMN_LEFT"));
  if (place > 0 && place < count - 1) menu.Append(Entry(kMoveRight, "IDS_QD_WRT_COLUMN_RIGHT"));
  menu.Append(Entry(kReset, "IDS_QD_WRT_COLUMNS_RESET"));
  const std::weak_ptr<void> life = Life();
  const unsigned chosen = menu.Track(screen, *this);
  // Anything may have changed meanwhile; what is no list of columns any more is refused.
  if (life.expired() || chosen == 0) return;
  if (chosen == kReset) {
    shown = m_tree.GetColumns().ShownAtFirst();
  } else if (chosen == kMoveLeft || chosen == kMoveRight) {
    std::swap(shown[static_cast<std::size_t>(place)],
              shown[static_cast<std::size_t>(chosen == kMoveLeft ? place - 1 : place + 1)]);
  } else if (const int other = static_cast<int>(chosen - kFirstColumn); std::erase(shown, other) == 0) {
    shown.push_back(other);
  }
  ShowColumns(shown);
}

}  // namespace qd

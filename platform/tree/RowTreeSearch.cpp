// The part of the row tree that follows a search: which rows are found, shown and hidden.

#include <algorithm>
#include <utility>

#include "platform/tree/RowTree.h"

namespace qd {

void RowTree::AddFound(RowSearch& search, std::uint32_t number) const {
  search.found.Set(number, true);
  if (search.filters) AddShown(search, number);
}

void RowTree::AddShown(RowSearch& search, Index number) const {
  if (search.shownChildren.size() < m_rows.size()) search.shownChildren.resize(m_rows.size());
  // What is shown already has all above it shown.
  for (Index at = number; at != 0 && !search.shown.Has(at);) {
    search.shown.Set(at, true);
    at = m_rows[at].parent;
    if (++search.shownChildren[at] == 1) search.opened.Set(at, true);
  }
}

void RowTree::ShowSearch(RowSearch search) {
  if (search.filters) search.shownChildren.resize(m_rows.size());
  const bool goesOn = search.goesOn && IsFiltered() && search.filters;
  if (goesOn) {
    m_search->pinned.ForEach([&](Index number) {
      search.pinned.Set(number, true);
      AddShown(search, number);
    });
  } else if (search.filters || IsFiltered()) {
    if (m_search != nullptr) m_expanded = m_search->openBefore;
  }
  if (m_search != nullptr) {
    search.openBefore = std::move(m_search->openBefore);
    search.fresh = std::move(m_search->fresh);
  } else {
    search.openBefore = m_expanded;
  }
  if (!goesOn) {
    m_expanded.Add(search.opened);
  } else {
    // What was shown before and closed since stays closed.
    const std::vector<std::uint32_t>& before = m_search->shownChildren;
    search.opened.ForEach([&](Index index) {
      if (index >= before.size() || before[index] == 0) m_expanded.Set(index, true);
    });
  }
  search.opened = {};
  m_search = std::make_unique<RowSearch>(std::move(search));
  ShowAll();
}

void RowTree::EndSearch() {
  if (m_search == nullptr) return;
  m_expanded = std::move(m_search->openBefore);
  m_search.reset();
  ShowAll();
}

void RowTree::OpenBefore(HTREEITEM row) {
  const Index index = Slot(row);
  if (m_search != nullptr && index != 0 && BranchOf(index).children != 0) m_search->openBefore.Set(index, true);
}

/// Brings the order up to date with what is open and searched.
void RowTree::ShowAll() {
  static constexpr std::uint64_t kNothing = 0;
  OrderIndex::Outcome outcome{m_expanded.Words(), {}, {}};
  if (m_search != nullptr) outcome.found = m_search->found.Words();
  if (IsFiltered()) outcome.shown = m_search->shown.Words();
  if (IsFiltered() && outcome.shown.empty()) outcome.shown = {&kNothing, 1};
  m_order.Show(outcome);
}

/// Whether a filter has a reason to show a row.
bool RowTree::IsWanted(Index index) const {
  return m_search->found.Has(index) || m_search->pinned.Has(index) ||
         (index < m_search->shownChildren.size() && m_search->shownChildren[index] != 0);
}

void RowTree::SetFound(HTREEITEM row, bool on) {
  const Index index = Slot(row);
  if (m_search == nullptr || index == 0 || m_search->found.Has(index) == on) return;
  m_search->found.Set(index, on);
  m_order.SetFound(index, on);
  if (!m_search->filters) return;
  on ? ShowBranch(index) : HideBranch(index);
}

void RowTree::Pin(HTREEITEM row) {
  const Index index = Slot(row);
  if (!IsFilteredOut(index)) return;
  m_search->pinned.Set(index, true);
  ShowBranch(index);
}

/// Shows a row that is wanted now, with what stands above it. What was shown for itself only is opened.
void RowTree::ShowBranch(Index index) {
  if (m_search->shownChildren.size() < m_rows.size()) m_search->shownChildren.resize(m_rows.size());
  while (index != 0 && !m_search->shown.Has(index)) {
    m_search->shown.Set(index, true);
    m_order.Hide(index, false);
    index = m_rows[index].parent;
    if (++m_search->shownChildren[index] != 1 || index == 0) continue;
    if (m_expanded.Has(index)) continue;
    m_expanded.Set(index, true);
    m_order.Open(index, true);
  }
}

/// Hides a row that is not wanted any more, and those above it that were shown for its sake.
void RowTree::HideBranch(Index index) {
  while (index != 0 && !IsWanted(index)) {
    m_search->shown.Set(index, false);
    m_order.Hide(index, true);
    index = m_rows[index].parent;
    if (--m_search->shownChildren[index] != 0) return;
  }
}

/// Forgets a row that is gone.
void RowTree::LeaveSearch(Index index) {
  for (RowBits* bits :
       {&m_search->found, &m_search->pinned, &m_search->shown, &m_search->openBefore, &m_search->fresh}) {
    bits->Set(index, false);
  }
  if (index < m_search->shownChildren.size()) m_search->shownChildren[index] = 0;
}

void RowTree::SelectFound() {
  if (m_search == nullptr) return;
  RowBits above;
  bool opens = false;
  m_search->found.ForEach([&](Index index) {
    for (Index at = m_rows[index].parent; at != 0 && !above.Has(at); at = m_rows[at].parent) {
      above.Set(at, true);
      opens = opens || !m_expanded.Has(at);
      SetOpen(at, true);
    }
  });
  if (opens) ShowAll();
  m_order.SelectFound();
}

RowBits RowTree::SelectedBits() const {
  std::vector<Index> rows;
  rows.reserve(m_order.SelectedCount());
  m_order.AppendSelected(false, rows);
  RowBits bits;
  if (!rows.empty()) bits.Reserve(m_rows.size());
  for (const Index row : rows) bits.Set(row, true);
  return bits;
}

void RowTree::SelectAlso(const RowBits& rows) {
  constexpr std::size_t kFewOf = 32;  // one in so many rows
  if (rows.Count() > m_count / kFewOf) return m_order.SelectAlso(rows.Words());
  rows.ForEach([this](Index index) {
    if (RowOf(index)) m_order.Select(index, true);
  });
}

std::size_t RowTree::ShownChildCount(HTREEITEM row) const {
  if (!IsFiltered()) return ChildCount(row);
  const Index index = Slot(row);
  return index < m_search->shownChildren.size() ? m_search->shownChildren[index] : 0;
}

HTREEITEM RowTree::NextShown(HTREEITEM row) const {
  Index next = At(row).next;
  if (!IsFilteredOut(next)) return Handle(next);
  if (m_order.IsVisible(Slot(row))) {
    // The row behind all that shows below this one, if it has the same parent.
    const Index behind = m_order.RowAt(m_order.PositionBehind(Slot(row)));
    return Handle(behind != 0 && m_rows[behind].parent == At(row).parent ? behind : 0);
  }
  while (IsFilteredOut(next)) next = m_rows[next].next;
  return Handle(next);
}

HTREEITEM RowTree::PreviousShown(HTREEITEM row) const {
  Index previous = At(row).previous;
  if (!IsFilteredOut(previous)) return Handle(previous);
  if (const std::size_t position = m_order.Position(Slot(row)); m_order.IsVisible(Slot(row))) {
    // The row in front is that sibling, stands below it, or is the parent.
    Index before = position == 0 ? 0 : m_order.RowAt(position - 1);
    while (m_rows[before].level > At(row).level) before = m_rows[before].parent;
    return Handle(m_rows[before].level == At(row).level ? before : 0);
  }
  while (IsFilteredOut(previous)) previous = m_rows[previous].previous;
  return Handle(previous);
}

}  // namespace qd

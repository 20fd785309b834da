#include "platform/tree/RowTree.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "platform/tree/Room.h"
#include "platform/tree/StableMerge.h"

namespace qd {

RowTree::RowTree() : m_rows(1), m_branches(1) {
  m_expanded.Set(0, true);
}

RowTree::Index RowTree::Slot(HTREEITEM row) const {
  const auto index = static_cast<Index>(row.value);
  if (index == 0 || index >= m_rows.size()) return 0;
  return m_rows[index].live && m_rows[index].generation == row.value >> 32U ? index : 0;
}

RowTree::Row& RowTree::At(HTREEITEM row) {
  assert(!row || IsPlace(row) || Slot(row) != 0);
  return m_rows[Slot(row)];
}

const RowTree::Row& RowTree::At(HTREEITEM row) const {
  assert(!row || IsPlace(row) || Slot(row) != 0);
  return m_rows[Slot(row)];
}

HTREEITEM RowTree::Handle(Index index) const {
  if (index == 0) return {};
  return {static_cast<std::uint64_t>(m_rows[index].generation) << 32U | index};
}

RowTree::Index RowTree::NewRow() {
  Index index = 0;
  if (m_free.empty()) {
    index = static_cast<Index>(m_rows.size());
    MakeRoom(m_rows, m_rows.size() + 1);
    m_rows.emplace_back();
  } else {
    index = m_free.back();
    m_free.pop_back();
  }
  m_rows[index].live = true;
  if (m_search != nullptr) m_search->fresh.Set(index, true);
  ++m_count;
  return index;
}

void RowTree::FreeRow(Index index) {
  FreeBranch(index);
  const std::uint32_t generation = m_rows[index].generation + 1;
  m_rows[index] = Row{};
  m_rows[index].generation = generation;
  m_expanded.Set(index, false);
  if (m_search != nullptr) LeaveSearch(index);
  --m_count;
  // A slot whose generations are used up is left empty, so that no handle ever comes back.
  if (generation != 0xFFFFFFFFU) m_free.push_back(index);
}

RowTree::Branch& RowTree::NeedBranch(Index index) {
  Index& branch = m_rows[index].branch;
  if (branch == 0 && m_freeBranches.empty()) {
    branch = static_cast<Index>(m_branches.size());
    m_branches.emplace_back();
  } else if (branch == 0) {
    branch = m_freeBranches.back();
    m_freeBranches.pop_back();
  }
  return m_branches[branch];
}

void RowTree::FreeBranch(Index index) {
  const Index branch = std::exchange(m_rows[index].branch, 0);
  if (branch == 0) return;
  m_branches[branch] = {};
  m_freeBranches.push_back(branch);
}

/// The child of `above` that new rows stand behind, 0 for the front.
RowTree::Index RowTree::BeforeNew(Index above, HTREEITEM after) const {
  if (after == kInsertFirst) return 0;
  const Index before = IsPlace(after) ? 0 : Slot(after);
  return before != 0 && m_rows[before].parent == above ? before : BranchOf(above).last;
}

/// Links a new row in behind the child `before` of `above`.
void RowTree::FillRow(Index fresh, Index above, Index before, std::uint64_t word) {
  Row& row = m_rows[fresh];
  row.parent = above;
  row.level = above == 0 ? 0 : m_rows[above].level + 1;
  row.word = word;
  row.previous = before;
  Branch& branch = NeedBranch(above);
  row.next = before == 0 ? branch.first : m_rows[before].next;
  (row.previous == 0 ? branch.first : m_rows[row.previous].next) = fresh;
  (row.next == 0 ? branch.last : m_rows[row.next].previous) = fresh;
  ++branch.children;
}

/// A filter shows a row when it is known to match.
OrderIndex::Fresh RowTree::FreshBelow(Index above, Index before) const {
  if (before != 0) return {CollapsedAbove(before), IsFiltered()};
  return {(above == 0 ? 0 : CollapsedAbove(above)) + (m_expanded.Has(above) ? 0 : 1), IsFiltered()};
}

HTREEITEM RowTree::Insert(HTREEITEM parent, HTREEITEM after, int image, int selectedImage, std::uint64_t word) {
  if (IsPlace(parent)) parent = {};
  if (parent && Slot(parent) == 0) return {};
  const Index above = Slot(parent);
  const Index before = BeforeNew(above, after);
  const Index fresh = NewRow();
  FillRow(fresh, above, before, word);
  m_rows[fresh].image = static_cast<std::uint16_t>(image);
  m_rows[fresh].selectedImage = static_cast<std::uint16_t>(selectedImage);
  if (before != 0) {
    m_order.InsertAfter(fresh, before, FreshBelow(above, before));
  } else {
    m_order.InsertFirst(fresh, above, FreshBelow(above, 0), m_expanded.Has(above));
  }
  return Handle(fresh);
}

HTREEITEM RowTree::InsertMany(HTREEITEM parent, HTREEITEM after, std::size_t count, std::uint64_t word) {
  if (IsPlace(parent)) parent = {};
  if (count == 0 || (parent && Slot(parent) == 0)) return {};
  const Index above = Slot(parent);
  const Index before = BeforeNew(above, after);
  const OrderIndex::Fresh about = FreshBelow(above, before);
  MakeRoom(m_rows, m_rows.size() + count - std::min(count, m_free.size()));
  std::vector<OrderIndex::Row> fresh(count);
  for (Index last = before; OrderIndex::Row & row : fresh) {
    row = NewRow();
    FillRow(row, above, std::exchange(last, row), word);
  }
  m_order.InsertMany(fresh, before, above, about, m_expanded.Has(above));
  return Handle(fresh.front());
}

std::size_t RowTree::EraseSiblings(HTREEITEM first, HTREEITEM last,
                                   const std::function<void(HTREEITEM, std::uint64_t)>& onRow) {
  const Index from = Slot(first);
  const Index to = Slot(last);
  if (from == 0 || to == 0) return 0;
  const Index above = m_rows[from].parent;
  const Index behind = m_rows[to].next;
  std::uint32_t count = 0;
  std::uint32_t shown = 0;
  for (Index at = from; at != behind; at = m_rows[at].next) {
    ++count;
    if (IsFiltered() && m_search->shown.Has(at)) ++shown;
  }
  const Index before = m_rows[from].previous;
  Branch& branch = NeedBranch(above);
  (before == 0 ? branch.first : m_rows[before].next) = behind;
  (behind == 0 ? branch.last : m_rows[behind].previous) = before;
  branch.children -= count;
  if (branch.children == 0) FreeBranch(above);
  m_order.RemoveRange(from, to);
  if (shown != 0 && (m_search->shownChildren[above] -= shown) == 0) HideBranch(above);
  std::size_t removed = 0;
  // Children first: go down to the first leaf, free it, go on with its next sibling or its parent.
  for (Index at = from; at != behind;) {
    while (BranchOf(at).first != 0) at = BranchOf(at).first;
    const Index next = m_rows[at].next;
    const Index parent = m_rows[at].parent;
    const HTREEITEM handle = Handle(at);
    const std::uint64_t word = m_rows[at].word;
    FreeRow(at);
    ++removed;
    if (onRow) onRow(handle, word);
    if (parent == above) {
      at = next;
      continue;
    }
    NeedBranch(parent).first = next;
    at = next != 0 ? next : parent;
  }
  return removed;
}

void RowTree::Clear(const std::function<void(std::uint64_t)>& onRow) {
  EraseSiblings(First(), Handle(BranchOf(0).last), [&onRow](HTREEITEM, std::uint64_t word) { onRow(word); });
}

bool RowTree::IsBelow(HTREEITEM row, HTREEITEM ancestor) const {
  const Index top = Slot(ancestor);
  const Index at = Slot(row);
  return top != 0 && at != 0 && m_rows[at].level > m_rows[top].level && m_order.IsBelow(at, top);
}

bool RowTree::ShowsBelow(HTREEITEM row, HTREEITEM ancestor) const {
  return IsBelow(row, ancestor) &&
         m_order.HiddenBy(Slot(row)) == CollapsedAbove(ancestor) + (IsExpanded(ancestor) ? 0 : 1);
}

void RowTree::SetImages(HTREEITEM row, int image, int selectedImage) {
  At(row).image = static_cast<std::uint16_t>(image);
  At(row).selectedImage = static_cast<std::uint16_t>(selectedImage);
}

unsigned RowTree::State(HTREEITEM row, unsigned mask) const {
  unsigned state = At(row).state;
  if ((mask & kRowSelected) != 0 && IsSelected(row)) state |= kRowSelected;
  if ((mask & kRowExpanded) != 0 && IsExpanded(row)) state |= kRowExpanded;
  return state & mask;
}

void RowTree::SetState(HTREEITEM row, unsigned state, unsigned mask) {
  if ((mask & kRowExpanded) != 0) SetExpanded(row, (state & kRowExpanded) != 0);
  if ((mask & kRowSelected) != 0) m_order.Select(Slot(row), (state & kRowSelected) != 0);
  mask &= ~static_cast<unsigned>(kRowExpanded | kRowSelected | kRowFocused);
  Row& at = At(row);
  at.state = static_cast<std::uint16_t>((at.state & ~mask) | (state & mask));
}

bool RowTree::SetExpanded(HTREEITEM row, bool expanded) {
  const Index index = Slot(row);
  if (expanded == m_expanded.Has(index) || (expanded && BranchOf(index).children == 0)) return false;
  SetOpen(index, expanded);
  m_order.Open(index, expanded);
  return true;
}

/// Writes down that a branch is open or not; the order is the caller's matter.
void RowTree::SetOpen(Index index, bool open) {
  m_expanded.Set(index, open);
  if (m_search != nullptr && m_search->fresh.Has(index)) m_search->openBefore.Set(index, open);
}

void RowTree::ExpandAll(std::span<const HTREEITEM> innermostFirst) {
  std::vector<OrderIndex::Row> rows(innermostFirst.size());
  std::transform(innermostFirst.begin(), innermostFirst.end(), rows.begin(),
                 [this](HTREEITEM row) { return Slot(row); });
  for (const Index row : rows) SetOpen(row, true);
  m_order.OpenAll(rows);
}

HTREEITEM RowTree::NearestVisible(HTREEITEM row) const {
  Index index = Slot(row);
  while (IsFilteredOut(index)) index = m_rows[index].parent;
  return Handle(index == 0 ? 0 : m_order.NearestVisible(index));
}

HTREEITEM RowTree::PreviousVisible(HTREEITEM row) const {
  const std::size_t position = Position(row);
  return position == 0 ? HTREEITEM{} : RowAt(position - 1);
}

std::vector<HTREEITEM> RowTree::Selected(bool visibleOnly) const {
  std::vector<OrderIndex::Row> rows;
  rows.reserve(visibleOnly ? m_order.VisibleSelectedCount() : m_order.SelectedCount());
  m_order.AppendSelected(visibleOnly, rows);
  std::vector<HTREEITEM> handles(rows.size());
  std::transform(rows.begin(), rows.end(), handles.begin(), [this](Index index) { return Handle(index); });
  return handles;
}

std::vector<HTREEITEM> RowTree::SelectedBelow(HTREEITEM row) const {
  std::vector<OrderIndex::Row> rows;
  m_order.AppendSelectedBelow(Slot(row), rows);
  std::vector<HTREEITEM> handles(rows.size());
  std::transform(rows.begin(), rows.end(), handles.begin(), [this](Index index) { return Handle(index); });
  return handles;
}

void RowTree::SortChildren(HTREEITEM parent, const std::function<int(std::uint64_t, std::uint64_t)>& compare) {
  std::vector<HTREEITEM> order;
  order.reserve(ChildCount(parent));
  for (HTREEITEM child = parent ? FirstChild(parent) : First(); child; child = NextSibling(child)) {
    order.push_back(child);
  }
  const auto byWord = [&](HTREEITEM a, HTREEITEM b) { return compare(Word(a), Word(b)); };
  if (StableMerge(order, byWord)) ReorderChildren(parent, order);
}

void RowTree::ReorderChildren(HTREEITEM parent, const std::vector<HTREEITEM>& children) {
  if (children.empty()) return;
  std::vector<OrderIndex::Row> rows(children.size());
  std::transform(children.begin(), children.end(), rows.begin(), [this](HTREEITEM row) { return Slot(row); });
  Branch& above = NeedBranch(Slot(parent));
  assert(above.children == rows.size());
  Index previous = 0;
  for (const Index row : rows) {
    m_rows[row].previous = previous;
    (previous == 0 ? above.first : m_rows[previous].next) = row;
    previous = row;
  }
  m_rows[previous].next = 0;
  above.last = previous;
  m_order.Reorder(Slot(parent), rows);
}

std::size_t RowTree::MemoryUsed() const {
  return m_rows.capacity() * sizeof(Row) + m_branches.capacity() * sizeof(Branch) +
         (m_free.capacity() + m_freeBranches.capacity()) * sizeof(Index) + m_order.MemoryUsed() +
         m_expanded.MemoryUsed() + (m_search != nullptr ? m_search->MemoryUsed() : 0);
}

bool RowTree::IsConsistent() const {
  if (!m_order.IsConsistent()) return false;
  if (m_search == nullptr) return m_order.FoundCount() == 0;
  // What is shown is found, pinned, or has children that are.
  std::vector<std::uint32_t> children(m_rows.size());
  for (Index index = 1; index < m_rows.size(); ++index) {
    const bool live = m_rows[index].live;
    if (!live && (m_search->shown.Has(index) || m_search->found.Has(index))) return false;
    if (!live || !m_search->filters) continue;
    if (m_search->shown.Has(index) != IsWanted(index)) return false;
    if (m_search->found.Has(index) != m_order.IsFound(index)) return false;
    if (m_search->shown.Has(index)) ++children[m_rows[index].parent];
  }
  for (Index index = 1; m_search->filters && index < m_rows.size(); ++index) {
    if (m_rows[index].live && children[index] != ShownChildCount(Handle(index))) return false;
  }
  return true;
}

}  // namespace qd

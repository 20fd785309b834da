#include "platform/tree/RowTree.h"

#include <algorithm>
#include <cassert>

#include "platform/tree/StableMerge.h"

namespace qd {

RowTree::RowTree() : m_rows(1) {
  m_rows[0].state = kRowExpanded;
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
    m_rows.emplace_back();
  } else {
    index = m_free.back();
    m_free.pop_back();
  }
  m_rows[index].live = true;
  ++m_count;
  return index;
}

void RowTree::FreeRow(Index index) {
  const std::uint32_t generation = m_rows[index].generation + 1;
  m_rows[index] = Row{};
  m_rows[index].generation = generation;
  --m_count;
  // A slot whose generations are used up is left empty, so that no handle ever comes back.
  if (generation != 0xFFFFFFFFU) m_free.push_back(index);
}

HTREEITEM RowTree::Insert(HTREEITEM parent, HTREEITEM after, int image, int selectedImage, std::uint64_t word) {
  if (IsPlace(parent)) parent = {};
  if (parent && Slot(parent) == 0) return {};
  const Index above = Slot(parent);
  Index before = 0;
  if (after != kInsertFirst) {
    before = IsPlace(after) ? 0 : Slot(after);
    if (before == 0 || m_rows[before].parent != above) before = m_rows[above].last;
  }
  const Index fresh = NewRow();
  Row& row = m_rows[fresh];
  row.parent = above;
  row.level = above == 0 ? 0 : m_rows[above].level + 1;
  row.image = static_cast<std::uint16_t>(image);
  row.selectedImage = static_cast<std::uint16_t>(selectedImage);
  row.word = word;
  row.previous = before;
  row.next = before == 0 ? m_rows[above].first : m_rows[before].next;
  (row.previous == 0 ? m_rows[above].first : m_rows[row.previous].next) = fresh;
  (row.next == 0 ? m_rows[above].last : m_rows[row.next].previous) = fresh;
  ++m_rows[above].children;
  if (before != 0) {
    m_order.InsertAfter(fresh, before, m_order.CollapsedAbove(before));
  } else {
    const int collapsed = above == 0 ? 0 : m_order.CollapsedAbove(above);
    m_order.InsertFirst(fresh, above, collapsed + ((m_rows[above].state & kRowExpanded) != 0 ? 0 : 1));
  }
  return Handle(fresh);
}

void RowTree::Unlink(Index index) {
  const Row& row = m_rows[index];
  (row.previous == 0 ? m_rows[row.parent].first : m_rows[row.previous].next) = row.next;
  (row.next == 0 ? m_rows[row.parent].last : m_rows[row.next].previous) = row.previous;
  --m_rows[row.parent].children;
}

std::size_t RowTree::Erase(HTREEITEM row, const std::function<void(HTREEITEM, std::uint64_t)>& onRow) {
  const Index top = Slot(row);
  if (top == 0) return 0;
  Unlink(top);
  m_order.Remove(top);
  std::size_t removed = 0;
  // Children first: go down to the first leaf, free it, go on with its next sibling or its parent.
  for (Index at = top;;) {
    while (m_rows[at].first != 0) at = m_rows[at].first;
    const Index next = at == top ? 0 : m_rows[at].next;
    const Index parent = m_rows[at].parent;
    const bool done = at == top;
    const HTREEITEM handle = Handle(at);
    const std::uint64_t word = m_rows[at].word;
    FreeRow(at);
    ++removed;
    if (onRow) onRow(handle, word);
    if (done) return removed;
    m_rows[parent].first = next;
    at = next != 0 ? next : parent;
  }
}

void RowTree::Clear(const std::function<void(std::uint64_t)>& onRow) {
  while (First()) Erase(First(), [&onRow](HTREEITEM, std::uint64_t word) { onRow(word); });
}

bool RowTree::IsBelow(HTREEITEM row, HTREEITEM ancestor) const {
  const Index top = Slot(ancestor);
  const Index at = Slot(row);
  return top != 0 && at != 0 && m_rows[at].level > m_rows[top].level && m_order.IsBelow(at, top);
}

bool RowTree::ShowsBelow(HTREEITEM row, HTREEITEM ancestor) const {
  return IsBelow(row, ancestor) && m_order.CollapsedAbove(Slot(row)) == m_order.CollapsedAbove(At(ancestor).first);
}

void RowTree::SetImages(HTREEITEM row, int image, int selectedImage) {
  At(row).image = static_cast<std::uint16_t>(image);
  At(row).selectedImage = static_cast<std::uint16_t>(selectedImage);
}

unsigned RowTree::State(HTREEITEM row, unsigned mask) const {
  unsigned state = At(row).state;
  if ((mask & kRowSelected) != 0 && IsSelected(row)) state |= kRowSelected;
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
  Row& at = At(row);
  if (expanded == ((at.state & kRowExpanded) != 0) || (expanded && at.children == 0)) return false;
  at.state = static_cast<std::uint16_t>(at.state ^ kRowExpanded);
  m_order.Open(Slot(row), expanded);
  return true;
}

void RowTree::ExpandAll(std::span<const HTREEITEM> innermostFirst) {
  std::vector<OrderIndex::Row> rows(innermostFirst.size());
  std::transform(innermostFirst.begin(), innermostFirst.end(), rows.begin(),
                 [this](HTREEITEM row) { return Slot(row); });
  for (const Index row : rows) m_rows[row].state |= kRowExpanded;
  m_order.OpenAll(rows);
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
  Row& above = At(parent);
  assert(above.children == rows.size());
  Index previous = 0;
  for (const Index row : rows) {
    m_rows[row].previous = previous;
    (previous == 0 ? above.first : m_rows[previous].next) = row;
    previous = row;
  }
  m_rows[previous].next = 0;
  above.last = previous;
  m_order.Reorder(rows);
}

std::size_t RowTree::MemoryUsed() const {
  return m_rows.capacity() * sizeof(Row) + m_free.capacity() * sizeof(Index) + m_order.MemoryUsed();
}

bool RowTree::IsConsistent() const {
  return m_order.IsConsistent();
}

}  // namespace qd

#include "platform/tree/OrderIndex.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace qd {

void OrderIndex::Sum::Add(const Sum& other) {
  entries += other.entries;
  selected += other.selected;
  if (other.atLeast == 0 || (atLeast != 0 && other.least > least)) return;
  if (atLeast != 0 && other.least == least) {
    atLeast += other.atLeast;
    selectedAtLeast += other.selectedAtLeast;
    return;
  }
  least = other.least;
  atLeast = other.atLeast;
  selectedAtLeast = other.selectedAtLeast;
}

OrderIndex::OrderIndex() : m_nodes(1), m_contents(1) {}

// ---- changing the order ---------------------------------------------------------------------------------

void OrderIndex::InsertFirst(Row row, Row parent, int collapsedAbove) {
  Reserve(row);
  if (parent == 0) {
    Block first = m_root;
    while (first != 0 && m_nodes[first].left != 0) first = m_nodes[first].left;
    if (first == 0) {
      m_root = NewBlock();
      first = m_root;
    }
    InsertEntry(Open(row), {first, 0}, collapsedAbove);
    return;
  }
  if (m_closeHome[parent] == 0) InsertBehind(Close(parent), Open(parent), CollapsedAbove(parent));
  InsertBehind(Open(row), Open(parent), collapsedAbove);
}

void OrderIndex::InsertAfter(Row row, Row sibling, int collapsedAbove) {
  Reserve(row);
  InsertBehind(Open(row), LastEntryOf(sibling), collapsedAbove);
}

void OrderIndex::Remove(Row row) {
  if (m_closeHome[row] == 0) {
    const Place place = Find(Open(row));
    // The row's parent closes right behind its opening entry once its only child goes.
    Entry parentClose = 0;
    if (place.index + 1 < m_contents[place.block].count) {
      parentClose = m_contents[place.block].entry[place.index + 1];
    } else if (const Block next = NextBlock(place.block); next != 0) {
      parentClose = m_contents[next].entry[0];
    }
    EraseEntry(Open(row));
    if (parentClose != 0 && !IsOpen(parentClose) && RankOf(parentClose) == RankOf(parentClose - 1) + 1) {
      EraseEntry(parentClose);
    }
    return;
  }
  const std::size_t first = RankOf(Open(row));
  const std::size_t last = RankOf(Close(row));
  Cut tail = CutTree(m_root, last + 1);
  Cut head = CutTree(tail.left, first);
  FreeTree(head.right);
  Block follower = tail.right;
  while (follower != 0 && m_nodes[follower].left != 0) follower = m_nodes[follower].left;
  const Entry parentClose = follower != 0 ? m_contents[follower].entry[0] : 0;
  m_root = Join(head.left, tail.right);
  if (parentClose != 0 && !IsOpen(parentClose) && RankOf(parentClose) == RankOf(parentClose - 1) + 1) {
    EraseEntry(parentClose);
  }
}

void OrderIndex::Reorder(std::span<const Row> children) {
  if (children.size() < 2) return;
  std::size_t first = std::numeric_limits<std::size_t>::max();
  std::size_t last = 0;
  for (const Row child : children) {
    first = std::min(first, RankOf(Open(child)));
    last = std::max(last, RankOf(LastEntryOf(child)));
  }
  constexpr std::size_t kEntriesWorthOneCut = 200;
  if (last - first < children.size() * kEntriesWorthOneCut) {
    ReorderByCopy(children, first, last);
  } else {
    ReorderByCut(children, first, last);
  }
}

void OrderIndex::ReorderByCopy(std::span<const Row> children, std::size_t first, std::size_t last) {
  std::vector<Entry> entries;
  std::vector<int> collapsed;
  std::vector<char> selected;
  entries.reserve(last - first + 1);
  collapsed.reserve(last - first + 1);
  selected.reserve(last - first + 1);
  for (const Row child : children) {
    const Entry end = LastEntryOf(child);
    Place at = Find(Open(child));
    for (int above = RaiseAbove(at.block);;) {
      const Content& content = m_contents[at.block];
      const Entry entry = content.entry[at.index];
      entries.push_back(entry);
      collapsed.push_back(content.collapsed[at.index] + above);
      selected.push_back(static_cast<char>(content.selected >> at.index & 1U));
      if (entry == end) break;
      if (++at.index == content.count) {
        at = {NextBlock(at.block), 0};
        above = RaiseAbove(at.block);
      }
    }
  }
  const Cut tail = CutTree(m_root, last + 1);
  const Cut head = CutTree(tail.left, first);
  FreeTree(head.right);
  m_root = Join(Join(head.left, BuildTree(entries, collapsed, selected)), tail.right);
}

void OrderIndex::ReorderByCut(std::span<const Row> children, std::size_t first, std::size_t last) {
  const Cut tail = CutTree(m_root, last + 1);
  const Cut head = CutTree(tail.left, first);
  Block rest = head.right;
  Block ordered = head.left;
  for (const Row child : children) {
    const std::size_t from = RankOf(Open(child));
    const std::size_t to = RankOf(LastEntryOf(child));
    const Cut behind = CutTree(rest, to + 1);
    const Cut before = CutTree(behind.left, from);
    rest = Join(before.left, behind.right);
    ordered = Join(ordered, before.right);
  }
  m_root = Join(ordered, tail.right);
}

// ---- visibility and positions ---------------------------------------------------------------------------

void OrderIndex::AddCollapsed(Row row, int delta) {
  if (m_closeHome[row] == 0) return;
  RaiseRange(m_root, static_cast<long>(RankOf(Open(row))) + 1, static_cast<long>(RankOf(Close(row))), delta);
}

int OrderIndex::CollapsedAbove(Row row) const {
  const Place place = Find(Open(row));
  return m_contents[place.block].collapsed[place.index] + RaiseAbove(place.block);
}

std::size_t OrderIndex::VisibleCount() const {
  return m_nodes[m_root].total.Visible(0);
}

std::size_t OrderIndex::Position(Row row) const {
  const Place place = Find(Open(row));
  int above = RaiseAbove(place.block);
  std::size_t position = std::popcount(VisibleMask(place.block, above) & MaskBelow(place.index));
  position += m_nodes[m_nodes[place.block].left].total.Visible(above);
  for (Block child = place.block, parent = m_nodes[child].parent; parent != 0;
       child = parent, parent = m_nodes[child].parent) {
    above -= m_nodes[child].raise;
    const Node& node = m_nodes[parent];
    if (node.right == child) position += node.own.Visible(above) + m_nodes[node.left].total.Visible(above);
  }
  return position;
}

OrderIndex::Row OrderIndex::RowAt(std::size_t position) const {
  int above = 0;
  for (Block block = m_root; block != 0;) {
    const Node& node = m_nodes[block];
    above += node.raise;
    const std::size_t left = m_nodes[node.left].total.Visible(above);
    if (position < left) {
      block = node.left;
      continue;
    }
    position -= left;
    const std::size_t own = node.own.Visible(above);
    if (position < own) {
      std::uint64_t mask = VisibleMask(block, above);
      for (; position != 0; --position) mask &= mask - 1;
      return m_contents[block].entry[std::countr_zero(mask)] / 2;
    }
    position -= own;
    block = node.right;
  }
  return 0;
}

// ---- selection ------------------------------------------------------------------------------------------

bool OrderIndex::IsSelected(Row row) const {
  const Place place = Find(Open(row));
  return (m_contents[place.block].selected >> place.index & 1U) != 0;
}

void OrderIndex::Select(Row row, bool on) {
  const Place place = Find(Open(row));
  std::uint64_t& selected = m_contents[place.block].selected;
  const std::uint64_t bit = 1ULL << place.index;
  if (((selected & bit) != 0) == on) return;
  selected ^= bit;
  Summarise(place.block);
  PullUp(place.block);
}

void OrderIndex::SelectVisible(std::size_t first, std::size_t last, bool on) {
  const Change change = on ? Change::Set : Change::Clear;
  ChangeVisibleIn(m_root, static_cast<long>(first), static_cast<long>(last), change, 0);
}

void OrderIndex::InvertVisible(std::size_t first, std::size_t last) {
  ChangeVisibleIn(m_root, static_cast<long>(first), static_cast<long>(last), Change::Invert, 0);
}

void OrderIndex::ClearSelection() {
  ClearSelectionIn(m_root);
}

std::size_t OrderIndex::SelectedCount() const {
  return m_nodes[m_root].total.selected;
}

std::size_t OrderIndex::VisibleSelectedCount() const {
  return m_nodes[m_root].total.SelectedVisible(0);
}

OrderIndex::Row OrderIndex::NextSelectedVisible(std::size_t position) const {
  // Skip the selected rows in front of `position`, then descend to the first one left.
  std::size_t skip = 0;
  {
    int above = 0;
    std::size_t rank = position;
    for (Block block = m_root; block != 0;) {
      const Node& node = m_nodes[block];
      above += node.raise;
      const Sum& left = m_nodes[node.left].total;
      if (rank < left.Visible(above)) {
        block = node.left;
        continue;
      }
      rank -= left.Visible(above);
      skip += left.SelectedVisible(above);
      const std::uint64_t mask = VisibleMask(block, above);
      if (rank < node.own.Visible(above)) {
        std::uint64_t rest = mask;
        for (; rank != 0; --rank) rest &= rest - 1;
        const std::uint64_t before = mask & MaskBelow(std::countr_zero(rest));
        skip += std::popcount(before & m_contents[block].selected);
        break;
      }
      rank -= node.own.Visible(above);
      skip += node.own.SelectedVisible(above);
      block = node.right;
    }
  }
  int above = 0;
  for (Block block = m_root; block != 0;) {
    const Node& node = m_nodes[block];
    above += node.raise;
    const std::size_t left = m_nodes[node.left].total.SelectedVisible(above);
    if (skip < left) {
      block = node.left;
      continue;
    }
    skip -= left;
    const std::size_t own = node.own.SelectedVisible(above);
    if (skip < own) {
      std::uint64_t mask = VisibleMask(block, above) & m_contents[block].selected;
      for (; skip != 0; --skip) mask &= mask - 1;
      return m_contents[block].entry[std::countr_zero(mask)] / 2;
    }
    skip -= own;
    block = node.right;
  }
  return 0;
}

void OrderIndex::AppendSelected(bool visibleOnly, std::vector<Row>& out) const {
  CollectSelected(m_root, 0, static_cast<long>(m_nodes[m_root].total.entries), visibleOnly, 0, out);
}

void OrderIndex::AppendSelectedBelow(Row row, std::vector<Row>& out) const {
  if (m_closeHome[row] == 0) return;
  CollectSelected(m_root, static_cast<long>(RankOf(Open(row))) + 1, static_cast<long>(RankOf(Close(row))), false,
                  0, out);
}

void OrderIndex::ChangeVisibleIn(Block block, long first, long last, Change change, int above) {
  if (block == 0 || first > last) return;
  const long visible = m_nodes[block].total.Visible(above);
  if (visible == 0 || last < 0 || first >= visible) return;
  above += m_nodes[block].raise;
  const long left = m_nodes[m_nodes[block].left].total.Visible(above);
  ChangeVisibleIn(m_nodes[block].left, first, last, change, above);
  first -= left;
  last -= left;
  const long own = m_nodes[block].own.Visible(above);
  if (own != 0 && last >= 0 && first < own) {
    std::uint64_t mask = VisibleMask(block, above);
    if (first > 0 || last < own - 1) {
      std::uint64_t wanted = 0;
      long rank = 0;
      for (std::uint64_t rest = mask; rest != 0; rest &= rest - 1, ++rank) {
        if (rank >= first && rank <= last) wanted |= rest & -rest;
      }
      mask = wanted;
    }
    std::uint64_t& selected = m_contents[block].selected;
    switch (change) {
      case Change::Clear:
        selected &= ~mask;
        break;
      case Change::Set:
        selected |= mask;
        break;
      case Change::Invert:
        selected ^= mask;
        break;
    }
    Summarise(block);
  }
  ChangeVisibleIn(m_nodes[block].right, first - own, last - own, change, above);
  Pull(block);
}

void OrderIndex::ClearSelectionIn(Block block) {
  if (m_nodes[block].total.selected == 0) return;
  ClearSelectionIn(m_nodes[block].left);
  ClearSelectionIn(m_nodes[block].right);
  m_contents[block].selected = 0;
  m_nodes[block].own.selected = 0;
  m_nodes[block].own.selectedAtLeast = 0;
  Pull(block);
}

void OrderIndex::CollectSelected(Block block, long first, long last, bool visibleOnly, int above,
                                 std::vector<Row>& out) const {
  const Node& node = m_nodes[block];
  if (block == 0 || last <= 0 || first >= static_cast<long>(node.total.entries)) return;
  if ((visibleOnly ? node.total.SelectedVisible(above) : node.total.selected) == 0) return;
  above += node.raise;
  CollectSelected(node.left, first, last, visibleOnly, above, out);
  const long left = m_nodes[node.left].total.entries;
  first -= left;
  last -= left;
  std::uint64_t mask = m_contents[block].selected;
  if (visibleOnly && mask != 0) mask &= VisibleMask(block, above);
  if (first > 0) mask &= first >= 64 ? 0 : ~MaskBelow(static_cast<int>(first));
  if (last < 64) mask &= last <= 0 ? 0 : MaskBelow(static_cast<int>(last));
  for (; mask != 0; mask &= mask - 1) out.push_back(m_contents[block].entry[std::countr_zero(mask)] / 2);
  const long own = node.own.entries;
  CollectSelected(node.right, first - own, last - own, visibleOnly, above, out);
}

}  // namespace qd

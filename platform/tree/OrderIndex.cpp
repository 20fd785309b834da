#include "platform/tree/OrderIndex.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace qd {

OrderIndex::OrderIndex() : m_nodes(1), m_contents(1) {}

// ---- changing the order ---------------------------------------------------------------------------------

void OrderIndex::InsertFirst(Row row, Row parent, Fresh fresh, bool parentIsOpen) {
  Reserve(row);
  const int count = fresh.collapsedAbove + (fresh.hidden ? 1 : 0);
  if (parent == 0) {
    Block first = m_root;
    while (first != 0 && m_nodes[first].left != 0) first = m_nodes[first].left;
    if (first == 0) {
      m_root = NewBlock();
      first = m_root;
    }
    InsertEntry(OpeningOf(row), {first, 0}, count);
    return;
  }
  NeedClosing(parent, fresh, parentIsOpen);
  InsertBehind(OpeningOf(row), OpeningOf(parent), count);
}

/// Gives a row its closing entry before its first child comes.
void OrderIndex::NeedClosing(Row parent, const Fresh& fresh, bool parentIsOpen) {
  if (HasClosing(parent)) return;
  InsertBehind(ClosingOf(parent), OpeningOf(parent), fresh.collapsedAbove - (parentIsOpen ? 0 : 1));
  MarkBranch(parent, true);
  if (parentIsOpen) MarkOpen(parent, true);
}

void OrderIndex::InsertAfter(Row row, Row sibling, Fresh fresh) {
  Reserve(row);
  InsertBehind(OpeningOf(row), LastEntryOf(sibling), fresh.collapsedAbove + (fresh.hidden ? 1 : 0));
}

void OrderIndex::InsertMany(std::span<const Row> rows, Row sibling, Row parent, Fresh fresh, bool parentIsOpen) {
  if (rows.empty()) return;
  constexpr std::size_t kFew = 4;
  if (rows.size() < kFew) {
    for (const Row row : rows) {
      sibling == 0 ? InsertFirst(row, parent, fresh, parentIsOpen) : InsertAfter(row, sibling, fresh);
      sibling = row;
    }
    return;
  }
  Reserve(*std::max_element(rows.begin(), rows.end()));
  if (sibling == 0 && parent != 0) NeedClosing(parent, fresh, parentIsOpen);
  std::size_t rank = 0;
  if (sibling != 0) {
    rank = RankOf(LastEntryOf(sibling)) + 1;
  } else if (parent != 0) {
    rank = RankOf(OpeningOf(parent)) + 1;
  }
  const Cut cut = CutTree(m_root, rank);
  const Block built = BuildLeaves(rows, fresh.collapsedAbove + (fresh.hidden ? 1 : 0));
  m_root = Join(Join(cut.left, built), cut.right);
}

void OrderIndex::RemoveRange(Row from, Row to) {
  if (from == to && !HasClosing(from)) {
    const Row row = from;
    const Place place = Find(OpeningOf(row));
    Entry follower = 0;
    if (place.index + 1 < m_contents[place.block].count) {
      follower = m_contents[place.block].entry[place.index + 1];
    } else if (const Block next = NextBlock(place.block); next != 0) {
      follower = m_contents[next].entry[0];
    }
    EraseEntry(OpeningOf(row));
    return EraseClosing(follower);
  }
  const std::size_t first = RankOf(OpeningOf(from));
  const std::size_t last = RankOf(LastEntryOf(to));
  Cut tail = CutTree(m_root, last + 1);
  Cut head = CutTree(tail.left, first);
  FreeTree(head.right);
  Block block = tail.right;
  while (block != 0 && m_nodes[block].left != 0) block = m_nodes[block].left;
  const Entry follower = block != 0 ? m_contents[block].entry[0] : 0;
  m_root = Join(head.left, tail.right);
  EraseClosing(follower);
}

/// The entry that followed a row which has gone is taken out too when it closes a branch that is empty now.
void OrderIndex::EraseClosing(Entry follower) {
  if (follower == 0 || IsOpening(follower) || RankOf(follower) != RankOf(follower - 1) + 1) return;
  EraseEntry(follower);
  MarkOpen(follower / 2, false);
  MarkBranch(follower / 2, false);
}

void OrderIndex::Reorder(Row parent, std::span<const Row> children) {
  if (children.size() < 2) return;
  const std::size_t first = parent != 0 ? RankOf(OpeningOf(parent)) + 1 : 0;
  const std::size_t behind = parent != 0 ? RankOf(ClosingOf(parent)) : m_nodes[m_root].all.sum.entries;
  const Cut tail = CutTree(m_root, behind);
  const Cut head = CutTree(tail.left, first);
  constexpr std::size_t kEntriesWorthOneCut = 200;
  const bool copies = behind - first < children.size() * kEntriesWorthOneCut;
  const Block ordered = copies ? ReorderByCopy(head.right, children) : ReorderByCut(head.right, children);
  m_root = Join(Join(head.left, ordered), tail.right);
}

/// Reads the entries one behind the other and lays them anew, child by child.
OrderIndex::Block OrderIndex::ReorderByCopy(Block block, std::span<const Row> children) {
  std::vector<Copied> entries;
  entries.reserve(m_nodes[block].all.sum.entries);
  CopyTree(block, entries);
  FreeTree(block);
  // They have no blocks now; until they are built anew, their homes hold the places at which they were read.
  for (std::uint32_t at = 0; at < entries.size(); ++at) HomeOf(entries[at].entry) = at;
  std::vector<Copied> ordered;
  ordered.reserve(entries.size());
  for (const Row child : children) {
    const auto first = entries.begin() + HomeOf(OpeningOf(child));
    if (first->branch) {
      ordered.insert(ordered.end(), first, entries.begin() + HomeOf(ClosingOf(child)) + 1);
    } else {
      ordered.push_back(*first);
    }
  }
  return BuildTree(ordered);
}

OrderIndex::Block OrderIndex::ReorderByCut(Block rest, std::span<const Row> children) {
  Block ordered = 0;
  for (const Row child : children) {
    const std::size_t from = RankOf(OpeningOf(child));
    const std::size_t to = RankOf(LastEntryOf(child));
    const Cut behind = CutTree(rest, to + 1);
    const Cut before = CutTree(behind.left, from);
    rest = Join(before.left, behind.right);
    ordered = Join(ordered, before.right);
  }
  return ordered;
}

// ---- visibility and positions ---------------------------------------------------------------------------

void OrderIndex::Open(Row row, bool on) {
  if (!HasClosing(row)) return;
  const auto first = static_cast<long>(RankOf(OpeningOf(row))) + 1;
  const Change change{on ? -1 : 1, {}, {}};
  ChangeRange(m_root, first, static_cast<long>(RankOf(ClosingOf(row))), change, 0);
  MarkOpen(row, on);
}

void OrderIndex::OpenAll(std::span<const Row> innermostFirst) {
  std::vector<Step> steps;
  Block block = 0;  // many neighbours lie in one block, whose rank is asked for once
  std::size_t firstRank = 0;
  const auto rankOf = [&](Entry entry) {
    const Place place = Find(entry);
    if (std::exchange(block, place.block) != place.block) firstRank = FirstRankOf(block);
    return firstRank + static_cast<std::size_t>(place.index);
  };
  steps.push_back({0, 0});
  for (auto row = innermostFirst.rbegin(); row != innermostFirst.rend(); ++row) {
    if (!HasClosing(*row)) continue;
    MarkOpen(*row, true);
    steps.push_back({rankOf(OpeningOf(*row)) + 1, steps.back().raise - 1});
  }
  for (const Row row : innermostFirst) {
    if (HasClosing(row)) steps.push_back({rankOf(ClosingOf(row)), steps.back().raise + 1});
  }
  RaiseSteps(m_root, 0, steps);
}

/// Raises the counts of a subtree whose first entry has the rank `first`. The first of the steps is the one that
/// has begun there.
void OrderIndex::RaiseSteps(Block block, std::size_t first, std::span<const Step> steps) {
  Node& node = m_nodes[block];
  const auto from = [&steps](std::size_t rank) {
    const auto behind = std::upper_bound(steps.begin(), steps.end(), rank,
                                         [](std::size_t at, const Step& step) { return at < step.rank; });
    return steps.subspan(static_cast<std::size_t>(behind - steps.begin()) - 1);
  };
  const auto wholly = [](std::span<const Step> rest, std::size_t end) {
    return rest.size() == 1 || rest[1].rank >= end;
  };
  if (wholly(steps, first + node.all.sum.entries)) return node.all.Do({steps.front().raise, {}, {}});
  Push(block);
  if (node.left != 0) RaiseSteps(node.left, first, steps);
  first += m_nodes[node.left].all.sum.entries;
  std::span<const Step> rest = from(first);
  if (wholly(rest, first + node.own.sum.entries)) {
    node.own.Do({rest.front().raise, {}, {}});
  } else {
    Settle(block);
    Content& content = m_contents[block];
    for (int i = 0; i < content.count; ++i) {
      while (rest.size() > 1 && rest[1].rank <= first + static_cast<std::size_t>(i)) rest = rest.subspan(1);
      content.collapsed[i] += rest.front().raise;
    }
    Summarise(block);
  }
  first += node.own.sum.entries;
  if (node.right != 0) RaiseSteps(node.right, first, from(first));
  Recount(node);
}

int OrderIndex::CountAt(Entry entry) const {
  const Place place = Find(entry);
  return m_contents[place.block].collapsed[place.index] + m_nodes[place.block].own.change.raise +
         RaiseAbove(place.block);
}

bool OrderIndex::IsBelow(Row row, Row above) const {
  if (row == above || !HasClosing(above)) return false;
  const std::size_t rank = RankOf(OpeningOf(row));
  return rank > RankOf(OpeningOf(above)) && rank < RankOf(ClosingOf(above));
}

std::size_t OrderIndex::VisibleCount() const {
  return m_nodes[m_root].all.sum.Visible(0);
}

std::size_t OrderIndex::PositionBehind(Row row) const {
  if (HasClosing(row)) return PositionOf(ClosingOf(row));
  return Position(row) + (IsVisible(row) ? 1 : 0);
}

/// How many visible rows stand before an entry.
std::size_t OrderIndex::PositionOf(Entry entry) const {
  const Place place = Find(entry);
  int above = RaiseAbove(place.block);
  std::size_t position = std::popcount(MaskAt(place.block, -above) & MaskBelow(place.index));
  position += m_nodes[m_nodes[place.block].left].all.sum.Visible(above);
  for (Block child = place.block, parent = m_nodes[child].parent; parent != 0;
       child = parent, parent = m_nodes[child].parent) {
    above -= m_nodes[child].all.change.raise;
    const Node& node = m_nodes[parent];
    if (node.right == child) {
      position += node.own.sum.Visible(above) + m_nodes[node.left].all.sum.Visible(above);
    }
  }
  return position;
}

OrderIndex::Row OrderIndex::RowAt(std::size_t position) const {
  int above = 0;
  for (Block block = m_root; block != 0;) {
    const Node& node = m_nodes[block];
    above += node.all.change.raise;
    const std::size_t left = m_nodes[node.left].all.sum.Visible(above);
    if (position < left) {
      block = node.left;
      continue;
    }
    position -= left;
    const std::size_t own = node.own.sum.Visible(above);
    if (position < own) {
      std::uint64_t mask = MaskAt(block, -above);
      for (; position != 0; --position) mask &= mask - 1;
      return m_contents[block].entry[std::countr_zero(mask)] / 2;
    }
    position -= own;
    block = node.right;
  }
  return 0;
}

}  // namespace qd

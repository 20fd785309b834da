// The flags of the rows in the order index: what is selected, marked and open, one by one and in ranges.

#include <algorithm>
#include <bit>
#include <cassert>

#include "platform/tree/OrderIndex.h"

namespace qd {

// ---- changes --------------------------------------------------------------------------------------------

OrderIndex::Turn OrderIndex::Turn::After(const Turn& first) const {
  // Off is no source, and on is off turned round.
  const auto of = [before = std::array{Source::Off, first.selected, first.marked}](Source then) {
    const auto number = static_cast<unsigned>(then);
    return static_cast<Source>(static_cast<unsigned>(before[number / 2]) ^ number % 2);
  };
  return {of(selected), of(marked)};
}

/// Changes the flags of `rows`, a mask of entries of a block.
void OrderIndex::Turn::Do(std::uint64_t rows, std::uint64_t& selectedRows, std::uint64_t& markedRows) const {
  const auto of = [before = std::array{std::uint64_t{0}, selectedRows, markedRows}](Source source) {
    const auto number = static_cast<std::size_t>(source);
    return before[number / 2] ^ (std::uint64_t{0} - number % 2);
  };
  selectedRows = (selectedRows & ~rows) | (of(selected) & rows);
  markedRows = (markedRows & ~rows) | (of(marked) & rows);
}

OrderIndex::Change OrderIndex::Change::After(const Change& first) const {
  if (!Turns()) return {first.raise + raise, first.least, first.others};
  return {first.raise + raise, least.After(first.least), others.After(first.others)};
}

// The sums are added on every step of every change: without branches, which nobody could foretell.
void OrderIndex::Sum::Add(const Sum& other) {
  entries += other.entries;
  selected += other.selected;
  found += other.found;
  const std::uint32_t mine = least <= other.least ? ~0U : 0;
  const std::uint32_t theirs = other.least <= least ? ~0U : 0;
  atLeast = (atLeast & mine) + (other.atLeast & theirs);
  selectedAtLeast = (selectedAtLeast & mine) + (other.selectedAtLeast & theirs);
  markedAtLeast = (markedAtLeast & mine) + (other.markedAtLeast & theirs);
  openAtLeast = (openAtLeast & mine) + (other.openAtLeast & theirs);
  least = std::min(least, other.least);
}

void OrderIndex::Sum::Do(const Change& change) {
  least += change.raise * static_cast<int>(atLeast != 0);
  if (!change.Turns()) return;
  const auto of = [this, before = std::array{0U, selectedAtLeast, markedAtLeast}](Source source) {
    const auto number = static_cast<std::uint32_t>(source);
    const std::uint32_t round = number % 2;
    return (before[number / 2] ^ (0U - round)) + round * (atLeast + 1);  // or all without those
  };
  const auto stay = static_cast<std::uint32_t>(change.others.selected != Source::Off);
  const std::uint32_t others = (selected - selectedAtLeast) * stay;
  selectedAtLeast = of(change.least.selected);
  markedAtLeast = of(change.least.marked);
  selected = others + selectedAtLeast;
}

void OrderIndex::Part::Do(const Change& next) {
  sum.Do(next);
  change = next.After(change);
}

/// Hands what waits at a subtree on to its parts.
void OrderIndex::Push(Block block) {
  Node& node = m_nodes[block];
  if (!node.all.change.Waits()) return;
  const int least = node.all.LeastBefore();
  const Change change = node.all.change;
  const auto hand = [&](Part& part) { part.Do(change.For(part.sum.least == least)); };
  hand(node.own);
  if (node.left != 0) hand(m_nodes[node.left].all);
  if (node.right != 0) hand(m_nodes[node.right].all);
  node.all.change = {};
}

/// Hands on what waits at any subtree that holds the block's entries.
void OrderIndex::PushAbove(Block block) {
  Block highest = 0;
  for (Block at = block; at != 0; at = m_nodes[at].parent) {
    if (m_nodes[at].all.change.Waits()) highest = at;
  }
  if (highest != 0) PushPath(highest, block);
}

void OrderIndex::PushPath(Block from, Block to) {
  if (to != from) PushPath(from, m_nodes[to].parent);
  Push(to);
}

/// Hands what waits at a block on to its entries, but for the raise: the counts of a block are without it.
void OrderIndex::Settle(Block block) {
  Part& own = m_nodes[block].own;
  if (!own.change.Turns()) return;
  Content& content = m_contents[block];
  const std::uint64_t least = MaskAt(block, own.sum.least);
  own.change.least.Do(least, content.selected, content.marked);
  own.change.others.Do(~least, content.selected, content.marked);
  own.change = {own.change.raise, {}, {}};
}

/// The rows of a block that have a count, with what waits at the block and without what waits above it.
std::uint64_t OrderIndex::MaskAt(Block block, int count) const {
  const Content& content = m_contents[block];
  const int wanted = count - m_nodes[block].own.change.raise;
  std::uint64_t mask = 0;
  for (int i = 0; i < content.count; ++i) {
    const bool has = content.collapsed[i] == wanted && IsOpening(content.entry[i]);
    mask |= static_cast<std::uint64_t>(has) << i;
  }
  return mask;
}

/// Changes the entries of a subtree from rank `first` up to `last`, which is not one of them; there must be some.
/// `count` is the smallest count in the whole range. Nothing may wait above.
void OrderIndex::ChangeRange(Block block, long first, long last, const Change& change, int count) {
  Node& node = m_nodes[block];
  if (first == 0 && last == static_cast<long>(node.all.sum.entries)) {
    return node.all.Do(change.For(node.all.sum.least == count));
  }
  Push(block);
  const long left = m_nodes[node.left].all.sum.entries;
  const long behind = left + static_cast<long>(node.own.sum.entries);
  if (first < left) ChangeRange(node.left, first, std::min(last, left), change, count);
  if (first < behind && last > left) {
    ChangeOwn(block, std::max(first, left) - left, std::min(last, behind) - left, change, count);
  }
  if (last > behind) ChangeRange(node.right, std::max(first, behind) - behind, last - behind, change, count);
  Recount(node);
}

void OrderIndex::ChangeOwn(Block block, long first, long last, const Change& change, int count) {
  Part& own = m_nodes[block].own;
  Content& content = m_contents[block];
  if (first == 0 && last == content.count) return own.Do(change.For(own.sum.least == count));
  Settle(block);
  if (change.Turns()) {
    const std::uint64_t range = MaskBelow(static_cast<int>(last)) & ~MaskBelow(static_cast<int>(first));
    const std::uint64_t least = MaskAt(block, count) & range;
    change.least.Do(least, content.selected, content.marked);
    change.others.Do(range & ~least, content.selected, content.marked);
  }
  for (long i = first; i < last; ++i) content.collapsed[static_cast<std::size_t>(i)] += change.raise;
  Summarise(block);
}

// ---- one row --------------------------------------------------------------------------------------------

/// Counts a flag of one entry that went on or off. `all` counts it at any count, null if nothing does.
void OrderIndex::CountFlag(Place place, std::uint32_t Sum::*all, std::uint32_t Sum::*atLeast, bool on) {
  const std::uint32_t more = on ? 1U : ~0U;
  int count = m_contents[place.block].collapsed[place.index];
  bool least = true;
  const auto add = [&](Part& part) {
    count += part.change.raise;
    least = least && part.sum.least == count;
    if (all != nullptr) part.sum.*all += more;
    if (least) part.sum.*atLeast += more;
  };
  add(m_nodes[place.block].own);
  for (Block block = place.block; block != 0 && (least || all != nullptr); block = m_nodes[block].parent) {
    add(m_nodes[block].all);
  }
}

void OrderIndex::MarkOpen(Row row, bool on) {
  const Place place = Find(OpeningOf(row));
  std::uint64_t& open = m_contents[place.block].open;
  const std::uint64_t bit = 1ULL << place.index;
  if (((open & bit) != 0) == on) return;
  open ^= bit;
  // No change of a range touches this flag, so nothing has to be handed on.
  CountFlag(place, nullptr, &Sum::openAtLeast, on);
}

bool OrderIndex::IsSelected(Row row) const {
  const Place place = Find(OpeningOf(row));
  const Content& content = m_contents[place.block];
  std::uint64_t selected = content.selected >> place.index & 1U;
  std::uint64_t marked = content.marked >> place.index & 1U;
  int count = content.collapsed[place.index];
  const auto pass = [&](const Part& part) {
    const Change& change = part.change;
    if (change.Turns()) (count == part.LeastBefore() ? change.least : change.others).Do(1, selected, marked);
    count += change.raise;
  };
  pass(m_nodes[place.block].own);
  for (Block block = place.block; block != 0; block = m_nodes[block].parent) pass(m_nodes[block].all);
  return selected != 0;
}

void OrderIndex::Select(Row row, bool on) {
  const Place place = Find(OpeningOf(row));
  PushAbove(place.block);
  Settle(place.block);
  std::uint64_t& selected = m_contents[place.block].selected;
  const std::uint64_t bit = 1ULL << place.index;
  if (((selected & bit) != 0) == on) return;
  selected ^= bit;
  CountFlag(place, &Sum::selected, &Sum::selectedAtLeast, on);
}

// ---- ranges ---------------------------------------------------------------------------------------------

OrderIndex::Change OrderIndex::SelectionOf(Selecting to) {
  Turn turn;
  switch (to) {
    case Selecting::Off:
      turn.selected = Source::Off;
      break;
    case Selecting::On:
      turn.selected = Source::On;
      break;
    case Selecting::Invert:
      turn.selected = Source::NotSelected;
      break;
    case Selecting::Marked:
      turn.selected = Source::Marked;
      break;
    case Selecting::NotMarked:
      turn.selected = Source::NotMarked;
      break;
  }
  return {0, turn, {}};
}

void OrderIndex::SelectVisible(std::size_t first, std::size_t last, Selecting to) {
  if (first > last || first >= VisibleCount()) return;
  last = std::min(last, VisibleCount() - 1);
  const auto rank = [this](std::size_t at) { return static_cast<long>(RankOf(OpeningOf(RowAt(at)))); };
  const long all = m_nodes[m_root].all.sum.entries;
  const long from = first == 0 ? 0 : rank(first);
  const long end = last == VisibleCount() - 1 ? all : first == last && first != 0 ? from + 1 : rank(last) + 1;
  ChangeRange(m_root, from, end, SelectionOf(to), 0);
}

void OrderIndex::SelectBelow(Row row, Selecting to) {
  if (!HasClosing(row)) return;
  const auto first = static_cast<long>(RankOf(OpeningOf(row))) + 1;
  const auto last = static_cast<long>(RankOf(ClosingOf(row)));
  const Place place = Find(OpeningOf(row));
  const bool open = (m_contents[place.block].open >> place.index & 1U) != 0;
  ChangeRange(m_root, first, last, SelectionOf(to), CountAt(ClosingOf(row)) + (open ? 0 : 1));
}

void OrderIndex::SelectSiblings(Row first, Row last, int count, Selecting to) {
  const Change change = SelectionOf(to);
  const auto end = static_cast<long>(RankOf(OpeningOf(last))) + 1;
  for (auto from = static_cast<long>(RankOf(OpeningOf(first))); from < end;) {
    // Up to the next open branch all that has the count are siblings; behind its end they go on. Siblings that a
    // filter hides stand with what is nested in closed branches, and nothing open is nested in one of them.
    const Row open = FirstOpen(m_root, from, end, count);
    ChangeRange(m_root, from, open != 0 ? static_cast<long>(RankOf(OpeningOf(open))) + 1 : end, change, count);
    from = open != 0 ? static_cast<long>(RankOf(ClosingOf(open))) + 1 : end;
  }
}

/// The first open branch with a count among the entries of a subtree from rank `first` up to `last`, 0 if none.
/// The count is without what waits above the subtree.
OrderIndex::Row OrderIndex::FirstOpen(Block block, long first, long last, int count) const {
  const Node& node = m_nodes[block];
  if (block == 0 || last <= 0 || first >= static_cast<long>(node.all.sum.entries)) return 0;
  const int spare = node.all.sum.least - count;
  if (spare > 0 || (spare == 0 && node.all.sum.openAtLeast == 0)) return 0;
  count -= node.all.change.raise;
  if (const Row found = FirstOpen(node.left, first, last, count)) return found;
  const long left = m_nodes[node.left].all.sum.entries;
  const long own = node.own.sum.entries;
  const auto from = static_cast<int>(std::clamp(first - left, 0L, own));
  const auto to = static_cast<int>(std::clamp(last - left, 0L, own));
  if (from < to && m_contents[block].open != 0) {
    const std::uint64_t range = MaskBelow(to) & ~MaskBelow(from);
    const std::uint64_t open = m_contents[block].open & range & MaskAt(block, count);
    if (open != 0) return m_contents[block].entry[std::countr_zero(open)] / 2;
  }
  return FirstOpen(node.right, first - left - own, last - left - own, count);
}

void OrderIndex::ClearSelection() {
  const Turn clear{Source::Off, Source::Marked};
  if (m_root != 0) m_nodes[m_root].all.Do({0, clear, clear});
}

void OrderIndex::ClearBranch(Row row) {
  const auto first = static_cast<long>(RankOf(OpeningOf(row)));
  const auto last = static_cast<long>(RankOf(LastEntryOf(row))) + 1;
  const Turn clear{Source::Off, Source::Marked};
  ChangeRange(m_root, first, last, {0, clear, clear}, 0);
}

void OrderIndex::MarkSelected() {
  // The rows at the smallest count of all are the visible ones, unless a filter hides all.
  const Turn mark{Source::Selected, Source::Selected};
  const Turn forget{Source::Selected, Source::Off};
  Part& all = m_nodes[m_root].all;
  if (m_root != 0) all.Do(Change{0, mark, forget}.For(all.sum.least == 0));
}

// ---- what is selected -----------------------------------------------------------------------------------

std::size_t OrderIndex::SelectedCount() const {
  return m_nodes[m_root].all.sum.selected;
}

std::size_t OrderIndex::VisibleSelectedCount() const {
  const Sum& sum = m_nodes[m_root].all.sum;
  return sum.least == 0 ? sum.selectedAtLeast : 0;
}

/// The selected rows of a block once it and they get what waits above.
std::uint64_t OrderIndex::SelectedMask(Block block, const Change& above) const {
  const Content& content = m_contents[block];
  const Change change = above.After(m_nodes[block].own.change);
  if (!change.Turns()) return content.selected;
  std::uint64_t selected = content.selected;
  std::uint64_t marked = content.marked;
  const std::uint64_t least = MaskAt(block, m_nodes[block].own.sum.least);
  change.least.Do(least, selected, marked);
  change.others.Do(~least, selected, marked);
  return selected;
}

OrderIndex::Row OrderIndex::NextSelectedVisible(std::size_t position) const {
  return NextSelected(m_root, position, {});
}

OrderIndex::Row OrderIndex::NextSelected(Block block, std::size_t position, const Change& above) const {
  const Node& node = m_nodes[block];
  Sum sum = node.all.sum;
  sum.Do(above);
  if (sum.least != 0 || sum.selectedAtLeast == 0 || position >= sum.atLeast) return 0;
  const Change whole = above.After(node.all.change);
  const int least = node.all.LeastBefore();
  const Part& left = m_nodes[node.left].all;
  const std::size_t inLeft = left.sum.Visible(whole.raise);
  if (position < inLeft) {
    const Row found = NextSelected(node.left, position, whole.For(left.sum.least == least));
    if (found != 0) return found;
  }
  position -= std::min(position, inLeft);
  const std::size_t inOwn = node.own.sum.Visible(whole.raise);
  if (position < inOwn) {
    std::uint64_t shown = MaskAt(block, -whole.raise);
    for (std::size_t i = 0; i < position; ++i) shown &= shown - 1;
    shown &= SelectedMask(block, whole.For(node.own.sum.least == least));
    if (shown != 0) return m_contents[block].entry[std::countr_zero(shown)] / 2;
  }
  position -= std::min(position, inOwn);
  return NextSelected(node.right, position, whole.For(m_nodes[node.right].all.sum.least == least));
}

void OrderIndex::AppendSelected(bool visibleOnly, std::vector<Row>& out) const {
  CollectSelected(m_root, 0, static_cast<long>(m_nodes[m_root].all.sum.entries), visibleOnly, {}, out);
}

void OrderIndex::AppendSelectedBelow(Row row, std::vector<Row>& out) const {
  if (!HasClosing(row)) return;
  const auto first = static_cast<long>(RankOf(OpeningOf(row))) + 1;
  CollectSelected(m_root, first, static_cast<long>(RankOf(ClosingOf(row))), false, {}, out);
}

void OrderIndex::CollectSelected(Block block, long first, long last, bool visibleOnly, const Change& above,
                                 std::vector<Row>& out) const {
  const Node& node = m_nodes[block];
  Sum sum = node.all.sum;
  if (last <= 0 || first >= static_cast<long>(sum.entries)) return;
  sum.Do(above);
  if (visibleOnly ? sum.least != 0 || sum.selectedAtLeast == 0 : sum.selected == 0) return;
  const Change whole = above.After(node.all.change);
  const int least = node.all.LeastBefore();
  const auto part = [&](Block child, long before) {
    if (child == 0 || (m_nodes[child].all.sum.selected == 0 && !whole.Turns())) return;
    const Change forPart = whole.For(m_nodes[child].all.sum.least == least);
    CollectSelected(child, first - before, last - before, visibleOnly, forPart, out);
  };
  const long left = m_nodes[node.left].all.sum.entries;
  const long own = node.own.sum.entries;
  part(node.left, 0);
  std::uint64_t mask = 0;
  if (whole.Turns() || node.own.sum.selected != 0) {
    mask = SelectedMask(block, whole.For(node.own.sum.least == least));
  }
  if (visibleOnly && mask != 0) mask &= MaskAt(block, -whole.raise);
  if (first > left) mask &= ~MaskBelow(static_cast<int>(std::min(first - left, own)));
  if (last < left + own) mask &= MaskBelow(static_cast<int>(std::max(last - left, 0L)));
  for (; mask != 0; mask &= mask - 1) out.push_back(m_contents[block].entry[std::countr_zero(mask)] / 2);
  part(node.right, left + own);
}

}  // namespace qd

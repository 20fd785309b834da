// What a search has found in the order index, and what a filter hides.

#include <bit>

#include "platform/tree/OrderIndex.h"

namespace qd {

namespace {

bool Has(std::span<const std::uint64_t> bits, OrderIndex::Row row) {
  return row / 64 < bits.size() && (bits[row / 64] >> row % 64 & 1U) != 0;
}

}  // namespace

void OrderIndex::Show(const Outcome& outcome) {
  int collapsed = 0;
  ShowTree(m_root, outcome, collapsed);
}

/// Goes through the entries of a subtree in order; `collapsed` are the collapsed rows above the next one.
void OrderIndex::ShowTree(Block block, const Outcome& outcome, int& collapsed) {
  if (block == 0) return;
  const Node& node = m_nodes[block];
  // Blocks lie in memory as they came, so that most of the time goes into waiting for them.
  for (const Block next : {node.left, node.right}) {
    const auto* content = reinterpret_cast<const char*>(&m_contents[next]);
    constexpr std::size_t kLine = 64;
    __builtin_prefetch(&m_nodes[next]);
    __builtin_prefetch(&m_nodes[next].own);
    for (std::size_t at = 0; at < sizeof(Content); at += kLine) __builtin_prefetch(content + at);
  }
  Push(block);
  ShowTree(node.left, outcome, collapsed);
  ShowBlock(block, outcome, collapsed);
  ShowTree(node.right, outcome, collapsed);
  Recount(m_nodes[block]);
}

void OrderIndex::ShowBlock(Block block, const Outcome& outcome, int& collapsed) {
  Settle(block);
  m_nodes[block].own.change = {};
  Content& content = m_contents[block];
  const Outcome bits = outcome;  // of its own, so that no write to the block is taken for one to these
  const bool filters = !bits.shown.empty();
  const std::uint64_t branch = content.branch;
  const int count = content.count;
  int above = collapsed;
  std::uint64_t open = 0;
  std::uint64_t found = 0;
  std::uint64_t hidden = 0;
  std::uint64_t atLeast = 0;
  int least = kNever;
  for (int i = 0; i < count; ++i) {
    const Row row = content.entry[i] / 2;
    if (!IsOpening(content.entry[i])) {
      above -= Has(bits.open, row) ? 0 : 1;
      content.collapsed[i] = above;
      continue;
    }
    const std::uint64_t bit = 1ULL << i;
    const bool hides = filters && !Has(bits.shown, row);
    hidden |= hides ? bit : 0;
    found |= Has(bits.found, row) ? bit : 0;
    const int own = above + (hides ? 1 : 0);
    content.collapsed[i] = own;
    if (own < least) {
      least = own;
      atLeast = 0;
    }
    atLeast |= own == least ? bit : 0;
    if ((branch & bit) == 0) continue;
    const bool isOpen = Has(bits.open, row);
    open |= isOpen ? bit : 0;
    above += isOpen ? 0 : 1;
  }
  collapsed = above;
  content.open = open;
  content.found = found;
  content.selected &= ~hidden;
  content.marked &= ~hidden;
  m_nodes[block].own.sum = SumOf(content, least, atLeast);
}

void OrderIndex::Hide(Row row, bool on) {
  const Place place = Find(OpeningOf(row));
  PushAbove(place.block);
  Settle(place.block);
  Content& content = m_contents[place.block];
  content.collapsed[place.index] += on ? 1 : -1;
  if (on) {
    content.selected &= ~(1ULL << place.index);
    content.marked &= ~(1ULL << place.index);
  }
  Summarise(place.block);
  PullUp(place.block);
}

void OrderIndex::SetFound(Row row, bool on) {
  const Place place = Find(OpeningOf(row));
  std::uint64_t& found = m_contents[place.block].found;
  const std::uint64_t bit = 1ULL << place.index;
  if (((found & bit) != 0) == on) return;
  found ^= bit;
  // No change of a range touches this flag, so nothing has to be handed on.
  const std::uint32_t more = on ? 1U : ~0U;
  m_nodes[place.block].own.sum.found += more;
  for (Block block = place.block; block != 0; block = m_nodes[block].parent) m_nodes[block].all.sum.found += more;
}

bool OrderIndex::IsFound(Row row) const {
  const Place place = Find(OpeningOf(row));
  return (m_contents[place.block].found >> place.index & 1U) != 0;
}

std::size_t OrderIndex::FoundBefore(Row row) const {
  const Place place = Find(OpeningOf(row));
  std::size_t before = std::popcount(m_contents[place.block].found & MaskBelow(place.index));
  before += m_nodes[m_nodes[place.block].left].all.sum.found;
  for (Block child = place.block, parent = m_nodes[child].parent; parent != 0;
       child = parent, parent = m_nodes[child].parent) {
    const Node& node = m_nodes[parent];
    if (node.right == child) before += node.own.sum.found + m_nodes[node.left].all.sum.found;
  }
  return before;
}

OrderIndex::Row OrderIndex::FoundAt(std::size_t place) const {
  for (Block block = m_root; block != 0;) {
    const Node& node = m_nodes[block];
    const std::size_t left = m_nodes[node.left].all.sum.found;
    if (place < left) {
      block = node.left;
      continue;
    }
    place -= left;
    if (place < node.own.sum.found) {
      std::uint64_t mask = m_contents[block].found;
      for (; place != 0; --place) mask &= mask - 1;
      return m_contents[block].entry[std::countr_zero(mask)] / 2;
    }
    place -= node.own.sum.found;
    block = node.right;
  }
  return 0;
}

void OrderIndex::SelectFound() {
  SelectEach(m_root, [](const Content& content) { return content.found; });
}

void OrderIndex::KeepFoundSelected() {
  SelectEach(m_root, [](const Content& content) { return content.found & content.selected; });
}

void OrderIndex::SelectAlso(std::span<const std::uint64_t> rows) {
  SelectEach(m_root, [rows](const Content& content) {
    std::uint64_t selected = content.selected;
    for (int i = 0; i < content.count; ++i) {
      const bool on = IsOpening(content.entry[i]) && Has(rows, content.entry[i] / 2);
      selected |= static_cast<std::uint64_t>(on) << i;
    }
    return selected;
  });
}

/// Selects those rows of a subtree that `which` names, for each block.
template <typename Which>
void OrderIndex::SelectEach(Block block, const Which& which) {
  if (block == 0) return;
  Push(block);
  Settle(block);
  m_contents[block].selected = which(m_contents[block]);
  Summarise(block);
  SelectEach(m_nodes[block].left, which);
  SelectEach(m_nodes[block].right, which);
  Recount(m_nodes[block]);
}

}  // namespace qd

// The blocks of the order index: entries, the balanced tree of blocks, cutting and joining whole trees.

#include <algorithm>
#include <bit>
#include <cassert>

#include "platform/tree/OrderIndex.h"
#include "platform/tree/Room.h"

namespace qd {

namespace {

constexpr int kHalf = 32;
constexpr int kAppendSplit = 48;  // rows mostly arrive at the end of a branch: leave the left block nearly full
constexpr int kMergeBelow = 16;
constexpr int kMergedLimit = 48;

/// Removes the bit at `index`, 0 to 63, and moves the higher ones down.
std::uint64_t WithoutBit(std::uint64_t bits, int index) {
  const std::uint64_t below = (1ULL << index) - 1;
  const std::uint64_t high = index == 63 ? 0 : bits >> (index + 1);
  return (bits & below) | high << index;
}

/// Opens a gap at `index`, 0 to 63: bits from there on move up.
std::uint64_t WithGap(std::uint64_t bits, int index) {
  const std::uint64_t below = (1ULL << index) - 1;
  return (bits & below) | (bits & ~below) << 1U;
}

}  // namespace

// ---- entries and blocks ---------------------------------------------------------------------------------

void OrderIndex::Reserve(Row row) {
  if (row < m_openHome.size()) return;
  MakeRoom(m_openHome, row + 1UL);
  m_closeHome.reserve(m_openHome.capacity());
  m_openHome.resize(m_openHome.capacity());
  m_closeHome.resize(m_openHome.size());
}

OrderIndex::Place OrderIndex::Find(Entry entry) const {
  const Block block = HomeOf(entry);
  assert(block != 0);
  const Content& content = m_contents[block];
  int index = 0;
  while (content.entry[index] != entry) ++index;
  return {block, index};
}

OrderIndex::Block OrderIndex::NewBlock() {
  Block block = 0;
  if (m_free.empty()) {
    block = static_cast<Block>(m_nodes.size());
    MakeRoom(m_nodes, block + 1UL);
    MakeRoom(m_contents, block + 1UL);
    m_nodes.emplace_back();
    m_contents.emplace_back();
  } else {
    block = m_free.back();
    m_free.pop_back();
    m_nodes[block] = Node{};
    Content& content = m_contents[block];
    for (std::uint64_t* flags : content.Flags()) *flags = 0;
    content.count = 0;
  }
  m_random ^= m_random << 13U;
  m_random ^= m_random >> 17U;
  m_random ^= m_random << 5U;
  m_nodes[block].priority = m_random;
  return block;
}

void OrderIndex::FreeBlock(Block block) {
  m_nodes[block] = Node{};
  m_free.push_back(block);
}

int OrderIndex::RaiseAbove(Block block) const {
  int raise = 0;
  for (; block != 0; block = m_nodes[block].parent) raise += m_nodes[block].all.change.raise;
  return raise;
}

std::size_t OrderIndex::RankOf(Entry entry) const {
  const Place place = Find(entry);
  return FirstRankOf(place.block) + static_cast<std::size_t>(place.index);
}

/// The rank of a block's first entry.
std::size_t OrderIndex::FirstRankOf(Block block) const {
  std::size_t rank = m_nodes[m_nodes[block].left].all.sum.entries;
  for (Block child = block, parent = m_nodes[child].parent; parent != 0;
       child = parent, parent = m_nodes[child].parent) {
    const Node& node = m_nodes[parent];
    if (node.right == child) rank += node.own.sum.entries + m_nodes[node.left].all.sum.entries;
  }
  return rank;
}

OrderIndex::Block OrderIndex::NextBlock(Block block) const {
  if (Block next = m_nodes[block].right; next != 0) {
    while (m_nodes[next].left != 0) next = m_nodes[next].left;
    return next;
  }
  Block parent = m_nodes[block].parent;
  while (parent != 0 && m_nodes[parent].right == block) {
    block = parent;
    parent = m_nodes[block].parent;
  }
  return parent;
}

void OrderIndex::InsertBehind(Entry entry, Entry at, int collapsed) {
  // Most rows come behind the last one: looked for from the end.
  const Block block = HomeOf(at);
  int index = m_contents[block].count;
  while (m_contents[block].entry[index - 1] != at) --index;
  InsertEntry(entry, {block, index}, collapsed);
}

void OrderIndex::InsertEntry(Entry entry, Place before, int collapsed) {
  PushAbove(before.block);
  Settle(before.block);
  if (m_contents[before.block].count == kCapacity) {
    const int cut = before.index >= kAppendSplit ? before.index : kHalf;
    SplitBlock({before.block, cut});
    if (before.index >= cut) {
      const Block next = NextBlock(before.block);
      // An entry at the seam goes to the emptier side.
      if (before.index > cut || m_contents[next].count < cut) before = {next, before.index - cut};
    }
  }
  Content& content = m_contents[before.block];
  const auto tail = content.count - before.index;
  std::copy_backward(&content.entry[before.index], &content.entry[before.index] + tail,
                     &content.entry[before.index] + tail + 1);
  std::copy_backward(&content.collapsed[before.index], &content.collapsed[before.index] + tail,
                     &content.collapsed[before.index] + tail + 1);
  for (std::uint64_t* flags : content.Flags()) {
    *flags = WithGap(*flags, before.index);
  }
  ++content.count;
  content.entry[before.index] = entry;
  content.collapsed[before.index] = collapsed - m_nodes[before.block].own.change.raise;
  HomeOf(entry) = before.block;

  // The sums only grow: add the one entry on the way up instead of adding up each node anew.
  Sum single;
  single.entries = 1;
  if (IsOpening(entry)) {
    single.least = collapsed;
    single.atLeast = 1;
  }
  m_nodes[before.block].own.sum.Add(single);
  m_nodes[before.block].knowsOwnShape = false;
  for (Block block = before.block; block != 0; block = m_nodes[block].parent) {
    m_nodes[block].all.sum.Add(single);
    m_nodes[block].knowsShape = false;
  }
}

void OrderIndex::EraseEntry(Entry entry) {
  const Place place = Find(entry);
  PushAbove(place.block);
  Settle(place.block);
  Content& content = m_contents[place.block];
  std::copy(&content.entry[place.index] + 1, content.entry.data() + content.count, &content.entry[place.index]);
  std::copy(&content.collapsed[place.index] + 1, content.collapsed.data() + content.count,
            &content.collapsed[place.index]);
  for (std::uint64_t* flags : content.Flags()) {
    *flags = WithoutBit(*flags, place.index);
  }
  --content.count;
  m_nodes[place.block].knowsOwnShape = false;
  HomeOf(entry) = 0;
  if (content.count == 0) {
    RemoveBlock(place.block);
    return;
  }
  Summarise(place.block);
  PullUp(place.block);
  if (content.count >= kMergeBelow) return;
  const Block next = NextBlock(place.block);
  if (next != 0 && content.count + m_contents[next].count <= kMergedLimit) {
    PushAbove(next);
    MoveTail(next, 0, place.block);
    Summarise(place.block);
    PullUp(place.block);
    RemoveBlock(next);
  }
}

/// Moves the entries of `from` from `index` on to the end of `to`; the caller brings the sums up to date. Nothing
/// may wait above the two.
void OrderIndex::MoveTail(Block from, int index, Block to) {
  Settle(from);
  Settle(to);
  Content& source = m_contents[from];
  Content& target = m_contents[to];
  const int shift = m_nodes[from].own.change.raise - m_nodes[to].own.change.raise;
  const int end = target.count;
  for (int i = index; i < source.count; ++i, ++target.count) {
    target.entry[target.count] = source.entry[i];
    target.collapsed[target.count] = source.collapsed[i] + shift;
    HomeOf(source.entry[i]) = to;
  }
  if (index < source.count) {
    target.selected |= source.selected >> index << end;
    target.marked |= source.marked >> index << end;
    target.open |= source.open >> index << end;
    target.found |= source.found >> index << end;
    target.branch |= source.branch >> index << end;
  }
  source.count = index;
  m_nodes[from].knowsOwnShape = m_nodes[to].knowsOwnShape = false;
  for (std::uint64_t* flags : source.Flags()) *flags &= MaskBelow(index);
}

/// Moves the entries of the block from `at.index` on to a fresh block behind it.
void OrderIndex::SplitBlock(Place at) {
  const Block fresh = NewBlock();
  // As a leaf first: to the right of `at`, or leftmost below its right neighbour.
  Block parent = at.block;
  if (m_nodes[parent].right != 0) {
    for (parent = m_nodes[parent].right; m_nodes[parent].left != 0;) parent = m_nodes[parent].left;
  }
  PushAbove(parent);
  (parent == at.block ? m_nodes[parent].right : m_nodes[parent].left) = fresh;
  m_nodes[fresh].parent = parent;
  MoveTail(at.block, at.index, fresh);
  Summarise(at.block);
  Summarise(fresh);
  PullUp(fresh);
  PullUp(at.block);
  while (m_nodes[fresh].parent != 0 && m_nodes[m_nodes[fresh].parent].priority < m_nodes[fresh].priority) {
    RotateUp(fresh);
  }
}

void OrderIndex::RotateUp(Block block) {
  const Block parent = m_nodes[block].parent;
  const Block above = m_nodes[parent].parent;
  Push(parent);
  Push(block);
  if (m_nodes[parent].left == block) {
    m_nodes[parent].left = m_nodes[block].right;
    m_nodes[block].right = parent;
  } else {
    m_nodes[parent].right = m_nodes[block].left;
    m_nodes[block].left = parent;
  }
  m_nodes[block].parent = above;
  if (above != 0) (m_nodes[above].left == parent ? m_nodes[above].left : m_nodes[above].right) = block;
  if (m_root == parent) m_root = block;
  Pull(parent);
  Pull(block);
}

void OrderIndex::RemoveBlock(Block block) {
  Push(block);
  const Block parent = m_nodes[block].parent;
  const Block merged = Merge(m_nodes[block].left, m_nodes[block].right);
  m_nodes[merged].parent = merged != 0 ? parent : 0;
  if (parent == 0) {
    m_root = merged;
  } else {
    (m_nodes[parent].left == block ? m_nodes[parent].left : m_nodes[parent].right) = merged;
    PullUp(parent);
  }
  FreeBlock(block);
}

/// Adds a block's entries up anew. No change of flags may wait at it.
void OrderIndex::Summarise(Block block) {
  const Content& content = m_contents[block];
  const int raise = m_nodes[block].own.change.raise;
  int least = kNever;
  for (int i = 0; i < content.count; ++i) {
    if (IsOpening(content.entry[i])) least = std::min(least, content.collapsed[i] + raise);
  }
  m_nodes[block].own.sum = SumOf(content, least, least != kNever ? MaskAt(block, least) : 0);
}

/// The sums of entries of which those in a mask have the smallest count.
OrderIndex::Sum OrderIndex::SumOf(const Content& content, int least, std::uint64_t atLeast) {
  const auto count = [](std::uint64_t mask) { return static_cast<std::uint32_t>(std::popcount(mask)); };
  return {.entries = static_cast<std::uint32_t>(content.count),
          .selected = count(content.selected),
          .found = count(content.found),
          .least = least,
          .atLeast = count(atLeast),
          .selectedAtLeast = count(atLeast & content.selected),
          .markedAtLeast = count(atLeast & content.marked),
          .openAtLeast = count(atLeast & content.open)};
}

void OrderIndex::Pull(Block block) {
  Node& node = m_nodes[block];
  Recount(node);
  node.knowsShape = false;
  if (node.left != 0) m_nodes[node.left].parent = block;
  if (node.right != 0) m_nodes[node.right].parent = block;
}

/// Adds up a subtree from its parts.
void OrderIndex::Recount(Node& node) {
  Sum sum = m_nodes[node.left].all.sum;
  sum.Add(node.own.sum);
  sum.Add(m_nodes[node.right].all.sum);
  sum.Do(node.all.change);
  node.all.sum = sum;
}

void OrderIndex::PullUp(Block block) {
  for (; block != 0; block = m_nodes[block].parent) Pull(block);
}

// ---- whole trees ----------------------------------------------------------------------------------------

OrderIndex::Block OrderIndex::Merge(Block left, Block right) {
  if (left == 0 || right == 0) return left + right;
  if (m_nodes[left].priority > m_nodes[right].priority) {
    Push(left);
    const Block merged = Merge(m_nodes[left].right, right);
    m_nodes[left].right = merged;
    Pull(left);
    return left;
  }
  Push(right);
  const Block merged = Merge(left, m_nodes[right].left);
  m_nodes[right].left = merged;
  Pull(right);
  return right;
}

/// Merges two trees and the two blocks that meet at the seam when they are small.
OrderIndex::Block OrderIndex::Join(Block left, Block right) {
  if (left == 0 || right == 0) return left + right;
  Block last = left;
  while (m_nodes[last].right != 0) last = m_nodes[last].right;
  Block first = right;
  while (m_nodes[first].left != 0) first = m_nodes[first].left;
  Block root = Merge(left, right);
  m_nodes[root].parent = 0;
  if (m_contents[last].count + m_contents[first].count > kMergedLimit) return root;
  PushAbove(last);
  PushAbove(first);
  MoveTail(first, 0, last);
  Summarise(last);
  PullUp(last);
  const Block whole = m_root;
  m_root = root;
  RemoveBlock(first);
  root = m_root;
  m_root = whole;
  return root;
}

/// Cuts between blocks; `rank` must be the first entry of a block or the end.
OrderIndex::Cut OrderIndex::CutAt(Block root, std::size_t rank) {
  if (root == 0) return {};
  Push(root);
  const std::size_t left = m_nodes[m_nodes[root].left].all.sum.entries;
  Cut cut;
  if (rank <= left) {
    cut = CutAt(m_nodes[root].left, rank);
    m_nodes[root].left = cut.right;
    cut.right = root;
  } else {
    cut = CutAt(m_nodes[root].right, rank - left - m_nodes[root].own.sum.entries);
    m_nodes[root].right = cut.left;
    cut.left = root;
  }
  Pull(root);
  m_nodes[cut.left].parent = 0;
  m_nodes[cut.right].parent = 0;
  return cut;
}

OrderIndex::Cut OrderIndex::CutTree(Block root, std::size_t rank) {
  if (rank >= m_nodes[root].all.sum.entries) return {root, 0};
  std::size_t rest = rank;
  Block block = root;
  for (;;) {
    const Node& node = m_nodes[block];
    const std::size_t left = m_nodes[node.left].all.sum.entries;
    if (rest < left) {
      block = node.left;
    } else if (rest < left + node.own.sum.entries) {
      rest -= left;
      break;
    } else {
      rest -= left + node.own.sum.entries;
      block = node.right;
    }
  }
  if (rest != 0) {
    SplitBlock({block, static_cast<int>(rest)});
    while (m_nodes[block].parent != 0) block = m_nodes[block].parent;
    root = block;
  }
  return CutAt(root, rank);
}

void OrderIndex::FreeTree(Block root) {
  if (root == 0) return;
  std::vector<Block> stack{root};
  while (!stack.empty()) {
    const Block block = stack.back();
    stack.pop_back();
    if (m_nodes[block].left != 0) stack.push_back(m_nodes[block].left);
    if (m_nodes[block].right != 0) stack.push_back(m_nodes[block].right);
    for (int i = 0; i < m_contents[block].count; ++i) {
      const Entry entry = m_contents[block].entry[i];
      if (HomeOf(entry) == block) HomeOf(entry) = 0;
    }
    FreeBlock(block);
  }
}

/// Adds the entries of a tree in their order; what waits above them is handed on.
void OrderIndex::CopyTree(Block block, std::vector<Copied>& entries) {
  if (block == 0) return;
  Push(block);
  Settle(block);
  CopyTree(m_nodes[block].left, entries);
  const Content& content = m_contents[block];
  const int raise = m_nodes[block].own.change.raise;
  for (int i = 0; i < content.count; ++i) {
    const auto has = [i](std::uint64_t mask) { return (mask >> static_cast<unsigned>(i) & 1U) != 0; };
    entries.push_back({content.entry[i], content.collapsed[i] + raise, has(content.selected), has(content.marked),
                       has(content.open), has(content.found), has(content.branch)});
  }
  CopyTree(m_nodes[block].right, entries);
}

OrderIndex::Block OrderIndex::BuildTree(std::span<const Copied> entries) {
  Block root = 0;
  for (std::size_t from = 0; from < entries.size();) {
    const std::size_t count = std::min<std::size_t>(kAppendSplit, entries.size() - from);
    const Block block = NewBlock();
    Content& content = m_contents[block];
    content.count = static_cast<int>(count);
    for (std::size_t i = 0; i < count; ++i) {
      const Copied& copied = entries[from + i];
      content.entry[i] = copied.entry;
      content.collapsed[i] = copied.collapsed;
      content.selected |= static_cast<std::uint64_t>(copied.selected) << i;
      content.marked |= static_cast<std::uint64_t>(copied.marked) << i;
      content.open |= static_cast<std::uint64_t>(copied.open) << i;
      content.found |= static_cast<std::uint64_t>(copied.found) << i;
      content.branch |= static_cast<std::uint64_t>(copied.branch) << i;
      HomeOf(copied.entry) = block;
    }
    Summarise(block);
    Pull(block);
    root = Merge(root, block);
    from += count;
  }
  m_nodes[root].parent = 0;
  return root;
}

/// Rows without children and flags, all with the same count.
OrderIndex::Block OrderIndex::BuildLeaves(std::span<const Row> rows, int collapsed) {
  constexpr std::size_t kAtOnce = 60;  // nearly full: most of so many rows stay as they came
  MakeRoom(m_nodes, m_nodes.size() + rows.size() / kAtOnce + 1);
  MakeRoom(m_contents, m_contents.size() + rows.size() / kAtOnce + 1);
  Block root = 0;
  for (std::size_t from = 0; from < rows.size(); from += kAtOnce) {
    const auto count = static_cast<std::uint32_t>(std::min(kAtOnce, rows.size() - from));
    const Block block = NewBlock();
    Content& content = m_contents[block];
    content.count = static_cast<int>(count);
    for (std::size_t i = 0; i < count; ++i) {
      content.entry[i] = OpeningOf(rows[from + i]);
      content.collapsed[i] = collapsed;
      m_openHome[rows[from + i]] = block;
    }
    m_nodes[block].own.sum = {.entries = count, .least = collapsed, .atLeast = count};
    m_nodes[block].ownShape = {.end = 0, .least = 0, .atLeast = count};
    m_nodes[block].knowsOwnShape = true;
    Pull(block);
    root = Merge(root, block);
  }
  m_nodes[root].parent = 0;
  return root;
}

// ---- checks ---------------------------------------------------------------------------------------------

std::size_t OrderIndex::MemoryUsed() const {
  return m_nodes.capacity() * sizeof(Node) + m_contents.capacity() * sizeof(Content) +
         (m_openHome.capacity() + m_closeHome.capacity() + m_free.capacity()) * sizeof(Block);
}

bool OrderIndex::IsConsistent() const {
  if (m_root != 0 && m_nodes[m_root].parent != 0) return false;
  return m_nodes[0].all.sum == Sum{} && CheckNode(m_root);
}

bool OrderIndex::CheckNode(Block block) const {
  if (block == 0) return true;
  const Node& node = m_nodes[block];
  for (const Block child : {node.left, node.right}) {
    if (child != 0 && (m_nodes[child].parent != block || m_nodes[child].priority > node.priority)) return false;
    if (!CheckNode(child)) return false;
  }
  const Content& content = m_contents[block];
  if (content.count == 0) return false;
  Sum own;
  for (int i = 0; i < content.count; ++i) {
    const auto has = [i](std::uint64_t mask) { return static_cast<std::uint32_t>(mask >> i & 1U); };
    Sum single;
    single.entries = 1;
    single.selected = has(content.selected);
    single.found = has(content.found);
    if (IsOpening(content.entry[i])) {
      single.least = content.collapsed[i];
      single.atLeast = 1;
      single.selectedAtLeast = single.selected;
      single.markedAtLeast = has(content.marked);
      single.openAtLeast = has(content.open);
    } else if (has(content.selected | content.marked | content.open | content.found | content.branch) != 0) {
      return false;
    }
    const bool isBranch = IsOpening(content.entry[i]) && HasClosing(content.entry[i] / 2);
    if (isBranch != (has(content.branch) != 0)) return false;
    if (HomeOf(content.entry[i]) != block) return false;
    own.Add(single);
  }
  const std::uint64_t flags = content.selected | content.marked | content.open | content.found | content.branch;
  if ((flags & ~MaskBelow(content.count)) != 0) return false;
  own.Do(node.own.change);
  if (own != node.own.sum) return false;
  if (node.knowsShape && !HasRightShape(block)) return false;
  Sum all = m_nodes[node.left].all.sum;
  all.Add(own);
  all.Add(m_nodes[node.right].all.sum);
  all.Do(node.all.change);
  return all == node.all.sum;
}

}  // namespace qd

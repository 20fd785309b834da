// Which child of its parent a row is, and the child at a place. A child is a row that stands no deeper than where
// its parent's branch begins.

#include <algorithm>
#include <utility>

#include "platform/tree/OrderIndex.h"

namespace qd {

void OrderIndex::Shape::Add(const Shape& behind) {
  const int theirs = behind.least != kNever ? end + behind.least : kNever;
  if (theirs < least) atLeast = 0;
  if (theirs <= least && theirs != kNever) atLeast += behind.atLeast;
  least = std::min(least, theirs);
  end += behind.end;
}

/// Says of a row whether it has a closing entry.
void OrderIndex::MarkBranch(Row row, bool on) {
  const Place place = Find(OpeningOf(row));
  const std::uint64_t bit = 1ULL << place.index;
  Content& content = m_contents[place.block];
  on ? content.branch |= bit : content.branch &= ~bit;
  ForgetShapes(place.block);
}

void OrderIndex::ForgetShapes(Block block) {
  m_nodes[block].knowsOwnShape = false;
  for (; block != 0 && m_nodes[block].knowsShape; block = m_nodes[block].parent) m_nodes[block].knowsShape = false;
}

/// Adds an entry of a block behind a shape.
void OrderIndex::AddEntry(const Content& content, int index, Shape& shape) {
  if (!IsOpening(content.entry[index])) {
    --shape.end;
    return;
  }
  if (shape.end < shape.least) {
    shape.least = shape.end;
    shape.atLeast = 0;
  }
  if (shape.end == shape.least) ++shape.atLeast;
  shape.end += static_cast<int>(content.branch >> index & 1U);
}

const OrderIndex::Shape& OrderIndex::OwnShapeOf(Block block) const {
  const Node& node = m_nodes[block];
  if (!std::exchange(node.knowsOwnShape, true)) {
    node.ownShape = {};
    for (int i = 0; i < m_contents[block].count; ++i) AddEntry(m_contents[block], i, node.ownShape);
  }
  return node.ownShape;
}

const OrderIndex::Shape& OrderIndex::ShapeOf(Block block) const {
  const Node& node = m_nodes[block];
  if (block != 0 && !std::exchange(node.knowsShape, true)) {
    node.shape = ShapeOf(node.left);
    node.shape.Add(OwnShapeOf(block));
    node.shape.Add(ShapeOf(node.right));
  }
  return node.shape;
}

/// Adds the entries of a subtree from rank `first` up to `last`, which is not one of them, behind a shape.
void OrderIndex::AddShape(Block block, long first, long last, Shape& shape) const {
  if (block == 0 || first >= last) return;
  const Node& node = m_nodes[block];
  if (first == 0 && last == static_cast<long>(node.all.sum.entries)) return shape.Add(ShapeOf(block));
  const long left = m_nodes[node.left].all.sum.entries;
  const long behind = left + static_cast<long>(node.own.sum.entries);
  AddShape(node.left, first, std::min(last, left), shape);
  for (long i = std::max(first, left); i < std::min(last, behind); ++i) {
    AddEntry(m_contents[block], static_cast<int>(i - left), shape);
  }
  AddShape(node.right, std::max(first, behind) - behind, last - behind, shape);
}

std::size_t OrderIndex::PlaceBelow(Row row, Row parent) const {
  Shape before;
  const auto first = parent != 0 ? static_cast<long>(RankOf(OpeningOf(parent))) + 1 : 0;
  AddShape(m_root, first, static_cast<long>(RankOf(OpeningOf(row))), before);
  return before.atLeast;
}

OrderIndex::Row OrderIndex::ChildAt(Row parent, std::size_t place) const {
  if (parent != 0 && !HasClosing(parent)) return 0;
  const auto first = parent != 0 ? static_cast<long>(RankOf(OpeningOf(parent))) + 1 : 0;
  const auto last = parent != 0 ? static_cast<long>(RankOf(ClosingOf(parent)))
                                : static_cast<long>(m_nodes[m_root].all.sum.entries);
  int depth = 0;
  return RowAtDepth(m_root, first, last, depth, place);
}

/// The row at a place among those at depth 0 in a range, where the range begins at a depth; nothing in it is
/// above 0. When there is none, what the range holds is taken off the place and added to the depth.
OrderIndex::Row OrderIndex::RowAtDepth(Block block, long first, long last, int& depth, std::size_t& place) const {
  if (block == 0 || first >= last) return 0;
  const Node& node = m_nodes[block];
  if (first == 0 && last == static_cast<long>(node.all.sum.entries)) {
    const Shape& shape = ShapeOf(block);
    const std::size_t children = shape.least != kNever && depth + shape.least == 0 ? shape.atLeast : 0;
    if (place >= children) {
      place -= children;
      depth += shape.end;
      return 0;
    }
  }
  const long left = m_nodes[node.left].all.sum.entries;
  const long behind = left + static_cast<long>(node.own.sum.entries);
  if (const Row row = RowAtDepth(node.left, first, std::min(last, left), depth, place); row != 0) return row;
  const Content& content = m_contents[block];
  for (long i = std::max(first, left); i < std::min(last, behind); ++i) {
    const auto index = static_cast<int>(i - left);
    if (!IsOpening(content.entry[index])) {
      --depth;
    } else {
      if (depth == 0 && place-- == 0) return content.entry[index] / 2;
      depth += static_cast<int>(content.branch >> index & 1U);
    }
  }
  return RowAtDepth(node.right, std::max(first, behind) - behind, last - behind, depth, place);
}

/// For checks: whether what is known of a subtree's shape is so.
bool OrderIndex::HasRightShape(Block block) const {
  const Node& node = m_nodes[block];
  Shape own;
  for (int i = 0; i < m_contents[block].count; ++i) AddEntry(m_contents[block], i, own);
  const auto isKnown = [this](Block below) { return below == 0 || m_nodes[below].knowsShape; };
  if (!node.knowsOwnShape || !isKnown(node.left) || !isKnown(node.right)) return false;
  Shape all = m_nodes[node.left].shape;
  all.Add(own);
  all.Add(m_nodes[node.right].shape);
  return own == node.ownShape && all == node.shape;
}

}  // namespace qd

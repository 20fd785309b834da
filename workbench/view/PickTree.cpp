#include "workbench/view/PickTree.h"

#include <algorithm>
#include <numeric>

namespace qd::workbench {

PickTree::PickTree(std::size_t count, const std::function<Bounds(std::size_t)>& boxOf) {
  constexpr std::uint32_t kLeaf = 6;
  struct Range {
    std::uint32_t first;
    std::uint32_t count;
    std::uint32_t parent;  // whose second child this is; itself for the top and for first children
  };
  if (count == 0) return;
  std::vector<Bounds> boxes(count);
  for (std::size_t i = 0; i < count; ++i) boxes[i] = boxOf(i);
  m_order.resize(count);
  std::iota(m_order.begin(), m_order.end(), 0U);
  std::vector<Range> waiting{{0, static_cast<std::uint32_t>(count), 0}};
  while (!waiting.empty()) {
    const Range range = waiting.back();
    waiting.pop_back();
    const auto number = static_cast<std::uint32_t>(m_nodes.size());
    if (range.parent != number) m_nodes[range.parent].first = number;
    const auto begin = m_order.begin() + range.first;
    const auto end = begin + range.count;
    Node node{NoBounds(), range.first, range.count};
    Bounds middles = NoBounds();
    for (auto at = begin; at != end; ++at) {
      const Bounds& box = boxes[*at];
      Widen(node.box, box);
      const float middle[3] = {box[0] + box[1], box[2] + box[3], box[4] + box[5]};
      Widen(middles, middle);
    }
    if (range.count > kLeaf) {
      std::size_t longest = 0;
      for (std::size_t axis = 1; axis < 3; ++axis) {
        const auto length = [&middles](std::size_t a) { return middles[2 * a + 1] - middles[2 * a]; };
        if (length(axis) > length(longest)) longest = axis;
      }
      const std::uint32_t half = range.count / 2;
      std::nth_element(begin, begin + half, end, [&](std::uint32_t a, std::uint32_t b) {
        return boxes[a][2 * longest] + boxes[a][2 * longest + 1] <
               boxes[b][2 * longest] + boxes[b][2 * longest + 1];
      });
      node.count = 0;
      // The first child comes next, so it is put on top.
      waiting.push_back({range.first + half, range.count - half, number});
      waiting.push_back({range.first, half, number + 1});
    }
    m_nodes.push_back(node);
  }
}

}  // namespace qd::workbench

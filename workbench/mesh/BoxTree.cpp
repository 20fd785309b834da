#include "workbench/mesh/BoxTree.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace qd::workbench {

BoxTree::BoxTree(std::vector<Box3> boxes) : m_boxes(std::move(boxes)), m_order(m_boxes.size()) {
  constexpr std::uint32_t kLeaf = 4;
  std::iota(m_order.begin(), m_order.end(), 0U);
  std::erase_if(m_order, [this](std::uint32_t place) { return m_boxes[place].IsEmpty(); });
  if (m_order.empty()) return;
  m_nodes.push_back({{}, 0, static_cast<std::uint32_t>(m_order.size()), 0});
  for (std::size_t i = 0; i < m_nodes.size(); ++i) {
    Node node = m_nodes[i];
    Box3 middles;
    for (std::uint32_t k = node.first; k < node.end; ++k) {
      const Box3& box = m_boxes[m_order[k]];
      node.box.Add(box.least);
      node.box.Add(box.greatest);
      middles.Add((box.least + box.greatest) * 0.5);
    }
    if (node.end - node.first > kLeaf) {
      const Point3 extent = middles.greatest - middles.least;
      const std::size_t axis = extent.x >= extent.y && extent.x >= extent.z ? 0 : extent.y >= extent.z ? 1 : 2;
      const std::uint32_t half = node.first + (node.end - node.first) / 2;
      const auto at = [this](std::uint32_t place) { return m_order.begin() + place; };
      std::nth_element(at(node.first), at(half), at(node.end), [this, axis](std::uint32_t a, std::uint32_t b) {
        return m_boxes[a].least[axis] + m_boxes[a].greatest[axis] <
               m_boxes[b].least[axis] + m_boxes[b].greatest[axis];
      });
      node.child = static_cast<std::uint32_t>(m_nodes.size());
      m_nodes.push_back({{}, node.first, half, 0});
      m_nodes.push_back({{}, half, node.end, 0});
    }
    m_nodes[i] = node;
  }
}

}  // namespace qd::workbench

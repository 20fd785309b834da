#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "workbench/view/PickRay.h"

namespace qd::workbench {

/// Boxes in a tree of boxes: what a ray meets of a million is found without looking at all of them.
class PickTree {
 public:
  PickTree() = default;
  /// Of things that are counted from 0 and lie in these boxes.
  PickTree(std::size_t count, const std::function<Bounds(std::size_t)>& boxOf);

  bool IsEmpty() const { return m_nodes.empty(); }
  /// Calls `visit` with the number of each thing whose box may hold something that lies on the ray before
  /// `limit()`, the nearer boxes first.
  template <typename Limit, typename Visit>
  void Along(const PickRay& ray, const Limit& limit, const Visit& visit) const {
    struct Waiting {
      double distance;
      std::uint32_t node;
    };
    std::vector<Waiting> waiting;
    const auto wait = [&](std::uint32_t node) {
      if (const auto distance = DistanceTo(ray, m_nodes[node].box)) waiting.push_back({*distance, node});
    };
    if (!m_nodes.empty()) wait(0);
    while (!waiting.empty()) {
      const Waiting next = waiting.back();
      waiting.pop_back();
      if (next.distance > limit()) continue;
      const Node& node = m_nodes[next.node];
      for (std::uint32_t i = 0; i < node.count; ++i) visit(m_order[node.first + i]);
      if (node.count != 0) continue;
      wait(next.node + 1);
      const std::size_t between = waiting.size();
      wait(node.first);
      const bool both =
          between != 0 && waiting.size() == between + 1 && waiting[between - 1].node == next.node + 1;
      if (both && waiting[between].distance > waiting[between - 1].distance)
        std::swap(waiting[between], waiting[between - 1]);
    }
  }

 private:
  struct Node {
    Bounds box;
    std::uint32_t first;  // of its things in the order, or its second child; the first child stands behind it
    std::uint32_t count;  // of its things; 0 for a node with children
  };

  std::vector<Node> m_nodes;
  std::vector<std::uint32_t> m_order;
};

}  // namespace qd::workbench

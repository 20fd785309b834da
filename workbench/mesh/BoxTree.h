#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "workbench/mesh/Point3.h"

namespace qd::workbench {

/// A box along the axes; as made it holds nothing.
struct Box3 {
  static constexpr double kFar = std::numeric_limits<double>::infinity();
  Point3 least{kFar, kFar, kFar};
  Point3 greatest{-kFar, -kFar, -kFar};

  bool IsEmpty() const { return !(least.x <= greatest.x); }
  void Add(const Point3& at) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      least[axis] = std::min(least[axis], at[axis]);
      greatest[axis] = std::max(greatest[axis], at[axis]);
    }
  }
  /// 0 for boxes that meet.
  double DistanceTo(const Box3& other) const {
    Point3 gap;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      gap[axis] = std::max({0.0, other.least[axis] - greatest[axis], least[axis] - other.greatest[axis]});
    }
    return std::hypot(gap.x, gap.y, gap.z);
  }
};

/// Finds which of many boxes are near another one, in time that goes with the logarithm of how many there are and
/// with what is found.
class BoxTree {
 public:
  explicit BoxTree(std::vector<Box3> boxes);

  std::size_t Count() const { return m_boxes.size(); }
  const Box3& BoxOf(std::uint32_t place) const { return m_boxes[place]; }
  /// Calls with places of boxes that are not farther from one than `reach`, which is what the call answers from
  /// then on; near ones come first. A reach below 0 ends it.
  template <typename Call>
  void ForNear(const Box3& box, double reach, const Call& call) const {
    if (m_nodes.empty()) return;
    std::array<std::pair<std::uint32_t, double>, kDeepest> waiting;
    std::size_t count = 0;
    waiting[count++] = {0, m_nodes[0].box.DistanceTo(box)};
    while (count > 0 && reach >= 0) {
      const auto [number, distance] = waiting[--count];
      if (!(distance <= reach)) continue;
      const Node& node = m_nodes[number];
      if (node.child == 0) {
        for (std::uint32_t i = node.first; i < node.end && reach >= 0; ++i) {
          if (m_boxes[m_order[i]].DistanceTo(box) <= reach) reach = call(m_order[i]);
        }
        continue;
      }
      const double one = m_nodes[node.child].box.DistanceTo(box);
      const double other = m_nodes[node.child + 1].box.DistanceTo(box);
      const bool turned = one < other;  // the nearer one comes last, to be looked at first
      waiting[count++] = turned ? std::pair(node.child + 1, other) : std::pair(node.child, one);
      waiting[count++] = turned ? std::pair(node.child, one) : std::pair(node.child + 1, other);
    }
  }

 private:
  static constexpr std::size_t kDeepest = 128;  // halves of halves: more than any number of boxes needs
  struct Node {
    Box3 box;
    std::uint32_t first = 0;  // of the order
    std::uint32_t end = 0;
    std::uint32_t child = 0;  // the other one stands behind it; 0 for none
  };

  std::vector<Box3> m_boxes;
  std::vector<std::uint32_t> m_order;
  std::vector<Node> m_nodes;
};

}  // namespace qd::workbench

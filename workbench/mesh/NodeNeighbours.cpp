// Which nodes stand where others stand.

#include <algorithm>
#include <bit>
#include <numbers>
#include <tuple>

#include "workbench/mesh/MeshChecks.h"

namespace qd::workbench {

namespace {

/// A cell of a grid. Coordinates so large beside the cells that numbers do not tell these apart are cells
/// themselves.
struct Cell {
  unsigned plain = 0;  // a bit for each axis that is not told in cells
  std::array<std::int64_t, 3> number{};
  bool operator==(const Cell&) const = default;
  bool operator<(const Cell& other) const { return std::tie(plain, number) < std::tie(other.plain, other.number); }

  bool IsPlain(std::size_t axis) const { return (plain >> axis & 1U) != 0; }
};

Cell CellOf(const Point3& at, double side) {
  Cell cell;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double number = std::floor(at[axis] / side);
    const bool told = std::abs(number) < 0x1p50;
    if (!told) cell.plain |= 1U << axis;
    cell.number[axis] = told ? static_cast<std::int64_t>(number)
                             : std::bit_cast<std::int64_t>(at[axis] + 0.0);  // there are two zeros
  }
  return cell;
}

struct Placed {
  Cell cell;
  std::uint32_t node;
};

constexpr std::int64_t kReach = 2;  // cells in which nodes may be near those of another one

/// The nodes in the cells of one row near each of all cells, which are asked for in ascending order.
class RowBeside {
 public:
  RowBeside(const std::vector<Placed>& order, std::int64_t x, std::int64_t y) : m_order(order), m_x(x), m_y(y) {}

  /// Calls with nodes until the call answers false; answers whether it has not.
  template <typename Call>
  bool ForNear(const Cell& cell, const Call& call) {
    if ((m_x != 0 && cell.IsPlain(0)) || (m_y != 0 && cell.IsPlain(1))) return true;
    const std::int64_t reach = cell.IsPlain(2) ? 0 : kReach;
    Cell at = cell;
    at.number[0] += m_x;
    at.number[1] += m_y;
    at.number[2] -= reach;
    while (m_next < m_order.size() && m_order[m_next].cell < at) ++m_next;
    at.number[2] += 2 * reach;
    for (std::size_t i = m_next; i < m_order.size() && !(at < m_order[i].cell); ++i) {
      if (!call(m_order[i].node)) return false;
    }
    return true;
  }

 private:
  const std::vector<Placed>& m_order;
  std::int64_t m_x;
  std::int64_t m_y;
  std::size_t m_next = 0;  // the first node that is not before the row
};

}  // namespace

/// In cells so small that all nodes of one are near each other, those of a cell with several are found at once.
/// Those that are alone in theirs look into the cells around, and few are around any cell, so that crowded ones
/// cost no more than others.
std::vector<std::uint32_t> NodesWithNeighbours(const std::vector<double>& coordinates, double distance,
                                               const ProgressCall& progress) {
  constexpr std::size_t kStep = 1U << 14U;  // nodes between two looks at the progress
  constexpr double kSafe = 0.999;           // the diagonal of a cell is a little less than the distance
  const auto at = [&coordinates](std::size_t node) { return Point3::At(&coordinates[node * 3]); };
  const std::size_t count = coordinates.size() / 3;
  std::vector<Placed> order;
  order.reserve(count);
  for (std::size_t node = 0; node < count; ++node) {
    if (!IsFinite(at(node))) continue;
    order.push_back({CellOf(at(node), distance / std::numbers::sqrt3 * kSafe), static_cast<std::uint32_t>(node)});
  }
  if (!progress(0.1)) return {};
  std::sort(order.begin(), order.end(), [](const Placed& a, const Placed& b) { return a.cell < b.cell; });
  std::vector<bool> near(count, false);
  for (std::size_t i = 1; i < order.size(); ++i) {
    if (order[i].cell != order[i - 1].cell) continue;
    near[order[i].node] = true;
    near[order[i - 1].node] = true;
  }
  std::vector<RowBeside> rows;
  for (std::int64_t x = -kReach; x <= kReach; ++x) {
    for (std::int64_t y = -kReach; y <= kReach; ++y) rows.emplace_back(order, x, y);
  }
  for (std::size_t i = 0; i < order.size(); ++i) {
    const double share = static_cast<double>(i) / static_cast<double>(order.size());
    if (i % kStep == 0 && !progress(0.5 + 0.5 * share)) return {};
    const std::uint32_t node = order[i].node;
    const auto isFar = [&](std::uint32_t other) {
      const Point3 way = at(other) - at(node);
      if (other == node || std::hypot(way.x, way.y, way.z) > distance) return true;
      near[node] = true;
      near[other] = true;
      return false;
    };
    for (auto row = rows.begin(); row != rows.end() && !near[node];) {
      if (row->ForNear(order[i].cell, isFar)) ++row;
    }
  }
  std::vector<std::uint32_t> found;
  for (std::size_t node = 0; node < count; ++node) {
    if (near[node]) found.push_back(static_cast<std::uint32_t>(node));
  }
  return found;
}

}  // namespace qd::workbench

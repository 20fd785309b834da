#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/scaling/Meter.h"

namespace qd::scaling {

/// How the work may grow from 10,000 to 100,000 rows.
enum class Growth {
  Constant,  ///< or with the logarithm: 1.4 times, or kMoreSteps for each row asked about
  Linear,    ///< 11 times
  NLogN      ///< 13.5 times, or 10 and kMoreSteps for each row
};

/// What three more levels of a balanced tree cost, for the one path that a question takes: of a few steps more is
/// soon a half. One look at each row more would cost hundreds of times as much.
inline constexpr std::uint64_t kMoreSteps = 300;
/// So many times as much for the place among siblings, which an insertion asks for, too: entries of blocks are
/// counted one by one at both ends of what stands before the row, and a family of a few rows has not even one
/// block.
inline constexpr std::uint64_t kWithBlocks = 5;

/// One operation on a world, run on a copy of it that is thrown away.
struct Case {
  std::string name;
  Growth growth;
  /// Does what is to be counted under the meter, and looks whether it was done.
  std::function<bool(Meter&)> run;
  /// Rows that it asks about or changes; of work on all rows, how often it does so with each.
  std::uint64_t asked = 1;
};

/// A model of one shape with n rows or records.
class World {
 public:
  World() = default;
  virtual ~World() = default;
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  /// The same operations in the same order for each size.
  virtual std::vector<Case> Cases() = 0;
};

/// A kind of world: its name, how the work to make it may grow, and how it is made.
struct WorldKind {
  std::string name;
  Growth build;
  std::function<std::unique_ptr<World>(int n)> make;
};

std::vector<WorldKind> RowTreeWorlds();
std::vector<WorldKind> TreeListWorlds();
std::vector<WorldKind> SuppliedWorlds();
std::vector<WorldKind> GeometryWorlds();
std::vector<WorldKind> MeshWorlds();
std::vector<WorldKind> CordWorlds();

inline constexpr std::size_t kSome = 64;

/// 64 of the elements, evenly spread; for work that is the same for each.
template <typename T>
std::vector<T> Some(const std::vector<T>& all) {
  std::vector<T> some;
  for (std::size_t i = 0; i < kSome; ++i) some.push_back(all[i * all.size() / kSome]);
  return some;
}

/// The side of a square of n rows.
int SideOf(int n);

}  // namespace qd::scaling

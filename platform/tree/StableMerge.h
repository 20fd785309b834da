#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace qd {

/// Sorts by a stable merge that always calls `compare(earlier, later)` and keeps the order on any answer that is
/// not positive. Unlike the standard sorts it ends, with every item once, whatever the comparison answers.
/// Returns whether the order changed.
template <typename Item, typename Compare>
bool StableMerge(std::vector<Item>& items, const Compare& compare) {
  std::vector<Item> merged(items.size());
  bool changed = false;
  for (std::size_t width = 1; width < items.size(); width *= 2) {
    for (std::size_t from = 0; from < items.size(); from += 2 * width) {
      const std::size_t middle = std::min(from + width, items.size());
      const std::size_t end = std::min(from + 2 * width, items.size());
      // Runs that are in order already need one comparison.
      if (middle == end || compare(items[middle - 1], items[middle]) <= 0) {
        std::copy(items.begin() + static_cast<long>(from), items.begin() + static_cast<long>(end),
                  merged.begin() + static_cast<long>(from));
        continue;
      }
      changed = true;
      std::size_t left = from;
      std::size_t right = middle;
      for (std::size_t out = from; out < end; ++out) {
        const bool takeRight = right < end && (left == middle || compare(items[left], items[right]) > 0);
        merged[out] = items[takeRight ? right++ : left++];
      }
    }
    items.swap(merged);
  }
  return changed;
}

}  // namespace qd

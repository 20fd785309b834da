#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/Export.h"

namespace qd {

/// Which of the places of a list are filled, counted so that the n-th filled one is found in O(log n) while places
/// are emptied and appended.
class QD_EXPORT PlaceCounts {
 public:
  /// Nothing is counted, and nothing follows the list until Count.
  bool IsOff() const { return m_sums.empty(); }
  void Clear() { m_sums.clear(); }  ///< counts nothing any more
  /// Counts the places of a list, of which those that hold null are empty. O(n).
  template <typename List>
  void Count(const List& places) {
    m_sums.clear();
    m_sums.reserve(places.size());
    for (const auto& place : places) Append(place != nullptr);
  }

  // Each follows a change of the list; nothing while counting is off.
  void Append(bool filled);       ///< a place came at the end
  void PopBack();                 ///< the last one went
  void Empty(std::size_t place);  ///< what stood at this place is gone

  /// The place of the filled one at an index, which must be less than how many there are.
  std::size_t PlaceOf(std::size_t index) const;

 private:
  // A binary indexed tree: at i stands how many of the lowest-bit-of-(i+1) places that end with i are filled.
  std::vector<std::uint32_t> m_sums;
};

}  // namespace qd

#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace qd {

/// Makes room for so many elements. What is large grows by a quarter, not twofold, and what grows at once gets a
/// little more than it needs, so that the next few that come move nothing.
template <typename Element>
void MakeRoom(std::vector<Element>& elements, std::size_t count) {
  if (count <= elements.capacity()) return;
  constexpr std::size_t kLarge = 1U << 16U;
  const std::size_t room = elements.capacity();
  elements.reserve(std::max(count + count / 16, room < kLarge ? room * 2 : room + room / 4));
}

}  // namespace qd

#include "qd_wrt/core/PlaceCounts.h"

#include <bit>

namespace qd {

namespace {

std::size_t LowestBit(std::size_t number) {
  return number & (~number + 1);
}

}  // namespace

void PlaceCounts::Append(bool filled) {
  const std::size_t number = m_sums.size() + 1;
  std::uint32_t sum = filled ? 1 : 0;
  const std::size_t before = number - LowestBit(number);
  for (std::size_t part = number - 1; part > before; part -= LowestBit(part)) sum += m_sums[part - 1];
  m_sums.push_back(sum);
}

void PlaceCounts::PopBack() {
  if (!IsOff()) m_sums.pop_back();  // no sum of an earlier place holds it
}

void PlaceCounts::Empty(std::size_t place) {
  for (std::size_t number = place + 1; number <= m_sums.size(); number += LowestBit(number)) --m_sums[number - 1];
}

std::size_t PlaceCounts::PlaceOf(std::size_t index) const {
  std::size_t place = 0;
  for (std::size_t step = std::bit_floor(m_sums.size()); step != 0; step /= 2) {
    if (place + step > m_sums.size() || m_sums[place + step - 1] > index) continue;
    place += step;
    index -= m_sums[place - 1];
  }
  return place;
}

}  // namespace qd

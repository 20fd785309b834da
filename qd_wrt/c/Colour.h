#pragma once

#include <cstdint>

namespace qd::c {

/// The greatest colour.
inline constexpr std::uint32_t kWhite = 0xFFFFFF;

/// Red is in the low byte of the module's colours, and in the high one of the interface's.
inline std::uint32_t Turned(std::uint32_t colour) {
  return (colour & 0xFFU) << 16U | (colour & 0xFF00U) | (colour >> 16U & 0xFFU);
}

}  // namespace qd::c

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

namespace qd::workbench {

/// Where a number that a stranger chose lies in a hash table. The library's own hash of a number is the number and
/// its tables have known sizes, so a file could number its elements to make them all meet in one place. Here every
/// run of the program has places of its own.
struct NumberHash {
  std::size_t operator()(std::uint64_t number) const noexcept {
    number = Mixed(number ^ Secret());
    return static_cast<std::size_t>(number);
  }

 private:
  static std::uint64_t Mixed(std::uint64_t number) {
    number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31U);
  }
  /// From the clock and the place of the program in memory, since the exchange program's cell has no other source.
  static std::uint64_t Secret() {
    static const char kHere = 0;
    static const std::uint64_t kSecret =
        Mixed(Mixed(reinterpret_cast<std::uintptr_t>(&kHere)) +
              static_cast<std::uint64_t>(std::chrono::high_resolution_clock::now().time_since_epoch().count()));
    return kSecret;
  }
};

/// By numbers of nodes or elements.
template <typename T>
using NumberMap = std::unordered_map<std::uint64_t, T, NumberHash>;
using NumberSet = std::unordered_set<std::uint64_t, NumberHash>;

}  // namespace qd::workbench

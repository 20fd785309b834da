#pragma once

#include <compare>
#include <cstdint>

namespace qd {

/// Handle of a row. Handles are never reused: a handle of a deleted row stays invalid for good.
struct HTREEITEM {
  std::uint64_t value = 0;                               ///< 0 for no row
  explicit operator bool() const { return value != 0; }  ///< whether it names a row, dead or alive
  auto operator<=>(const HTREEITEM&) const = default;    ///< by number; says nothing of where rows stand
};

/// @{
/// Positions for insertion, beside the handle of the sibling to insert behind. The numbers are those that
/// programs of this kind have always used.
inline constexpr HTREEITEM kTreeRoot{static_cast<std::uint64_t>(-65536)};
inline constexpr HTREEITEM kInsertFirst{static_cast<std::uint64_t>(-65535)};
inline constexpr HTREEITEM kInsertLast{static_cast<std::uint64_t>(-65534)};
inline constexpr HTREEITEM kInsertSort{static_cast<std::uint64_t>(-65533)};
/// @}

}  // namespace qd

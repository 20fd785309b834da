#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace qd {

/// Text: counted, so it may hold any character, code 0 included. One element is not always one character.
using CString = std::wstring;

/// Handle of a record in one of the host's data pools; 0 means none.
using iterator = std::uint64_t;

/// 32-bit RGB colour, red in the low byte.
using COLORREF = std::uint32_t;

/// The colour of three parts, 0 to 255 each.
constexpr COLORREF Rgb(unsigned red, unsigned green, unsigned blue) {
  return red | green << 8U | blue << 16U;
}

/// A list.
template <typename T>
using TArray = std::vector<T>;

/// A place or distance in device-independent pixels; y grows downwards.
struct CPoint {
  /// @{
  /// In pixels, to the right and down.
  int x = 0;
  int y = 0;
  /// @}
  auto operator<=>(const CPoint&) const = default;  ///< an order for maps
};

/// A rectangle in device-independent pixels; right and bottom are exclusive.
struct CRect {
  /// @{
  /// In pixels; right and bottom lie outside.
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  /// @}

  /// @{
  /// Negative for edges that are in the wrong order.
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  /// @}
  bool IsEmpty() const { return right <= left || bottom <= top; }  ///< whether no pixel lies in it
  /// Whether a pixel lies in it.
  bool Contains(CPoint p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
  /// The same at another place.
  CRect Moved(int dx, int dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
  /// Without a border of that width; a negative one adds it.
  CRect Deflated(int dx, int dy) const { return {left + dx, top + dy, right - dx, bottom - dy}; }
  bool operator==(const CRect&) const = default;  ///< member by member
};

}  // namespace qd

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

constexpr COLORREF Rgb(unsigned red, unsigned green, unsigned blue) {
  return red | green << 8U | blue << 16U;
}

template <typename T>
using TArray = std::vector<T>;

/// A place or distance in device-independent pixels; y grows downwards.
struct CPoint {
  int x = 0;
  int y = 0;
  auto operator<=>(const CPoint&) const = default;
};

/// A rectangle in device-independent pixels; right and bottom are exclusive.
struct CRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool IsEmpty() const { return right <= left || bottom <= top; }
  bool Contains(CPoint p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
  CRect Moved(int dx, int dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
  CRect Deflated(int dx, int dy) const { return {left + dx, top + dy, right - dx, bottom - dy}; }
  bool operator==(const CRect&) const = default;
};

}  // namespace qd

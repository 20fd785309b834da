#pragma once

#include "platform/Types.h"
#include "platform/win32/System.h"

namespace qd {

/// Between device-independent pixels and those of a monitor. Edges are converted, not sizes, so that what touches
/// still touches.
class Scale {
 public:
  constexpr Scale() = default;
  explicit Scale(UINT dpi) : m_dpi(dpi != 0 ? static_cast<int>(dpi) : kBase) {}
  static Scale Of(HWND window) { return Scale(GetDpiForWindow(window)); }

  int Dpi() const { return m_dpi; }
  int ToPixels(int length) const { return MulDiv(length, m_dpi, kBase); }
  POINT ToPixels(CPoint point) const { return {ToPixels(point.x), ToPixels(point.y)}; }
  RECT ToPixels(const CRect& area) const {
    return {ToPixels(area.left), ToPixels(area.top), ToPixels(area.right), ToPixels(area.bottom)};
  }
  /// The place that a pixel lies in.
  int FromPixels(int pixels) const {
    const long long scaled = static_cast<long long>(pixels) * kBase;
    return static_cast<int>(scaled >= 0 ? scaled / m_dpi : -((-scaled + m_dpi - 1) / m_dpi));
  }
  CPoint FromPixels(POINT point) const { return {FromPixels(point.x), FromPixels(point.y)}; }
  /// The length that covers these pixels.
  int Covering(int pixels) const {
    return static_cast<int>((static_cast<long long>(pixels) * kBase + m_dpi - 1) / m_dpi);
  }
  /// The least place that covers these pixels.
  CRect Covering(const RECT& area) const {
    return {FromPixels(area.left), FromPixels(area.top), Covering(area.right), Covering(area.bottom)};
  }

 private:
  static constexpr int kBase = 96;
  int m_dpi = kBase;
};

}  // namespace qd

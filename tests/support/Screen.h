#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/Toolkit.h"

namespace qd::test {

/// The pixels of one window. What texts and pictures look like does not matter: each leaves marks of its own on
/// all pixels of its place, on what stood there before.
class Screen {
 public:
  using Pixels = std::vector<std::uint32_t>;

  /// Pixels that come into the window hold nothing that could pass for painted.
  void Resize(int width, int height) {
    constexpr std::uint32_t kUnpainted = 0xDEADBEEF;
    Pixels resized(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kUnpainted);
    for (int y = 0; y < std::min(height, m_height); ++y) {
      for (int x = 0; x < std::min(width, m_width); ++x)
        resized[Index(x, y, width)] = m_pixels[Index(x, y, m_width)];
    }
    m_pixels = std::move(resized);
    m_width = width;
    m_height = height;
  }
  void Fit(const CWnd& window) {
    const CRect client = window.GetClientRect();
    if (client.right != m_width || client.bottom != m_height) Resize(client.right, client.bottom);
  }
  const Pixels& All() const { return m_pixels; }
  /// Where two pictures differ first; -1, -1 where they do not.
  CPoint Difference(const Screen& other) const {
    if (m_width != other.m_width || m_height != other.m_height) return {m_width, m_height};
    const auto at =
        std::mismatch(m_pixels.begin(), m_pixels.end(), other.m_pixels.begin()).first - m_pixels.begin();
    if (at == static_cast<std::ptrdiff_t>(m_pixels.size())) return {-1, -1};
    return {static_cast<int>(at % m_width), static_cast<int>(at / m_width)};
  }
  template <typename Change>
  void ForEach(CRect area, const CRect& clip, const Change& change) {
    area = {std::max({area.left, clip.left, 0}), std::max({area.top, clip.top, 0}),
            std::min({area.right, clip.right, m_width}), std::min({area.bottom, clip.bottom, m_height})};
    for (int y = area.top; y < area.bottom; ++y) {
      for (int x = area.left; x < area.right; ++x) change(m_pixels[Index(x, y, m_width)], x, y);
    }
  }

 private:
  static std::size_t Index(int x, int y, int width) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
  }
  Pixels m_pixels;
  int m_width = 0;
  int m_height = 0;
};

/// Paints on a screen, inside a rectangle only.
class ScreenPainter final : public IPainter {
 public:
  ScreenPainter(Screen& screen, const CRect& clip) : m_screen(screen), m_box(clip), m_clip(clip) {}

  CRect ClipBox() const override { return m_box; }
  void SetClip(const CRect& area) override {
    m_clip = {std::max(m_box.left, area.left), std::max(m_box.top, area.top), std::min(m_box.right, area.right),
              std::min(m_box.bottom, area.bottom)};
  }
  void SetOrigin(int x) override { m_origin = x; }
  void Fill(const CRect& area, COLORREF colour) override {
    Change(area, [colour](std::uint32_t& pixel, int, int) { pixel = colour; });
  }
  void Frame(const CRect& area, COLORREF colour) override {
    ChangeBorder(area, [colour](std::uint32_t& pixel, int, int) { pixel = colour; });
  }
  void Hatch(const CRect& area, COLORREF colour) override {
    Change(area, [colour](std::uint32_t& pixel, int x, int y) {
      if ((x + y) % 2 == 0) pixel = colour;
    });
  }
  void FocusRect(const CRect& area, COLORREF) override {
    ChangeBorder(area, [](std::uint32_t& pixel, int x, int y) {
      if ((x + y) % 2 == 0) pixel = ~pixel;
    });
  }
  void Polygon(std::span<const CPoint> points, COLORREF colour) override {
    CRect area{points.front().x, points.front().y, points.front().x, points.front().y};
    std::uint32_t mark = colour;
    for (const CPoint& point : points) {
      mark = mark * 31 + static_cast<std::uint32_t>(point.x * 1009 + point.y);
      area = {std::min(area.left, point.x), std::min(area.top, point.y), std::max(area.right, point.x),
              std::max(area.bottom, point.y)};
    }
    Mark(area, mark);
  }
  void Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour, TextAlign align,
            bool ellipsis) override {
    std::uint32_t mark = colour + (font.bold ? 7U : 0U) + static_cast<std::uint32_t>(font.height) * 131U +
                         static_cast<std::uint32_t>(align) * 17U + (ellipsis ? 5U : 0U);
    for (const wchar_t element : text) mark = mark * 16777619U ^ static_cast<std::uint32_t>(element);
    Mark(area, mark * 31 + static_cast<std::uint32_t>(area.Width()));
  }
  void Image(CPoint at, const Picture& picture) override {
    std::uint32_t mark = 11;
    for (const std::uint32_t pixel : picture.pixels) mark = mark * 16777619U ^ pixel;
    Mark({at.x, at.y, at.x + picture.width, at.y + picture.height}, mark);
  }

 private:
  template <typename What>
  void Change(const CRect& area, const What& what) {
    m_screen.ForEach(area.Moved(m_origin, 0), m_clip, what);
  }
  template <typename What>
  void ChangeBorder(const CRect& area, const What& what) {
    if (area.IsEmpty()) return;
    Change({area.left, area.top, area.right, area.top + 1}, what);
    Change({area.left, area.bottom - 1, area.right, area.bottom}, what);
    Change({area.left, area.top + 1, area.left + 1, area.bottom - 1}, what);
    Change({area.right - 1, area.top + 1, area.right, area.bottom - 1}, what);
  }
  void Mark(const CRect& area, std::uint32_t mark) {
    Change(area, [mark](std::uint32_t& pixel, int, int) { pixel = (pixel ^ mark) * 0x9E3779B1U; });
  }

  Screen& m_screen;
  CRect m_box;
  CRect m_clip;
  int m_origin = 0;
};

/// The whole window painted at once.
/// Paints what one window is asked to paint, piece by piece.
inline std::function<void(CWnd&, const CRect&)> PaintsOn(Screen& screen, const CWnd& of) {
  return [&](CWnd& window, const CRect& area) {
    if (&window != &of) return;
    screen.Fit(window);
    ScreenPainter painter(screen, area);
    CDC dc(painter);
    window.OnPaint(dc);
  };
}
inline Screen PaintedWhole(CWnd& window) {
  Screen screen;
  screen.Fit(window);
  ScreenPainter painter(screen, window.GetClientRect());
  CDC dc(painter);
  window.OnPaint(dc);
  return screen;
}

}  // namespace qd::test

#pragma once

#include <functional>
#include <string>

#include "native/Window.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"

namespace qd::test {

inline constexpr COLORREF kWhite = Rgb(255, 255, 255);
inline constexpr COLORREF kRed = Rgb(255, 0, 0);
inline constexpr COLORREF kBlue = Rgb(0, 0, 255);

/// A window that paints what the test says and notes what it is told.
class Canvas final : public CWnd {
 public:
  void OnPaint(CDC& dc) override {
    ++paints;
    dc.FillSolidRect(GetClientRect(), kWhite);
    if (paint) paint(dc);
  }
  std::function<void(CDC&)> paint;
  std::string log;
  int paints = 0;

 protected:
  void OnTimer(unsigned id) override { log += "timer " + std::to_string(id) + " "; }
  void OnPosted(unsigned id, std::uint64_t parameter) override {
    log += "posted " + std::to_string(id) + " " + std::to_string(parameter) + " ";
  }
  void OnRButtonDown(unsigned, CPoint) override { log += "down "; }
  void OnRButtonUp(unsigned, CPoint) override { log += "up "; }
  void OnContextMenu(CPoint) override { log += "menu "; }
  void OnMouseLeave() override { log += "leave "; }
  void OnLButtonDblClk(unsigned, CPoint) override { log += "double "; }
  void OnChar(int character) override { log += "char " + std::to_string(character) + " "; }
  void OnKeyDown(int key, unsigned flags) override {
    log += "key " + std::to_string(key) + "/" + std::to_string(flags) + " ";
  }
};

class ToolkitTest : public NativeTest {
 protected:
  ToolkitTest() {
    m_canvas.Create(nullptr, 0, {0, 0, 200, 150});
    m_toolkit->Embed(m_canvas, m_window.Handle());
    MoveWindow(HandleOf(m_canvas), 0, 0, 200, 150, TRUE);
    Wait(60);
    m_canvas.log.clear();
  }
  void Paint(std::function<void(CDC&)> paint) {
    m_canvas.paint = std::move(paint);
    m_canvas.Invalidate();
    m_canvas.GetPeer()->PaintNow();
  }
  COLORREF At(int x, int y) {
    const HDC dc = GetDC(HandleOf(m_canvas));
    const COLORREF pixel = GetPixel(dc, x, y);
    ReleaseDC(HandleOf(m_canvas), dc);
    return pixel;
  }
  /// Pixels of a colour in a rectangle.
  int Count(const CRect& area, COLORREF colour) {
    int count = 0;
    for (int y = area.top; y < area.bottom; ++y) {
      for (int x = area.left; x < area.right; ++x) count += At(x, y) == colour ? 1 : 0;
    }
    return count;
  }
  CPoint Screen(CPoint place) {
    POINT point{place.x, place.y};
    ClientToScreen(HandleOf(m_canvas), &point);
    return {static_cast<int>(point.x), static_cast<int>(point.y)};
  }

  Canvas m_canvas;
};

}  // namespace qd::test

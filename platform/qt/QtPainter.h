#pragma once

#include "platform/Toolkit.h"

class QPainter;

namespace qd {

/// Draws through a QPainter that stands on the window's widget.
class QtPainter final : public IPainter {
 public:
  QtPainter(QPainter& painter, const CRect& clip);

  CRect ClipBox() const override { return m_clip; }
  void SetClip(const CRect& area) override;
  void SetOrigin(int x) override { m_origin = x; }
  void Fill(const CRect& area, COLORREF colour) override;
  void Frame(const CRect& area, COLORREF colour) override;
  void Hatch(const CRect& area, COLORREF colour) override;
  void FocusRect(const CRect& area, COLORREF colour) override;
  void Polygon(std::span<const CPoint> points, COLORREF colour) override;
  void Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour, TextAlign align,
            bool ellipsis) override;
  void Image(CPoint at, const Picture& picture) override;

 private:
  QPainter& m_painter;
  CRect m_clip;
  int m_origin = 0;
};

}  // namespace qd

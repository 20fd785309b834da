#pragma once

#include "platform/Toolkit.h"
#include "platform/win32/Fonts.h"
#include "platform/win32/Images.h"

namespace qd {

/// Draws into a device context whose origin is that of the window's client area.
class GdiPainter final : public IPainter {
 public:
  /// `dirty` is in pixels.
  GdiPainter(HDC dc, Fonts& fonts, Images& images, Scale scale, const RECT& dirty);

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
  RECT Pixels(const CRect& area) const { return m_scale.ToPixels(area.Moved(m_origin, 0)); }

  HDC m_dc;
  Fonts& m_fonts;
  Images& m_images;
  Scale m_scale;
  RECT m_dirty;
  CRect m_clip;
  int m_origin = 0;
};

}  // namespace qd

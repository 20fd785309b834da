#include "platform/win32/GdiPainter.h"

#include <algorithm>
#include <array>
#include <vector>

namespace qd {

namespace {

void FillPixels(HDC dc, const RECT& area, COLORREF colour) {
  SetDCBrushColor(dc, colour);
  FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

/// Whether the first letter that has a direction goes from right to left: then all of the text does, and what it
/// is cut with stands at its left.
bool ReadsFromRight(std::wstring_view text) {
  for (const wchar_t element : text) {
    WORD type = C2_NOTAPPLICABLE;
    GetStringTypeW(CT_CTYPE2, &element, 1, &type);
    if (type == C2_LEFTTORIGHT || type == C2_RIGHTTOLEFT) return type == C2_RIGHTTOLEFT;
  }
  return false;
}

}  // namespace

GdiPainter::GdiPainter(HDC dc, Fonts& fonts, Images& images, Scale scale, const RECT& dirty)
    : m_dc(dc), m_fonts(fonts), m_images(images), m_scale(scale), m_dirty(dirty), m_clip(scale.Covering(dirty)) {
  SetBkMode(m_dc, TRANSPARENT);
}

void GdiPainter::SetClip(const CRect& area) {
  const RECT pixels = m_scale.ToPixels(area);
  RECT clip{};
  IntersectRect(&clip, &pixels, &m_dirty);
  // Regions are in pixels of the buffer, not of the window.
  POINT corner{};
  GetViewportOrgEx(m_dc, &corner);
  OffsetRect(&clip, corner.x, corner.y);
  const GdiObject<HRGN> region(CreateRectRgnIndirect(&clip));
  SelectClipRgn(m_dc, region.Get());
}

void GdiPainter::Fill(const CRect& area, COLORREF colour) {
  FillPixels(m_dc, Pixels(area), colour);
}

void GdiPainter::Frame(const CRect& area, COLORREF colour) {
  const RECT r = Pixels(area);
  const int line = std::max(1, m_scale.ToPixels(1));
  FillPixels(m_dc, {r.left, r.top, r.right, r.top + line}, colour);
  FillPixels(m_dc, {r.left, r.bottom - line, r.right, r.bottom}, colour);
  FillPixels(m_dc, {r.left, r.top, r.left + line, r.bottom}, colour);
  FillPixels(m_dc, {r.right - line, r.top, r.right, r.bottom}, colour);
}

void GdiPainter::Hatch(const CRect& area, COLORREF colour) {
  // The pattern's set bits take the background colour: first they are made black, then they get the colour.
  constexpr DWORD kAnd = 0x00A000C9;
  constexpr DWORD kOr = 0x00FA0089;
  constexpr std::array<WORD, 8> kEverySecond{0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA};
  const RECT r = Pixels(area);
  const GdiObject<HBITMAP> bits(CreateBitmap(8, 8, 1, 1, kEverySecond.data()));
  const GdiObject<HBRUSH> brush(CreatePatternBrush(bits.Get()));
  POINT corner{};
  GetViewportOrgEx(m_dc, &corner);
  SetBrushOrgEx(m_dc, corner.x % 8, corner.y % 8, nullptr);
  const Selected selected(m_dc, brush.Get());
  SetTextColor(m_dc, Rgb(255, 255, 255));
  SetBkColor(m_dc, 0);
  PatBlt(m_dc, r.left, r.top, r.right - r.left, r.bottom - r.top, kAnd);
  SetTextColor(m_dc, 0);
  SetBkColor(m_dc, colour);
  PatBlt(m_dc, r.left, r.top, r.right - r.left, r.bottom - r.top, kOr);
}

/// The system turns what it lies on round, which stands out from everything.
void GdiPainter::FocusRect(const CRect& area, COLORREF) {
  const RECT r = Pixels(area);
  SetTextColor(m_dc, 0);
  SetBkColor(m_dc, Rgb(255, 255, 255));
  DrawFocusRect(m_dc, &r);
}

void GdiPainter::Polygon(std::span<const CPoint> points, COLORREF colour) {
  std::vector<POINT> pixels;
  pixels.reserve(points.size());
  for (const CPoint& point : points) pixels.push_back(m_scale.ToPixels(CPoint{point.x + m_origin, point.y}));
  const Selected pen(m_dc, GetStockObject(DC_PEN));
  const Selected brush(m_dc, GetStockObject(DC_BRUSH));
  SetDCPenColor(m_dc, colour);
  SetDCBrushColor(m_dc, colour);
  ::Polygon(m_dc, pixels.data(), static_cast<int>(pixels.size()));
}

void GdiPainter::Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour,
                      TextAlign align, bool ellipsis) {
  // No cell shows more, and the system takes its time over texts of any length.
  constexpr std::size_t kLongest = 4096;
  text = text.substr(0, kLongest);
  RECT r = Pixels(area);
  const Selected selected(m_dc, m_fonts.Get(font, m_scale));
  SetTextColor(m_dc, colour);
  const auto length = static_cast<int>(text.size());
  UINT style = DT_SINGLELINE | DT_NOPREFIX;
  if (ReadsFromRight(text)) {
    style |= DT_RTLREADING;
    // A name that is too wide loses its end, which is at the left here.
    RECT wanted{};
    DrawTextW(m_dc, text.data(), length, &wanted, style | DT_CALCRECT);
    if (!ellipsis && wanted.right - wanted.left > r.right - r.left) align = TextAlign::Right;
  }
  style |= align == TextAlign::Right ? DT_RIGHT : align == TextAlign::Centre ? DT_CENTER : DT_LEFT;
  DrawTextW(m_dc, text.data(), length, &r, style | DT_VCENTER | (ellipsis ? DT_END_ELLIPSIS : 0U));
}

void GdiPainter::Image(CPoint at, const Picture& picture) {
  m_images.Draw(m_dc, m_scale.ToPixels(CPoint{at.x + m_origin, at.y}), picture, m_scale);
}

}  // namespace qd

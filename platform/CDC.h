#pragma once

#include <string_view>

#include "platform/Export.h"
#include "platform/Toolkit.h"

namespace qd {

/// A device context: a painter with the drawing state that the controls rely on. Lives for one paint request.
class QD_EXPORT CDC {
 public:
  explicit CDC(IPainter& painter) : m_painter(painter) {}  ///< the painter must outlive this

  CRect GetClipBox() const { return m_painter.ClipBox(); }  ///< what needs painting, in client coordinates
  /// Restricts drawing to an area until the next call.
  void SetClip(const CRect& area) { m_painter.SetClip(area); }
  void SetViewportOrg(int x) { m_painter.SetOrigin(x); }  ///< everything drawn from now on is moved right by `x`
  /// Returns the font that was selected before.
  Font SelectFont(Font font);
  const Font& GetFont() const { return m_font; }                 ///< the font that is selected
  void SetTextColor(COLORREF colour) { m_textColour = colour; }  ///< for texts and focus rectangles
  COLORREF GetTextColor() const { return m_textColour; }         ///< what was set last

  /// @{
  /// An area, its border of one pixel, or a hatch over it; see IPainter.
  void FillSolidRect(const CRect& area, COLORREF colour);
  void FrameRect(const CRect& area, COLORREF colour);
  void HatchRect(const CRect& area, COLORREF colour);
  /// @}
  /// In the text colour.
  void DrawFocusRect(const CRect& area);
  /// Filled; the last point is joined to the first.
  void Polygon(std::span<const CPoint> points, COLORREF colour) { m_painter.Polygon(points, colour); }
  /// One line, vertically centred, in the selected font and text colour.
  void Text(const CRect& area, std::wstring_view text, TextAlign align, bool ellipsis = false);
  /// The top left corner is `at`; drawn at the resolution of the screen.
  void DrawPicture(CPoint at, const Picture& picture) { m_painter.Image(at, picture); }

 private:
  IPainter& m_painter;
  Font m_font;
  COLORREF m_textColour = 0;
};

}  // namespace qd

#include "platform/CDC.h"

#include <utility>

namespace qd {

Font CDC::SelectFont(Font font) {
  return std::exchange(m_font, std::move(font));
}

void CDC::FillSolidRect(const CRect& area, COLORREF colour) {
  if (!area.IsEmpty()) m_painter.Fill(area, colour);
}

void CDC::FrameRect(const CRect& area, COLORREF colour) {
  if (!area.IsEmpty()) m_painter.Frame(area, colour);
}

void CDC::HatchRect(const CRect& area, COLORREF colour) {
  if (!area.IsEmpty()) m_painter.Hatch(area, colour);
}

void CDC::DrawFocusRect(const CRect& area) {
  if (!area.IsEmpty()) m_painter.FocusRect(area, m_textColour);
}

void CDC::Text(const CRect& area, std::wstring_view text, TextAlign align, bool ellipsis) {
  if (!area.IsEmpty() && !text.empty()) m_painter.Text(area, text, m_font, m_textColour, align, ellipsis);
}

}  // namespace qd

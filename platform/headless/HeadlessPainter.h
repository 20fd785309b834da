#pragma once

#include <string>
#include <vector>

#include "platform/Toolkit.h"

namespace qd {

class BCMenu;

/// Records what is drawn, one call a line: "fill l,t,r,b #RRGGBB", "text l,t,r,b 'text'", "image x,y" …
/// Coordinates are client coordinates with the origin added.
class QD_HEADLESS_EXPORT HeadlessPainter final : public IPainter {
 public:
  explicit HeadlessPainter(const CRect& client) : m_client(client) {}
  std::vector<std::string> TakeCalls() { return std::move(m_calls); }

  CRect ClipBox() const override { return m_client; }
  void SetClip(const CRect&) override {}
  void SetOrigin(int x) override { m_origin = x; }
  void Fill(const CRect& area, COLORREF colour) override { Add("fill", area, colour); }
  void Frame(const CRect& area, COLORREF colour) override { Add("frame", area, colour); }
  void Hatch(const CRect& area, COLORREF colour) override { Add("hatch", area, colour); }
  void FocusRect(const CRect& area, COLORREF colour) override;
  void Polygon(std::span<const CPoint> points, COLORREF colour) override;
  void Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour, TextAlign align,
            bool ellipsis) override;
  void Image(CPoint at, const Picture& picture) override;

 private:
  std::string Place(const CRect& area) const;
  void Add(const char* what, const CRect& area, COLORREF colour);

  CRect m_client;
  int m_origin = 0;
  std::vector<std::string> m_calls;
};

/// A menu as text: entries divided by "|", "[x] " before checked ones, "-" for a separator, submenus in braces.
/// With commands, the number of each stands before its text.
QD_HEADLESS_EXPORT std::string DescribeMenu(const BCMenu& menu, bool withCommands = false);

}  // namespace qd

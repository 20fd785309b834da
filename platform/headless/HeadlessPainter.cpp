#include "platform/headless/HeadlessPainter.h"

#include <array>
#include <cstdio>

#include "platform/BCMenu.h"

namespace qd {

namespace {

/// ASCII with everything else as "?"; enough for tests to read.
std::string Plain(std::wstring_view text) {
  std::string plain;
  for (const wchar_t element : text) plain += element >= 32 && element < 127 ? static_cast<char>(element) : '?';
  return plain;
}

std::string Hex(COLORREF colour) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "#%02X%02X%02X", colour & 0xFFU, colour >> 8U & 0xFFU,
                colour >> 16U & 0xFFU);
  return text.data();
}

}  // namespace

std::string HeadlessPainter::Place(const CRect& area) const {
  const CRect moved = area.Moved(m_origin, 0);
  return std::to_string(moved.left) + "," + std::to_string(moved.top) + "," + std::to_string(moved.right) + "," +
         std::to_string(moved.bottom);
}

void HeadlessPainter::Add(const char* what, const CRect& area, COLORREF colour) {
  m_calls.push_back(std::string(what) + " " + Place(area) + " " + Hex(colour));
}

void HeadlessPainter::FocusRect(const CRect& area, COLORREF colour) {
  Add("focus", area, colour);
}

void HeadlessPainter::Polygon(std::span<const CPoint> points, COLORREF colour) {
  std::string corners;
  for (const CPoint& point : points) {
    corners += " " + std::to_string(point.x + m_origin) + "," + std::to_string(point.y);
  }
  m_calls.push_back("polygon" + corners + " " + Hex(colour));
}

void HeadlessPainter::Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour,
                           TextAlign align, bool) {
  constexpr std::array kAlign{"left", "right", "centre"};
  m_calls.push_back("text " + Place(area) + " " + Hex(colour) + " " + kAlign[static_cast<std::size_t>(align)] +
                    (font.bold ? " bold '" : " '") + Plain(text) + "'");
}

void HeadlessPainter::Image(CPoint at, const Picture&) {
  m_calls.push_back("image " + std::to_string(at.x + m_origin) + "," + std::to_string(at.y));
}

std::string DescribeMenu(const BCMenu& menu, bool withCommands) {
  std::string text;
  for (const BCMenu::Entry& entry : menu.Entries()) {
    if (!text.empty()) text += "|";
    if (entry.kind == BCMenu::Entry::Kind::Separator) {
      text += "-";
      continue;
    }
    if (entry.checked) text += "[x] ";
    if (withCommands && entry.subMenu == nullptr) text += std::to_string(entry.id) + " ";
    text += Plain(entry.text);
    if (entry.subMenu != nullptr) text += "{" + DescribeMenu(*entry.subMenu, withCommands) + "}";
  }
  return text;
}

}  // namespace qd

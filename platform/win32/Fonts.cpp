#include "platform/win32/Fonts.h"

#include <algorithm>
#include <limits>

namespace qd {

namespace {

LOGFONTW SystemFont(Scale scale) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof(metrics);
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0,
                             static_cast<UINT>(scale.Dpi()));
  return metrics.lfMessageFont;
}

}  // namespace

HFONT Fonts::Get(const Font& font, Scale scale) {
  GdiObject<HFONT>& made = m_fonts[{font.face, font.height, font.bold, scale.Dpi()}];
  if (made) return made.Get();
  LOGFONTW wanted = SystemFont(scale);
  // A name too long for any font is no font's.
  if (!font.face.empty() && font.face.size() < LF_FACESIZE) {
    std::copy(font.face.begin(), font.face.end(), wanted.lfFaceName);
    wanted.lfFaceName[font.face.size()] = 0;
  }
  if (font.height > 0) wanted.lfHeight = scale.ToPixels(font.height);  // of a line, not of a letter
  if (font.bold) wanted.lfWeight = FW_BOLD;
  made = GdiObject<HFONT>(CreateFontIndirectW(&wanted));
  return made.Get();
}

int Fonts::Height(const Font& font, Scale scale) {
  const Selected selected(m_dc.Get(), Get(font, scale));
  TEXTMETRICW metrics{};
  GetTextMetricsW(m_dc.Get(), &metrics);
  return scale.Covering(metrics.tmHeight);
}

void Fonts::PrefixWidths(const Font& font, Scale scale, std::wstring_view text, std::vector<int>& widths) {
  widths.assign(text.size() + 1, 0);
  if (text.empty()) return;
  const Selected selected(m_dc.Get(), Get(font, scale));
  SIZE size{};
  GetTextExtentExPointW(m_dc.Get(), text.data(), static_cast<int>(text.size()), std::numeric_limits<int>::max(),
                        nullptr, widths.data() + 1, &size);
  for (int& width : widths) width = scale.Covering(width);
}

}  // namespace qd

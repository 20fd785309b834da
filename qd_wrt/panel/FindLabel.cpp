#include "qd_wrt/panel/FindLabel.h"

#include <algorithm>
#include <utility>

#include "platform/CDC.h"
#include "platform/text/Characters.h"
#include "qd_wrt/panel/FindColours.h"

namespace qd {

void FindLabel::SetText(const CString& whole, std::vector<CString> lines) {
  const bool isNew = whole != m_whole;
  if (!isNew && lines == m_lines) return;
  m_whole = whole;
  m_lines = std::move(lines);
  if (isNew) SetAccessible({Accessible::Role::Status, m_whole});
  Invalidate();
}

void FindLabel::Announce() {
  if (GetPeer() != nullptr && !m_whole.empty()) GetPeer()->Announce();
}

void FindLabel::SetOnHighlight(bool isOnHighlight) {
  if (std::exchange(m_isOnHighlight, isOnHighlight) != isOnHighlight) Invalidate();
}

void FindLabel::OnPaint(CDC& dc) {
  const CRect client = GetClientRect();
  dc.FillSolidRect(client, SystemColourOf(m_isOnHighlight ? SystemColour::Highlight : SystemColour::ButtonFace));
  dc.SetTextColor(SystemColourOf(m_isOnHighlight ? SystemColour::HighlightText : SystemColour::ButtonText));
  const int lines = std::max(static_cast<int>(m_lines.size()), 1);
  CRect line{client.left, client.top, client.right, client.top + client.Height() / lines};
  for (const CString& text : m_lines) {
    dc.Text(line, text, TextAlign::Left, true);
    line = line.Moved(0, line.Height());
  }
}

void FindLabel::OnLButtonUp(unsigned, CPoint) {
  Notice notice;
  notice.code = kNoticeClick;
  Notify(notice);
}

std::vector<CString> WrapText(const CString& text, int width) {
  std::vector<CString> lines;
  std::vector<int> widths;
  for (std::size_t from = 0; from < text.size();) {
    const CString rest = text.substr(from);
    IToolkit::Instance().PrefixWidths({}, rest, widths);
    std::size_t fits = 0;
    while (fits < rest.size() && widths[fits + 1] <= width) ++fits;
    std::size_t next = fits;
    if (fits < rest.size()) {
      const std::size_t blank = rest.rfind(L' ', fits);
      if (blank != CString::npos && blank > 0) {
        fits = blank;
        next = blank + 1;
      } else {
        fits = next = std::max<std::size_t>(CutLength(rest, fits), 1);
      }
    }
    lines.push_back(rest.substr(0, fits));
    from += next;
  }
  return lines;
}

}  // namespace qd

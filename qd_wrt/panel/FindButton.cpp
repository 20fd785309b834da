#include "qd_wrt/panel/FindButton.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/CDC.h"
#include "qd_wrt/panel/FindColours.h"

namespace qd {

// ---- what it shows --------------------------------------------------------------------------------------

void FindButton::SetText(const CString& text) {
  m_text = text;
  Describe();
  Invalidate();
}

void FindButton::SetChosen(bool isChosen) {
  m_isChosen = isChosen;
  Describe();
  Invalidate();
}

void FindButton::SetUseful(bool isUseful) {
  if (std::exchange(m_isUseful, isUseful) != isUseful) Invalidate();
}

void FindButton::SetOnHighlight(bool isOnHighlight) {
  if (std::exchange(m_isOnHighlight, isOnHighlight) != isOnHighlight) Invalidate();
}

void FindButton::Describe() {
  SetAccessible({m_sign == Sign::Text ? Accessible::Role::Choice : Accessible::Role::Button, m_text, m_isChosen});
}

int FindButton::TextWidth() const {
  constexpr int kAround = 14;
  std::vector<int> widths;
  IToolkit::Instance().PrefixWidths({}, m_text, widths);
  return widths.back() + kAround;
}

void FindButton::OnPaint(CDC& dc) {
  constexpr unsigned kHovered = 12;
  constexpr unsigned kDown = 25;
  constexpr unsigned kFaint = 55;
  const CRect client = GetClientRect();
  const bool isHighlit = m_isOnHighlight || m_isChosen;
  const COLORREF face = SystemColourOf(isHighlit ? SystemColour::Highlight : SystemColour::ButtonFace);
  const COLORREF text = SystemColourOf(isHighlit ? SystemColour::HighlightText : SystemColour::ButtonText);
  const unsigned raised = m_isDown ? kDown : m_isHovered ? kHovered : 0;
  dc.FillSolidRect(client, Blend(face, text, raised));
  if (m_sign == Sign::Text) {
    dc.FrameRect(client, EdgeColour());
    dc.SetTextColor(text);
    dc.Text(client, m_text, TextAlign::Centre, true);
  } else {
    DrawSign(dc, m_isUseful ? text : Blend(text, face, kFaint));
  }
  if (!HasFocus()) return;
  dc.SetTextColor(text);
  dc.DrawFocusRect(client.Deflated(2, 2));
}

void FindButton::DrawSign(CDC& dc, COLORREF ink) const {
  const CRect client = GetClientRect();
  const int size = std::max(std::min(client.Width(), client.Height()) * 2 / 5, 4);
  const CPoint at{(client.Width() - size) / 2, (client.Height() - size) / 2};
  const int thick = std::max(size / 4, 2);
  const auto draw = [&](std::initializer_list<CPoint> corners) {
    std::vector<CPoint> placed;
    for (const CPoint& corner : corners) placed.push_back({at.x + corner.x, at.y + corner.y});
    dc.Polygon(placed, ink);
  };
  const int middle = size / 2;
  const int upper = size / 4;
  const int lower = upper + middle;
  switch (m_sign) {
    case Sign::Previous:
      return draw({{0, lower},
                   {middle, upper},
                   {size, lower},
                   {size, lower + thick},
                   {middle, upper + thick},
                   {0, lower + thick}});
    case Sign::Next:
      return draw({{0, upper},
                   {middle, lower},
                   {size, upper},
                   {size, upper + thick},
                   {middle, lower + thick},
                   {0, upper + thick}});
    case Sign::Close:
      draw({{0, 0}, {thick, 0}, {size, size}, {size - thick, size}});
      return draw({{size - thick, 0}, {size, 0}, {thick, size}, {0, size}});
    case Sign::All:
      // Rows, each with a mark beside it.
      for (int line = 0; line < 3; ++line) {
        const int height = std::max(size / 6, 1);
        const int y = at.y + line * (size - height) / 2;
        const int beside = at.x + thick + 2;
        dc.FillSolidRect({at.x, y, at.x + thick, y + height}, ink);
        dc.FillSolidRect({beside, y, at.x + size + 2, y + height}, ink);
      }
      return;
    case Sign::Text:
      return;
  }
}

// ---- what is done to it ---------------------------------------------------------------------------------

void FindButton::Press(bool byMouse) {
  PressNotice notice;
  notice.code = kNoticeClick;
  notice.byMouse = byMouse;
  Notify(notice);  // this may be gone now
}

void FindButton::OnLButtonDown(unsigned, CPoint) {
  WantTip(false);
  m_isDown = true;
  Invalidate();
}

void FindButton::OnLButtonUp(unsigned, CPoint point) {
  if (!std::exchange(m_isDown, false)) return;
  Invalidate();
  if (GetClientRect().Contains(point)) Press(true);
}

void FindButton::OnMouseMove(unsigned, CPoint) {
  constexpr unsigned kPatience = 500;
  if (std::exchange(m_isHovered, true)) return;
  if (m_sign != Sign::Text && GetPeer() != nullptr) GetPeer()->SetTimer(kTipTimer, kPatience);
  Invalidate();
}

void FindButton::OnMouseLeave() {
  EndHover();
  Invalidate();
}

void FindButton::EndHover() {
  m_isHovered = m_isDown = false;
  if (GetPeer() != nullptr) GetPeer()->KillTimer(kTipTimer);
  WantTip(false);
}

void FindButton::OnTimer(unsigned) {
  GetPeer()->KillTimer(kTipTimer);
  WantTip(m_isHovered && !m_isDown);
}

void FindButton::WantTip(bool isWanted) {
  if (std::exchange(m_hasTip, isWanted) == isWanted) return;
  TipNotice notice;
  notice.code = kNoticeTip;
  notice.isWanted = isWanted;
  Notify(notice);
}

void FindButton::OnKeyDown(int key, unsigned flags) {
  if (key == kKeySpace || key == kKeyEnter) return Press(false);
  PassKeyUp(key, flags);
}

}  // namespace qd

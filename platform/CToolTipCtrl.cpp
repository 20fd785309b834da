#include "platform/CToolTipCtrl.h"

#include <utility>

namespace qd {

void CToolTipCtrl::AddTool(const CWnd& tool, CString text) {
  m_tool = &tool;
  m_text = std::move(text);
}

void CToolTipCtrl::SetTipColors(COLORREF background, COLORREF text) {
  m_background = background;
  m_textColour = text;
}

void CToolTipCtrl::Track(CPoint screen, CString text) {
  m_text = std::move(text);
  m_tracking = true;
  if (GetPeer() != nullptr) GetPeer()->ShowTip(screen, m_text, m_background, m_textColour);
}

void CToolTipCtrl::Pop() {
  if (!std::exchange(m_tracking, false)) return;
  if (GetPeer() != nullptr) GetPeer()->ShowTip({}, {}, m_background, m_textColour);
}

}  // namespace qd

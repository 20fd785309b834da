#include "platform/CScrollBar.h"

#include <algorithm>
#include <utility>

namespace qd {

void CScrollBar::SetState(const ScrollState& state) {
  if (state == m_state) return;
  m_state = state;
  m_state.position = std::clamp(state.position, 0, std::max(state.maximum, 0));
  if (GetPeer() != nullptr) GetPeer()->SetScroll(m_state);
}

void CScrollBar::OnScroll(int position) {
  position = std::clamp(position, 0, m_state.maximum);
  if (std::exchange(m_state.position, position) == position) return;
  if (GetPeer() != nullptr) GetPeer()->SetScroll(m_state);
  ScrollNotice notice;
  notice.code = kNoticeScroll;
  notice.position = m_state.position;
  Notify(notice);
}

}  // namespace qd

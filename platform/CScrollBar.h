#pragma once

#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// A horizontal scroll bar window. Tells its parent with kNoticeScroll when the user moves it.
class QD_EXPORT CScrollBar : public CWnd {
 public:
  /// Codes of the notices.
  enum Code : int { kNoticeScroll = -300 };
  /// What the notice says.
  struct ScrollNotice : Notice {
    int position = 0;  ///< the new one
  };

  /// See CWnd::Create.
  int Create(CWnd* parent, int id, const CRect& area) {
    return CWnd::Create(parent, id, area, PeerKind::HorizontalScroll);
  }
  /// `page` is the visible width; positions run from 0 to `state.maximum`. Notifies nobody.
  void SetState(const ScrollState& state);
  const ScrollState& GetState() const { return m_state; }  ///< as last set, or moved by the user
  /// Moves by steps as a press on an arrow does, and tells the parent.
  void ScrollLines(int steps) { OnScroll(m_state.position + steps * m_state.line); }

 protected:
  void OnScroll(int position) override;

 private:
  ScrollState m_state;
};

}  // namespace qd

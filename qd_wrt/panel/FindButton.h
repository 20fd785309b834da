#pragma once

#include <cstdint>

#include "platform/CWnd.h"

namespace qd {

/// A flat button of the find bar, pressed by the mouse, the blank or a screen reader. Tells its parent with
/// kNoticeClick when it is pressed, and when its tip is wanted and no longer.
class FindButton final : public CWnd {
 public:
  /// What is drawn on it.
  enum class Sign : std::uint8_t { Text, Previous, Next, All, Close };
  /// Codes of the notices beside kNoticeClick.
  enum Code : int { kNoticeTip = -331 };
  /// With kNoticeClick.
  struct PressNotice : Notice {
    bool byMouse = false;  ///< else by the blank or a screen reader
  };
  /// With kNoticeTip.
  struct TipNotice : Notice {
    bool isWanted = false;  ///< whether the tip is to be shown
  };

  explicit FindButton(Sign sign) : m_sign(sign) {}  ///< without a window yet

  /// What stands on the button, or for a sign what it does, which its tip says.
  void SetText(const CString& text);
  const CString& GetText() const { return m_text; }  ///< as it was set
  /// One of several that is the chosen one.
  void SetChosen(bool isChosen);
  /// Whether pressing has an effect now; only the look says so.
  void SetUseful(bool isUseful);
  /// For the colours of a line that stands out.
  void SetOnHighlight(bool isOnHighlight);
  int TextWidth() const;  ///< in pixels

  void OnPaint(CDC& dc) override;

 protected:
  void OnLButtonDown(unsigned flags, CPoint point) override;
  void OnLButtonDblClk(unsigned flags, CPoint point) override { OnLButtonDown(flags, point); }
  void OnLButtonUp(unsigned flags, CPoint point) override;
  void OnMouseMove(unsigned flags, CPoint point) override;
  void OnMouseLeave() override;
  void OnTimer(unsigned id) override;
  void OnKeyDown(int key, unsigned flags) override;
  void OnSetFocus() override { Invalidate(); }
  void OnKillFocus() override { Invalidate(); }
  void OnLookChanged() override { Invalidate(); }
  void OnDestroy() override { EndHover(); }

 private:
  static constexpr unsigned kTipTimer = 1;

  void Press(bool byMouse);
  void EndHover();
  void WantTip(bool isWanted);
  void DrawSign(CDC& dc, COLORREF ink) const;
  void Describe();

  Sign m_sign;
  CString m_text;
  bool m_isChosen = false;
  bool m_isUseful = true;
  bool m_isOnHighlight = false;
  bool m_isHovered = false;
  bool m_isDown = false;
  bool m_hasTip = false;
};

}  // namespace qd

#pragma once

#include <optional>

#include "platform/win32/NativeWindow.h"

namespace qd {

/// A window that its owner paints: turns what the system reports into messages.
class SurfaceWindow final : public NativeWindow {
 public:
  SurfaceWindow(Win32Toolkit& toolkit, CWnd& owner, bool vertScroll, IPeer* parent, const CRect& area);

  void SetScroll(const ScrollState& state) override;
  void AnnounceFocus(std::uint64_t row) override;

 protected:
  LRESULT OnMessage(UINT message, WPARAM w, LPARAM l) override;

 private:
  void Paint();
  void DeliverMouse(MessageKind kind, LPARAM place);
  void OnMouseMove(LPARAM place);
  void OnWheel(WPARAM w, bool across);
  bool OnKey(WPARAM key);
  void OnContextMenu(LPARAM place);
  bool IsMouseMessage(UINT message, LPARAM place);
  bool IsSystemChange(UINT message);

  bool m_hasScroll = false;
  bool m_leaveAsked = false;
  std::optional<LPARAM> m_lastMove;  // where the pointer was reported last
  int m_wheelRest = 0;
  int m_wheelRestAcross = 0;
  bool m_typesNothing = false;  // the key that is down
};

}  // namespace qd

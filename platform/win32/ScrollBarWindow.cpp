#include "platform/win32/ControlWindows.h"
#include "platform/win32/ScrollNumbers.h"

namespace qd {

namespace {

/// A bar by itself. What the user does with it is reported to its parent, a surface, which passes it on.
class ScrollBarWindow final : public NativeWindow {
 public:
  ScrollBarWindow(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area)
      : NativeWindow(toolkit, owner) {
    Make({L"SCROLLBAR", SBS_HORZ}, parent, area);
  }

  void SetScroll(const ScrollState& state) override {
    NativeWindow::SetScroll(state);
    if (Handle() == nullptr) return;
    const SCROLLINFO numbers = ScrollNumbers(state);
    SetScrollInfo(Handle(), SB_CTL, &numbers, TRUE);
  }
};

}  // namespace

std::unique_ptr<IPeer> MakeScrollBar(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area) {
  return std::make_unique<ScrollBarWindow>(toolkit, owner, parent, area);
}

}  // namespace qd

#include <algorithm>

#include "platform/text/Characters.h"
#include "platform/win32/ControlWindows.h"

namespace qd {

namespace {

/// A tip that stands where its owner puts it.
class ToolTipWindow final : public NativeWindow {
 public:
  ToolTipWindow(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent) : NativeWindow(toolkit, owner) {
    Make({TOOLTIPS_CLASSW, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, WS_EX_TOPMOST}, parent, {});
    if (Handle() == nullptr) return;
    m_tool.cbSize = sizeof(m_tool);
    m_tool.uFlags = TTF_TRACK | TTF_ABSOLUTE;
    m_tool.hwnd = GetParent(Handle());
    SendMessageW(Handle(), TTM_ADDTOOLW, 0, Tool());
  }

  void ShowTip(CPoint screen, const CString& text, COLORREF background, COLORREF colour) override {
    if (Handle() == nullptr) return;
    m_text = OneLine(text);
    m_tool.lpszText = m_text.data();
    SendMessageW(Handle(), TTM_UPDATETIPTEXTW, 0, Tool());
    SendMessageW(Handle(), TTM_SETTIPBKCOLOR, background, 0);
    SendMessageW(Handle(), TTM_SETTIPTEXTCOLOR, colour, 0);
    const POINT at = GetScale().ToPixels(screen);
    SendMessageW(Handle(), TTM_TRACKPOSITION, 0, MAKELPARAM(at.x, at.y));
    SendMessageW(Handle(), TTM_TRACKACTIVATE, m_text.empty() ? FALSE : TRUE, Tool());
  }

 protected:
  LRESULT OnMessage(UINT message, WPARAM w, LPARAM l) override {
    const LRESULT result = NativeWindow::OnMessage(message, w, l);
    if (message == WM_LBUTTONDOWN) Deliver({.kind = MessageKind::LeftDown});
    return result;
  }

 private:
  LPARAM Tool() { return reinterpret_cast<LPARAM>(&m_tool); }

  /// Names of any length and with any character, as the system's tips show them.
  static CString OneLine(const CString& text) {
    constexpr std::size_t kLongest = 1000;
    CString line = text.substr(0, CutLength(text, kLongest));
    std::replace_if(
        line.begin(), line.end(), [](wchar_t character) { return character < L' '; }, L' ');
    return line;
  }

  TTTOOLINFOW m_tool{};
  CString m_text;
};

}  // namespace

std::unique_ptr<IPeer> MakeToolTip(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent) {
  return std::make_unique<ToolTipWindow>(toolkit, owner, parent);
}

}  // namespace qd

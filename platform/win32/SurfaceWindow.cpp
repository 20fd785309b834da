#include "platform/win32/SurfaceWindow.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/win32/GdiPainter.h"
#include "platform/win32/RowsAccessible.h"
#include "platform/win32/ScrollNumbers.h"
#include "platform/win32/Win32Toolkit.h"

namespace qd {

namespace {

constexpr UINT kMenuRequest = WM_APP + 1;  // lParam: the place; or wParam:
constexpr WPARAM kByKeyboard = 1;

POINT PointOf(LPARAM place) {
  return {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
}

/// The number that the controls know a key by; letters only while Ctrl is held. 0 for a key that no control acts
/// on. What Delete and Enter do is the program's business.
int KeyOf(WPARAM key) {
  constexpr std::array kKnown{kKeyTab,  kKeyEscape,   kKeySpace, kKeyPageUp, kKeyPageDown, kKeyEnd,
                              kKeyHome, kKeyLeft,     kKeyUp,    kKeyRight,  kKeyDown,     kKeyMultiply,
                              kKeyAdd,  kKeySubtract, kKeyF2,    kKeyF3};
  const int number = static_cast<int>(key);
  // Characters of a third keyboard level come with Ctrl and Alt both.
  const bool command = (KeyFlags() & kMouseControl) != 0 && GetKeyState(VK_MENU) >= 0;
  if (number >= 'A' && number <= 'Z') return command ? number : 0;
  return std::find(kKnown.begin(), kKnown.end(), number) != kKnown.end() ? number : 0;
}

}  // namespace

SurfaceWindow::SurfaceWindow(Win32Toolkit& toolkit, CWnd& owner, bool vertScroll, IPeer* parent, const CRect& area)
    : NativeWindow(toolkit, owner), m_hasScroll(vertScroll) {
  Make({SurfaceClass(), WS_CLIPCHILDREN}, parent, area);
}

/// The window's own bar is there while there is something to scroll.
void SurfaceWindow::SetScroll(const ScrollState& state) {
  NativeWindow::SetScroll(state);
  if (!m_hasScroll || Handle() == nullptr) return;
  const SCROLLINFO numbers = ScrollNumbers(state);
  SetScrollInfo(Handle(), SB_VERT, &numbers, TRUE);
  const bool shown = (GetWindowLongPtrW(Handle(), GWL_STYLE) & WS_VSCROLL) != 0;
  if (shown != (state.maximum > 0)) ShowScrollBar(Handle(), SB_VERT, state.maximum > 0 ? TRUE : FALSE);
}

void SurfaceWindow::AnnounceFocus(std::uint64_t row) {
  if (Handle() != nullptr) AnnounceRow(Handle(), HTREEITEM{row});
}

/// Into a buffer first: what is drawn over one another never shows.
void SurfaceWindow::Paint() {
  BeginPainting();
  PAINTSTRUCT paint{};
  const HDC screen = BeginPaint(Handle(), &paint);
  const RECT dirty = paint.rcPaint;
  const int width = dirty.right - dirty.left;
  const int height = dirty.bottom - dirty.top;
  if (width > 0 && height > 0) {
    const HDC dc = Toolkit().BeginBuffer(width, height);
    SetViewportOrgEx(dc, -dirty.left, -dirty.top, nullptr);
    FillRect(dc, &dirty, GetSysColorBrush(COLOR_WINDOW));
    GdiPainter painter(dc, Toolkit().GetFonts(), Toolkit().GetImages(), GetScale(), dirty);
    CDC context(painter);
    Owner().OnPaint(context);
    SelectClipRgn(dc, nullptr);
    SetViewportOrgEx(dc, 0, 0, nullptr);
    BitBlt(screen, dirty.left, dirty.top, width, height, dc, 0, 0, SRCCOPY);
  }
  EndPaint(Handle(), &paint);
}

void SurfaceWindow::DeliverMouse(MessageKind kind, LPARAM place) {
  Deliver({.kind = kind, .point = GetScale().FromPixels(PointOf(place)), .flags = KeyFlags()});
}

void SurfaceWindow::OnMouseMove(LPARAM place) {
  if (!m_leaveAsked) {
    TRACKMOUSEEVENT request{
        .cbSize = sizeof(TRACKMOUSEEVENT), .dwFlags = TME_LEAVE, .hwndTrack = Handle(), .dwHoverTime = 0};
    m_leaveAsked = TrackMouseEvent(&request) != 0;
  }
  // The system reports a pointer that stands still whenever a window comes or goes below it, as tips do.
  if (m_lastMove == place) return;
  m_lastMove = place;
  DeliverMouse(MessageKind::MouseMove, place);
}

/// `across`: of a wheel that tilts sideways; to the right is positive there.
void SurfaceWindow::OnWheel(WPARAM w, bool across) {
  UINT linesPerNotch = 3;
  SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &linesPerNotch, 0);
  constexpr UINT kMostLines = 100;  // "a screen at a time" is a number beyond it
  const int turned = GET_WHEEL_DELTA_WPARAM(w) * static_cast<int>(std::min(linesPerNotch, kMostLines));
  const bool swapped = !across && (KeyFlags() & kMouseShift) != 0;
  int& rest = across || swapped ? m_wheelRestAcross : m_wheelRest;
  rest += swapped ? -turned : turned;
  const int steps = rest / WHEEL_DELTA;
  rest -= steps * WHEEL_DELTA;
  if (steps == 0) return;
  Deliver({.kind = across || swapped ? MessageKind::WheelAcross : MessageKind::Wheel, .amount = steps});
}

bool SurfaceWindow::OnKey(WPARAM key) {
  const int known = KeyOf(key);
  // What a key of the keypad types is not for a title that is being typed.
  m_typesNothing = known == kKeyAdd || known == kKeySubtract || known == kKeyMultiply;
  if (known == 0) return false;
  Deliver({.kind = MessageKind::KeyDown, .flags = KeyFlags(), .key = known});
  return true;
}

void SurfaceWindow::OnContextMenu(LPARAM place) {
  Deliver({.kind = MessageKind::ContextMenu, .point = GetScale().FromPixels(PointOf(place))});
}

/// True when it was one, and is dealt with.
bool SurfaceWindow::IsMouseMessage(UINT message, LPARAM place) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:  // a fast second right press is a press like any other
    {
      const HWND window = Handle();
      if (GetFocus() != window && GetAccessible().role != Accessible::Role::Status) SetFocus(window);
      if (NativeWindow::Of(window) != this) return true;  // whoever lost the focus has destroyed us
      DeliverMouse(message == WM_LBUTTONDOWN ? MessageKind::LeftDown : MessageKind::RightDown, place);
      return true;
    }
    case WM_LBUTTONDBLCLK:
      DeliverMouse(MessageKind::LeftDouble, place);
      return true;
    case WM_LBUTTONUP:
      DeliverMouse(MessageKind::LeftUp, place);
      return true;
    case WM_RBUTTONUP: {
      POINT screen = PointOf(place);
      ClientToScreen(Handle(), &screen);
      // Posted, so that everything that the release brings about is done before the menu opens.
      PostMessageW(Handle(), kMenuRequest, 0, MAKELPARAM(screen.x, screen.y));
      DeliverMouse(MessageKind::RightUp, place);
      return true;
    }
    case WM_MOUSEMOVE:
      OnMouseMove(place);
      return true;
    case WM_MOUSELEAVE:
      m_leaveAsked = false;
      m_lastMove.reset();
      Deliver({.kind = MessageKind::MouseLeave});
      return true;
    default:
      return false;
  }
}

bool SurfaceWindow::IsSystemChange(UINT message) {
  if (message != WM_SYSCOLORCHANGE && message != WM_THEMECHANGED && message != WM_SETTINGCHANGE) return false;
  Toolkit().SettingsChanged();
  return true;
}

LRESULT SurfaceWindow::OnMessage(UINT message, WPARAM w, LPARAM l) {
  if (IsMouseMessage(message, l) || IsSystemChange(message)) return 0;
  // Registered messages reach the owner under their own numbers.
  constexpr UINT kFirstRegistered = 0xC000;
  if (message >= kFirstRegistered) {
    Deliver({.kind = MessageKind::Posted, .id = message, .parameter = w});
    return 0;
  }
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_GETOBJECT:
      if (const LRESULT answer = AnswerScreenReader(Handle(), w, l); answer != 0) return answer;
      break;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      Deliver({.kind = MessageKind::Size});
      return 0;
    case WM_MOUSEWHEEL:
      OnWheel(w, false);
      return 0;
    case WM_MOUSEHWHEEL:
      OnWheel(w, true);
      return 1;  // so the documentation of mouse drivers wants it
    case WM_KEYDOWN:
      if (OnKey(w)) return 0;
      break;
    case WM_CHAR:
      if (w >= kKeySpace && !std::exchange(m_typesNothing, false)) {
        Deliver({.kind = MessageKind::Char, .key = static_cast<int>(w)});
      }
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_SETFOCUS:
      Deliver({.kind = MessageKind::FocusGained});
      return 0;
    case WM_KILLFOCUS:
      Deliver({.kind = MessageKind::FocusLost});
      return 0;
    case WM_CAPTURECHANGED:
    case WM_CANCELMODE:
      if (Toolkit().IsCaptureOf(Owner())) Toolkit().LoseCapture();
      return 0;
    case kMenuRequest:
      if (w == kByKeyboard) {
        Deliver({.kind = MessageKind::ContextMenu, .amount = 1});
      } else {
        OnContextMenu(l);
      }
      return 0;
    case WM_CONTEXTMENU: {
      // Our own request comes with the release of the button; this one is the keyboard's, or another program's.
      if (l != -1) {
        OnContextMenu(l);
        return 0;
      }
      PostMessageW(Handle(), kMenuRequest, kByKeyboard, 0);
      return 0;
    }
    case WM_CTLCOLOREDIT: {
      NativeWindow* box = NativeWindow::Of(reinterpret_cast<HWND>(l));
      const HBRUSH brush = box != nullptr ? box->OnColour(reinterpret_cast<HDC>(w)) : nullptr;
      if (brush != nullptr) return reinterpret_cast<LRESULT>(brush);
      break;
    }
    case WM_COMMAND:
      if (HIWORD(w) == EN_CHANGE) SendMessageW(reinterpret_cast<HWND>(l), kTextChanged, 0, 0);
      return 0;
    case WM_VSCROLL:
    case WM_HSCROLL: {
      const auto bar = reinterpret_cast<HWND>(l);  // null for the window's own
      NativeWindow* peer = bar == nullptr ? this : NativeWindow::Of(bar);
      if (peer == nullptr) break;
      const int position =
          ScrollTarget(peer->Handle(), bar != nullptr ? SB_CTL : SB_VERT, LOWORD(w), peer->LineStep());
      Toolkit().Deliver({.kind = MessageKind::Scroll, .target = &peer->Owner(), .amount = position});
      return 0;
    }
    case WM_MEASUREITEM:
    case WM_DRAWITEM:
    case WM_MENUCHAR:
      return Toolkit().OnMenuMessage(Handle(), message, w, l);
    default:
      break;
  }
  return NativeWindow::OnMessage(message, w, l);
}

}  // namespace qd

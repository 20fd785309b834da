#include "platform/win32/NativeWindow.h"

#include <utility>

#include "platform/CWnd.h"
#include "platform/win32/ModuleInstance.h"
#include "platform/win32/NamedAccessible.h"
#include "platform/win32/Win32Toolkit.h"

namespace qd {

namespace {

constexpr wchar_t kSurfaceClass[] = L"QD_wrt.Surface";
constexpr UINT kPosted = WM_APP;  // wParam: the id, lParam: the parameter

constinit NativeWindow* theFirst = nullptr;

}  // namespace

unsigned KeyFlags() {
  return (GetKeyState(VK_SHIFT) < 0 ? kMouseShift : 0U) | (GetKeyState(VK_CONTROL) < 0 ? kMouseControl : 0U) |
         (GetKeyState(VK_MENU) < 0 ? kMouseAlt : 0U);
}

// ---- life -----------------------------------------------------------------------------------------------

void NativeWindow::RegisterClasses() {
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  description.style = CS_DBLCLKS;
  description.lpfnWndProc = Procedure;
  description.hInstance = ModuleInstance();
  description.lpszClassName = kSurfaceClass;
  RegisterClassExW(&description);
}

void NativeWindow::UnregisterClasses() {
  UnregisterClassW(kSurfaceClass, ModuleInstance());
}

void NativeWindow::Make(const Style& style, IPeer* parent, const CRect& area) {
  const HWND above = parent != nullptr ? static_cast<NativeWindow*>(parent)->Handle() : nullptr;
  if (parent != nullptr && above == nullptr) return;  // the system has destroyed it already
  const bool popup = (style.style & WS_POPUP) != 0;
  const DWORD kind = popup ? 0 : above != nullptr ? WS_CHILD | WS_VISIBLE : WS_POPUP;
  m_place = area;
  const Scale scale = above != nullptr ? Scale::Of(above) : m_toolkit.GetScale();
  const RECT place = scale.ToPixels(area);
  const bool ours = style.windowClass == kSurfaceClass;
  const HWND window = CreateWindowExW(style.extended, style.windowClass, L"", style.style | kind | WS_CLIPSIBLINGS,
                                      place.left, place.top, place.right - place.left, place.bottom - place.top,
                                      above, nullptr, ModuleInstance(), nullptr);
  if (window == nullptr) return;
  m_window = window;
  m_next = theFirst;
  if (m_next != nullptr) m_next->m_before = this;
  theFirst = this;
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  NoteSize();
  if (ours) return;
  const LONG_PTR procedure = SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
  m_classProcedure = reinterpret_cast<WNDPROC>(procedure);
  Refresh();
}

/// Fonts and colours of the system anew.
void NativeWindow::Refresh() {
  if (m_classProcedure != nullptr) {
    SendMessageW(m_window, WM_SETFONT, reinterpret_cast<WPARAM>(m_toolkit.GetFont({}, m_scale)), TRUE);
  }
  InvalidateRect(m_window, nullptr, FALSE);
}

void NativeWindow::RefreshAll() {
  for (NativeWindow* peer = theFirst; peer != nullptr; peer = peer->m_next) {
    peer->Refresh();
    // Posted: who hears of it may take windows down.
    PostMessageW(peer->m_window, kLookChanged, 0, 0);
  }
}

void NativeWindow::NoteSize() {
  m_scale = Scale::Of(m_window);
  RECT client{};
  GetClientRect(m_window, &client);
  m_client = {client.right, client.bottom};
}

/// The window no longer reports to us, whoever destroys it and when.
void NativeWindow::Abandon() {
  if (m_window == nullptr) return;
  SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
  const WNDPROC procedure = m_classProcedure != nullptr ? m_classProcedure : DefWindowProcW;
  SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
  m_window = nullptr;
  if (m_next != nullptr) m_next->m_before = m_before;
  (m_before != nullptr ? m_before->m_next : theFirst) = m_next;
  m_next = m_before = nullptr;
}

NativeWindow::~NativeWindow() {
  m_toolkit.WindowGone(m_owner);
  const HWND window = m_window;
  Abandon();
  if (window != nullptr) DestroyWindow(window);
}

void NativeWindow::AbandonAll() {
  while (theFirst != nullptr) {
    const HWND window = theFirst->m_window;
    theFirst->Abandon();
    DestroyWindow(window);
  }
  UnregisterClasses();
}

NativeWindow* NativeWindow::Of(HWND window) {
  for (NativeWindow* peer = theFirst; peer != nullptr; peer = peer->m_next) {
    if (peer->m_window == window) return peer;
  }
  return nullptr;
}

void NativeWindow::Embed(HWND parent) {
  if (m_window == nullptr) return;
  m_embedded = true;
  const LONG_PTR style = GetWindowLongPtrW(m_window, GWL_STYLE);
  SetWindowLongPtrW(m_window, GWL_STYLE, (style & ~static_cast<LONG_PTR>(WS_POPUP)) | WS_CHILD);
  SetParent(m_window, parent);
  NoteSize();
  ShowWindow(m_window, SW_SHOWNA);
}

// ---- messages -------------------------------------------------------------------------------------------

const wchar_t* NativeWindow::SurfaceClass() {
  return kSurfaceClass;
}

void NativeWindow::Deliver(Message message) {
  message.target = &m_owner;
  m_toolkit.Deliver(message);
}

LRESULT NativeWindow::Default(UINT message, WPARAM w, LPARAM l) const {
  if (m_classProcedure == nullptr) return DefWindowProcW(m_window, message, w, l);
  return CallWindowProcW(m_classProcedure, m_window, message, w, l);
}

LRESULT CALLBACK NativeWindow::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
  auto* peer = reinterpret_cast<NativeWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (peer == nullptr) return DefWindowProcW(window, message, w, l);
  if (message == WM_NCDESTROY) {
    // Not by its owner, who would have abandoned it first: its parent is being destroyed.
    peer->m_toolkit.WindowGone(peer->m_owner);
    const WNDPROC procedure = peer->m_classProcedure;
    peer->Abandon();
    return procedure != nullptr ? CallWindowProcW(procedure, window, message, w, l)
                                : DefWindowProcW(window, message, w, l);
  }
  if (message == WM_SIZE) peer->NoteSize();
  Win32Toolkit& toolkit = peer->m_toolkit;
  try {
    return peer->OnMessage(message, w, l);
  } catch (...) {
    toolkit.KeepThrown();
    return 0;
  }
}

LRESULT NativeWindow::OnMessage(UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case WM_TIMER:
      // One that fell due before it was killed may still be in the queue.
      if (m_timers.contains(static_cast<unsigned>(w))) {
        Deliver({.kind = MessageKind::Timer, .id = static_cast<unsigned>(w)});
      }
      return 0;
    case kPosted:
      Deliver({.kind = MessageKind::Posted,
               .id = static_cast<unsigned>(w),
               .parameter = static_cast<std::uint64_t>(l)});
      return 0;
    case kLookChanged:
      Deliver({.kind = MessageKind::LookChanged});
      return 0;
    case WM_SETCURSOR:
      if (LOWORD(l) != HTCLIENT || (m_cursor == nullptr && !m_toolkit.IsWaiting())) break;
      ::SetCursor(m_toolkit.IsWaiting() ? LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_WAIT)) : m_cursor);
      return TRUE;
    case WM_GETOBJECT:
      if (m_accessible.name.empty() || static_cast<LONG>(l) != OBJID_CLIENT) break;
      if (const LRESULT answer = AnswerWithName(m_window, w); answer != 0) return answer;
      break;
    case WM_DPICHANGED_AFTERPARENT:
      OnDpiChanged();
      return 0;
    default:
      break;
  }
  return Default(message, w, l);
}

void NativeWindow::OnDpiChanged() {
  NoteSize();
  m_toolkit.SetScale(GetScale());
  if (!m_embedded) Move(m_place);
  Refresh();
}

// ---- what the owner asks --------------------------------------------------------------------------------

void NativeWindow::Move(const CRect& area) {
  m_place = area;
  if (m_window == nullptr) return;
  const RECT place = Scale::Of(GetParent(m_window) != nullptr ? GetParent(m_window) : m_window).ToPixels(area);
  SetWindowPos(m_window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

CRect NativeWindow::ClientRect() const {
  if (m_window == nullptr) return {};
  return {0, 0, m_scale.FromPixels(m_client.cx), m_scale.FromPixels(m_client.cy)};
}

void NativeWindow::Show(bool show) {
  if (m_window != nullptr) ShowWindow(m_window, show ? SW_SHOWNA : SW_HIDE);
}

void NativeWindow::Enable(bool enable) {
  if (m_window != nullptr) EnableWindow(m_window, enable ? TRUE : FALSE);
}

void NativeWindow::Invalidate(const CRect& area) {
  if (m_window == nullptr) return;
  const RECT client{0, 0, m_client.cx, m_client.cy};
  const RECT all = m_scale.ToPixels(ClientRect());
  RECT pixels = m_scale.ToPixels(area);
  // At a scale that is no whole number the last pixels may lie beyond the last whole unit.
  if (pixels.right >= all.right) pixels.right = client.right;
  if (pixels.bottom >= all.bottom) pixels.bottom = client.bottom;
  // Of ten thousand changed rows a few dozen are in sight, and the system need not hear of a place twice.
  RECT covered{};
  if (IntersectRect(&pixels, &pixels, &client) == 0) return;
  UnionRect(&covered, &m_invalid, &pixels);
  if (EqualRect(&covered, &m_invalid) != 0) return;
  if (EqualRect(&covered, &pixels) != 0) m_invalid = pixels;
  InvalidateRect(m_window, &pixels, FALSE);
}

void NativeWindow::PaintNow() {
  if (m_window != nullptr) UpdateWindow(m_window);
}

CPoint NativeWindow::ToScreen(CPoint point) const {
  if (m_window == nullptr) return point;
  const Scale scale = GetScale();
  POINT pixels = scale.ToPixels(point);
  ClientToScreen(m_window, &pixels);
  return scale.FromPixels(pixels);
}

void NativeWindow::TakeFocus() {
  if (m_window != nullptr) SetFocus(m_window);
}

bool NativeWindow::HasFocus() const {
  return m_window != nullptr && GetFocus() == m_window;
}

void NativeWindow::SetAccessible(const Accessible& what) {
  if (m_accessible == what) return;
  m_accessible = what;
  if (m_window != nullptr) NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, m_window, OBJID_CLIENT, CHILDID_SELF);
}

void NativeWindow::Announce() {
  if (m_window != nullptr) NotifyWinEvent(EVENT_SYSTEM_ALERT, m_window, OBJID_CLIENT, CHILDID_SELF);
}

void NativeWindow::Raise() {
  if (m_window != nullptr) SetWindowPos(m_window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void NativeWindow::SetTimer(unsigned id, unsigned milliseconds) {
  if (m_window == nullptr) return;
  m_timers.insert(id);
  ::SetTimer(m_window, id, milliseconds, nullptr);
}

void NativeWindow::KillTimer(unsigned id) {
  m_timers.erase(id);
  if (m_window != nullptr) ::KillTimer(m_window, id);
}

void NativeWindow::Post(unsigned id, std::uint64_t parameter) {
  if (m_window != nullptr) PostMessageW(m_window, kPosted, id, static_cast<LPARAM>(parameter));
}

void NativeWindow::SetCursor(CursorShape shape) {
  const auto* name = reinterpret_cast<LPCWSTR>(shape == CursorShape::ResizeColumn ? IDC_SIZEWE : IDC_ARROW);
  m_cursor = LoadCursorW(nullptr, name);
  if (GetCapture() == m_window) ::SetCursor(m_cursor);
}

void NativeWindow::SetCursor(const Picture& picture) {
  if (m_window == nullptr) return;
  m_cursor = m_toolkit.CursorOf(picture, GetScale());
  if (m_cursor != nullptr) ::SetCursor(m_cursor);
}

}  // namespace qd

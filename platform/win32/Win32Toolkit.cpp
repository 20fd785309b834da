#include "platform/win32/Win32Toolkit.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/CWnd.h"
#include "platform/win32/ControlWindows.h"
#include "platform/win32/NativeDialog.h"
#include "platform/win32/PopupMenu.h"
#include "platform/win32/SurfaceWindow.h"

namespace qd {

const char* QD_wrt_GetVersion() {
  return QD_WRT_VERSION;
}

std::unique_ptr<NativeToolkit> NativeToolkit::Make(const char* builtAgainst) {
  if (Exists() || !Suits(builtAgainst)) return nullptr;
  return std::make_unique<Win32Toolkit>();
}

Win32Toolkit::Win32Toolkit() : m_scale(GetDpiForSystem()) {
  const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_STANDARD_CLASSES | ICC_BAR_CLASSES};
  InitCommonControlsEx(&classes);
  NativeWindow::RegisterClasses();
  m_noBitmap = GetCurrentObject(m_buffer.Get(), OBJ_BITMAP);
}

Win32Toolkit::~Win32Toolkit() {
  CloseWindows();
  SelectObject(m_buffer.Get(), m_noBitmap);
  NativeWindow::UnregisterClasses();
}

// ---- windows --------------------------------------------------------------------------------------------

std::unique_ptr<IPeer> Win32Toolkit::MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) {
  switch (kind) {
    case PeerKind::Surface:
    case PeerKind::SurfaceVScroll:
      return std::make_unique<SurfaceWindow>(*this, owner, kind == PeerKind::SurfaceVScroll, parent, area);
    case PeerKind::HorizontalScroll:
      return MakeScrollBar(*this, owner, parent, area);
    case PeerKind::Edit:
      return MakeEditBox(*this, owner, parent, area);
    case PeerKind::DropDownList:
      return MakeDropDownList(*this, owner, parent, area);
    case PeerKind::ToolTip:
      return MakeToolTip(*this, owner, parent);
  }
  return nullptr;
}

void* Win32Toolkit::HandleOf(const CWnd& window) const {
  return window.GetPeer() != nullptr ? static_cast<const NativeWindow*>(window.GetPeer())->Handle() : nullptr;
}

void Win32Toolkit::Embed(const CWnd& window, void* parent) {
  if (window.GetPeer() == nullptr) return;
  static_cast<NativeWindow*>(window.GetPeer())->Embed(static_cast<HWND>(parent));
  SetScale(Scale::Of(static_cast<HWND>(parent)));
}

void Win32Toolkit::SettingsChanged() {
  m_fonts.Forget();
  NativeWindow::RefreshAll();
}

HDC Win32Toolkit::BeginBuffer(int width, int height) {
  if (width > m_bufferSize.cx || height > m_bufferSize.cy) {
    m_bufferSize = {std::max<LONG>(width, m_bufferSize.cx), std::max<LONG>(height, m_bufferSize.cy)};
    SelectObject(m_buffer.Get(), m_noBitmap);
    // In the program's own memory: drawing and blending need nobody else.
    void* bits = nullptr;
    m_bitmap = MakePixels(m_bufferSize, bits);
    SelectObject(m_buffer.Get(), m_bitmap.Get());
  }
  return m_buffer.Get();
}

bool NativeToolkit::IsTyping(const void* message) {
  const MSG& sent = *static_cast<const MSG*>(message);
  if (sent.message != WM_KEYDOWN) return sent.message == WM_CHAR;
  const auto isDown = [](int key) { return GetKeyState(key) < 0; };
  const WPARAM key = sent.wParam;
  if (key >= VK_F1 && key <= VK_F24) return false;
  // With both of them held some keyboards type.
  if (!isDown(VK_CONTROL) || isDown(VK_MENU)) return true;
  constexpr std::wstring_view kEditing = L"ACVXYZ";
  const bool isSign = (key >= L'A' && key <= L'Z') || (key >= L'0' && key <= L'9');
  return !isSign || kEditing.find(static_cast<wchar_t>(key)) != std::wstring_view::npos;
}

bool Win32Toolkit::PreTranslateMessage(const void* message) {
  if (m_thrown != nullptr) std::rethrow_exception(std::exchange(m_thrown, nullptr));
  const MSG& sent = *static_cast<const MSG*>(message);
  if (!IsTyping(message)) return false;
  NativeWindow* window = NativeWindow::Of(sent.hwnd);
  if (window == nullptr || window->TextBox() == nullptr) return false;
  TranslateMessage(&sent);
  DispatchMessageW(&sent);
  return true;
}

// ---- metrics and colours --------------------------------------------------------------------------------

int Win32Toolkit::GetMetric(Metric metric) const {
  const auto number = [this](int index) {
    return m_scale.Covering(GetSystemMetricsForDpi(index, static_cast<UINT>(m_scale.Dpi())));
  };
  switch (metric) {
    case Metric::ScrollBarWidth:
      return number(SM_CXVSCROLL);
    case Metric::ScrollBarHeight:
      return number(SM_CYHSCROLL);
    case Metric::DragWidth:
      return number(SM_CXDRAG);
    case Metric::DragHeight:
      return number(SM_CYDRAG);
  }
  return 0;
}

COLORREF Win32Toolkit::GetColour(SystemColour colour) const {
  switch (colour) {
    case SystemColour::Window:
      return GetSysColor(COLOR_WINDOW);
    case SystemColour::WindowText:
      return GetSysColor(COLOR_WINDOWTEXT);
    case SystemColour::Highlight:
      return GetSysColor(COLOR_HIGHLIGHT);
    case SystemColour::HighlightText:
      return GetSysColor(COLOR_HIGHLIGHTTEXT);
    case SystemColour::ButtonFace:
      return GetSysColor(COLOR_BTNFACE);
    case SystemColour::ButtonText:
      return GetSysColor(COLOR_BTNTEXT);
    case SystemColour::Shadow:
      return GetSysColor(COLOR_BTNSHADOW);
  }
  return 0;
}

CPoint Win32Toolkit::CursorPosition() const {
  POINT place{};
  GetCursorPos(&place);
  return m_scale.FromPixels(place);
}

void Win32Toolkit::SetWaitCursor(bool on) {
  m_waits = std::max(0, m_waits + (on ? 1 : -1));
  ::SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IsWaiting() ? IDC_WAIT : IDC_ARROW)));
}

/// The clipboard ends a text at its first character of code 0, and its lines with two characters. What it held
/// goes only when there is something to put in its place.
void Win32Toolkit::SetClipboardText(const CString& text) {
  CString given;
  given.reserve(text.size() + text.size() / 16);
  for (const wchar_t element : text) given += element == L'\n' ? CString(L"\r\n") : CString(1, element);
  const std::size_t bytes = (given.size() + 1) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
  if (memory == nullptr) return;
  std::memcpy(GlobalLock(memory), given.c_str(), bytes);
  GlobalUnlock(memory);
  // It takes nothing from a program that opens it without a window. Another one may hold it.
  const HWND owner = GetFocus();
  bool taken = false;
  if (owner != nullptr && OpenClipboard(owner) != 0) {
    EmptyClipboard();
    taken = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    CloseClipboard();
  }
  if (!taken) GlobalFree(memory);  // else it is the system's
}

// ---- loops of their own ---------------------------------------------------------------------------------

CaptureEnd Win32Toolkit::RunCapture(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide) {
  const auto window = static_cast<HWND>(HandleOf(owner));
  if (window == nullptr) return CaptureEnd::Lost;
  const std::weak_ptr<void> life = owner.Life();
  bool ended = false;
  SetCapture(window);
  const auto loop = [&] {
    MSG message;
    while (!ended) {
      const BOOL got = GetMessageW(&message, nullptr, 0, 0);
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      if (got <= 0) return;
      // Wherever the focus is: a press that becomes a drag does not take it.
      if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE && !life.expired()) {
        Deliver({.kind = MessageKind::KeyDown, .target = &owner, .key = kKeyEscape});
        continue;
      }
      TranslateMessage(&message);
      DispatchMessageW(&message);
      if (m_thrown != nullptr) return;
    }
  };
  const auto quit = [&] {
    ended = true;
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);  // the loop may be waiting
  };
  const CaptureEnd end = m_capture.Run(owner, decide, loop, quit);
  if (GetCapture() == window) ReleaseCapture();
  // The system may have destroyed the window, which its owner does not know.
  return IsWindow(window) != 0 ? end : CaptureEnd::Lost;
}

unsigned Win32Toolkit::TrackMenu(CWnd& owner, const BCMenu& menu, CPoint screen) {
  const auto window = static_cast<HWND>(HandleOf(owner));
  if (window == nullptr || m_menu != nullptr) return 0;
  const Scale scale = Scale::Of(window);
  PopupMenu popup(*this, menu, scale);
  m_menu = &popup;
  const unsigned chosen = popup.Track(window, scale.ToPixels(screen));
  m_menu = nullptr;
  return chosen;
}

LRESULT Win32Toolkit::OnMenuMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
  return m_menu != nullptr ? m_menu->OnMessage(message, w, l) : DefWindowProcW(window, message, w, l);
}

std::unique_ptr<IDialogPeer> Win32Toolkit::MakeDialog(CDialog& owner, const DialogTemplate& layout) {
  return MakeNativeDialog(owner, layout);
}

MessageAnswer Win32Toolkit::ShowMessage(const CString& text, MessageButtons buttons) {
  CString shown = text;
  std::replace(shown.begin(), shown.end(), L'\0', L' ');
  const UINT kind = buttons == MessageButtons::Ok      ? MB_OK | MB_ICONWARNING
                    : buttons == MessageButtons::YesNo ? MB_YESNO | MB_ICONQUESTION
                                                       : MB_YESNOCANCEL | MB_ICONQUESTION;
  const HWND above = GetActiveWindow();
  wchar_t title[256] = L"";
  if (above != nullptr) GetWindowTextW(above, title, static_cast<int>(std::size(title)));
  switch (MessageBoxW(above, shown.c_str(), title, kind)) {
    case IDYES:
      return MessageAnswer::Yes;
    case IDNO:
      return MessageAnswer::No;
    case IDCANCEL:
      return buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::Cancel;
    default:
      return buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::No;
  }
}

}  // namespace qd

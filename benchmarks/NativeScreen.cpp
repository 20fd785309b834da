#include <windows.h>
// After what it builds on.
#include <psapi.h>

#include "benchmarks/Screen.h"
#include "platform/win32/NativeToolkit.h"

namespace qd::bench {

namespace {

/// The one toolkit of the process, as long as there is a screen.
std::shared_ptr<NativeToolkit> TheToolkit() {
  static std::weak_ptr<NativeToolkit> known;
  std::shared_ptr<NativeToolkit> toolkit = known.lock();
  if (toolkit == nullptr) known = toolkit = NativeToolkit::Make();
  return toolkit;
}

}  // namespace

struct Screen::Parts {
  std::shared_ptr<NativeToolkit> toolkit = TheToolkit();
  HWND frame = nullptr;
};

Screen::Screen() : m_parts(std::make_unique<Parts>()) {
  WNDCLASSW description{};
  description.lpfnWndProc = DefWindowProcW;
  description.lpszClassName = L"Bench";
  RegisterClassW(&description);
  m_parts->frame =
      CreateWindowW(L"Bench", L"Bench", WS_POPUP | WS_VISIBLE, 0, 0, 400, 800, nullptr, nullptr, nullptr, nullptr);
}

Screen::~Screen() {
  DestroyWindow(m_parts->frame);
}

void Screen::Show(CWnd& pane) {
  m_parts->toolkit->Embed(pane, m_parts->frame);
  MoveWindow(static_cast<HWND>(m_parts->toolkit->HandleOf(pane)), 0, 0, 400, 800, TRUE);
  Settle();
}

void Screen::Settle() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void Screen::Wait() {
  Sleep(1);
  Settle();
}

bool Screen::Paint(CWnd& window) {
  const auto handle = static_cast<HWND>(m_parts->toolkit->HandleOf(window));
  window.Invalidate();
  const bool asked = GetUpdateRect(handle, nullptr, FALSE) != 0;
  window.GetPeer()->PaintNow();
  GdiFlush();
  return asked && GetUpdateRect(handle, nullptr, FALSE) == 0;
}

void Screen::Type(CWnd& window, const CString& text) {
  for (const wchar_t unit : text) {
    SendMessageW(static_cast<HWND>(m_parts->toolkit->HandleOf(window)), WM_CHAR, unit, 0);
  }
  Settle();
}

std::size_t Screen::MenusShown() const {
  return 0;
}

std::size_t HeapInUse() {
  PROCESS_MEMORY_COUNTERS_EX counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof(counters));
  return counters.PagefileUsage;
}

}  // namespace qd::bench

#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include "native/Input.h"
#include "platform/win32/NativeToolkit.h"

namespace qd::test {

/// A window of the program's, for those of the module.
class Window {
 public:
  Window() {
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = L"Test";
    RegisterClassW(&description);
    m_window = CreateWindowW(L"Test", L"Test", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_VISIBLE, 100, 60, 460,
                             560, nullptr, nullptr, nullptr, nullptr);
    SetForegroundWindow(m_window);
  }
  ~Window() { DestroyWindow(m_window); }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  HWND Handle() const { return m_window; }

 private:
  HWND m_window;
};

/// A toolkit and a window to put things into.
class NativeTest : public ::testing::Test {
 protected:
  void Play(Input& input) { input.Play(*m_toolkit); }
  void Wait(unsigned milliseconds) { Play(Input().Wait(milliseconds)); }
  void Play(Input&& input) { input.Play(*m_toolkit); }
  HWND HandleOf(const CWnd& window) const { return static_cast<HWND>(m_toolkit->HandleOf(window)); }

  std::unique_ptr<NativeToolkit> m_toolkit = NativeToolkit::Make();
  Window m_window;
};

}  // namespace qd::test

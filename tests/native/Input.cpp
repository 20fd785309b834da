#include "native/Input.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

#include "workbench/native/Screenshot.h"

namespace qd::test {

namespace {

constexpr unsigned kBetween = 30;  // milliseconds
constexpr unsigned kPatience = 5000;

void Send(const INPUT& input) {
  INPUT copy = input;
  SendInput(1, &copy, sizeof(copy));
}

void SendKey(WORD key, WORD unit, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = unit;
  input.ki.dwFlags = flags;
  Send(input);
}

}  // namespace

Input& Input::Do(std::function<void()> what) {
  m_steps.push_back(std::move(what));
  return *this;
}

Input& Input::Then(Input other) {
  for (auto& step : other.m_steps) m_steps.push_back(std::move(step));
  return *this;
}

namespace {

bool IsAt(CPoint place) {
  POINT now{};
  GetCursorPos(&now);
  return now.x == place.x && now.y == place.y;
}

/// The pointer is the display's too, whose events of earlier moves may come late and take it back: it has arrived
/// when it has stayed for a while.
void MovePointer(CPoint to) {
  constexpr int kTries = 40;
  constexpr int kStays = 5;
  constexpr DWORD kStep = 8;  // milliseconds
  int stayed = 0;
  for (int i = 0; i < kTries && stayed < kStays; ++i) {
    if (stayed == 0) {
      SetCursorPos(to.x, to.y);
      INPUT input{};
      input.type = INPUT_MOUSE;
      // The whole screen is 65536 wide and high.
      input.mi.dx = (to.x * 65536 + 32768) / GetSystemMetrics(SM_CXSCREEN);
      input.mi.dy = (to.y * 65536 + 32768) / GetSystemMetrics(SM_CYSCREEN);
      input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
      Send(input);
    }
    Sleep(kStep);
    stayed = IsAt(to) ? stayed + 1 : 0;
  }
}

}  // namespace

Input& Input::Move(CPoint to) {
  return Do([to] { MovePointer(to); });
}

Input& Input::Button(DWORD what) {
  return Do([what] {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = what;
    Send(input);
  });
}

Input& Input::Wheel(int notches) {
  return Do([notches] {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_WHEEL;
    input.mi.mouseData = static_cast<DWORD>(notches * WHEEL_DELTA);
    Send(input);
  });
}

Input& Input::Down(WORD key) {
  return Do([key] { SendKey(key, 0, 0); });
}

Input& Input::Up(WORD key) {
  return Do([key] { SendKey(key, 0, KEYEVENTF_KEYUP); });
}

Input& Input::Keys(std::vector<WORD> keys) {
  for (const WORD key : keys) Down(key);
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) Up(*key);
  return *this;
}

Input& Input::Type(const std::wstring& text) {
  for (const wchar_t unit : text) {
    Do([unit] {
      SendKey(0, unit, KEYEVENTF_UNICODE);
      SendKey(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
    });
  }
  return *this;
}

Input& Input::Wait(unsigned milliseconds) {
  return Do([milliseconds] { Sleep(milliseconds); });
}

Input& Input::Picture(const std::string& name) {
  return Do([name] {
    const char* folder = std::getenv("QD_PICTURES");
    if (folder == nullptr) return;
    const RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    workbench::SaveScreenshot(screen, std::string(folder) + "/" + name + ".bmp");
  });
}

void Input::Play(const std::function<void(MSG&)>& handle) {
  std::atomic<bool> done = false;
  const DWORD thread = GetCurrentThreadId();
  const HWND probe = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  std::thread sender([&] {
    for (const auto& step : m_steps) {
      step();
      // On a busy machine the next step waits until the window has come to its messages.
      SendMessageTimeoutW(probe, WM_NULL, 0, 0, SMTO_NORMAL, kPatience, nullptr);
      Sleep(kBetween);
    }
    done = true;
    PostThreadMessageW(thread, WM_NULL, 0, 0);
  });
  while (!done) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
    Pump(handle, 0);
  }
  sender.join();
  DestroyWindow(probe);
  m_steps.clear();
  constexpr unsigned kSettle = 120;
  Pump(handle, kSettle);
}

void Input::Play(NativeToolkit& toolkit) {
  Play([&toolkit](MSG& message) {
    if (toolkit.PreTranslateMessage(&message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  });
}

void Pump(const std::function<void(MSG&)>& handle, unsigned milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  MSG message;
  do {
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) handle(message);
    if (GetTickCount64() < end) MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  } while (GetTickCount64() < end);
}

}  // namespace qd::test

#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/Types.h"
#include "platform/win32/NativeToolkit.h"

namespace qd::test {

/// What the user does, as the system's own mouse and keys. A thread sends it while the test's thread handles
/// messages, so that it goes on in loops of menus, dialogs and captures.
class Input {
 public:
  /// Places are pixels of the screen.
  Input& Move(CPoint to);
  Input& Press() { return Button(MOUSEEVENTF_LEFTDOWN); }
  Input& Release() { return Button(MOUSEEVENTF_LEFTUP); }
  Input& Click(CPoint at) { return Move(at).Press().Release(); }
  Input& DoubleClick(CPoint at) { return Click(at).Press().Release(); }
  Input& RightClick(CPoint at) { return Move(at).Button(MOUSEEVENTF_RIGHTDOWN).Button(MOUSEEVENTF_RIGHTUP); }
  Input& RightPress() { return Button(MOUSEEVENTF_RIGHTDOWN); }
  Input& RightRelease() { return Button(MOUSEEVENTF_RIGHTUP); }
  Input& Wheel(int notches);
  /// Presses keys by their system numbers, all down, then all up.
  Input& Keys(std::vector<WORD> keys);
  Input& Down(WORD key);
  Input& Up(WORD key);
  Input& Type(const std::wstring& text);
  Input& Wait(unsigned milliseconds);
  /// On the thread that sends: it may post messages, but call nothing of a window's.
  Input& Do(std::function<void()> what);
  /// Does what another one would.
  Input& Then(Input other);
  /// Keeps a picture of the screen for whoever wants to look, where QD_PICTURES names a folder.
  Input& Picture(const std::string& name);

  /// Does it all and handles what comes of it. `handle` does what the program's loop does with a message.
  void Play(const std::function<void(MSG&)>& handle);
  void Play(NativeToolkit& toolkit);

 private:
  Input& Button(DWORD what);
  std::vector<std::function<void()>> m_steps;
};

/// Handles messages for a while.
void Pump(const std::function<void(MSG&)>& handle, unsigned milliseconds);

}  // namespace qd::test

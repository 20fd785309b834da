#pragma once

#include <cstdint>

#include "platform/Types.h"

namespace qd {

class CWnd;

/// What a window system reports to a window.
enum class MessageKind {
  LeftDown,
  LeftUp,
  LeftDouble,
  RightDown,
  RightUp,
  MouseMove,
  MouseLeave,
  Wheel,        ///< `amount`: lines, positive towards the user's back
  WheelAcross,  ///< `amount`: steps to the right, of a wheel that turns or tilts sideways or is turned with Shift
  KeyDown,      ///< `key`
  Char,         ///< `key`: a typed character; an edit box has taken it in already
  TextChanged,  ///< of an edit box, by the user: typed, pasted, taken back
  Timer,        ///< `id`
  Posted,       ///< `id`, `parameter`
  Scroll,       ///< `amount`: the position that the user asks for
  Size,
  FocusGained,
  FocusLost,
  LookChanged,  ///< the user has chosen other colours or fonts
  CaptureLost,
  ContextMenu,  ///< posted on release of the right button, `point` in screen coordinates; or by the keyboard,
                ///< with `amount` 1 and without a place: the window knows it
};

/// Keys held while a mouse button or the mouse acts.
enum MouseFlags : unsigned { kMouseShift = 4, kMouseControl = 8, kMouseAlt = 32 };

/// Whether Ctrl is held for a command: with Alt it is AltGr, which types signs.
inline constexpr bool HoldsControl(unsigned flags) {
  return (flags & (kMouseControl | kMouseAlt)) == kMouseControl;
}

/// Keys that the controls act on; other keys have their character code.
enum Key : int {
  kKeyTab = 9,
  kKeyEnter = 13,
  kKeyEscape = 27,
  kKeySpace = 32,
  kKeyPageUp = 33,
  kKeyPageDown = 34,
  kKeyEnd = 35,
  kKeyHome = 36,
  kKeyLeft = 37,
  kKeyUp = 38,
  kKeyRight = 39,
  kKeyDown = 40,
  kKeyDelete = 46,
  kKeyA = 65,
  kKeyC = 67,
  kKeyF = 70,
  kKeyI = 73,
  kKeyMultiply = 106,  ///< this and the next two stand on the keypad
  kKeyAdd = 107,
  kKeySubtract = 109,
  kKeyF1 = 112,
  kKeyF2 = 113,
  kKeyF3 = 114
};

/// A report, with what MessageKind says that it carries.
struct Message {
  MessageKind kind = MessageKind::Posted;  ///< what happened
  CWnd* target = nullptr;                  ///< the window that it is for
  CPoint point{};                          ///< client coordinates, but see ContextMenu
  unsigned flags = 0;                      ///< MouseFlags, for keys too
  /// @{
  /// See MessageKind.
  int key = 0;
  int amount = 0;
  unsigned id = 0;
  std::uint64_t parameter = 0;
  /// @}
};

/// What a holder of the mouse capture decides about a message.
enum class CaptureVerdict {
  Dispatch,         ///< handle it as usual and go on
  Swallow,          ///< drop it and go on
  Stop,             ///< drop it and end the capture
  StopAndDispatch,  ///< end the capture, then handle it as usual
};

/// How a capture ended.
enum class CaptureEnd { Stopped, Lost };

}  // namespace qd

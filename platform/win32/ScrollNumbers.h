#pragma once

#include "platform/Toolkit.h"
#include "platform/win32/System.h"

namespace qd {

/// A scroll bar's numbers as the system takes them: its largest number lies a page beyond the largest position.
SCROLLINFO ScrollNumbers(const ScrollState& state);
/// The position that a user's act on a bar asks for; `act` is one of the system's codes, `line` the step of an
/// arrow.
int ScrollTarget(HWND window, int bar, int act, int line);

}  // namespace qd

#pragma once

#include "platform/win32/System.h"

namespace qd {

/// What a window that its owner has given a name to answers to screen readers that ask for its accessible object
/// (WM_GETOBJECT): the system's own object, but with that name, and the role and the act of a button where it is
/// one. 0 when the system has none.
LRESULT AnswerWithName(HWND window, WPARAM w);

}  // namespace qd

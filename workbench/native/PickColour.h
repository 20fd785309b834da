#pragma once

#include <windows.h>

#include "platform/Types.h"

namespace qd::workbench {

/// Lets the user choose another colour. Returns whether he did; messages are handled meanwhile.
bool PickColour(HWND owner, qd::COLORREF& colour);

}  // namespace qd::workbench

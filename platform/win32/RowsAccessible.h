#pragma once

#include "platform/RowHandle.h"
#include "platform/win32/System.h"

namespace qd {

/// What a window with rows answers to screen readers that ask for its accessible object (WM_GETOBJECT); 0 when it
/// has none to offer.
LRESULT AnswerScreenReader(HWND window, WPARAM w, LPARAM l);

/// Tells screen readers that a row has the focus now.
void AnnounceRow(HWND window, HTREEITEM row);

}  // namespace qd

#pragma once

#include "platform/win32/NativeWindow.h"

namespace qd {

/// Windows of the system's own classes. Null windows stay null: see NativeWindow.
std::unique_ptr<IPeer> MakeScrollBar(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area);
std::unique_ptr<IPeer> MakeEditBox(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area);
std::unique_ptr<IPeer> MakeDropDownList(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area);
std::unique_ptr<IPeer> MakeToolTip(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent);

}  // namespace qd

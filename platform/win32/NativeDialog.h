#pragma once

#include <memory>

#include "platform/CDialog.h"

namespace qd {

/// A dialog's window. It belongs to the window that is active when it is made.
std::unique_ptr<IDialogPeer> MakeNativeDialog(CDialog& owner, const DialogTemplate& layout);

}  // namespace qd

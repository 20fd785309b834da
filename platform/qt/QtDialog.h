#pragma once

#include <memory>

#include "platform/CDialog.h"

namespace qd {

/// A dialog's window. It belongs to the window that is active when it is made.
std::unique_ptr<IDialogPeer> MakeQtDialog(CDialog& owner, const DialogTemplate& layout);

MessageAnswer ShowQtMessage(const CString& text, MessageButtons buttons);

}  // namespace qd

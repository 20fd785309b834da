#pragma once

#include <windows.h>

#include <optional>

#include "host/ProductVariant.h"
#include "workbench/native/NativeMessages.h"
#include "workbench/session/WindowCommands.h"

namespace qd::workbench {

/// The variant that a command chooses, if it does.
std::optional<ProductVariant> VariantOf(unsigned command);
/// The menu in the language of now. The caller destroys it.
HMENU MakeMenuBar(const NativeMessages& messages);
/// Greys what is not possible now, and says behind undo and redo what is meant. Right before the menu is shown.
void RefreshMenuBar(HMENU bar, const Session& session);
/// The keys of the menu. The caller destroys it.
HACCEL MakeAccelerators();

}  // namespace qd::workbench

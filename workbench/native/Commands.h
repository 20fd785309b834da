#pragma once

#include <windows.h>

#include <optional>

#include "host/ProductVariant.h"
#include "workbench/native/NativeMessages.h"

namespace qd::workbench {

/// The commands of the main menu.
enum Command : unsigned {
  kImport = 100,
  kExample,
  kExit,
  kUndo,
  kRedo,
  kDelete,
  kShowAll,
  kHideAll,
  kLeaveIsolation,
  kFirstLanguage = 200,  ///< plus the place in the list of languages
  kFirstVariant = 300    ///< plus the place in the list of variants
};

/// The variant that a command chooses, if it does.
std::optional<ProductVariant> VariantOf(unsigned command);
/// The menu in the language of now. The caller destroys it.
HMENU MakeMenuBar(const NativeMessages& messages);
/// The keys of the menu. The caller destroys it.
HACCEL MakeAccelerators();

}  // namespace qd::workbench

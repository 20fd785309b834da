#pragma once

#include "platform/win32/System.h"

namespace qd {

/// The module that the resources are in; null before it is attached to its process.
HINSTANCE ModuleInstance();
void SetModuleInstance(HINSTANCE instance);

}  // namespace qd

#pragma once

// The system's own interface, for the sources of this folder only.

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// After what it builds on.
#include <commctrl.h>

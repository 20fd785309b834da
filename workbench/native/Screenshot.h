#pragma once

#include <windows.h>

#include <filesystem>

namespace qd::workbench {

/// Writes what the screen shows in a rectangle of pixels as a bitmap file. False when it cannot be written.
bool SaveScreenshot(const RECT& area, const std::filesystem::path& path);

}  // namespace qd::workbench

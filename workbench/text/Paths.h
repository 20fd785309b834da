#pragma once

#include <filesystem>
#include <string>

namespace qd::workbench {

/// A path as UTF-8 text, whatever the system's own form; what is no character becomes U+FFFD.
std::string PathText(const std::filesystem::path& path);
/// The path that a UTF-8 text names.
std::filesystem::path PathOf(const std::string& text);

}  // namespace qd::workbench

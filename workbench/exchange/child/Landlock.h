#pragma once

#include <vector>

namespace qd::workbench {

/// Closes the file system to the calling thread and those that it starts, but for reading the files and folders
/// that the descriptors stand for; network ports, named sockets and signals to others too, where the kernel can.
/// New privileges must be off. False when the kernel has no Landlock.
bool CloseFileSystem(const std::vector<int>& readable);

}  // namespace qd::workbench

#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

/// The few calls on files that each system has in its own form. Failures leave their reason in `errno`.
namespace qd::workbench::system {

/// The byte of a file by which our programs lock it: beyond all contents, and not among those that the database
/// library locks.
inline constexpr std::int64_t kLockPlace = std::int64_t{1} << 62U;

/// Makes a file that is not there yet and locks it against TryLock of others; a handle, or -1.
int MakeLocked(const std::filesystem::path& path);
/// Whether a file that is there belongs to nobody: it could be opened and locked. The lock ends with `Close`.
int OpenIfFree(const std::filesystem::path& path);
/// Whether a handle's file is still the one at a path.
bool IsAt(int handle, const std::filesystem::path& path);
/// The new file gets the rights that the old one has; what cannot be had is left.
void CopyRights(int handle, const std::filesystem::path& from);
bool WriteAll(int handle, std::string_view bytes);
/// Waits until a file, or what a folder lists, is on the disk.
bool Settle(int handle);
bool SettleFolder(const std::filesystem::path& folder);
bool Close(int handle);

/// Whether a file that is open can get another name, and be taken away.
#ifdef _WIN32
inline constexpr bool kOpenFilesMove = false;
#else
inline constexpr bool kOpenFilesMove = true;
#endif

}  // namespace qd::workbench::system

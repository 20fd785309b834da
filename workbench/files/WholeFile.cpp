#include "workbench/files/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <utility>
#include <vector>

#include "workbench/files/SystemFile.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

/// Partial files are known by their names: this, sixteen digits, and the ending.
constexpr std::string_view kBegin = ".qd-";
constexpr std::string_view kEnd = ".part";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kDigitCount = 16;

fs::path NewName() {
  std::random_device random;
  std::string name(kBegin);
  for (std::size_t i = 0; i < kDigitCount; ++i) name += kDigits[random() % kDigits.size()];
  return name.append(kEnd);
}

/// With the log that the database library may keep beside it.
void Remove(const fs::path& partial) {
  std::error_code none;
  fs::remove(partial, none);
  fs::path log = partial;
  log += "-journal";
  fs::remove(log, none);
}

bool IsPartial(const fs::path& name) {
  const auto& text = name.native();
  if (text.size() != kBegin.size() + kDigitCount + kEnd.size()) return false;
  return std::equal(kBegin.begin(), kBegin.end(), text.begin()) &&
         std::equal(kEnd.rbegin(), kEnd.rend(), text.rbegin()) &&
         std::all_of(text.begin() + kBegin.size(), text.end() - kEnd.size(), [](auto letter) {
           return letter < 128 && kDigits.find(static_cast<char>(letter)) != kDigits.npos;
         });
}

}  // namespace

fs::path FollowLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code failed;
  path = fs::absolute(path, failed);
  for (int link = 0; link < kMostLinks && fs::is_symlink(fs::symlink_status(path, failed)); ++link) {
    const fs::path next = fs::read_symlink(path, failed);
    if (failed) break;
    path = path.parent_path() / next;  // an absolute one stands for itself
  }
  const fs::path folder = fs::canonical(path.parent_path(), failed);
  return failed ? path : folder / path.filename();
}

WholeFile::WholeFile(const fs::path& target) : m_target(FollowLinks(target)) {
  const fs::path folder = m_target.parent_path();
  CleanUp(folder);
  std::error_code none;
  if (fs::exists(m_target, none) && !fs::is_regular_file(m_target, none)) {  // a folder, a device
    errno = fs::is_directory(m_target, none) ? EISDIR : EINVAL;
    Fail();
    return;
  }
  constexpr int kAttempts = 8;
  for (int attempt = 0; attempt < kAttempts && m_handle < 0; ++attempt) {
    m_partial = folder / NewName();
    m_handle = system::MakeLocked(m_partial);
    if (m_handle < 0 && errno != EEXIST) break;
    // Between making and locking another program may have taken it for left behind.
    if (m_handle >= 0 && !system::IsAt(m_handle, m_partial)) system::Close(std::exchange(m_handle, -1));
  }
  m_good = m_handle >= 0 || Fail();
  if (m_good) system::CopyRights(m_handle, m_target);
}

WholeFile::~WholeFile() {
  const bool takeAway = !m_finished && !m_partial.empty() && m_handle >= 0;
  if (takeAway && system::kOpenFilesMove) Remove(m_partial);
  if (m_handle >= 0) system::Close(m_handle);
  if (takeAway && !system::kOpenFilesMove) Remove(m_partial);
}

bool WholeFile::Fail() {
  if (m_fault.empty()) m_fault = std::generic_category().message(errno);
  m_good = false;
  return false;
}

bool WholeFile::Write(std::string_view bytes) {
  return m_good && (system::WriteAll(m_handle, bytes) || Fail());
}

bool WholeFile::Finish(int* kept) {
  if (!m_good || m_finished) return m_good;
  if (!system::Settle(m_handle)) return Fail();
  if (!system::kOpenFilesMove && !system::Close(std::exchange(m_handle, -1))) return Fail();
  std::error_code failed;
  fs::rename(m_partial, m_target, failed);
  if (failed) {
    m_fault = failed.message();
    m_good = false;
    Remove(m_partial);
    return false;
  }
  m_finished = true;
  // The file is whole and has its name; that the name may not outlive a power cut is still a fault to be told.
  if (!system::SettleFolder(m_target.parent_path())) return Fail();
  const int handle = std::exchange(m_handle, -1);
  if (kept != nullptr) {
    *kept = handle;
    return true;
  }
  return handle < 0 || system::Close(handle) || Fail();
}

void WholeFile::CleanUp(const fs::path& folder) {
  std::error_code failed;
  std::vector<fs::path> left;
  for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
    if (IsPartial(at->path().filename())) left.push_back(at->path());
  }
  for (const fs::path& path : left) {
    const int handle = system::OpenIfFree(path);
    if (handle < 0) continue;  // somebody is writing it
    if (system::kOpenFilesMove) Remove(path);
    system::Close(handle);
    if (!system::kOpenFilesMove) Remove(path);
  }
}

}  // namespace qd::workbench

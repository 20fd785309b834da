#include "workbench/store/DocumentKeeper.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <utility>

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSuffix = ".qdw";

std::string NewRecoveryPath(const std::string& folder) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  std::string path;
  for (auto number = std::chrono::duration_cast<std::chrono::microseconds>(now).count(); path.empty(); ++number) {
    const fs::path candidate = fs::u8path(folder) / ("document-" + std::to_string(number) + kSuffix);
    if (!fs::exists(candidate)) path = candidate.string();
  }
  return path;
}

}  // namespace

DocumentKeeper::DocumentKeeper(Database& database, std::string folder)
    : m_database(database), m_folder(std::move(folder)) {
  m_database.SetStore(this);
}

DocumentKeeper::~DocumentKeeper() {
  m_database.SetStore(nullptr);
  LeaveRecoveryFile();
}

void DocumentKeeper::LeaveRecoveryFile() {
  if (m_file == nullptr) return;
  const std::string path = m_file->Path();
  m_file.reset();
  if (!m_named) Discard(path);
}

void DocumentKeeper::Use(std::unique_ptr<DocumentFile> file, bool named) {
  LeaveRecoveryFile();
  m_file = std::move(file);
  m_named = named;
  m_file->SetOnFailure([this](const DocumentError& error) {
    if (m_onFailure) m_onFailure(error);
  });
}

// ---- writing --------------------------------------------------------------------------------------------

/// Called with the first act, which the database holds already, so the new file gets it with all else.
void DocumentKeeper::MakeRecoveryFile() {
  std::error_code failed;
  fs::create_directories(fs::u8path(m_folder), failed);
  DocumentError error;
  std::unique_ptr<DocumentFile> file =
      failed ? nullptr : DocumentFile::Create(NewRecoveryPath(m_folder), m_database, error);
  if (file != nullptr) {
    return Use(std::move(file), false);
  }
  // Work can go on, but not without a word.
  m_withoutRecovery = true;
  if (m_onFailure) m_onFailure({"IDS_WB_DOC_NO_RECOVERY", failed ? failed.message() : error.detail});
}

bool DocumentKeeper::Write(const std::vector<JournalEntry>& net, bool forward) {
  if (m_file != nullptr) return m_file->Write(net, forward);
  if (!m_withoutRecovery) MakeRecoveryFile();
  return true;
}

// ---- opening and saving ---------------------------------------------------------------------------------

bool DocumentKeeper::Open(const std::string& path, DocumentError& error, const ProgressCall& progress) {
  std::unique_ptr<DocumentFile> file = DocumentFile::Open(path, m_database, error, nullptr, progress);
  if (file == nullptr) return false;
  Use(std::move(file), true);
  return true;
}

bool DocumentKeeper::Recover(const std::string& path, DocumentError& error) {
  std::unique_ptr<DocumentFile> file = DocumentFile::Open(path, m_database, error);
  if (file == nullptr) return false;
  Use(std::move(file), false);
  return true;
}

bool DocumentKeeper::SaveAs(const std::string& path, DocumentError& error, const ProgressCall& progress) {
  std::error_code none;
  if (m_file != nullptr && m_named && fs::equivalent(fs::u8path(path), fs::u8path(m_file->Path()), none)) {
    if (m_file->IsReadOnly()) error = {"IDS_WB_DOC_VIEWED", path};
    return !m_file->IsReadOnly();
  }
  std::unique_ptr<DocumentFile> file;
  // What is only viewed may be held in a way that cannot be copied.
  if (m_file != nullptr && !m_file->IsReadOnly()) {
    if (!m_file->CopyTo(path, error, progress)) return false;
    file = DocumentFile::Attach(path, error);
  } else if (DocumentFile::IsInUse(path)) {
    error = {"IDS_WB_DOC_BUSY", path};
  } else {
    file = DocumentFile::Create(path, m_database, error);
  }
  if (file == nullptr) return false;
  Use(std::move(file), true);
  return true;
}

// ---- recovery -------------------------------------------------------------------------------------------

std::vector<std::string> DocumentKeeper::FindRecoverable(const std::string& folder) {
  std::vector<std::string> found;
  std::error_code failed;
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::u8path(folder), failed)) {
    if (entry.path().extension() != kSuffix) continue;
    const std::string path = entry.path().string();
    DocumentError error;
    std::unique_ptr<DocumentFile> file = DocumentFile::Attach(path, error);
    if (file == nullptr) continue;  // open in another window, or nothing that could be recovered
    const bool any = file->HoldsAnything();
    file.reset();
    if (any) {
      found.push_back(path);
    } else {
      Discard(path);
    }
  }
  std::sort(found.rbegin(), found.rend());
  return found;
}

void DocumentKeeper::Discard(const std::string& path) {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) std::remove((path + suffix).c_str());
}

}  // namespace qd::workbench

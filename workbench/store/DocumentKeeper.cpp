#include "workbench/store/DocumentKeeper.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <utility>

#include "workbench/files/WholeFile.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSuffix = ".qdw";
constexpr const char* kTitleName = "title";

/// Whether there is anything but what every new document has.
bool HoldsAnything(const Database& database) {
  const std::size_t fresh = Database().AllRecords().size();
  return database.AllRecords().size() > fresh;
}

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
  // Taken away while it is held, so that nobody is offered it meanwhile.
  if (!m_named && m_file->Stands()) {
    RemoveIdleLogs(path);
    std::remove(path.c_str());
  }
  m_file.reset();
}

bool DocumentKeeper::IsUnsaved() const {
  return !m_named && (m_file != nullptr ? m_file->HoldsAnything() : HoldsAnything(m_database));
}

void DocumentKeeper::SetTitle(const std::string& title) {
  m_title = title;
  if (m_file != nullptr && !m_named) m_file->PutView(kTitleName, title);
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

/// Of the database as it stands.
void DocumentKeeper::MakeRecoveryFile() {
  std::error_code failed;
  fs::create_directories(fs::u8path(m_folder), failed);
  DocumentError error;
  std::unique_ptr<DocumentFile> file =
      failed ? nullptr : DocumentFile::Create(NewRecoveryPath(m_folder), m_database, error);
  if (file != nullptr) {
    Use(std::move(file), false);
    m_file->PutView(kTitleName, m_title);
    if (std::exchange(m_withoutRecovery, false) && m_onFailure) m_onFailure({"IDS_WB_DOC_PROTECTED", ""});
    return;
  }
  // Work can go on, but not without a word; that it still does not work need not be told with each act.
  if (std::exchange(m_withoutRecovery, true)) return;
  if (m_onFailure) m_onFailure({"IDS_WB_DOC_NO_RECOVERY", failed ? failed.message() : error.detail});
}

bool DocumentKeeper::Write(const std::vector<JournalEntry>& net, bool forward) {
  if (m_file != nullptr) return m_file->Write(net, forward);
  MakeRecoveryFile();
  if (m_file == nullptr) return true;
  // The database holds a new act already, and the file with it; what an undo or redo brings back comes only now.
  std::vector<JournalEntry> missing;
  for (const JournalEntry& entry : net) {
    const tagTRecord* after = (forward ? entry.after : entry.before).get();
    if (m_database.Find(entry.itr) != after) missing.push_back(entry);
  }
  return missing.empty() || m_file->Write(missing, forward);
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
  m_title = file->View(kTitleName);
  Use(std::move(file), false);
  return true;
}

bool DocumentKeeper::SaveAs(const std::string& path, DocumentError& error, const ProgressCall& progress) {
  std::error_code none;
  if (m_file != nullptr && m_named && fs::equivalent(fs::u8path(path), fs::u8path(m_file->Path()), none) &&
      m_file->Stands()) {
    return m_file->KeepMended(error);
  }
  std::unique_ptr<DocumentFile> file;
  if (m_file != nullptr && !m_file->IsReadOnly() && !m_file->IsOlder() && m_file->Stands()) {
    file = m_file->CopyAndOpen(path, error, progress);
  } else {
    // What somebody has taken away or written to is made anew from memory, and what is only read may be held in a
    // way that cannot be copied.
    file = DocumentFile::Create(path, m_database, error);
    if (file != nullptr && m_file != nullptr) file->TakeViews(*m_file);
  }
  if (file == nullptr) return false;
  Use(std::move(file), true);
  m_file->PutView(kTitleName, "");  // where the first file lay is nobody's business who gets the document
  return true;
}

// ---- recovery -------------------------------------------------------------------------------------------

std::vector<RecoverableDocument> DocumentKeeper::FindRecoverable(const std::string& folder) {
  std::vector<RecoverableDocument> found;
  std::error_code failed;
  WholeFile::CleanUp(folder);
  std::vector<std::string> paths;
  for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
    if (at->path().extension() == kSuffix) paths.push_back(at->path().string());
  }
  for (const std::string& path : paths) {
    DocumentError error;
    std::unique_ptr<DocumentFile> file = DocumentFile::Attach(path, error);
    const std::string_view fault = error.key != nullptr ? error.key : "";
    if (file == nullptr) {
      // Open in another window, or taken away just now; all else was somebody's work.
      if (fault != "IDS_WB_DOC_BUSY" && fault != "IDS_WB_IMPORT_MISSING") found.push_back({path, "", 0, 0, error});
    } else if (file->HoldsAnything()) {
      found.push_back({path, file->View(kTitleName), file->Count("geom"), file->Count("mset"), {}});
    } else {
      RemoveIdleLogs(path);
      std::remove(path.c_str());  // still held
    }
  }
  std::sort(found.begin(), found.end(),
            [](const auto& left, const auto& right) { return left.path > right.path; });
  return found;
}

bool DocumentKeeper::Discard(const std::string& path) {
  auto result = DocumentHold::Result::Held;
  const auto hold = DocumentHold::Take(path, DocumentHold::Kind::Write, result);
  if (hold == nullptr) return result == DocumentHold::Result::Missing;
  RemoveIdleLogs(path);
  return std::remove(path.c_str()) == 0;
}

}  // namespace qd::workbench

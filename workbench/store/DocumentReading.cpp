#include "workbench/store/DocumentReading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "workbench/files/WholeFile.h"
#include "workbench/store/DocumentMark.h"
#include "workbench/store/DocumentSchema.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

/// What the library leaves beside a file that was not closed.
constexpr std::array kLogs{"-wal", "-journal"};

std::uintmax_t SizeOf(const std::string& path) {
  std::error_code missing;
  const std::uintmax_t size = fs::file_size(path, missing);
  return missing ? 0 : size;
}

bool HasLog(const std::string& path) {
  return std::any_of(kLogs.begin(), kLogs.end(), [&path](const char* log) { return SizeOf(path + log) > 0; });
}

/// A folder of this program alone, which goes with all that is in it.
class PrivateFolder {
 public:
  PrivateFolder() {
    std::error_code failed;
    std::string name = (fs::temp_directory_path(failed) / "qd_document_XXXXXX").string();
    if (!failed && mkdtemp(name.data()) != nullptr) m_path = name;
  }
  ~PrivateFolder() {
    std::error_code failed;
    if (!m_path.empty()) fs::remove_all(m_path, failed);
  }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;
  const std::string& Path() const { return m_path; }

 private:
  std::string m_path;
};

/// Copies a document, and its logs when they are its own. False, with a reason, on failure and when `progress`
/// stops it.
bool CopyWithLogs(const std::string& from, const std::string& to, DocumentError& error,
                  const ProgressCall& progress) {
  std::uintmax_t whole = SizeOf(from);
  for (const char* log : kLogs) whole += SizeOf(from + log);
  std::error_code failed;
  const fs::space_info room = fs::space(fs::path(to).parent_path(), failed);
  if (failed || room.available <= whole) {
    error = {"IDS_WB_DOC_NOT_WHOLE", from};
    return false;
  }
  std::uintmax_t done = 0;
  std::vector<char> bytes(1U << 20U);
  const bool own = CheckLogs(from) == LogKind::Own;
  for (const char* suffix : {"", "-wal", "-journal"}) {
    if (*suffix != 0 && (!own || SizeOf(from + suffix) == 0)) continue;
    std::ifstream in(from + suffix, std::ios::binary);
    std::ofstream out(to + suffix, std::ios::binary);
    while (in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())), in.gcount() > 0) {
      out.write(bytes.data(), in.gcount());
      done += static_cast<std::uintmax_t>(in.gcount());
      if (progress && !progress(static_cast<double>(done) / static_cast<double>(whole + 1))) {
        error = {"IDS_WB_IMPORT_CANCELLED", from};
        return false;
      }
    }
    out.close();
    if (!in.eof() || out.fail()) {
      error = {"IDS_WB_DOC_NOT_WHOLE", from};
      return false;
    }
  }
  return true;
}

}  // namespace

bool IsPlainFile(const std::string& path, DocumentError& error) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (!fs::exists(status)) {
    error = {
        failed && status.type() != fs::file_type::not_found ? "IDS_WB_IMPORT_UNREADABLE" : "IDS_WB_IMPORT_MISSING",
        path};
  } else if (fs::is_directory(status)) {
    error = {"IDS_WB_IMPORT_DIRECTORY", path};
  } else if (!fs::is_regular_file(status)) {
    error = {"IDS_WB_DOC_NO_FILE", path};
  } else {
    return true;
  }
  return false;
}

bool MayWrite(const std::string& path) {
  const fs::path file = fs::absolute(FollowLinks(path));
  return faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) == 0 &&
         faccessat(AT_FDCWD, file.parent_path().c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::unique_ptr<Connection> OpenToRead(const std::string& path, DocumentError& error, const char* vfs,
                                       const ProgressCall& progress) {
  if (!IsPlainFile(path, error)) return nullptr;
  auto result = DocumentHold::Result::Held;
  std::shared_ptr<DocumentHold> hold = DocumentHold::Take(path, DocumentHold::Kind::Look, result);
  if (hold == nullptr) {
    error = {result == DocumentHold::Result::Busy ? "IDS_WB_DOC_BUSY" : "IDS_WB_IMPORT_UNREADABLE", path};
    return nullptr;
  }
  auto file = OpenHeldToRead(path, *hold, error, vfs, progress);
  if (file != nullptr) file->Keep(std::move(hold));  // nobody writes to it meanwhile
  return file;
}

std::unique_ptr<Connection> OpenHeldToRead(const std::string& path, const DocumentHold& hold, DocumentError& error,
                                           const char* vfs, const ProgressCall& progress) {
  if (hold.IsLockedByLibrary()) {
    error = {"IDS_WB_DOC_BUSY", path};
    return nullptr;
  }
  if (!HasLog(path)) return std::make_unique<Connection>(path, Connection::Mode::Read, vfs);
  const PrivateFolder folder;
  const std::string copy = folder.Path() + "/document.qdw";
  if (folder.Path().empty()) {
    error = {"IDS_WB_DOC_NOT_WHOLE", path};
    return nullptr;
  }
  if (!CopyWithLogs(path, copy, error, progress)) return nullptr;
  auto file = std::make_unique<Connection>(copy, Connection::Mode::Write, vfs);
  // The library takes up the logs with the first look, while they still have names.
  file->Run("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT;");
  return file;
}

int ReadVersion(Connection& file, const std::string& path, DocumentError& error) {
  const std::int64_t application = file.Value("PRAGMA application_id", -1);
  if (file.IsEndless()) {
    error = {"IDS_WB_DOC_ENDLESS", path};
    return 0;
  }
  if (application == -1 && !file.IsForeign()) {
    error = {file.IsBusy() ? "IDS_WB_DOC_BUSY" : "IDS_WB_DOC_FAILED", file.IsBusy() ? path : file.Error()};
    return 0;
  }
  const std::int64_t version = file.Value("PRAGMA user_version");
  if (application != kDocumentApplication || version < 1) {
    error = {"IDS_WB_DOC_FOREIGN", path};
  } else if (version > kDocumentVersion) {
    error = {"IDS_WB_DOC_NEWER", std::to_string(version)};
  } else {
    return static_cast<int>(version);
  }
  return 0;
}

}  // namespace qd::workbench

#include "workbench/store/DocumentFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <utility>

#include "workbench/store/DocumentReading.h"
#include "workbench/store/RecordCheck.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

/// How a file is used: by one program, each transaction on the disk before it counts.
constexpr const char* kManners =
    "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
    "PRAGMA cache_size = -65536; PRAGMA temp_store = MEMORY;";

/// A file that is being made; it gets its name when it is whole.
constexpr const char* kPartial = ".part";

/// With what belongs to it: the log of another file would be taken for that of a new one.
void RemoveFile(const std::string& path) {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) std::remove((path + suffix).c_str());
}

/// Waits until a file or folder is on the disk.
void Settle(const fs::path& path) {
  const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) return;
  fsync(handle);
  close(handle);
}

/// The old file stands until the new one takes its place in one step; only its log goes before.
bool PutInPlace(const std::string& partial, const std::string& path, DocumentError& error) {
  for (const char* suffix : {"-wal", "-shm", "-journal"}) std::remove((path + suffix).c_str());
  Settle(fs::u8path(partial));
  std::error_code failed;
  fs::rename(fs::u8path(partial), fs::u8path(path), failed);
  if (failed) error = {"IDS_WB_DOC_FAILED", failed.message()};
  Settle(fs::absolute(fs::u8path(path)).parent_path());
  return !failed;
}

}  // namespace

DocumentFile::DocumentFile(std::string path, Connection connection)
    : m_path(std::move(path)), m_file(std::move(connection)), m_tables(MakeRecordTables()) {}

IRecordTable* DocumentFile::TableOf(iterator itr) const {
  const auto found = std::find_if(m_tables.begin(), m_tables.end(),
                                  [itr](const auto& table) { return table->Type() == TypeOf(itr); });
  return found != m_tables.end() ? found->get() : nullptr;
}

DocumentError DocumentFile::Fault() const {
  if (m_file.IsEndless()) return {"IDS_WB_DOC_ENDLESS", m_path};
  if (!m_viewed && m_file.HasMoved()) return {"IDS_WB_DOC_GONE", m_path};
  if (m_file.IsBusy()) return {"IDS_WB_DOC_BUSY", m_path};
  if (m_file.IsFull()) return {"IDS_WB_DOC_FULL", m_path};
  if (m_file.IsForeign()) return {"IDS_WB_DOC_DAMAGED", m_file.Error()};
  return {"IDS_WB_DOC_FAILED", m_file.Error()};
}

void DocumentFile::Prepare() {
  m_file.Allow(Connection::Scope::Rows, DocumentTables());
  for (const auto& table : m_tables) table->Attach(m_file);
  m_noteNumber = std::make_unique<Statement>(m_file.Prepare(
      "INSERT INTO pool VALUES (?, ?) ON CONFLICT (type) DO UPDATE SET last = max(last, excluded.last)"));
}

// ---- making and opening ---------------------------------------------------------------------------------

std::unique_ptr<DocumentFile> DocumentFile::Create(const std::string& path, const Database& database,
                                                   DocumentError& error, const char* vfs) {
  const std::string partial = path + kPartial;
  RemoveFile(partial);
  bool made = false;
  {
    DocumentFile file(partial, Connection(partial, Connection::Mode::Create, vfs));
    std::string schema = "BEGIN; PRAGMA application_id = " + std::to_string(kDocumentApplication) +
                         "; PRAGMA user_version = " + std::to_string(kDocumentVersion) + ";";
    for (int version = 1; version <= kDocumentVersion; ++version) schema += StepToVersion(version);
    file.m_file.Allow(Connection::Scope::Make);
    made = file.m_file.IsOpen() && file.m_file.Run(kManners) && file.m_file.Run((schema + "COMMIT;").c_str());
    if (made) file.Prepare();  // what went wrong before must stay the last fault
    file.m_file.AllowLargeValues();
    made = made && file.WriteEntries(database.AllRecords(), true);
    if (!made) error = file.Fault();
  }
  if (made && PutInPlace(partial, path, error)) return Attach(path, error, vfs);
  RemoveFile(partial);
  return nullptr;
}

std::unique_ptr<DocumentFile> DocumentFile::Attach(const std::string& path, DocumentError& error, const char* vfs,
                                                   const ProgressCall& progress) {
  if (!IsPlainFile(path, error)) return nullptr;
  const bool viewed = !MayWrite(path);
  std::unique_ptr<Connection> connection = viewed
                                               ? OpenToRead(path, error, vfs, progress)
                                               : std::make_unique<Connection>(path, Connection::Mode::Write, vfs);
  if (connection == nullptr) return nullptr;
  std::unique_ptr<DocumentFile> file(
      new DocumentFile(path, std::move(*connection)));  // the constructor is private
  file->m_viewed = viewed;
  if (!file->m_file.IsOpen() ||
      (!viewed && !file->m_file.Run("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT;"))) {
    error = file->m_file.IsForeign() ? DocumentError{"IDS_WB_DOC_FOREIGN", path} : file->Fault();
    return nullptr;
  }
  const int version = ReadVersion(file->m_file, path, error);
  return version != 0 && file->TakeUp(version, error) ? std::move(file) : nullptr;
}

bool DocumentFile::TakeUp(int version, DocumentError& error) {
  // Before anything is asked of a table: what is not exactly ours may be a view, or carry triggers.
  if (const auto faults = CheckSchema(m_file, version); !faults.empty()) {
    error = {faults.front().key, faults.front().detail};
    return false;
  }
  if (!m_viewed && (!m_file.Run(kManners) || !BringForward(version))) {
    error = Fault();
    return false;
  }
  Prepare();
  return true;
}

bool DocumentFile::BringForward(int version) {
  m_file.Allow(Connection::Scope::Make);
  for (int next = version + 1; next <= kDocumentVersion; ++next) {
    const std::string step =
        "BEGIN;" + StepToVersion(next) + "PRAGMA user_version = " + std::to_string(next) + "; COMMIT;";
    if (!m_file.Run(step.c_str())) return false;
  }
  return true;
}

std::unique_ptr<DocumentFile> DocumentFile::Open(const std::string& path, Database& database, DocumentError& error,
                                                 const char* vfs, const ProgressCall& progress) {
  std::unique_ptr<DocumentFile> file = Attach(path, error, vfs, progress);
  return file != nullptr && file->ReadInto(database, error, progress) ? std::move(file) : nullptr;
}

bool DocumentFile::ReadInto(Database& database, DocumentError& error, const ProgressCall& progress) {
  bool stopped = false;
  RecordCheck check;
  std::vector<std::pair<iterator, std::shared_ptr<const tagTRecord>>> records;
  m_file.SetProgress([&] {
    stopped = progress && !progress(m_file.Taken());
    return !stopped;
  });
  for (const auto& table : m_tables) {
    const bool read = table->Read(
        m_file,
        [&](iterator itr, std::shared_ptr<tagTRecord> record) {
          check.Add(itr, *record);
          records.emplace_back(itr, std::move(record));
        },
        [&](iterator itr, const std::string& fault) { check.Complain(table->Name(), itr, fault); });
    if (!read) {
      error = Fault();
      if (!check.Faults().empty()) error = {"IDS_WB_DOC_DAMAGED", check.Faults().back()};
      if (stopped) error = {"IDS_WB_IMPORT_CANCELLED", m_path};
      return false;
    }
  }
  m_file.SetProgress(nullptr);
  if (progress) progress(1);
  check.CheckReferences();
  if (!check.Faults().empty()) {
    error = {"IDS_WB_DOC_DAMAGED", check.Faults().front()};
    return false;
  }
  m_file.AllowLargeValues();
  for (auto& [itr, record] : records) database.Load(itr, std::move(record));
  Statement numbers = m_file.Prepare("SELECT type, last FROM pool");
  while (numbers.Step()) {
    const auto last = static_cast<iterator>(numbers.Integer(1));
    if (last == 0 || last > RecordCheck::kMostRecords) continue;
    database.ReserveNumbers(static_cast<iterator>(numbers.Integer(0)) << kTypeShift | last);
  }
  return true;
}

// ---- writing --------------------------------------------------------------------------------------------

bool DocumentFile::WriteEntries(const std::vector<JournalEntry>& net, bool forward) {
  if (m_file.HasMoved() || !m_file.Run("BEGIN IMMEDIATE")) return false;
  std::map<std::uint16_t, iterator> lastOf;
  for (const JournalEntry& entry : net) {
    IRecordTable* table = TableOf(entry.itr);
    const tagTRecord* before = forward ? entry.before.get() : entry.after.get();
    const tagTRecord* after = forward ? entry.after.get() : entry.before.get();
    if (table == nullptr || !table->Put(entry.itr, before, after)) return false;
    if (before == nullptr) {
      iterator& last = lastOf[table->Type()];
      last = std::max<iterator>(last, NumberOf(entry.itr));
    }
  }
  for (const auto& [type, last] : lastOf) {
    m_noteNumber->Bind(1, static_cast<std::int64_t>(type));
    m_noteNumber->Bind(2, static_cast<std::int64_t>(last));
    if (!m_noteNumber->Run()) return false;
  }
  return m_file.Run("COMMIT");
}

bool DocumentFile::Write(const std::vector<JournalEntry>& net, bool forward) {
  if (IsReadOnly()) {
    if (m_onFailure) m_onFailure({"IDS_WB_DOC_VIEWED", m_path});
    return false;
  }
  if (WriteEntries(net, forward)) return true;
  const DocumentError fault = Fault();
  // A failed write may have ended the transaction already.
  if (m_file.IsInTransaction()) m_file.Run("ROLLBACK");
  if (m_onFailure) m_onFailure(fault);
  return false;
}

bool DocumentFile::CopyTo(const std::string& path, DocumentError& error, const ProgressCall& progress) {
  const std::string partial = path + kPartial;
  RemoveFile(partial);
  if (IsInUse(path)) {
    error = {"IDS_WB_DOC_BUSY", path};
    return false;
  }
  std::error_code none;
  const double whole = 1.0 + static_cast<double>(fs::file_size(fs::u8path(m_path), none));
  m_file.SetProgress([&] {
    const double done = static_cast<double>(fs::file_size(fs::u8path(partial), none));
    return !progress || progress(std::clamp(done / whole, 0.0, 1.0));
  });
  m_file.Allow(Connection::Scope::Make);
  Statement copy = m_file.Prepare("VACUUM INTO ?");
  copy.BindText(1, partial);
  const bool copied = copy.Run();
  m_file.Allow(Connection::Scope::Rows, DocumentTables());
  m_file.SetProgress(nullptr);
  if (!copied) error = Fault();
  if (copied && PutInPlace(partial, path, error)) return true;
  RemoveFile(partial);
  return false;
}

bool DocumentFile::IsInUse(const std::string& path) {
  if (!fs::exists(fs::u8path(path))) return false;
  Connection file(path, Connection::Mode::Write);
  return file.IsOpen() && !file.Run("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT;") && file.IsBusy();
}

bool DocumentFile::PutView(const std::string& name, const std::string& bytes) {
  if (IsReadOnly()) return false;
  Statement put = m_file.Prepare("INSERT OR REPLACE INTO view VALUES (?, ?)");
  put.BindText(1, name);
  put.BindBlob(2, bytes);
  return put.Run();
}

std::string DocumentFile::View(const std::string& name) {
  Statement get = m_file.Prepare("SELECT data FROM view WHERE name = ?");
  get.BindText(1, name);
  return get.Step() ? std::string(get.Bytes(0)) : std::string();
}

bool DocumentFile::HoldsAnything() {
  for (const char* table : {"geom", "mset", "material", "property", "gset"}) {
    if (m_file.Value(std::string("SELECT 1 FROM ") + table + " LIMIT 1") > 0) return true;
  }
  return m_file.Value("SELECT 1 FROM cord LIMIT 1 OFFSET 1") > 0;
}

}  // namespace qd::workbench

#include "workbench/store/DocumentFile.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>
#include <utility>

#include "workbench/files/WholeFile.h"
#include "workbench/store/DocumentReading.h"
#include "workbench/store/DocumentRows.h"
#include "workbench/store/RecordCheck.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

/// How a file is used: each act is on the disk before it counts, and leaves nothing beside the file. The library
/// locks the file for each act anew, so that it does not matter when its locks are dropped between two of them.
constexpr const char* kManners =
    "PRAGMA journal_mode = DELETE; PRAGMA synchronous = EXTRA; PRAGMA cache_size = -65536; PRAGMA temp_store = "
    "MEMORY; PRAGMA secure_delete = FAST;";
/// A file that has no name yet needs no log.
constexpr const char* kMakingManners = "PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF;";
constexpr const char* kFailed = "IDS_WB_DOC_FAILED";
constexpr const char* kPutMark = "INSERT INTO document VALUES (?)";

std::string Resolved(const std::string& path) {
  return FollowLinks(path).string();
}

DocumentError ErrorOf(DocumentHold::Result result, const std::string& path) {
  switch (result) {
    case DocumentHold::Result::Missing:
      return {"IDS_WB_IMPORT_MISSING", path};
    case DocumentHold::Result::Folder:
      return {"IDS_WB_IMPORT_DIRECTORY", path};
    case DocumentHold::Result::Busy:
      return {"IDS_WB_DOC_BUSY", path};
    default:
      return {"IDS_WB_DOC_FAILED", std::generic_category().message(errno) + ": " + path};
  }
}

/// Holds the file that is about to be replaced, if there is one. False when somebody else has it.
bool HoldOld(const std::string& path, std::unique_ptr<DocumentHold>& hold, DocumentError& error) {
  auto result = DocumentHold::Result::Held;
  hold = DocumentHold::Take(path, DocumentHold::Kind::Write, result);
  if (hold != nullptr || result == DocumentHold::Result::Missing) return true;
  error = ErrorOf(result, path);
  return false;
}

/// Gives a file that is whole its name. The logs of the one that it replaces go with that one.
std::unique_ptr<DocumentHold> Finish(WholeFile& file, DocumentError& error) {
  int handle = -1;
  const bool done = file.Finish(&handle);
  if (!done) error = {"IDS_WB_DOC_FAILED", file.Fault() + ": " + file.Target().string()};
  if (!done) return nullptr;
  RemoveIdleLogs(file.Target().string());
  return std::make_unique<DocumentHold>(handle);
}

}  // namespace

DocumentFile::DocumentFile(std::string path, Connection connection, std::unique_ptr<DocumentHold> hold)
    : m_path(std::move(path)),
      m_hold(std::move(hold)),
      m_file(std::move(connection)),
      m_tables(MakeRecordTables()) {}

IRecordTable* DocumentFile::TableOf(iterator itr) const {
  const auto found = std::find_if(m_tables.begin(), m_tables.end(),
                                  [itr](const auto& table) { return table->Type() == TypeOf(itr); });
  return found != m_tables.end() ? found->get() : nullptr;
}

DocumentError DocumentFile::Fault() const {
  if (m_file.IsEndless()) return {"IDS_WB_DOC_ENDLESS", m_path};
  if (m_lost.key != nullptr) return m_lost;
  if (m_file.IsBusy()) return {"IDS_WB_DOC_BUSY", m_path};
  if (m_file.IsFull()) return {"IDS_WB_DOC_FULL", m_path};
  if (m_file.IsForeign()) return {"IDS_WB_DOC_DAMAGED", m_file.Error()};
  return {kFailed, m_file.Error()};
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
  std::unique_ptr<DocumentHold> old;
  if (!HoldOld(path, old, error)) return nullptr;
  WholeFile whole(path);
  if (!whole.IsOpen()) {
    error = {"IDS_WB_DOC_FAILED", whole.Fault() + ": " + path};
    return nullptr;
  }
  {
    const std::string partial = whole.Partial().string();
    DocumentFile file(partial, Connection(partial, Connection::Mode::Create, vfs), nullptr);
    std::string schema = "BEGIN; PRAGMA application_id = " + std::to_string(kDocumentApplication) +
                         "; PRAGMA user_version = " + std::to_string(kDocumentVersion) + ";";
    for (int version = 1; version <= kDocumentVersion; ++version) schema += StepToVersion(version);
    file.m_file.Allow(Connection::Scope::Make);
    bool made = file.m_file.IsOpen() && file.m_file.Run(kMakingManners) &&
                file.m_file.Run((schema + "COMMIT;").c_str()) && file.PutMark(DocumentMark::New());
    if (made) file.Prepare();  // what went wrong before must stay the last fault
    file.m_file.AllowLargeValues();
    made = made && file.WriteEntries(database.AllRecords(), true, database.LastNumbers());
    if (!made) {
      error = file.Fault();
      if (error.detail == partial) error.detail = path;
      return nullptr;
    }
  }
  auto hold = Finish(whole, error);
  return hold != nullptr ? AttachOwn(whole.Target().string(), std::move(hold), error, vfs) : nullptr;
}

std::unique_ptr<DocumentFile> DocumentFile::Attach(const std::string& path, DocumentError& error, const char* vfs,
                                                   const ProgressCall& progress) {
  if (!IsPlainFile(path, error)) return nullptr;
  const std::string resolved = Resolved(path);
  const char* viewed = MayWrite(resolved) ? nullptr : "IDS_WB_DOC_VIEWED";
  if (viewed == nullptr) {
    auto result = DocumentHold::Result::Held;
    std::unique_ptr<DocumentHold> hold = DocumentHold::Take(resolved, DocumentHold::Kind::Write, result);
    if (hold == nullptr) {
      error = ErrorOf(result, path);
      return nullptr;
    }
    // The log of an act would stand beside one of the names only.
    if (!hold->HasOtherNames()) return AttachHeld(resolved, std::move(hold), error, vfs, progress);
    viewed = "IDS_WB_DOC_LINKS";
  }
  return AttachViewed(resolved, viewed, error, vfs, progress);
}

std::unique_ptr<DocumentFile> DocumentFile::AttachViewed(const std::string& path, const char* why,
                                                         DocumentError& error, const char* vfs,
                                                         const ProgressCall& progress) {
  const std::unique_ptr<Connection> connection = OpenToRead(path, error, vfs, progress);
  if (connection == nullptr) return nullptr;
  std::unique_ptr<DocumentFile> file(
      new DocumentFile(path, std::move(*connection), nullptr));  // the constructor is private
  file->m_viewed = why;
  const int version = ReadVersion(file->m_file, path, error);
  return version != 0 && file->TakeUp(version, error) ? std::move(file) : nullptr;
}

std::unique_ptr<DocumentFile> DocumentFile::AttachHeld(const std::string& path, std::unique_ptr<DocumentHold> hold,
                                                       DocumentError& error, const char* vfs,
                                                       const ProgressCall& progress) {
  if (!IsDocument(path)) {
    error = {"IDS_WB_DOC_FOREIGN", path};
    return nullptr;
  }
  std::string aside;
  if (CheckLogs(path) == LogKind::Foreign) aside = SetLogsAside(path);
  const LogKind logs = CheckLogs(path);
  if (logs == LogKind::Foreign) {
    error = {"IDS_WB_DOC_LOG", path};
    return nullptr;
  }
  if (logs == LogKind::None) RemoveIdleLogs(path);
  // What the head says may still be changed by a log of the document's own: an act that was cut off may have
  // brought it forward, or have been about to.
  std::unique_ptr<DocumentFile> file;
  error = {};
  const bool isOlder = StatedVersion(path) < kDocumentVersion;
  file = isOlder ? AttachOlder(path, hold, error, vfs, progress) : AttachPresent(path, hold, error, vfs);
  if (file == nullptr && error.key == nullptr) {
    file = isOlder ? AttachPresent(path, hold, error, vfs) : AttachOlder(path, hold, error, vfs, progress);
    if (file == nullptr && error.key == nullptr) error = {"IDS_WB_DOC_CHANGED", path};
  }
  if (file != nullptr) file->m_foreignLog = aside;
  return file;
}

/// Null without an error, and with the hold given back, when the document is of an earlier version.
std::unique_ptr<DocumentFile> DocumentFile::AttachPresent(const std::string& path,
                                                          std::unique_ptr<DocumentHold>& hold,
                                                          DocumentError& error, const char* vfs) {
  std::unique_ptr<DocumentFile> file(new DocumentFile(path, Connection(path, Connection::Mode::Write, vfs),
                                                      std::move(hold)));  // the constructor is private
  if (!file->m_file.IsOpen() || !file->m_file.Run("BEGIN IMMEDIATE; COMMIT;")) {
    error = file->m_file.IsForeign() ? DocumentError{"IDS_WB_DOC_FOREIGN", path} : file->Fault();
    return nullptr;
  }
  const int version = ReadVersion(file->m_file, path, error);
  if (version == kDocumentVersion) return file->TakeUp(version, error) ? std::move(file) : nullptr;
  if (version != 0) hold = std::move(file->m_hold);
  return nullptr;
}

/// To open a document is not to agree that it is written anew in another version. Null without an error, and with
/// the hold given back, when the document is of the present one.
std::unique_ptr<DocumentFile> DocumentFile::AttachOlder(const std::string& path,
                                                        std::unique_ptr<DocumentHold>& hold, DocumentError& error,
                                                        const char* vfs, const ProgressCall& progress) {
  const auto state = hold->State();
  const std::unique_ptr<Connection> connection = OpenHeldToRead(path, *hold, error, vfs, progress);
  if (connection == nullptr) return nullptr;
  std::unique_ptr<DocumentFile> file(
      new DocumentFile(path, std::move(*connection), std::move(hold)));  // the constructor is private
  file->m_vfs = vfs;
  file->m_state = state;
  file->m_older = ReadVersion(file->m_file, path, error);
  if (file->m_older == kDocumentVersion) {
    hold = std::move(file->m_hold);
    return nullptr;
  }
  return file->m_older != 0 && file->TakeUp(file->m_older, error) ? std::move(file) : nullptr;
}

/// Before the first act in a document of an earlier version. What was read so far must be what is there now.
bool DocumentFile::MakeWritable() {
  if (m_hold->State() != m_state) m_lost = {"IDS_WB_DOC_CHANGED", m_path};
  if (CheckLogs(m_path) == LogKind::Foreign) m_lost = {"IDS_WB_DOC_LOG", m_path};
  if (m_lost.key != nullptr) return false;
  const int version = m_older;
  // The one that it was read with ends after the statements that were made with it.
  const Connection before = std::exchange(m_file, Connection(m_path, Connection::Mode::Write, m_vfs));
  m_older = 0;
  if (m_file.IsOpen() && m_file.Run("BEGIN IMMEDIATE; COMMIT;")) {
    const int found = ReadVersion(m_file, m_path, m_lost);
    if (found == version && TakeUp(version, m_lost)) {
      m_file.AllowLargeValues();
      return true;
    }
    if (found != version && m_lost.key == nullptr) m_lost = {"IDS_WB_DOC_CHANGED", m_path};
  }
  // Whatever was done of it was taken back, or has only moved the last acts from the log into the file.
  m_older = version;
  m_state = m_hold->State();
  return false;
}

/// What this program has just written need not be measured by its size, and acts may add larger values.
std::unique_ptr<DocumentFile> DocumentFile::AttachOwn(const std::string& path, std::unique_ptr<DocumentHold> hold,
                                                      DocumentError& error, const char* vfs) {
  std::unique_ptr<DocumentFile> file = AttachHeld(path, std::move(hold), error, vfs);
  if (file != nullptr) file->m_file.AllowLargeValues();
  return file;
}

bool DocumentFile::TakeUp(int version, DocumentError& error) {
  // Before anything is asked of a table: what is not exactly ours may be a view, or carry triggers.
  if (const auto faults = CheckSchema(m_file, version); !faults.empty()) {
    error = {faults.front().key, faults.front().detail};
    return false;
  }
  const bool isRead = m_viewed != nullptr || m_older != 0;
  if (!isRead && (!m_file.Run(kManners) || !BringForward(version))) {
    error = Fault();
    return false;
  }
  // What is only read stays of its version, which may lack tables.
  const int has = isRead ? version : kDocumentVersion;
  m_tables = MakeRecordTables([has](const std::string& table) { return IsTableOf(table, has); });
  Prepare();
  if (isRead) return true;
  const std::string fault = ReadMark(m_file, m_mark);
  if (!fault.empty()) error = {"IDS_WB_DOC_DAMAGED", fault};
  return fault.empty();
}

bool DocumentFile::PutMark(const DocumentMark& mark) {
  const std::string bytes = mark.Encode();
  Statement put = m_file.Prepare(kPutMark);
  put.BindBlob(1, bytes);
  return put.Run();
}

bool DocumentFile::BringForward(int version) {
  m_file.Allow(Connection::Scope::Make);
  for (int next = version + 1; next <= kDocumentVersion; ++next) {
    const std::string end = "PRAGMA user_version = " + std::to_string(next) + "; COMMIT;";
    constexpr int kFirstWithMark = 2;
    if (!m_file.Run(("BEGIN IMMEDIATE;" + StepToVersion(next)).c_str()) ||
        (next == kFirstWithMark && !PutMark(DocumentMark::New())) || !m_file.Run(end.c_str())) {
      return false;
    }
  }
  return true;
}

std::unique_ptr<DocumentFile> DocumentFile::Open(const std::string& path, Database& database, DocumentError& error,
                                                 const char* vfs, const ProgressCall& progress) {
  std::unique_ptr<DocumentFile> file = Attach(path, error, vfs, progress);
  return file != nullptr && file->ReadInto(database, error, progress) ? std::move(file) : nullptr;
}

std::unique_ptr<DocumentFile> DocumentFile::View(const std::string& path, Database& database, DocumentError& error,
                                                 const ProgressCall& progress) {
  if (!IsPlainFile(path, error)) return nullptr;
  std::unique_ptr<DocumentFile> file = AttachViewed(Resolved(path), "IDS_WB_DOC_VIEWED", error, nullptr, progress);
  return file != nullptr && file->ReadInto(database, error, progress) ? std::move(file) : nullptr;
}

bool DocumentFile::ReadInto(Database& database, DocumentError& error, const ProgressCall& progress) {
  bool stopped = false;
  RecordCheck check;
  m_file.SetProgress([&] {
    stopped = progress && !progress(m_file.Taken());
    return !stopped;
  });
  for (const auto& table : m_tables) {
    const bool read = table->Read(
        m_file, [&](iterator itr, std::shared_ptr<tagTRecord> record) { check.Add(itr, std::move(record)); },
        [&](const RecordFault& fault) { check.Complain(fault); });
    if (!read) {
      error = Fault();
      if (!check.Faults().empty()) error = {"IDS_WB_DOC_DAMAGED", check.Faults().back()};
      if (stopped) error = {"IDS_WB_IMPORT_CANCELLED", m_path};
      return false;
    }
  }
  m_file.SetProgress(nullptr);
  if (progress) progress(1);
  check.Run();
  if (!check.Faults().empty()) {
    error = {"IDS_WB_DOC_DAMAGED", check.Faults().front()};
    return false;
  }
  std::vector<iterator> numbers;
  std::string fault = ReadNumbers(m_file, [&numbers](iterator last) { numbers.push_back(last); });
  if (fault.empty()) fault = CheckViews(m_file);
  if (fault.empty()) fault = CheckPages(m_file);
  if (!fault.empty()) {
    error = {"IDS_WB_DOC_DAMAGED", fault};
    return false;
  }
  m_file.AllowLargeValues();
  for (const auto& [itr, record] : check.All()) database.Load(itr, record);
  for (const iterator last : numbers) database.ReserveNumbers(last);
  m_mended = check.Mended();
  m_unkept = check.TakeChanges();
  return true;
}

// ---- writing --------------------------------------------------------------------------------------------

/// Each act begins with the mark of the state that it leads to. What is at the path must be the file that is held,
/// and hold the state that the last act has left: nobody else has written to it.
bool DocumentFile::Begin() {
  m_lost = {};
  if (m_working) m_lost = {"IDS_WB_DOC_WORKING", m_path};
  if (m_lost.key == nullptr && m_hold != nullptr && !m_hold->IsAt(m_path)) m_lost = {"IDS_WB_DOC_GONE", m_path};
  if (m_lost.key != nullptr || (m_older != 0 && !MakeWritable())) return false;
  if (!m_file.Run("BEGIN IMMEDIATE")) {
    if (m_file.IsForeign()) m_lost = {"IDS_WB_DOC_CHANGED", m_path};
    return false;
  }
  if (m_hold == nullptr) return true;  // it is being made
  m_nextMark = m_mark.Next();
  const std::string now = m_mark.Encode();
  const std::string next = m_nextMark.Encode();
  Statement change = m_file.Prepare("UPDATE document SET mark = ? WHERE mark = ?");
  change.BindBlob(1, next);
  change.BindBlob(2, now);
  const bool changed = change.Run();
  if (changed && m_file.Changes() == 1) return true;
  if (changed || m_file.IsForeign() || m_file.IsMissing()) m_lost = {"IDS_WB_DOC_CHANGED", m_path};
  return false;
}

bool DocumentFile::Commit() {
  if (!m_file.Run("COMMIT")) return false;
  m_mark = m_nextMark;
  return true;
}

bool DocumentFile::Stands() {
  if (IsReadOnly()) return true;  // nothing of it could be lost
  if (m_hold == nullptr || !m_hold->IsAt(m_path)) return false;
  if (m_older != 0) return m_hold->State() == m_state;
  const std::string now = m_mark.Encode();
  Statement marks = m_file.Prepare("SELECT 1 FROM document WHERE mark = ?");
  marks.BindBlob(1, now);
  return marks.Step();
}

bool DocumentFile::WriteEntries(const std::vector<JournalEntry>& net, bool forward,
                                const std::vector<iterator>& numbers) {
  if (!Begin()) return false;
  std::map<std::uint16_t, iterator> lastOf;
  for (const iterator last : numbers) lastOf[TypeOf(last)] = NumberOf(last);
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
  return Commit();
}

bool DocumentFile::KeepMended(DocumentError& error) {
  if (m_viewed != nullptr) error = {m_viewed, m_path};
  if (m_viewed != nullptr || m_unkept.empty()) return m_viewed == nullptr;
  if (!WriteEntries(m_unkept, true)) {
    error = Fault();
    if (m_file.IsInTransaction()) m_file.Run("ROLLBACK");
    return false;
  }
  m_unkept.clear();
  return true;
}

bool DocumentFile::Write(const std::vector<JournalEntry>& net, bool forward) {
  if (IsReadOnly()) {
    if (m_onFailure) m_onFailure({ViewedKey(), m_path});
    return false;
  }
  if (WriteEntries(net, forward)) return true;
  DocumentError fault = Fault();
  if (fault.key == kFailed) fault.key = "IDS_WB_DOC_UNKEPT";
  // A failed write may have ended the transaction already; that of a copy is not this one's.
  if (!m_working && m_file.IsInTransaction()) m_file.Run("ROLLBACK");
  if (m_onFailure) m_onFailure(fault);
  return false;
}

bool DocumentFile::CopyTo(const std::string& path, DocumentError& error, const ProgressCall& progress) {
  return WriteCopy(path, error, progress) != nullptr;
}

std::unique_ptr<DocumentFile> DocumentFile::CopyAndOpen(const std::string& path, DocumentError& error,
                                                        const ProgressCall& progress) {
  auto hold = WriteCopy(path, error, progress);
  return hold != nullptr ? AttachOwn(Resolved(path), std::move(hold), error, nullptr) : nullptr;
}

std::unique_ptr<DocumentHold> DocumentFile::WriteCopy(const std::string& path, DocumentError& error,
                                                      const ProgressCall& progress) {
  std::unique_ptr<DocumentHold> old;
  if (!HoldOld(path, old, error)) return nullptr;
  WholeFile whole(path);
  if (!whole.IsOpen()) {
    error = {"IDS_WB_DOC_FAILED", whole.Fault() + ": " + path};
    return nullptr;
  }
  const std::string partial = whole.Partial().string();
  std::error_code none;
  const double size = 1.0 + static_cast<double>(fs::file_size(fs::u8path(m_path), none));
  m_file.SetProgress([&] {
    const double done = static_cast<double>(fs::file_size(whole.Partial(), none));
    return !progress || progress(std::clamp(done / size, 0.0, 1.0));
  });
  m_working = true;
  m_file.Allow(Connection::Scope::Make);
  bool copied = false;
  {
    Statement copy = m_file.Prepare("VACUUM INTO ?");
    copy.BindText(1, partial);
    copied = copy.Run();
  }
  m_lost = {};
  if (!copied) error = Fault();
  m_file.Allow(Connection::Scope::Rows, DocumentTables());
  m_file.SetProgress(nullptr);
  m_working = false;
  if (copied) {
    // The copy is a document of its own: a log of this one is none of the copy's.
    Connection file(partial, Connection::Mode::Write);
    file.Allow(Connection::Scope::Rows, DocumentTables());
    const std::string mark = DocumentMark::New().Encode();
    Statement change = file.Prepare("UPDATE document SET mark = ?");
    change.BindBlob(1, mark);
    copied = file.Run(kMakingManners) && change.Run();
    if (!copied) error = {"IDS_WB_DOC_FAILED", file.Error()};
  }
  if (copied) return Finish(whole, error);
  if (error.detail == m_path) error.detail = path;
  return nullptr;
}

bool DocumentFile::IsInUse(const std::string& path) {
  auto result = DocumentHold::Result::Held;
  DocumentHold::Take(path, DocumentHold::Kind::Look, result);
  return result == DocumentHold::Result::Busy;
}

bool DocumentFile::PutView(const std::string& name, const std::string& bytes) {
  if (IsReadOnly() || IsOlder()) return false;  // how a document is shown is no act
  bool put = false;
  if (Begin()) {
    Statement statement = m_file.Prepare("INSERT OR REPLACE INTO view VALUES (?, ?)");
    statement.BindText(1, name);
    statement.BindBlob(2, bytes);
    put = statement.Run() && Commit();
  }
  if (!m_working && m_file.IsInTransaction()) m_file.Run("ROLLBACK");
  return put;
}

std::string DocumentFile::View(const std::string& name) {
  Statement get = m_file.Prepare("SELECT data FROM view WHERE name = ?");
  get.BindText(1, name);
  return get.Step() ? std::string(get.Bytes(0)) : std::string();
}

void DocumentFile::TakeViews(DocumentFile& other) {
  Statement views = other.m_file.Prepare("SELECT name, data FROM view");
  while (views.Step()) PutView(std::string(views.Bytes(0)), std::string(views.Bytes(1)));
}

std::int64_t DocumentFile::Count(const char* table) {
  return m_file.Value(std::string("SELECT count(*) FROM ") + table);
}

bool DocumentFile::HoldsAnything() {
  const auto holds = [this](const std::string& select) {
    Statement rows = m_file.Prepare(select);
    return rows.Step() || rows.Failed();  // what cannot be read was somebody's work
  };
  for (const char* table : {"geom", "mset", "material", "property", "gset"}) {
    if (holds(std::string("SELECT 1 FROM ") + table + " LIMIT 1")) return true;
  }
  // Older documents keep no decks.
  return (m_older == 0 && holds("SELECT 1 FROM deck LIMIT 1")) || holds("SELECT 1 FROM cord LIMIT 1 OFFSET 1");
}

}  // namespace qd::workbench

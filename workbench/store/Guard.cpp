#include "workbench/store/Guard.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

/// After so many operations of the library progress is told.
constexpr int kOperations = 2000;
/// A step may take so many operations, whatever the size of the file, and so many for each of its bytes. A row of
/// a table takes some tens and has more than ten bytes.
constexpr std::uint64_t kWork = 20'000'000;
constexpr std::uint64_t kWorkOfByte = 20;

/// As long as a connection may only look: the schema has some tens of rows, and the library's work for each grows
/// with their number.
constexpr std::uint64_t kWorkOfLook = 50'000;

/// The library's limits: our statements stay far below.
constexpr std::pair<int, int> kLimits[] = {
    {SQLITE_LIMIT_SQL_LENGTH, 20'000}, {SQLITE_LIMIT_COLUMN, 40},
    {SQLITE_LIMIT_EXPR_DEPTH, 40},     {SQLITE_LIMIT_COMPOUND_SELECT, 4},
    {SQLITE_LIMIT_VDBE_OP, 25'000},    {SQLITE_LIMIT_FUNCTION_ARG, 8},
    {SQLITE_LIMIT_ATTACHED, 1},        {SQLITE_LIMIT_VARIABLE_NUMBER, 64},
    {SQLITE_LIMIT_TRIGGER_DEPTH, 1},   {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 100},
    {SQLITE_LIMIT_WORKER_THREADS, 0}};
/// A new file needs some room; a file's values cannot be larger than the file.
constexpr std::uint64_t kLeastLength = 1U << 20U;

constexpr std::array<std::string_view, 13> kPragmas{
    "application_id",  "user_version",   "encoding",     "locking_mode",    "journal_mode",
    "synchronous",     "cache_size",     "temp_store",   "cell_size_check", "quick_check",
    "integrity_check", "wal_checkpoint", "secure_delete"};
constexpr std::array<std::string_view, 2> kSchemaNames{"sqlite_master", "sqlite_schema"};
constexpr std::array<std::string_view, 3> kFunctions{"max", "length", "count"};

template <typename Names>
bool Holds(const Names& names, const char* name) {
  return name != nullptr &&
         std::find(std::begin(names), std::end(names), std::string_view(name)) != std::end(names);
}

}  // namespace

void Guard::Harden(sqlite3* handle, Connection::Mode mode) {
  // The library's own defences: nothing that stands in a schema runs, and no statement writes past the tables.
  constexpr std::pair<int, int> kSwitches[] = {{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                               {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                               {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                               {SQLITE_DBCONFIG_ENABLE_VIEW, 0},
                                               {SQLITE_DBCONFIG_WRITABLE_SCHEMA, 0},
                                               {SQLITE_DBCONFIG_DQS_DML, 0},
                                               {SQLITE_DBCONFIG_DQS_DDL, 0},
                                               {SQLITE_DBCONFIG_ENABLE_FTS3_TOKENIZER, 0},
                                               {SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0}};
  for (const auto& [what, on] : kSwitches) sqlite3_db_config(handle, what, on, nullptr);
  for (const auto& [what, most] : kLimits) sqlite3_limit(handle, what, most);
  m_size = Size();
  if (mode != Connection::Mode::Create) {
    const std::uint64_t length = std::clamp<std::uint64_t>(m_size, kLeastLength, 0x7FFFFFFF);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, static_cast<int>(length));  // lowers only
  }
  sqlite3_set_authorizer(
      handle,
      [](void* self, int action, const char* first, const char* second, const char* database, const char* inner) {
        const bool permits = static_cast<Guard*>(self)->Permits(action, first, second, database, inner);
        return permits ? SQLITE_OK : SQLITE_DENY;
      },
      this);
  sqlite3_progress_handler(
      handle, kOperations, [](void* self) { return static_cast<Guard*>(self)->GoesOn() ? 0 : 1; }, this);
}

void Guard::Allow(Connection::Scope scope, std::vector<std::string> tables) {
  m_scope = scope;
  m_tables = std::move(tables);
}

bool Guard::IsOurs(const char* table) const {
  return m_scope == Connection::Scope::Rows && Holds(m_tables, table);
}

/// `inner` names the trigger or view that asks; a statement of this program has none.
bool Guard::Permits(int action, const char* first, const char* second, const char* database,
                    const char* inner) const {
  if (inner != nullptr) return false;
  if (m_scope == Connection::Scope::Make) return true;
  if (database != nullptr && std::string_view(database) != "main") return false;
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_TRANSACTION:
      return true;
    case SQLITE_PRAGMA:
      return Holds(kPragmas, first);
    case SQLITE_FUNCTION:
      return Holds(kFunctions, second);
    case SQLITE_READ:
      return Holds(kSchemaNames, first) || IsOurs(first);
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      return IsOurs(first);
    default:
      return false;
  }
}

bool Guard::GoesOn() {
  m_work += kOperations;
  if (m_scope == Connection::Scope::Look && m_work > kWorkOfLook) m_endless = true;
  // The file may have grown since it was opened, so it is measured when it matters.
  if (m_work > kWork && m_work > kWork + kWorkOfByte * std::max(m_size, Size())) m_endless = true;
  return !m_endless && (!m_goOn || m_goOn());
}

bool Guard::Take(std::uint64_t bytes, int values) {
  m_taken += bytes;
  m_values += static_cast<std::uint64_t>(values);
  return m_taken <= 2 * m_size;
}

double Guard::Taken() const {
  constexpr double kBytesOfValue = 4;  // of a number, or of what tells the length of a text
  const double taken = static_cast<double>(m_taken) + kBytesOfValue * static_cast<double>(m_values);
  return std::min(taken / (1.0 + static_cast<double>(m_size)), 1.0);
}

std::uint64_t Guard::Size() const {
  std::uint64_t size = 0;
  for (const char* suffix : {"", "-wal", "-journal"}) {
    std::error_code failed;
    const std::uintmax_t bytes = fs::file_size(m_path + suffix, failed);
    if (!failed) size += bytes;
  }
  return size;
}

}  // namespace qd::workbench

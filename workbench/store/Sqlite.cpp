#include "workbench/store/Sqlite.h"

#include <sqlite3.h>

#include <filesystem>
#include <utility>

#include "workbench/store/Guard.h"

namespace qd::workbench {

namespace {

/// What went wrong last, without its details.
int PlainCode(sqlite3* handle) {
  return sqlite3_errcode(handle) & 0xFF;
}

/// A path as part of an address.
std::string Escaped(const std::string& path) {
  std::string escaped;
  for (const char letter : path) {
    const auto byte = static_cast<unsigned char>(letter);
    const bool plain = letter == '/' || (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
                       (letter >= 'a' && letter <= 'z');
    constexpr const char* kDigits = "0123456789ABCDEF";
    escaped += plain ? std::string(1, letter) : std::string{'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
  }
  return escaped;
}

}  // namespace

// ---- statements -----------------------------------------------------------------------------------------

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

void Statement::Bind(int place, std::int64_t value) {
  sqlite3_bind_int64(m_statement.get(), place, value);
}

void Statement::Bind(int place, double value) {
  sqlite3_bind_double(m_statement.get(), place, value);
}

void Statement::BindText(int place, std::string_view utf8) {
  sqlite3_bind_text64(m_statement.get(), place, utf8.data() != nullptr ? utf8.data() : "", utf8.size(),
                      SQLITE_STATIC, SQLITE_UTF8);
}

void Statement::BindBlob(int place, std::string_view bytes) {
  sqlite3_bind_blob64(m_statement.get(), place, bytes.data() != nullptr ? bytes.data() : "", bytes.size(),
                      SQLITE_STATIC);
}

bool Statement::Step() {
  m_guard->BeginStep();
  const int result = m_statement != nullptr ? sqlite3_step(m_statement.get()) : SQLITE_ERROR;
  m_failed = result != SQLITE_ROW && result != SQLITE_DONE;
  return result == SQLITE_ROW;
}

bool Statement::Run() {
  while (Step()) {
  }
  const bool good = !m_failed;
  Reset();
  return good;
}

void Statement::Reset() {
  if (m_statement != nullptr) sqlite3_reset(m_statement.get());
}

std::int64_t Statement::Integer(int column) const {
  return sqlite3_column_int64(m_statement.get(), column);
}

double Statement::Real(int column) const {
  return sqlite3_column_double(m_statement.get(), column);
}

std::string_view Statement::Bytes(int column) const {
  const void* bytes = sqlite3_column_blob(m_statement.get(), column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
  return {bytes != nullptr ? static_cast<const char*>(bytes) : "", bytes != nullptr ? size : 0};
}

bool Statement::IsBlob(int column) const {
  return sqlite3_column_type(m_statement.get(), column) == SQLITE_BLOB;
}

bool Statement::IsInteger(int column) const {
  return sqlite3_column_type(m_statement.get(), column) == SQLITE_INTEGER;
}

bool Statement::IsText(int column) const {
  return sqlite3_column_type(m_statement.get(), column) == SQLITE_TEXT;
}

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

int Statement::Columns() const {
  return sqlite3_data_count(m_statement.get());
}

std::uint64_t Statement::RowBytes() const {
  std::uint64_t bytes = 4;  // its length, its number and the kinds of its values
  for (int column = Columns() - 1; column >= 0; --column) {
    const int type = sqlite3_column_type(m_statement.get(), column);
    if (type != SQLITE_BLOB && type != SQLITE_TEXT) continue;
    bytes += static_cast<std::uint64_t>(sqlite3_column_bytes(m_statement.get(), column));
  }
  return bytes;
}

// ---- connection -----------------------------------------------------------------------------------------

void Connection::Close::operator()(sqlite3* handle) const {
  sqlite3_close_v2(handle);
}

Connection::Connection(const std::string& path, Mode mode, const char* vfs)
    : m_guard(std::make_shared<Guard>(path)) {
  int flags = mode == Mode::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  if (mode == Mode::Create) flags |= SQLITE_OPEN_CREATE;
  // The library takes some names for something else: addresses that begin with "file:", ":memory:" and none.
  const bool plain = !path.empty() && path.front() == '/';
  std::string name = plain ? path : (std::filesystem::current_path() / path).string();
  if (mode == Mode::Read) {
    name = "file:" + Escaped(name) + "?immutable=1";
    flags |= SQLITE_OPEN_URI;
  }
  sqlite3* handle = nullptr;
  m_open = sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_EXRESCODE, vfs) == SQLITE_OK;
  m_handle.reset(handle);
  if (!m_open) return;
  m_guard->Harden(handle, mode);
  Run("PRAGMA cell_size_check = ON");
}

void Connection::Allow(Scope scope, std::vector<std::string> tables) {
  m_guard->Allow(scope, std::move(tables));
}

void Connection::AllowLargeValues() {
  sqlite3_limit(m_handle.get(), SQLITE_LIMIT_LENGTH, 0x7FFFFFFF);
}

bool Connection::Run(const char* sql) {
  m_guard->BeginStep();
  return sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

Statement Connection::Prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v3(m_handle.get(), sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                     &statement, nullptr);
  return {statement, m_guard};
}

std::int64_t Connection::Value(const std::string& sql, std::int64_t otherwise) {
  Statement statement = Prepare(sql);
  return statement.Step() ? statement.Integer(0) : otherwise;
}

std::string Connection::Text(const std::string& sql) {
  Statement statement = Prepare(sql);
  return statement.Step() ? std::string(statement.Bytes(0)) : std::string();
}

void Connection::SetProgress(std::function<bool()> goOn) {
  m_guard->SetProgress(std::move(goOn));
}

std::uint64_t Connection::Size() const {
  return m_guard->Size();
}

bool Connection::Take(const Statement& row) {
  return m_guard->Take(row.RowBytes(), row.Columns());
}

double Connection::Taken() const {
  return m_guard->Taken();
}

bool Connection::IsInTransaction() const {
  return sqlite3_get_autocommit(m_handle.get()) == 0;
}

int Connection::Changes() const {
  return sqlite3_changes(m_handle.get());
}

std::string Connection::Error() const {
  return sqlite3_errmsg(m_handle.get());
}

bool Connection::IsBusy() const {
  const int code = PlainCode(m_handle.get());
  return code == SQLITE_BUSY || code == SQLITE_LOCKED;
}

bool Connection::IsFull() const {
  return PlainCode(m_handle.get()) == SQLITE_FULL;
}

bool Connection::IsEndless() const {
  return m_guard->IsEndless();
}

bool Connection::IsMissing() const {
  const int code = PlainCode(m_handle.get());
  return code == SQLITE_ERROR || code == SQLITE_SCHEMA;
}

bool Connection::IsForeign() const {
  const int code = PlainCode(m_handle.get());
  return code == SQLITE_NOTADB || code == SQLITE_CORRUPT;
}

}  // namespace qd::workbench

#include "workbench/store/Sqlite.h"

#include <sqlite3.h>

#include <utility>

namespace qd::workbench {

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

void Statement::BindNull(int place) {
  sqlite3_bind_null(m_statement.get(), place);
}

bool Statement::Step() {
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

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

// ---- connection -----------------------------------------------------------------------------------------

void Connection::Close::operator()(sqlite3* handle) const {
  sqlite3_close_v2(handle);
}

Connection::Connection(const std::string& path, Mode mode, const char* vfs) {
  int flags = mode == Mode::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  if (mode == Mode::Create) flags |= SQLITE_OPEN_CREATE;
  sqlite3* handle = nullptr;
  m_open = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_EXRESCODE, vfs) == SQLITE_OK;
  m_handle.reset(handle);
}

bool Connection::Run(const char* sql) {
  return sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

Statement Connection::Prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v3(m_handle.get(), sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                     &statement, nullptr);
  return Statement(statement);
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
  constexpr int kSteps = 2000;
  m_goOn = goOn ? std::make_unique<std::function<bool()>>(std::move(goOn)) : nullptr;
  const auto ask = [](void* call) { return (*static_cast<std::function<bool()>*>(call))() ? 0 : 1; };
  sqlite3_progress_handler(m_handle.get(), m_goOn != nullptr ? kSteps : 0, ask, m_goOn.get());
}

bool Connection::IsInTransaction() const {
  return sqlite3_get_autocommit(m_handle.get()) == 0;
}

std::string Connection::Error() const {
  return sqlite3_errmsg(m_handle.get());
}

bool Connection::IsBusy() const {
  const int code = sqlite3_errcode(m_handle.get());
  return code == SQLITE_BUSY || code == SQLITE_LOCKED;
}

bool Connection::IsFull() const {
  return sqlite3_errcode(m_handle.get()) == SQLITE_FULL;
}

bool Connection::HasMoved() const {
  int moved = 0;
  return m_open && sqlite3_file_control(m_handle.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
         moved != 0;
}

bool Connection::IsForeign() const {
  const int code = sqlite3_errcode(m_handle.get());
  return code == SQLITE_NOTADB || code == SQLITE_CORRUPT;
}

}  // namespace qd::workbench

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "workbench/store/Sqlite.h"

struct sqlite3;

namespace qd::workbench {

/// Watches over a connection: which statements pass, and how long one may work.
class Guard {
 public:
  explicit Guard(std::string path) : m_path(std::move(path)) {}

  /// Sets everything in a new connection that needs to be set before its first statement.
  void Harden(sqlite3* handle, Connection::Mode mode);
  void Allow(Connection::Scope scope, std::vector<std::string> tables);
  void SetProgress(std::function<bool()> goOn) { m_goOn = std::move(goOn); }

  /// Called before each step of a statement.
  void BeginStep() { m_work = 0; }
  bool IsEndless() const { return m_endless; }
  /// Bytes of the file and its log.
  std::uint64_t Size() const;
  /// See Connection.
  bool Take(std::uint64_t bytes, int values);
  double Taken() const;

 private:
  bool Permits(int action, const char* first, const char* second, const char* database, const char* inner) const;
  bool IsOurs(const char* table) const;
  bool GoesOn();

  std::string m_path;
  Connection::Scope m_scope = Connection::Scope::Look;
  std::vector<std::string> m_tables;
  std::function<bool()> m_goOn;
  std::uint64_t m_size = 0;   // when the connection was made
  std::uint64_t m_taken = 0;  // of it
  std::uint64_t m_values = 0;
  std::uint64_t m_work = 0;  // operations of the library since the step began
  bool m_endless = false;
};

}  // namespace qd::workbench

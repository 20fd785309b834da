#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace qd::workbench {

/// A prepared statement. Places and columns count from 1 and 0, as the library has them.
class Statement {
 public:
  explicit Statement(sqlite3_stmt* statement) : m_statement(statement) {}

  void Bind(int place, std::int64_t value);
  void Bind(int place, double value);
  /// The bytes must stay until the statement has run.
  void BindText(int place, std::string_view utf8);
  void BindBlob(int place, std::string_view bytes);
  void BindNull(int place);

  /// True while there is a row. False at the end, or on a failure, which Failed tells.
  bool Step();
  bool Failed() const { return m_failed; }
  /// Runs a statement without rows; false on failure. It can be run again afterwards.
  bool Run();
  void Reset();

  std::int64_t Integer(int column) const;
  double Real(int column) const;
  /// The bytes of a text or blob, until the next step.
  std::string_view Bytes(int column) const;
  bool IsBlob(int column) const;
  bool IsInteger(int column) const;
  bool IsNull(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
  bool m_failed = false;
};

/// An open database file.
class Connection {
 public:
  enum class Mode { Read, Write, Create };

  /// Not open on failure; Error tells why. `vfs` names a file layer of the library, null for its own.
  Connection(const std::string& path, Mode mode, const char* vfs = nullptr);

  bool IsOpen() const { return m_open; }
  /// Runs statements without results; false on failure.
  bool Run(const char* sql);
  /// A statement that failed to compile fails at its first step.
  Statement Prepare(const std::string& sql);
  /// The first value of the first row, `otherwise` when there is none.
  std::int64_t Value(const std::string& sql, std::int64_t otherwise = 0);
  std::string Text(const std::string& sql);
  /// Asked now and then while statements run; false ends them with a failure. Null for none.
  void SetProgress(std::function<bool()> goOn);
  bool IsInTransaction() const;
  /// What went wrong last, in the library's words.
  std::string Error() const;
  /// Whether it was that somebody else has the file, that the disk is full, or that it is no such file.
  bool IsBusy() const;
  bool IsFull() const;
  bool IsForeign() const;
  /// Whether the open file is no longer the one at its path.
  bool HasMoved() const;

 private:
  struct Close {
    void operator()(sqlite3* handle) const;
  };
  std::unique_ptr<sqlite3, Close> m_handle;
  bool m_open = false;
  std::unique_ptr<std::function<bool()>> m_goOn;  // stays in its place when the connection moves
};

}  // namespace qd::workbench

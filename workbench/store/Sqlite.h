#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace qd::workbench {

class Guard;

/// A prepared statement. Places and columns count from 1 and 0, as the library has them.
class Statement {
 public:
  Statement(sqlite3_stmt* statement, std::shared_ptr<Guard> guard)
      : m_statement(statement), m_guard(std::move(guard)) {}

  void Bind(int place, std::int64_t value);
  void Bind(int place, double value);
  /// The bytes must stay until the statement has run.
  void BindText(int place, std::string_view utf8);
  void BindBlob(int place, std::string_view bytes);

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
  bool IsText(int column) const;
  bool IsNull(int column) const;
  int Columns() const;
  /// Bytes that the row has in the file at least.
  std::uint64_t RowBytes() const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
  std::shared_ptr<void> m_kept;
  std::shared_ptr<Guard> m_guard;
  bool m_failed = false;
};

/// An open database file. Files come from anywhere, and what stands in one can ask for work of its own: triggers,
/// views and functions in a schema run with the statements of whoever opens the file. So from its first moment a
/// connection runs no such thing, lets only the statements pass that were allowed, takes values no larger than the
/// file, and ends a statement that finds no end.
class Connection {
 public:
  enum class Mode {
    Read,  ///< the file as it is, from where nothing may be written: no logs beside it, no locks
    Write,
    Create
  };
  /// What statements may do.
  enum class Scope {
    Look,  ///< read the schema and the numbers in the file's head, set how the file is used
    Rows,  ///< also read and write rows of the tables that were allowed
    Make   ///< anything that this program asks for: to make tables, to copy. Only over a schema that is known
  };

  /// Not open on failure; Error tells why. `vfs` names a file layer of the library, null for its own. The path is
  /// one, whatever it looks like.
  Connection(const std::string& path, Mode mode, const char* vfs = nullptr);

  bool IsOpen() const { return m_open; }
  /// Something that lives as long as the connection.
  void Keep(std::shared_ptr<void> other) { m_kept = std::move(other); }
  /// From here on; a new connection may look.
  void Allow(Scope scope, std::vector<std::string> tables = {});
  /// Values may be as large as the library can hold them, no longer only as large as the file was at first.
  void AllowLargeValues();
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
  /// How many rows the last statement that writes has changed.
  int Changes() const;
  /// What went wrong last, in the library's words.
  std::string Error() const;
  /// Whether it was that somebody else has the file, that the disk is full, that it is no such file, that work had
  /// no end, or that a statement was none of those allowed.
  bool IsBusy() const;
  bool IsFull() const;
  bool IsForeign() const;
  /// Whether it was that a table is not there.
  bool IsMissing() const;
  bool IsEndless() const;
  /// Bytes of the file and its log.
  std::uint64_t Size() const;
  /// Notes that the values of a row are about to be taken into memory. False when they would be more than the file
  /// can have: rows of a sound file share no bytes, and a damaged one is read from both ends.
  bool Take(const Statement& row);
  /// About the share of the file that was taken, up to 1.
  double Taken() const;

 private:
  struct Close {
    void operator()(sqlite3* handle) const;
  };

  std::shared_ptr<void> m_kept;
  std::shared_ptr<Guard> m_guard;  // the library asks it until the connection is closed
  std::unique_ptr<sqlite3, Close> m_handle;
  bool m_open = false;
};

}  // namespace qd::workbench

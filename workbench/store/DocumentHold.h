#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace qd::workbench {

/// The file of a document, held by this program: as long as this lives no other program of ours gets hold of it.
/// The lock is one of the open file. Those that the database library takes are the process's, and are gone as soon
/// as any part of the program closes any other handle of the same file, as a file dialog does that looks at it.
class DocumentHold {
 public:
  enum class Kind {
    Write,  ///< nobody else holds it
    Look    ///< others may look too
  };
  enum class Result { Held, Missing, Folder, Busy, Refused };

  /// Null unless the result is Held. `path` may be any bytes; links are followed.
  static std::unique_ptr<DocumentHold> Take(const std::string& path, Kind kind, Result& result);
  /// Goes on with a file that is open and locked already, as WholeFile leaves it.
  explicit DocumentHold(int handle) : m_handle(handle) {}
  ~DocumentHold();
  DocumentHold(const DocumentHold&) = delete;
  DocumentHold& operator=(const DocumentHold&) = delete;

  /// Whether the file that is held is still the one at a path.
  bool IsAt(const std::string& path) const;
  /// Whether it has other names as well.
  bool HasOtherNames() const;
  /// Whether a program works on it that knows only the database library's locks, as ours did at first.
  bool IsLockedByLibrary() const;
  /// Its size and when it was written last: another one after whatever has changed it.
  std::pair<std::int64_t, std::int64_t> State() const;

 private:
  int m_handle;
};

}  // namespace qd::workbench

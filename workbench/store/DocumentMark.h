#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qd::workbench {

/// What tells one document, and one state of it, from all others. It stands in the document itself and is changed
/// by each act first of all, so that the log of an act that was cut off holds the mark from before the act: a log
/// that lies beside a document can be seen to be its own, or that of another file or of another copy.
struct DocumentMark {
  using Code = std::array<char, 16>;

  Code document{};  ///< the same for the whole life of the file
  Code state{};     ///< another one after each act
  Code previous{};  ///< the state before the last act

  /// Of a document that nobody has seen before.
  static DocumentMark New();
  /// After one more act.
  DocumentMark Next() const;

  std::string Encode() const;
  static std::optional<DocumentMark> Decode(std::string_view bytes);
  /// The mark that stands anywhere in a page of a file.
  static std::optional<DocumentMark> Find(std::string_view page);
};

/// What lies beside a document as the database library's log.
enum class LogKind {
  None,    ///< nothing, or nothing that says anything
  Own,     ///< what takes back an act of this document that was cut off, or its last acts in the first version
  Foreign  ///< that of another file; with it the library would destroy this one
};

/// Whether a file begins as a document does, as far as can be seen without the library: of what does not nothing
/// is touched.
bool IsDocument(const std::string& path);
/// The version of the format that its head states, 0 for what is no document.
int StatedVersion(const std::string& path);
/// Looks at a document's file and at the logs beside it, without changing anything.
LogKind CheckLogs(const std::string& path);
/// Gives foreign logs other names, beside the document. Returns the new name of the last one, empty for none or on
/// failure. Only for a document that is held.
std::string SetLogsAside(const std::string& path);
/// Takes away logs when they are of no kind: the library would act on some of them. Only for a document that is
/// held.
void RemoveIdleLogs(const std::string& path);

}  // namespace qd::workbench

#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/text/Paths.h"

namespace qd::workbench {

/// A keyword, or the name of a parameter, in upper case and without blanks, which do not count in them.
std::string CompactInpWord(std::string_view text);

/// One line of a solver input file that is no comment, with where it stands.
struct InpLine {
  std::string_view text;  ///< without blanks at its ends
  bool isKeyword = false;
  std::string keyword;                            ///< upper case, without blanks
  std::map<std::string, std::string> parameters;  ///< names likewise, values as written

  /// Empty when the parameter is missing.
  std::string Parameter(const std::string& name) const;
  bool Has(const std::string& name) const { return parameters.contains(name); }
};

/// Reads the lines of an input file and of the files that it includes, which must lie below its folder or one of
/// `folders`. Errors are thrown as ImportError that name file and line; nothing of an included file stands in
/// them, since what is included may be any file that the user can read.
class InpLines {
 public:
  explicit InpLines(const std::filesystem::path& path, const std::vector<std::filesystem::path>& folders = {});
  /// Reads a text as if it stood in a file of this name.
  InpLines(const std::filesystem::path& path, std::string text);

  /// The next line; false at the end. An include is followed here.
  bool Next(InpLine& line);
  /// Throws an error at the line that was read last.
  [[noreturn]] void Fail(const char* key, std::string_view what) const;
  /// Names the line that was read last.
  std::string Place() const;
  /// A text of the files for a message: none once a file was included.
  std::string Quoted(std::string_view what) const;
  std::size_t LineNumber() const { return m_sources.back()->line; }
  /// The lines that were read since the last call, comments too, each with its end; where a file was included, its
  /// lines.
  std::string TakeText() { return std::exchange(m_taken, {}); }
  /// Name of the outermost file.
  std::string Name() const { return PathText(m_sources.front()->path.filename()); }
  /// Share of the outermost file that was read.
  double Done() const;

  /// The fields of a data line, divided by commas, without blanks. A comma at the end adds none.
  static void Fields(std::string_view text, std::vector<std::string_view>& fields);
  std::int64_t Integer(std::string_view field) const;
  double Number(std::string_view field) const;

 private:
  struct Source {
    std::filesystem::path path;
    std::string text;
    std::size_t at = 0;
    std::size_t line = 0;
  };
  void Open(const std::filesystem::path& path);
  void Include(const std::string& name);
  /// The next line as it stands, without its end; false at the end of the innermost file.
  bool Raw(std::string_view& text);
  void ParseKeyword(InpLine& line);

  std::vector<std::filesystem::path> m_folders;    // that files are included from
  std::size_t m_included = 0;                      // files
  std::uintmax_t m_bytes = 0;                      // of them, each counted once
  std::uintmax_t m_bytesAgain = 0;                 // of those that were included before
  std::set<std::filesystem::path> m_known;         // included files, by where they are in the end
  std::vector<std::unique_ptr<Source>> m_sources;  // the including ones first
  std::string m_taken;                             // what TakeText answers
  std::string m_joined;                            // a keyword that goes on over several lines
};

}  // namespace qd::workbench

#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/exchange/formats/FileScan.h"

namespace qd::workbench {

/// One bulk data entry, which may go on over several lines.
struct BdfCard {
  std::string name;                 ///< in capitals
  std::size_t line = 0;             ///< in which it begins
  std::vector<std::string> fields;  ///< behind the name, in capitals, each in its place; the first ones of many

  /// Empty for one that is not there.
  std::string_view Field(std::size_t place) const {
    return place < fields.size() ? std::string_view(fields[place]) : std::string_view();
  }
  [[noreturn]] void Fail(const char* key, std::string_view what) const;
};

/// The entries of a bulk data file, in fields of 8 columns or of 16, or divided by commas.
class BdfLines {
 public:
  BdfLines(const std::filesystem::path& path, const std::function<void(double)>& progress);

  /// The next entry; false at ENDDATA, or at the end of a file that does not say where bulk data begin. Throws an
  /// ImportError where ENDDATA is missing, and for lines that only another line gives a meaning.
  bool Next(BdfCard& card);

 private:
  struct Line {
    std::string label;                // of the entry or of the line that it goes on
    bool goesOn = false;              // an entry that began before
    bool isWide = false;              // has fields of 16 columns; so has a line without a label behind such a one
    std::vector<std::string> fields;  // as many as the line has room for
    std::string next;                 // label of the line that follows
  };
  /// The next line that is not blank, in capitals and without its comment; false at the end of the file.
  static bool Text(FileScan& in, std::string& text);
  bool Read(Line& line);

  FileScan m_in;
  bool m_begun = false;  // the file says where
  bool m_ended = false;
  bool m_hasLine = false;
  Line m_line;              // which was read, but belongs to the next entry
  std::size_t m_place = 0;  // where it stands
};

}  // namespace qd::workbench

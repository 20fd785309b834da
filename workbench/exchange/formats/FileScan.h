#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Goes once through a stranger's file, piece by piece, whatever its size: words, numbers and lines of text, or
/// bytes. Lines end with LF, with CR and LF, or with CR where a file knows no LF. What is not there or not allowed
/// is thrown as an ImportError that names the line.
class FileScan {
 public:
  /// Opens the file; throws an ImportError when it cannot be read. `progress` gets the share done, 0 to 1.
  explicit FileScan(const std::filesystem::path& path, std::function<void(double)> progress = {});

  std::uint64_t Size() const { return m_size; }
  /// Bytes that are still to come.
  std::uint64_t Left() const { return m_size - m_before - m_at; }
  /// Number of the line in which what was read last begins, from 1.
  std::size_t Line() const { return m_place; }
  /// Of the line that the next byte stands in.
  std::size_t LineOfNext() const { return m_line; }

  static constexpr int kEnd = -1;
  /// The next byte, or kEnd.
  int Peek() { return m_at < m_buffer.size() || Fill() ? static_cast<unsigned char>(m_buffer[m_at]) : kEnd; }
  int Get() {
    const int byte = Peek();
    if (byte == kEnd) return kEnd;
    ++m_at;
    if (byte == m_lineEnd) ++m_line;
    return byte;
  }

  /// What stands between blanks and ends of lines; empty at the end of the file. Good until the next call.
  std::string_view Word();
  std::int64_t Integer();
  double Number();
  /// A number that is all of a text, whatever the language of the system.
  static std::optional<double> NumberOf(std::string_view text);
  /// The rest of the line, without its end and blanks at its ends. False at the end of the file.
  bool Rest(std::string& line);
  /// Likewise as it stands, but for the end of the line.
  bool RawRest(std::string& line);
  /// Goes behind the next line that holds nothing but this, and blanks around it; what stands before is anything.
  void SkipPast(std::string_view line);
  /// Bytes as they are.
  void Bytes(void* to, std::size_t count);

  [[noreturn]] void Fail(const char* key, std::string_view what) const;
  /// Refuses what is claimed to be there `count` times, with at least `bytes` each, and cannot be: before memory
  /// is taken for it.
  void CheckCount(std::uint64_t count, std::uint64_t bytes, std::string_view what) const;

 private:
  bool Fill();
  void SkipBlanks();

  std::ifstream m_in;
  std::function<void(double)> m_progress;
  std::vector<char> m_buffer;
  std::string m_word;
  std::uint64_t m_size = 0;
  std::uint64_t m_before = 0;  // bytes of the file before the buffer
  std::size_t m_at = 0;
  char m_lineEnd = '\n';
  std::size_t m_line = 1;   // of the next byte
  std::size_t m_place = 1;  // see Line
};

}  // namespace qd::workbench

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "host/IAppDB.h"
#include "workbench/files/WholeFile.h"

namespace qd::workbench {

/// A text file that is being written.
class TextFile {
 public:
  /// `total` is how many things will be counted with Step.
  TextFile(const std::filesystem::path& path, std::uint64_t total, const ProgressCall& progress);

  TextFile& operator<<(std::string_view text) {
    m_buffer += text;
    return *this;
  }
  TextFile& operator<<(std::uint64_t number);
  TextFile& operator<<(std::int32_t number) { return *this << static_cast<std::uint64_t>(number); }
  /// With as many digits as it takes to read the same number back.
  TextFile& operator<<(double number);
  /// With as many digits as fit into a number of characters, at least 10.
  TextFile& Short(double number, std::size_t most);
  /// A number at the end of a field of a width.
  TextFile& Right(std::uint64_t number, std::size_t width);
  /// A number in the form 1.2345E+00 with so many digits behind the point, at the end of a field. Where the field
  /// is too narrow there are fewer.
  TextFile& Exponent(double number, std::size_t width, int digits);
  /// One node or element is done. Throws an empty ImportError when the work is to stop.
  void Step();
  /// Likewise for a bit of work of which nobody knows how much there is.
  void Look();
  /// Puts the file into its place. Throws when it is not whole on the disk; until then what stood there stands.
  void Close();

 private:
  void Flush();

  [[noreturn]] void Fail() const;

  WholeFile m_out;
  std::string m_buffer;
  std::uint64_t m_total;
  std::uint64_t m_done = 0;
  std::uint64_t m_looks = 0;
  const ProgressCall& m_progress;
};

}  // namespace qd::workbench

#pragma once

#include <map>
#include <string>
#include <string_view>

#include "workbench/exchange/MeshExport.h"
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
  /// A number at the end of a field of a width.
  TextFile& Right(std::uint64_t number, std::size_t width);
  /// A number in the form 1.2345678901234567E+00, at the end of a field.
  TextFile& Exponent(double number, std::size_t width);
  /// One node or element is done. Throws an empty ImportError when the work is to stop.
  void Step();
  /// Puts the file into its place. Throws when it is not whole on the disk; until then what stood there stands.
  void Close();

 private:
  void Flush();

  [[noreturn]] void Fail() const;

  WholeFile m_out;
  std::string m_buffer;
  std::uint64_t m_total;
  std::uint64_t m_done = 0;
  const ProgressCall& m_progress;
};

/// All nodes of a model, each once, in ascending order of their numbers; the value points at x, y, z.
std::map<std::uint64_t, const double*> NodesOf(const ExportModel& model);

/// The nodes of an element in the order in which a format wants them, by words like "0 01 1": a corner, or the
/// node in the middle of the edge between two.
std::vector<std::size_t> OrderFromWords(int elementType, std::string_view words);

// One writer for each format. They throw an ImportError for what the format cannot hold.
void WriteInp(const ExportModel& model, TextFile& file);
void WriteMsh(const ExportModel& model, TextFile& file);
void WriteUnv(const ExportModel& model, TextFile& file);
void WriteBdf(const ExportModel& model, TextFile& file);
void WriteStl(const ExportModel& model, TextFile& file);

}  // namespace qd::workbench

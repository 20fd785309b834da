#include "workbench/exchange/child/FileCheck.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>

#include "workbench/exchange/Protocol.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLook = 4096;  // how much of either end is looked at

/// Both ends of a file and its size.
struct Ends {
  std::string head;
  std::string tail;
  std::uintmax_t size = 0;
};

Ends LookAt(const fs::path& path) {
  Ends ends;
  ends.size = fs::file_size(path);
  std::ifstream in(path, std::ios::binary);
  if (!in) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  const auto length = static_cast<std::size_t>(std::min<std::uintmax_t>(ends.size, kLook));
  ends.head.resize(length);
  in.read(ends.head.data(), static_cast<std::streamsize>(length));
  ends.tail.resize(length);
  in.seekg(-static_cast<std::streamoff>(length), std::ios::end);
  in.read(ends.tail.data(), static_cast<std::streamsize>(length));
  if (!in) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  return ends;
}

bool Has(const std::string& text, const char* mark) {
  return text.find(mark) != std::string::npos;
}

/// Column 73 of an 80-column card names its section.
bool IsIgesCard(const std::string& line, char section) {
  return line.size() >= 73 && line[72] == section;
}

std::string LastLine(std::string text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) text.pop_back();
  return text.substr(text.find_last_of("\r\n") + 1);
}

bool IsBinaryStl(const Ends& ends) {
  constexpr std::size_t kHead = 84;
  constexpr std::uintmax_t kFacet = 50;
  if (ends.head.size() < kHead) return false;
  std::uint32_t facets = 0;
  std::memcpy(&facets, ends.head.data() + kHead - sizeof(facets), sizeof(facets));
  return ends.size == kHead + facets * kFacet;
}

bool BeginsRight(FileFormat format, const Ends& ends) {
  const std::string firstLine = ends.head.substr(0, ends.head.find_first_of("\r\n"));
  switch (format) {
    case FileFormat::Step:
      return Has(ends.head, "ISO-10303-21");
    case FileFormat::Iges:
      return IsIgesCard(firstLine, 'S');
    case FileFormat::Brep:
      return Has(ends.head, "CASCADE Topology") || Has(ends.head, "DBRep_DrawableShape");
    case FileFormat::Msh:
      return Has(ends.head, "$MeshFormat");
    case FileFormat::Unv:
      return Has(firstLine, "-1");
    case FileFormat::Bdf:
      return Has(ends.head, "GRID") || Has(ends.head, "BEGIN BULK") || Has(ends.head, "$");
    case FileFormat::Stl:
      return Has(ends.head, "solid") || IsBinaryStl(ends);
    case FileFormat::Inp:
      return Has(ends.head, "*");
  }
  return false;
}

/// The list of shapes is closed by a star, and only the root's number and place follow. A reader takes what a cut
/// file leaves out from wherever its memory happens to be.
bool EndsWithRootShape(const std::string& tail) {
  const std::size_t star = tail.rfind('*');
  if (star == std::string::npos) return false;
  const std::string root = tail.substr(star + 1);
  return root.find_first_of("+-") != std::string::npos &&
         root.find_first_not_of("+-0123456789 \t\r\n") == std::string::npos;
}

bool EndsRight(FileFormat format, const Ends& ends) {
  switch (format) {
    case FileFormat::Step:
      return Has(ends.tail, "END-ISO-10303-21");
    case FileFormat::Iges:
      return IsIgesCard(LastLine(ends.tail), 'T');
    case FileFormat::Msh:
      return LastLine(ends.tail).starts_with("$End");
    case FileFormat::Unv:
      return Has(LastLine(ends.tail), "-1");
    case FileFormat::Stl:
      return Has(ends.tail, "endsolid") || IsBinaryStl(ends);
    case FileFormat::Brep:
      return EndsWithRootShape(ends.tail);
    case FileFormat::Bdf:
    case FileFormat::Inp:
      return true;  // the reader notices
  }
  return false;
}

FileFormat FormatOf(const fs::path& path) {
  static const std::map<std::string, FileFormat> kFormats{
      {".step", FileFormat::Step}, {".stp", FileFormat::Step},  {".iges", FileFormat::Iges},
      {".igs", FileFormat::Iges},  {".brep", FileFormat::Brep}, {".brp", FileFormat::Brep},
      {".msh", FileFormat::Msh},   {".unv", FileFormat::Unv},   {".bdf", FileFormat::Bdf},
      {".nas", FileFormat::Bdf},   {".stl", FileFormat::Stl},   {".inp", FileFormat::Inp}};
  std::string extension = path.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto found = kFormats.find(extension);
  if (found == kFormats.end()) throw ImportError{"IDS_WB_IMPORT_FORMAT", extension};
  return found->second;
}

}  // namespace

bool MayInclude(const std::filesystem::path& path) {
  return FormatOf(path) == FileFormat::Inp;
}

FileFormat CheckFile(const std::string& path) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (!fs::exists(status)) throw ImportError{"IDS_WB_IMPORT_MISSING", ""};
  if (fs::is_directory(status)) throw ImportError{"IDS_WB_IMPORT_DIRECTORY", ""};
  if (!fs::is_regular_file(status)) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  const FileFormat format = FormatOf(path);
  const Ends ends = LookAt(path);
  if (ends.size == 0) throw ImportError{"IDS_WB_IMPORT_EMPTY", ""};
  if (!BeginsRight(format, ends)) throw ImportError{"IDS_WB_IMPORT_FOREIGN", fs::path(path).extension().string()};
  if (!EndsRight(format, ends)) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  return format;
}

}  // namespace qd::workbench

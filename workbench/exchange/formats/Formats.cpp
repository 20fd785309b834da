#include <algorithm>
#include <array>
#include <fstream>

#include "workbench/exchange/formats/Format.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Paths.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

FileEnds LookAt(const fs::path& path) {
  constexpr std::uintmax_t kLook = 4096;
  FileEnds ends;
  std::error_code failed;
  ends.size = fs::file_size(path, failed);
  std::ifstream in(path, std::ios::binary);
  if (failed || !in) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  const auto length = static_cast<std::size_t>(std::min(ends.size, kLook));
  ends.head.resize(length);
  in.read(ends.head.data(), static_cast<std::streamsize>(length));
  ends.tail.resize(length);
  in.seekg(-static_cast<std::streamoff>(length), std::ios::end);
  in.read(ends.tail.data(), static_cast<std::streamsize>(length));
  if (!in) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  return ends;
}

/// Systems of long ago ended lines so.
bool HasBareReturns(const FileEnds& ends) {
  return (ends.head + ends.tail).find('\n') == std::string::npos && ends.head.find('\r') != std::string::npos;
}

std::string EndingOf(const fs::path& path) {
  return LowerCase(PathText(path.extension()));
}

std::string Patterns(std::string_view divider, bool (*wanted)(const Format&)) {
  std::string patterns;
  for (const Format* format : Formats()) {
    if (!wanted(*format)) continue;
    for (const std::string_view ending : format->Endings()) {
      if (!patterns.empty()) patterns += divider;
      patterns += "*";
      patterns += ending;
    }
  }
  return patterns;
}

}  // namespace

std::span<const Format* const> Formats() {
  static const std::array kFormats{&StepFormat(), &IgesFormat(), &BrepFormat(), &MshFormat(),
                                   &UnvFormat(),  &BdfFormat(),  &StlFormat(),  &InpFormat()};
  return kFormats;
}

const Format* FormatOfPath(const fs::path& path) {
  const std::string ending = EndingOf(path);
  for (const Format* format : Formats()) {
    const auto endings = format->Endings();
    if (std::find(endings.begin(), endings.end(), ending) != endings.end()) return format;
  }
  return nullptr;
}

std::vector<ImportNote> Format::Check(const fs::path& path) const {
  const FileEnds ends = LookAt(path);
  if (ends.size == 0) throw ImportError{"IDS_WB_IMPORT_EMPTY", ""};
  // Our own readers take them, and to STEP lines are nothing; others would see one line, or only a comment.
  if (ReadBy() != Engine::Own && ReadBy() != Engine::Step && HasBareReturns(ends)) {
    throw ImportError{"IDS_WB_IMPORT_LINE_ENDS", EndingOf(path)};
  }
  if (!Begins(ends)) throw ImportError{"IDS_WB_IMPORT_FOREIGN", EndingOf(path)};
  if (!IsFinished(ends)) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  return CheckBody(path);
}

const Format& CheckFile(const fs::path& path, std::vector<ImportNote>& notes) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (!fs::exists(status)) throw ImportError{"IDS_WB_IMPORT_MISSING", ""};
  if (fs::is_directory(status)) throw ImportError{"IDS_WB_IMPORT_DIRECTORY", ""};
  if (!fs::is_regular_file(status)) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  const Format* format = FormatOfPath(path);
  if (format == nullptr) throw ImportError{"IDS_WB_IMPORT_FORMAT", EndingOf(path)};
  notes = format->Check(path);
  return *format;
}

std::string ReadPatterns(std::string_view divider) {
  return Patterns(divider, [](const Format&) { return true; });
}

std::string WritePatterns(std::string_view divider) {
  return Patterns(divider, [](const Format& format) { return format.CanWrite(); });
}

}  // namespace qd::workbench

#include <algorithm>

#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/LastLine.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/UnvFile.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

class Unv final : public Format {
 public:
  std::string_view Name() const override { return "UNV"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".unv"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Own; }
  /// Numbers stand in columns of ten, and ten digits would touch the number before them.
  Carries Carry() const override { return {.names = true, .looseNodes = true, .greatestNumber = 999'999'999}; }
  bool Holds(int elementType) const override { return UnvHolds(elementType); }
  ImportedModel Read(const std::filesystem::path& path,
                     const std::function<void(double)>& progress) const override {
    return ReadUnvFile(path, progress);
  }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteUnv(model, file, report);
  }

 protected:
  /// Blank lines aside, the first line and the last one are the marks of data sets.
  bool Begins(const FileEnds& ends) const override {
    const std::size_t first = std::min(ends.head.find_first_not_of(" \t\r\n"), ends.head.size());
    const std::string_view line = std::string_view(ends.head).substr(first);
    return Trimmed(line.substr(0, line.find_first_of("\r\n"))) == kMark;
  }
  bool IsFinished(const FileEnds& ends) const override { return Trimmed(LastLine(ends.tail)) == kMark; }

 private:
  static constexpr std::string_view kMark = "-1";
};

}  // namespace

const Format& UnvFormat() {
  static const Unv kFormat;
  return kFormat;
}

}  // namespace qd::workbench

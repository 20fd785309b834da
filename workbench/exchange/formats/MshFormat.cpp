#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/LastLine.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/MshFile.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

class Msh final : public Format {
 public:
  std::string_view Name() const override { return "MSH"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".msh"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Own; }
  Carries Carry() const override { return {.names = true}; }
  bool Holds(int elementType) const override { return FindElementType(elementType) != nullptr; }
  ImportedModel Read(const std::filesystem::path& path,
                     const std::function<void(double)>& progress) const override {
    return ReadMshFile(path, progress);
  }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteMsh(model, file, report);
  }

 protected:
  /// The first line is one of these and nothing else; the oldest version has no number of it.
  bool Begins(const FileEnds& ends) const override {
    const std::string_view first = Trimmed(std::string_view(ends.head).substr(0, ends.head.find_first_of("\r\n")));
    return ends.head.starts_with('$') && (first == "$MeshFormat" || first == "$NOD" || first == "$Comments");
  }
  bool IsFinished(const FileEnds& ends) const override {
    return LowerCase(LastLine(ends.tail)).starts_with("$end");
  }
};

}  // namespace

const Format& MshFormat() {
  static const Msh kFormat;
  return kFormat;
}

}  // namespace qd::workbench

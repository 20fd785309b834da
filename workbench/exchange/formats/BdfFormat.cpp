#include "workbench/exchange/formats/BdfFile.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

class Bdf final : public Format {
 public:
  std::string_view Name() const override { return "BDF"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".bdf", ".nas"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Own; }
  Carries Carry() const override { return {.looseNodes = true, .materials = true}; }
  bool Holds(int elementType) const override { return BdfHolds(elementType); }
  ImportedModel Read(const std::filesystem::path& path,
                     const std::function<void(double)>& progress) const override {
    return ReadBdfFile(path, progress);
  }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteBdf(model, file, report);
  }

 protected:
  /// Blanks aside, a comment, a word or a ruled line comes first; then what tells these files from others.
  bool Begins(const FileEnds& ends) const override {
    const std::size_t first = ends.head.find_first_not_of(" \t\r\n");
    if (first == std::string::npos || ends.head.find('\0') != std::string::npos) return false;
    const std::string head = UpperCase(ends.head);
    const char letter = head[first];
    if (letter != '$' && letter != '-' && (letter < 'A' || letter > 'Z')) return false;
    for (const char* mark : {"GRID", "BEGIN BULK", "$"}) {
      if (head.find(mark) != std::string::npos) return true;
    }
    return false;
  }
};

}  // namespace

const Format& BdfFormat() {
  static const Bdf kFormat;
  return kFormat;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/BdfCheck.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/MeshWriters.h"

namespace qd::workbench {

namespace {

class Bdf final : public Format {
 public:
  std::string_view Name() const override { return "BDF"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".bdf", ".nas"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Mesh; }
  Carries Carry() const override { return {.looseNodes = true, .materials = true}; }
  bool Holds(int elementType) const override { return BdfHolds(elementType); }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteBdf(model, file, report);
  }

 protected:
  bool Begins(const FileEnds& ends) const override {
    for (const char* mark : {"GRID", "BEGIN BULK", "$"}) {
      if (ends.head.find(mark) != std::string::npos) return true;
    }
    return false;
  }
  std::vector<ImportNote> CheckBody(const std::filesystem::path& path) const override {
    return CheckBdfFile(path);
  }
};

}  // namespace

const Format& BdfFormat() {
  static const Bdf kFormat;
  return kFormat;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/LastLine.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

class Msh final : public Format {
 public:
  std::string_view Name() const override { return "MSH"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".msh"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Mesh; }
  Carries Carry() const override { return {.names = true}; }
  bool Holds(int elementType) const override { return FindElementType(elementType) != nullptr; }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteMsh(model, file, report);
  }

 protected:
  bool Begins(const FileEnds& ends) const override { return ends.head.find("$MeshFormat") != std::string::npos; }
  bool IsFinished(const FileEnds& ends) const override { return LastLine(ends.tail).starts_with("$End"); }
};

}  // namespace

const Format& MshFormat() {
  static const Msh kFormat;
  return kFormat;
}

}  // namespace qd::workbench

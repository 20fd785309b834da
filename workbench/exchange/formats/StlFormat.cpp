
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/LastLine.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/StlFile.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

class Stl final : public Format {
 public:
  std::string_view Name() const override { return "STL"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".stl"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Own; }
  Carries Carry() const override { return {.names = true}; }
  /// Surfaces, and the free faces of solids, as triangles.
  bool Holds(int elementType) const override {
    const ElementType* type = FindElementType(elementType);
    return type != nullptr && TopologyOf(type->shape).dimension >= 2;
  }
  ImportedModel Read(const std::filesystem::path& path,
                     const std::function<void(double)>& progress) const override {
    return ReadStlFile(path, progress);
  }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteStl(model, file, report);
  }

 protected:
  bool Begins(const FileEnds& ends) const override {
    return IsBinaryStl(ends.head, ends.size) || LowerCase(ends.head.substr(0, kWord.size())) == kWord;
  }
  bool IsFinished(const FileEnds& ends) const override {
    return IsBinaryStl(ends.head, ends.size) ||
           LowerCase(LastLine(ends.tail)).find("endsolid") != std::string::npos;
  }

 private:
  static constexpr std::string_view kWord = "solid";
};

}  // namespace

const Format& StlFormat() {
  static const Stl kFormat;
  return kFormat;
}

}  // namespace qd::workbench

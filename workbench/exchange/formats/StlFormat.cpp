#include <cstring>

#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

bool IsBinary(const FileEnds& ends) {
  constexpr std::size_t kHead = 84;
  constexpr std::uintmax_t kFacet = 50;
  if (ends.head.size() < kHead) return false;
  std::uint32_t facets = 0;
  std::memcpy(&facets, ends.head.data() + kHead - sizeof(facets), sizeof(facets));
  return ends.size == kHead + facets * kFacet;
}

class Stl final : public Format {
 public:
  std::string_view Name() const override { return "STL"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".stl"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Mesh; }
  Carries Carry() const override { return {.names = true}; }
  /// Surfaces, and the free faces of solids, as triangles.
  bool Holds(int elementType) const override {
    const ElementType* type = FindElementType(elementType);
    return type != nullptr && TopologyOf(type->shape).dimension >= 2;
  }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteStl(model, file, report);
  }

 protected:
  bool Begins(const FileEnds& ends) const override {
    return ends.head.find("solid") != std::string::npos || IsBinary(ends);
  }
  bool IsFinished(const FileEnds& ends) const override {
    return ends.tail.find("endsolid") != std::string::npos || IsBinary(ends);
  }
};

}  // namespace

const Format& StlFormat() {
  static const Stl kFormat;
  return kFormat;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/LastLine.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/UnvGroups.h"

namespace qd::workbench {

namespace {

class Unv final : public Format {
 public:
  std::string_view Name() const override { return "UNV"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".unv"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Mesh; }
  Carries Carry() const override { return {.names = true, .looseNodes = true}; }
  bool Holds(int elementType) const override { return UnvHolds(elementType); }
  std::vector<NamedGroup> GroupsOf(const std::filesystem::path& path) const override {
    return ReadUnvGroups(path);
  }
  bool HasMixedDimensions() const override { return true; }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    WriteUnv(model, file, report);
  }

 protected:
  bool Begins(const FileEnds& ends) const override {
    return ends.head.substr(0, ends.head.find_first_of("\r\n")).find("-1") != std::string::npos;
  }
  bool IsFinished(const FileEnds& ends) const override {
    return LastLine(ends.tail).find("-1") != std::string::npos;
  }
};

}  // namespace

const Format& UnvFormat() {
  static const Unv kFormat;
  return kFormat;
}

}  // namespace qd::workbench

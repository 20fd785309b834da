#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/MeshWriters.h"

namespace qd::workbench {

namespace {

class Inp final : public Format {
 public:
  std::string_view Name() const override { return "INP"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".inp"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Deck; }
  Carries Carry() const override {
    return {.names = true, .nestedSets = true, .emptySets = true, .looseNodes = true, .materials = true};
  }
  bool Holds(int elementType) const override { return !InpNameOf(elementType).empty(); }
  bool CanWrite() const override { return true; }
  void Write(const ExportModel& model, TextFile& file, ExportReport& report) const override {
    if (model.decks.empty()) return WriteInp(model, file, report);
    WriteInpDecks(model, file, report);
  }

 protected:
  bool Begins(const FileEnds& ends) const override { return ends.head.find('*') != std::string::npos; }
};

}  // namespace

const Format& InpFormat() {
  static const Inp kFormat;
  return kFormat;
}

}  // namespace qd::workbench

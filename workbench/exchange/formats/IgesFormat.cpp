#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/LastLine.h"

namespace qd::workbench {

namespace {

/// Column 73 of an 80-column card names its section.
bool IsCard(std::string_view line, char section) {
  constexpr std::size_t kColumn = 72;
  return line.size() > kColumn && line[kColumn] == section;
}

class Iges final : public Format {
 public:
  std::string_view Name() const override { return "IGES"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".iges", ".igs"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Iges; }
  Carries Carry() const override { return {.shapes = true, .names = true, .colours = true, .assembly = true}; }

 protected:
  bool Begins(const FileEnds& ends) const override {
    return IsCard(ends.head.substr(0, ends.head.find_first_of("\r\n")), 'S');
  }
  bool IsFinished(const FileEnds& ends) const override { return IsCard(LastLine(ends.tail), 'T'); }
};

}  // namespace

const Format& IgesFormat() {
  static const Iges kFormat;
  return kFormat;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

namespace {

class Step final : public Format {
 public:
  std::string_view Name() const override { return "STEP"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".step", ".stp"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Step; }
  Carries Carry() const override { return {.shapes = true, .names = true, .colours = true, .assembly = true}; }
  bool CanWrite() const override { return true; }

 protected:
  bool Begins(const FileEnds& ends) const override { return ends.head.find("ISO-10303-21") != std::string::npos; }
  bool IsFinished(const FileEnds& ends) const override {
    return ends.tail.find("END-ISO-10303-21") != std::string::npos;
  }
};

}  // namespace

const Format& StepFormat() {
  static const Step kFormat;
  return kFormat;
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

namespace {

class Brep final : public Format {
 public:
  std::string_view Name() const override { return "BREP"; }
  std::span<const std::string_view> Endings() const override {
    static constexpr std::string_view kEndings[] = {".brep", ".brp"};
    return kEndings;
  }
  Engine ReadBy() const override { return Engine::Brep; }
  Carries Carry() const override { return {.shapes = true}; }
  bool CanWrite() const override { return true; }

 protected:
  bool Begins(const FileEnds& ends) const override {
    return ends.head.find("CASCADE Topology") != std::string::npos ||
           ends.head.find("DBRep_DrawableShape") != std::string::npos;
  }
  /// The list of shapes is closed by a star, and only the root's number and place follow. A reader takes what a
  /// cut file leaves out from wherever its memory happens to be.
  bool IsFinished(const FileEnds& ends) const override {
    const std::size_t star = ends.tail.rfind('*');
    if (star == std::string::npos) return false;
    const std::string root = ends.tail.substr(star + 1);
    return root.find_first_of("+-") != std::string::npos &&
           root.find_first_not_of("+-0123456789 \t\r\n") == std::string::npos;
  }
};

}  // namespace

const Format& BrepFormat() {
  static const Brep kFormat;
  return kFormat;
}

}  // namespace qd::workbench

#include <algorithm>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

namespace {

/// The sections of a file in their order, with what they announce; between their names only numbers and the marks
/// of shapes.
class Outline {
 public:
  explicit Outline(const std::filesystem::path& path) : m_in(path) {}

  void Check() {
    std::string line;
    while (m_in.Rest(line) && line.find("CASCADE Topology V") == std::string::npos) continue;
    constexpr std::string_view kSections[] = {
        "Locations", "Curve2ds",       "Curves", "Polygon3D", "PolygonOnTriangulations",
        "Surfaces",  "Triangulations", "TShapes"};
    std::size_t section = 0;
    for (std::string word(m_in.Word()); !word.empty(); word = m_in.Word()) {
      if (section < std::size(kSections) && word == kSections[section]) {
        ++section;
        const std::int64_t count = m_in.Integer();
        if (count < 0) m_in.Fail("IDS_WB_IMPORT_INP_NUMBER", word);
        m_in.CheckCount(static_cast<std::uint64_t>(count), 2, word);
      } else if (section == 0 || word.find_first_not_of(kAllowed) != std::string::npos) {
        m_in.Fail("IDS_WB_IMPORT_OUTLINE", std::string_view(word).substr(0, 20));
      }
    }
    if (section < std::size(kSections)) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  }

 private:
  /// Numbers, how smooth an edge is ("44CN"), and the kinds of shapes.
  static constexpr std::string_view kAllowed = "0123456789+-.*eECNGpVdWiFaSho";

  FileScan m_in;
};

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
  /// Blanks aside, the first line is one of these.
  bool Begins(const FileEnds& ends) const override {
    std::string_view head = ends.head;
    head.remove_prefix(std::min(head.find_first_not_of(" \t\r\n"), head.size()));
    return head.starts_with("DBRep_DrawableShape") || head.starts_with("CASCADE Topology V") ||
           head.starts_with("Open CASCADE Topology V");
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
  std::vector<ImportNote> CheckBody(const std::filesystem::path& path) const override {
    Outline(path).Check();
    return {};
  }
};

}  // namespace

const Format& BrepFormat() {
  static const Brep kFormat;
  return kFormat;
}

}  // namespace qd::workbench

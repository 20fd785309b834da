#include <algorithm>
#include <utility>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

/// The sections of a file and the beginnings of the statements in them; what a statement says is left to the
/// library, which passes over those that it cannot read.
class Outline {
 public:
  explicit Outline(const std::filesystem::path& path) : m_in(path) {}

  void Check() {
    bool header = false;
    bool data = false;
    bool inside = false;
    while (Next()) {
      if (m_text == "END-ISO-10303-21") {
        if (inside || !data) Fail();
        return;
      }
      if (m_text == "ENDSEC") {
        if (!inside) Fail();
        inside = false;
      } else if (!inside) {
        const bool isData = m_text == "DATA" || m_text.starts_with("DATA(");
        const bool other = m_text == "ANCHOR" || m_text == "REFERENCE" || m_text == "SIGNATURE";
        if (header ? !isData && !other : m_text != "HEADER") Fail();
        header = true;
        data = data || isData;
        inside = true;
        m_records = isData;
      } else if (m_records && !m_text.starts_with('#') && !m_text.starts_with('&')) {
        Fail();
      }
    }
    throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  }

 private:
  [[noreturn]] void Fail() const {
    throw ImportError{"IDS_WB_IMPORT_OUTLINE", std::to_string(m_line) + ": " + m_text};
  }

  /// The beginning of the next statement that is not empty, without blanks; false at the end of the file.
  bool Next() {
    constexpr std::size_t kLook = 20;
    constexpr int kDeepest = 200;
    int depth = 0;
    m_text.clear();
    for (int byte = m_in.Get(); byte != FileScan::kEnd; byte = m_in.Get()) {
      if (byte == ';') {
        if (m_text == "ISO-10303-21" && std::exchange(m_first, false)) m_text.clear();
        if (!m_text.empty()) return true;
      } else if (byte == '\'') {
        SkipString();
      } else if (byte == '/' && m_in.Peek() == '*') {
        SkipComment();
      } else if (byte > ' ' && byte < 0x7F) {
        if (byte == '(' && ++depth > kDeepest) Fail();
        if (byte == ')') --depth;
        if (m_text.empty()) m_line = m_in.LineOfNext();
        if (m_text.size() < kLook) m_text += static_cast<char>(byte);
      }
    }
    return false;
  }
  /// Some programs write a quotation mark within a text as it is: a record that begins ends the text.
  void SkipString() {
    for (int byte = m_in.Get(); byte != FileScan::kEnd && byte != '\''; byte = m_in.Get()) {
      if (byte == '\n' && m_in.Peek() == '#') return;
    }
  }
  void SkipComment() {
    m_in.Get();
    for (int byte = m_in.Get(); byte != FileScan::kEnd; byte = m_in.Get()) {
      if (byte == '*' && m_in.Peek() == '/') {
        m_in.Get();
        return;
      }
    }
  }

  FileScan m_in;
  std::string m_text;
  std::size_t m_line = 0;
  bool m_first = true;
  bool m_records = false;
};

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
  /// Blanks aside, and a mark of UTF-8, which some programs put before everything.
  bool Begins(const FileEnds& ends) const override {
    std::string_view head = ends.head;
    if (head.starts_with("\xEF\xBB\xBF")) head.remove_prefix(3);
    head.remove_prefix(std::min(head.find_first_not_of(" \t\r\n"), head.size()));
    if (!head.starts_with(kBegin)) return false;
    head.remove_prefix(kBegin.size());
    return Trimmed(head).starts_with(';');
  }
  bool IsFinished(const FileEnds& ends) const override { return ends.tail.find(kEnd) != std::string::npos; }
  std::vector<ImportNote> CheckBody(const std::filesystem::path& path) const override {
    Outline(path).Check();
    return {};
  }

 private:
  static constexpr std::string_view kBegin = "ISO-10303-21";
  static constexpr std::string_view kEnd = "END-ISO-10303-21";
};

}  // namespace

const Format& StepFormat() {
  static const Step kFormat;
  return kFormat;
}

}  // namespace qd::workbench

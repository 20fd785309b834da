#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/text/CodePoints.h"
#include "platform/text/Folding.h"
#include "platform/text/UnicodeTables.h"

namespace qd {

/// The small letter of an ASCII element.
inline char32_t SmallAscii(wchar_t element) {
  const auto code = static_cast<char32_t>(element);
  return code - U'A' < 26U ? code + (U'a' - U'A') : code;
}

/// Reads a text code by code as it is compared: decomposed, folded, with its marks in their canonical order,
/// without what shows nothing. Takes no memory; of a run of marks longer than any that people write, each part is
/// put in order on its own.
class FoldedReader {
 public:
  static constexpr std::int64_t kEnd = -1;  ///< what Next answers behind the last code

  /// The text must outlive this.
  FoldedReader(std::wstring_view text, Accents accents) : m_text(text), m_accents(accents) {}
  FoldedReader(const FoldedReader&) = delete;
  FoldedReader& operator=(const FoldedReader&) = delete;

  /// The next code, or kEnd.
  std::int64_t Next() {
    const bool simple = m_mark == m_markCount && m_parts.empty() && m_at < m_text.size() && IsAscii(m_text[m_at]);
    return simple ? SmallAscii(m_text[m_at++]) : NextOfAll();
  }

 private:
  struct Mark {
    char32_t code;
    std::uint8_t combining;
  };
  static constexpr std::size_t kLongestRun = 32;

  std::int64_t NextOfAll();
  bool Peek(char32_t& code);
  void Take() { m_parts = m_parts.subspan(1); }
  void CollectMarks();
  void Expand(char32_t code);

  std::wstring_view m_text;
  Accents m_accents;
  std::size_t m_at = 0;
  std::span<const char32_t> m_parts;  ///< what is left of the code that was read last
  std::array<char32_t, 3> m_own{};    ///< the parts of a code that has none in the tables
  std::array<Mark, kLongestRun> m_marks;
  std::size_t m_mark = 0;
  std::size_t m_markCount = 0;
};

}  // namespace qd

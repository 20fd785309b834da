#include "platform/text/FoldedReader.h"

namespace qd {

namespace {

/// Composed Korean syllables stand in the order of their letters.
constexpr char32_t kSyllables = 0xAC00;
constexpr char32_t kSyllableCount = 11172;
constexpr char32_t kLeadingLetters = 0x1100;
constexpr char32_t kVowels = 0x1161;
constexpr char32_t kBeforeTrailing = 0x11A7;
constexpr char32_t kVowelCount = 21;
constexpr char32_t kTrailingCount = 28;

/// A mark to the canonical order, and a letter to those who compare without case.
constexpr char32_t kIotaBelow = 0x345;
constexpr char32_t kIota = 0x3B9;

}  // namespace

/// Sets the parts of a code.
void FoldedReader::Expand(char32_t code) {
  m_parts = FoldedTextOf(code);
  if (!m_parts.empty()) return;
  m_own[0] = code;
  std::size_t count = 1;
  if (code >= kSyllables && code - kSyllables < kSyllableCount) {
    const char32_t place = code - kSyllables;
    const char32_t trailing = place % kTrailingCount;
    m_own = {kLeadingLetters + place / (kVowelCount * kTrailingCount),
             kVowels + place / kTrailingCount % kVowelCount, kBeforeTrailing + trailing};
    count = trailing != 0 ? 3 : 2;
  }
  m_parts = std::span(m_own).first(count);
}

/// The part that comes next, false at the end.
bool FoldedReader::Peek(char32_t& code) {
  while (m_parts.empty()) {
    if (m_at >= m_text.size()) return false;
    const CodePoint point = CodePointAt(m_text, m_at);
    m_at += point.length;
    if (!DataOf(point.code).ignorable) Expand(point.code);
  }
  code = m_parts.front();
  return true;
}

/// Takes the marks that come next, in their order.
void FoldedReader::CollectMarks() {
  m_mark = 0;
  m_markCount = 0;
  for (char32_t code = 0; m_markCount < kLongestRun && Peek(code); Take()) {
    const CodeData& data = DataOf(code);
    if (data.combining == 0) break;
    if (data.accent && code != kIotaBelow && m_accents == Accents::kLeftOut) continue;
    // Behind those of its class: the runs are short, and mostly in order.
    std::size_t place = m_markCount++;
    for (; place > 0 && m_marks[place - 1].combining > data.combining; --place)
      m_marks[place] = m_marks[place - 1];
    m_marks[place] = {code, data.combining};
  }
}

std::int64_t FoldedReader::NextOfAll() {
  while (true) {
    if (m_mark < m_markCount) {
      const char32_t code = m_marks[m_mark++].code;
      return code == kIotaBelow ? kIota : code;
    }
    char32_t code = 0;
    if (!Peek(code)) return kEnd;
    if (code < 0x80 || DataOf(code).combining == 0) {
      Take();
      return code;
    }
    CollectMarks();
  }
}

}  // namespace qd

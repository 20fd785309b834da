#include "workbench/exchange/formats/InpDeck.h"

#include <algorithm>

#include "workbench/exchange/formats/InpCards.h"
#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/mesh/DeckRecord.h"

namespace qd::workbench {

void CheckDeckLength(std::size_t bytes, std::string_view place) {
  if (bytes > kMostDeckBytes) throw ImportError{"IDS_WB_IMPORT_INP_TOO_LONG", std::string(place)};
}

bool InpDeckText::IsTooLong() const {
  return m_text.size() > kMostDeckBytes;
}

void InpDeckText::EndRun() {
  if (!m_open) return;
  m_open = false;
  m_text += std::to_string(m_first);
  if (m_step != 0) m_text += "," + std::to_string(m_last);
  if (m_step > 1) m_text += "," + std::to_string(m_step);
  m_text += '\n';
}

/// Keeps the comments and empty lines that lines begin with and leaves the rest.
void InpDeckText::Comments(std::string_view& lines) {
  while (lines.starts_with("**") || lines.starts_with('\n')) {
    const std::size_t end = std::min(lines.find('\n'), lines.size() - 1) + 1;
    Keep(lines.substr(0, end));
    lines.remove_prefix(end);
  }
}

void InpDeckText::Number(std::uint64_t number, std::string_view lines) {
  Comments(lines);
  if (m_open && m_step == 0 && number > m_last) {
    m_step = number - m_last;
    m_last = number;
  } else if (m_open && m_step != 0 && number == m_last + m_step) {
    m_last = number;
  } else {
    EndRun();
    m_open = true;
    m_first = m_last = number;
    m_step = 0;
  }
}

void InpDeckText::Literal(std::string_view lines) {
  std::string joined;
  for (Comments(lines); !lines.empty(); Comments(lines)) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    joined += lines.substr(0, end);
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  EndRun();
  m_text += "=" + joined + "\n";
}

}  // namespace qd::workbench

#include "qd_wrt/treelist/CTLItem.h"

#include "qd_wrt/treelist/RowOrder.h"

namespace qd {

std::wstring_view CTLItem::View(int column) const {
  const std::wstring_view all = m_text;
  std::size_t start = 0;
  for (int i = 0; i < column; ++i) {
    const std::size_t separator = all.find(static_cast<wchar_t>(m_separator), start);
    if (separator == std::wstring_view::npos) return {};
    start = separator + 1;
  }
  if (column < 0) return {};
  return all.substr(start, all.find(static_cast<wchar_t>(m_separator), start) - start);
}

void CTLItem::SetSubstring(int column, const CString& text) {
  if (column < 0) return;
  const auto separator = static_cast<wchar_t>(m_separator);
  std::size_t opening = 0;  // of the column; 0 also stands for none
  std::size_t start = 0;
  for (int i = 0; i < column; ++i) {
    const std::size_t next = m_text.find(separator, start);
    if (next == CString::npos) {
      CString longer;
      longer.reserve(m_text.size() + static_cast<std::size_t>(column - i) + text.size());
      longer += m_text;
      longer.append(static_cast<std::size_t>(column - i), separator);
      longer += text;
      m_text = std::move(longer);
      return;
    }
    opening = next;
    start = next + 1;
  }
  const std::size_t closing = m_text.find(separator, start);
  CString rebuilt;
  // A separator at position 0 counts as none, so an empty column 0 is lost here. Rows rely on it.
  if (opening != 0) rebuilt = m_text.substr(0, opening) + separator;
  rebuilt += text;
  if (closing != CString::npos) rebuilt += m_text.substr(closing);
  m_text = std::move(rebuilt);
}

std::uint32_t CTLItem::GetItemKey() const {
  const std::size_t separator = m_text.find(static_cast<wchar_t>(m_separator));
  if (separator == CString::npos) return 0;
  // The number ends with its column: no digit separates columns.
  return static_cast<std::uint32_t>(DecimalPrefix(std::wstring_view(m_text).substr(separator + 1)));
}

void CTLItem::SetColor(COLORREF colour) {
  m_hasColour = true;
  m_colour = colour & 0xFFFFFFU;
}

void CTLItem::SetEditable(int editable) {
  m_editable = editable != 0;
  if (m_editable) m_combo = false;
}

void CTLItem::SetCombo(int combo) {
  m_combo = combo != 0;
  if (m_combo) m_editable = false;
}

}  // namespace qd

#include "qd_wrt/treelist/TreeListGeometry.h"

#include <algorithm>

namespace qd {

CRect TreeListGeometry::CellOf(const CRect& line, int column) const {
  const int left = m_columns.LeftOf(column);
  return {left, line.top, left + m_columns.WidthOf(column), line.bottom};
}

CRect TreeListGeometry::TitleOf(const RowLine& at) const {
  return {PartsOf(at.row).text, at.line.top, m_columns.WidthOf(0), at.line.bottom};
}

CRect TreeListGeometry::BandOf(const RowLine& at) const {
  int left = PartsOf(at.row).text;
  if (m_columns.Count() > 1) left = std::min(left, m_columns.WidthOf(0));
  return {left, at.line.top, m_columns.TotalWidth(), at.line.bottom};
}

CRect TreeListGeometry::SwatchOf(const CRect& line) const {
  constexpr int kInset = 3;
  return CellOf(line, TreeColumns::kSwatch).Deflated(kInset, kInset);
}

ContentPlace TreeListGeometry::PlaceAt(CPoint client) const {
  const auto above = static_cast<std::int64_t>(Top()) * LineHeight();
  return {client.x - Offset(), above + client.y};
}

bool TreeListGeometry::FindEditor(HTREEITEM row, CRect& place) const {
  constexpr int kLeastWidth = 40;
  CRect line;
  if (!FindLine(row, line)) return false;
  const int right = Client().right;
  place = TitleOf({row, line}).Moved(Offset(), 0);
  place.left = std::clamp(place.left, 0, std::max(right - kLeastWidth, 0));
  place.right = std::max(std::min(place.right, std::max(right, 0)), place.left + kLeastWidth);
  return true;
}

CPoint TreeListGeometry::MenuPlaceOf(HTREEITEM row) const {
  CRect line;
  if (!FindLine(row, line)) return {};
  const int left = PartsOf(row).text + Offset();
  return {std::clamp(left, 0, std::max(Client().right - 1, 0)),
          std::min(line.bottom, std::max(Client().bottom - 1, 0))};
}

}  // namespace qd

#include "platform/tree/RowGeometry.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace qd {

namespace {

constexpr int kImageCell = 19;  // a picture and its gap

}  // namespace

int RowGeometry::LineCount() const {
  return std::max((m_view.client.Height() + m_view.lineHeight - 1) / m_view.lineHeight, 0);
}

int RowGeometry::PageSize() const {
  return std::max(m_view.client.Height() / m_view.lineHeight, 1);
}

bool RowGeometry::FindLine(HTREEITEM row, CRect& line) const {
  if (!m_rows.Contains(row) || !m_rows.IsVisible(row)) return false;
  constexpr std::int64_t kFar = 1'000'000;
  const auto rank = static_cast<std::int64_t>(m_rows.Position(row)) - static_cast<std::int64_t>(m_view.top);
  const int top = static_cast<int>(std::clamp(rank, -kFar, kFar)) * m_view.lineHeight;
  line = {0, top, m_view.client.right, top + m_view.lineHeight};
  return true;
}

std::vector<RowLine> RowGeometry::LinesBetween(int top, int bottom) const {
  const int height = m_view.lineHeight;
  const int first = std::max(top, 0) / height;
  std::vector<RowLine> lines;
  lines.reserve(static_cast<std::size_t>(std::max((bottom + height - 1) / height - first, 0)));
  HTREEITEM row = m_rows.RowAt(m_view.top + static_cast<std::size_t>(first));
  for (int y = first * height; row && y < bottom; y += height, row = m_rows.NextVisible(row)) {
    lines.push_back({row, {0, y, m_view.client.right, y + height}});
  }
  return lines;
}

int RowGeometry::ButtonsOf(int level) {
  const auto left = (static_cast<std::int64_t>(level) + 1) * kIndent;
  return static_cast<int>(std::min<std::int64_t>(left, std::numeric_limits<int>::max() / 4)) - kIndent;
}

RowParts RowGeometry::PartsOf(HTREEITEM row) const {
  const bool hasState = m_view.hasStateImages && m_rows.State(row, kRowStateImage) != 0;
  RowParts parts;
  parts.button = ButtonsOf(m_rows.Level(row));
  parts.state = parts.button + kIndent;
  parts.icon = parts.state + (hasState ? kImageCell : 0);
  parts.text = parts.icon + (m_view.hasIcons ? kImageCell : 0);
  return parts;
}

CRect RowGeometry::TextOf(const RowLine& at) const {
  const int left = PartsOf(at.row).text;
  return {left, at.line.top, left + kLabelWidth, at.line.bottom};
}

HTREEITEM RowGeometry::HitTest(CPoint point, unsigned& flags) const {
  flags = kHitNowhere;
  if (point.y < 0) flags = kHitAbove;
  if (point.y >= m_view.client.bottom) flags = kHitBelow;
  if (flags != kHitNowhere) return {};
  const HTREEITEM row = m_rows.RowAt(m_view.top + static_cast<std::size_t>(point.y / m_view.lineHeight));
  if (!row) return {};
  const RowParts parts = PartsOf(row);
  if (point.x < parts.button) {
    flags = kHitIndent;
  } else if (point.x < parts.state) {
    flags = m_rows.CanOpen(row) ? kHitButton : kHitIndent;
  } else if (point.x < parts.icon) {
    flags = kHitStateIcon;
  } else if (point.x < parts.text) {
    flags = kHitIcon;
  } else {
    flags = point.x < parts.text + kLabelWidth ? kHitLabel : kHitRight;
  }
  return row;
}

}  // namespace qd

#include "qd_wrt/treelist/BandSelection.h"

#include <algorithm>
#include <utility>

namespace qd {

BandSelection::BandSelection(RowTree& rows, bool keeps, bool clearsStart)
    : m_outside(keeps ? RowTree::Selecting::Marked : RowTree::Selecting::Off),
      m_inside(clearsStart ? RowTree::Selecting::NotMarked : RowTree::Selecting::On) {
  if (keeps) rows.MarkSelected();
}

void BandSelection::Update(RowTree& rows, std::uint64_t revision, std::vector<Range> met) {
  if (!std::exchange(m_began, true) || std::exchange(m_revision, revision) != revision) {
    m_met.clear();
    Leave(rows, {0, rows.VisibleCount()});
  }
  if (m_met.size() == 1 && met.size() == 1) {
    const Range before = m_met.front();
    const Range now = met.front();
    Leave(rows, {before.first, std::min(before.end, now.first)});
    Leave(rows, {std::max(before.first, now.end), before.end});
    Enter(rows, {now.first, std::min(now.end, before.first)});
    Enter(rows, {std::max(now.first, before.end), now.end});
  } else if (m_met != met) {
    for (const Range& range : m_met) Leave(rows, range);
    for (const Range& range : met) Enter(rows, range);
  }
  m_met = std::move(met);
}

void BandSelection::Leave(RowTree& rows, Range range) const {
  if (range.first < range.end) rows.SelectVisible(range.first, range.end - 1, m_outside);
}

void BandSelection::Enter(RowTree& rows, Range range) const {
  if (range.first < range.end) rows.SelectVisible(range.first, range.end - 1, m_inside);
}

}  // namespace qd

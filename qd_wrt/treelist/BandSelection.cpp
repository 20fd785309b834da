#include "qd_wrt/treelist/BandSelection.h"

#include <algorithm>
#include <utility>

namespace qd {

BandSelection::BandSelection(std::vector<HTREEITEM> start, bool clearsStart)
    : m_start(std::move(start)), m_clearsStart(clearsStart) {}

void BandSelection::Update(RowTree& rows, std::uint64_t revision, std::vector<Range> met) {
  if (!std::exchange(m_began, true) || std::exchange(m_revision, revision) != revision) {
    m_revision = revision;
    Restart(rows);
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

/// Finds the start rows where they stand now and selects nothing else.
void BandSelection::Restart(RowTree& rows) {
  m_met.clear();
  m_startRuns.clear();
  std::vector<std::size_t> positions;
  for (const HTREEITEM row : m_start) {
    if (rows.Contains(row) && rows.IsVisible(row)) positions.push_back(rows.Position(row));
  }
  std::sort(positions.begin(), positions.end());
  for (const std::size_t position : positions) {
    if (!m_startRuns.empty() && m_startRuns.back().end == position) {
      ++m_startRuns.back().end;
    } else {
      m_startRuns.push_back({position, position + 1});
    }
  }
  Leave(rows, {0, rows.VisibleCount()});
}

void BandSelection::SelectStart(RowTree& rows, Range range, bool on) const {
  auto run = std::partition_point(m_startRuns.begin(), m_startRuns.end(),
                                  [&range](const Range& candidate) { return candidate.end <= range.first; });
  for (; run != m_startRuns.end() && run->first < range.end; ++run) {
    rows.SelectVisible(std::max(run->first, range.first), std::min(run->end, range.end) - 1, on);
  }
}

void BandSelection::Leave(RowTree& rows, Range range) const {
  if (range.first >= range.end) return;
  rows.SelectVisible(range.first, range.end - 1, false);
  SelectStart(rows, range, true);
}

void BandSelection::Enter(RowTree& rows, Range range) const {
  if (range.first >= range.end) return;
  rows.SelectVisible(range.first, range.end - 1, true);
  if (m_clearsStart) SelectStart(rows, range, false);
}

}  // namespace qd

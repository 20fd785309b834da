// The rubber band of the tree-list control.

#include <algorithm>
#include <cstdlib>

#include "platform/CDC.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

constexpr unsigned kBandTimer = 1;
constexpr unsigned kBandPeriod = 75;

}  // namespace

void CTreeListCtrl::DoBanding(Button button, unsigned flags, CPoint point) {
  IToolkit& toolkit = IToolkit::Instance();
  const bool keeps = (flags & (kMouseShift | kMouseControl)) != 0;
  const std::weak_ptr<void> life = Life();
  SetFocus();
  if (life.expired() || GetPeer() == nullptr) return;
  const bool clearsStart = (flags & kMouseControl) != 0;
  m_band.emplace(Band{ContentPoint(point), point, false, BandSelection(Rows(), keeps, clearsStart)});
  GetPeer()->SetTimer(kBandTimer, kBandPeriod);
  Message last;  // what ended the band
  toolkit.RunCapture(*this, [&](const Message& message) {
    if (life.expired() || !m_band.has_value()) return CaptureVerdict::Stop;
    if (message.kind == MessageKind::KeyDown && message.key == kKeyEscape) {
      ClearAllSelected();
      last = message;
      return CaptureVerdict::Stop;
    }
    if (message.target != this) return CaptureVerdict::Dispatch;
    switch (message.kind) {
      case MessageKind::LeftUp:
      case MessageKind::RightUp:
        last = message;
        return CaptureVerdict::Stop;
      case MessageKind::MouseMove:
        MoveBand(message.point, point, keeps);
        return CaptureVerdict::Swallow;
      case MessageKind::Timer: {
        const CPoint pointer = ScreenToClient(IToolkit::Instance().CursorPosition());
        if (message.id != kBandTimer || GetClientRect().Contains(pointer)) return CaptureVerdict::Dispatch;
        MoveBand(pointer, point, keeps);  // outside: this is what scrolls on
        return CaptureVerdict::Swallow;
      }
      default:
        return CaptureVerdict::Dispatch;
    }
  });
  if (life.expired() || GetPeer() == nullptr) return;
  GetPeer()->KillTimer(kBandTimer);
  const bool started = m_band.has_value() && m_band->started;
  m_band.reset();
  Invalidate();
  if (!started && !keeps) ClearAllSelected();
  Notice notice;
  notice.code = button == Button::Left ? kNoticeClick : kNoticeRightClick;
  SendEmulated(notice);
  if (!life.expired() && last.target != nullptr) Dispatch(last);
}

/// Where a client point lies in the content: x without the horizontal offset, y from the top of the first row.
CTreeListCtrl::ContentPlace CTreeListCtrl::ContentPoint(CPoint client) const {
  const auto above = static_cast<std::int64_t>(TopPosition()) * GetItemHeight();
  return {client.x - m_offset, above + client.y};
}

void CTreeListCtrl::MoveBand(CPoint to, CPoint from, bool keeps) {
  IToolkit& toolkit = IToolkit::Instance();
  if (!m_band->started) {
    if (std::abs(to.x - from.x) <= toolkit.GetMetric(Metric::DragWidth) &&
        std::abs(to.y - from.y) <= toolkit.GetMetric(Metric::DragHeight)) {
      return;
    }
    if (!keeps) ClearAllSelected();
    m_band->started = true;
  }
  const CRect client = GetClientRect();
  if (to.y < client.top) ScrollBy(-1);
  if (to.y >= client.bottom) ScrollBy(1);
  if (m_pane != nullptr && to.x < client.left) m_pane->ScrollColumns(-1);
  if (m_pane != nullptr && to.x >= client.right) m_pane->ScrollColumns(1);
  m_band->current = to;
  UpdateSelectionForRect();
  Invalidate();
}

void CTreeListCtrl::UpdateSelectionForRect() {
  const ContentPlace current = ContentPoint(m_band->current);
  const auto [left, right] = std::minmax(m_band->start.x, current.x);
  const auto [top, bottom] = std::minmax(m_band->start.y, current.y);
  const int height = GetItemHeight();
  const auto count = static_cast<std::int64_t>(VisibleRowCount());
  const std::int64_t first = std::max<std::int64_t>(top, 0) / height;
  const std::int64_t end = bottom < 0 ? 0 : std::min(bottom / height + 1, count);
  std::vector<BandSelection::Range> met;
  if (first < end && !m_bandingHit) {
    met.push_back({static_cast<std::size_t>(first), static_cast<std::size_t>(end)});
  }
  for (std::int64_t position = first; position < end && m_bandingHit; ++position) {
    CRect text;
    GetItemRect(Rows().RowAt(static_cast<std::size_t>(position)), text, true);
    if (right < text.left || left >= text.right) continue;
    met.push_back({static_cast<std::size_t>(position), static_cast<std::size_t>(position) + 1});
  }
  m_band->selection.Update(Rows(), Revision(), std::move(met));
}

void CTreeListCtrl::PaintBand(CDC& dc) const {
  if (!m_band.has_value() || !m_band->started) return;
  constexpr std::int64_t kFar = 1'000'000;
  const ContentPlace origin = ContentPoint({0, 0});
  const CPoint start{static_cast<int>(std::clamp(m_band->start.x - origin.x, -kFar, kFar)),
                     static_cast<int>(std::clamp(m_band->start.y - origin.y, -kFar, kFar))};
  const auto [left, right] = std::minmax(start.x, m_band->current.x);
  const auto [top, bottom] = std::minmax(start.y, m_band->current.y);
  dc.FrameRect({left, top, right + 1, bottom + 1}, IToolkit::Instance().GetColour(SystemColour::WindowText));
}

}  // namespace qd

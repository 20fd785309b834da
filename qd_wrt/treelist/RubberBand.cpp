#include "qd_wrt/treelist/RubberBand.h"

#include <algorithm>
#include <cstdlib>

namespace qd {

namespace {

constexpr unsigned kBandTimer = 1;
constexpr unsigned kBandPeriod = 75;

}  // namespace

std::optional<Message> RubberBand::DoBanding(unsigned flags, CPoint point) {
  const bool keeps = (flags & (kMouseShift | kMouseControl)) != 0;
  const std::weak_ptr<void> life = Tree().Life();
  Tree().SetFocus();
  if (life.expired() || Tree().GetPeer() == nullptr) return std::nullopt;
  const bool clearsStart = (flags & kMouseControl) != 0;
  m_band.emplace(
      Band{Geometry().PlaceAt(point), point, point, keeps, false, BandSelection(Rows(), keeps, clearsStart)});
  Tree().GetPeer()->SetTimer(kBandTimer, kBandPeriod);
  Message last;
  IToolkit::Instance().RunCapture(Tree(), [&](const Message& message) {
    if (life.expired() || !m_band.has_value()) return CaptureVerdict::Stop;
    return Follow(message, last);
  });
  if (life.expired() || Tree().GetPeer() == nullptr) return std::nullopt;
  Tree().GetPeer()->KillTimer(kBandTimer);
  const bool started = m_band.has_value() && m_band->started;
  m_band.reset();
  Tree().Invalidate();
  if (!started && !keeps) m_selection.ClearAllSelected();
  return last;
}

CaptureVerdict RubberBand::Follow(const Message& message, Message& last) {
  if (message.kind == MessageKind::KeyDown && message.key == kKeyEscape) {
    m_selection.ClearAllSelected();
    last = message;
    return CaptureVerdict::Stop;
  }
  if (message.target != &Tree()) return CaptureVerdict::Dispatch;
  switch (message.kind) {
    case MessageKind::LeftUp:
    case MessageKind::RightUp:
      last = message;
      return CaptureVerdict::Stop;
    case MessageKind::MouseMove:
      MoveBand(message.point);
      return CaptureVerdict::Swallow;
    case MessageKind::Timer: {
      const CPoint pointer = Tree().ScreenToClient(IToolkit::Instance().CursorPosition());
      if (message.id != kBandTimer || Tree().GetClientRect().Contains(pointer)) return CaptureVerdict::Dispatch;
      MoveBand(pointer);  // outside: this is what scrolls on
      return CaptureVerdict::Swallow;
    }
    default:
      return CaptureVerdict::Dispatch;
  }
}

void RubberBand::MoveBand(CPoint to) {
  const IToolkit& toolkit = IToolkit::Instance();
  if (!m_band->started) {
    const CPoint from = m_band->pressed;
    if (std::abs(to.x - from.x) <= toolkit.GetMetric(Metric::DragWidth) &&
        std::abs(to.y - from.y) <= toolkit.GetMetric(Metric::DragHeight)) {
      return;
    }
    if (!m_band->keeps) m_selection.ClearAllSelected();
    m_band->started = true;
  }
  const CRect client = Tree().GetClientRect();
  if (to.y < client.top) ScrollBy(-1);
  if (to.y >= client.bottom) ScrollBy(1);
  if (to.x < client.left) m_pane.ScrollColumns(-1);
  if (to.x >= client.right) m_pane.ScrollColumns(1);
  m_band->current = to;
  UpdateSelectionForRect();
  Tree().Invalidate();
}

void RubberBand::UpdateSelectionForRect() {
  const TreeListGeometry geometry = Geometry();
  const ContentPlace current = geometry.PlaceAt(m_band->current);
  const auto [left, right] = std::minmax(m_band->start.x, current.x);
  const auto [top, bottom] = std::minmax(m_band->start.y, current.y);
  const int height = geometry.LineHeight();
  const auto count = static_cast<std::int64_t>(Rows().VisibleCount());
  const std::int64_t first = std::max<std::int64_t>(top, 0) / height;
  const std::int64_t end = bottom < 0 ? 0 : std::min(bottom / height + 1, count);
  std::vector<BandSelection::Range> met;
  if (first < end && !m_bandingHit) {
    met.push_back({static_cast<std::size_t>(first), static_cast<std::size_t>(end)});
  }
  for (std::int64_t position = first; position < end && m_bandingHit; ++position) {
    const CRect text = geometry.TextOf({Rows().RowAt(static_cast<std::size_t>(position)), {}});
    if (right < text.left || left >= text.right) continue;
    met.push_back({static_cast<std::size_t>(position), static_cast<std::size_t>(position) + 1});
  }
  m_band->selection.Update(Rows(), Tree().Revision(), std::move(met));
}

void RubberBand::Paint(CDC& dc) const {
  if (!m_band.has_value() || !m_band->started) return;
  constexpr std::int64_t kFar = 1'000'000;
  const ContentPlace origin = Geometry().PlaceAt({0, 0});
  const CPoint start{static_cast<int>(std::clamp(m_band->start.x - origin.x, -kFar, kFar)),
                     static_cast<int>(std::clamp(m_band->start.y - origin.y, -kFar, kFar))};
  const auto [left, right] = std::minmax(start.x, m_band->current.x);
  const auto [top, bottom] = std::minmax(start.y, m_band->current.y);
  dc.FrameRect({left, top, right + 1, bottom + 1}, IToolkit::Instance().GetColour(SystemColour::WindowText));
}

}  // namespace qd

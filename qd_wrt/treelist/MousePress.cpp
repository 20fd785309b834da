#include "qd_wrt/treelist/MousePress.h"

#include <cstdlib>

namespace qd {

MousePress::End MousePress::Watch(CWnd& window, CPoint point) {
  IToolkit& toolkit = IToolkit::Instance();
  const int dragWidth = toolkit.GetMetric(Metric::DragWidth);
  const int dragHeight = toolkit.GetMetric(Metric::DragHeight);
  bool dragged = false;
  bool clicked = false;
  const CaptureEnd end = toolkit.RunCapture(window, [&](const Message& message) {
    if (message.target != &window) return CaptureVerdict::Dispatch;
    switch (message.kind) {
      case MessageKind::MouseMove:
        dragged =
            std::abs(message.point.x - point.x) > dragWidth || std::abs(message.point.y - point.y) > dragHeight;
        return dragged ? CaptureVerdict::Stop : CaptureVerdict::Swallow;
      case MessageKind::LeftUp:
      case MessageKind::RightUp:
        clicked = true;
        return CaptureVerdict::StopAndDispatch;
      default:
        return CaptureVerdict::Dispatch;
    }
  });
  if (end == CaptureEnd::Lost || !(dragged || clicked)) return End::Lost;
  return dragged ? End::Dragged : End::Clicked;
}

void MousePress::Remember(HTREEITEM row, CPoint point) {
  m_row = row;
  m_at = point;
}

CPoint MousePress::PlaceOfSecond(CPoint point, const RowGeometry& geometry) const {
  const IToolkit& toolkit = IToolkit::Instance();
  const bool again = std::abs(point.x - m_at.x) <= toolkit.GetMetric(Metric::DragWidth) &&
                     std::abs(point.y - m_at.y) <= toolkit.GetMetric(Metric::DragHeight);
  CRect line;
  return again && geometry.FindLine(m_row, line) ? CPoint{point.x, line.top} : point;
}

}  // namespace qd

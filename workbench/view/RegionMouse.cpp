#include "workbench/view/RegionMouse.h"

#include <QMouseEvent>
#include <QPainter>
#include <QRectF>
#include <utility>

namespace qd::workbench {

RegionMouse::RegionMouse(QWidget* view, OnRegion onRegion) : QWidget(view), m_onRegion(std::move(onRegion)) {
  setObjectName("region");
  setCursor(Qt::CrossCursor);
  hide();
}

void RegionMouse::Await(Form form) {
  m_form = form;
  m_region.clear();
  setGeometry(parentWidget()->rect());
  show();
  raise();
  parentWidget()->setFocus();  // whose Escape ends it
}

void RegionMouse::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) m_region = {event->position()};
  if (event->button() == Qt::RightButton) Cancel();
}

void RegionMouse::mouseMoveEvent(QMouseEvent* event) {
  if (m_region.isEmpty()) return;
  if (event->buttons() == Qt::NoButton) return Cancel();  // the release went elsewhere
  const QPointF from = m_region.front();
  const QPointF to = event->position();
  if (m_form == Form::Lasso) {
    m_region.append(to);
  } else {
    m_region = {from, QPointF(to.x(), from.y()), to, QPointF(from.x(), to.y())};
  }
  update();
}

void RegionMouse::mouseReleaseEvent(QMouseEvent* event) {
  constexpr double kLeast = 3;  // pixels
  if (event->button() != Qt::LeftButton || m_region.isEmpty()) return;
  const QPolygonF region = std::exchange(m_region, {});
  hide();
  const QRectF box = region.boundingRect();
  if (region.size() > 2 && (box.width() >= kLeast || box.height() >= kLeast))
    m_onRegion(region, event->modifiers());
}

void RegionMouse::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor fill = palette().color(QPalette::Highlight);
  painter.setPen(QPen(fill, 1.5));
  fill.setAlpha(50);
  painter.setBrush(fill);
  painter.drawPolygon(m_region);
}

}  // namespace qd::workbench

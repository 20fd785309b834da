#include "workbench/view/SectionHandles.h"

#include <QPainter>
#include <cmath>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/view/AxisSymbol.h"
#include "workbench/view/Projection.h"

namespace qd::workbench {

namespace {

constexpr double kArrow = 44;  // pixels
constexpr double kReach = 11;  // from which an arrow is taken

QColor ColourOf(const SectionPlane& plane) {
  return plane.axis ? ToQt(AxisSymbol::kColours[*plane.axis]) : QColor(0xC0, 0x70, 0x10);
}

}  // namespace

SectionHandles::SectionHandles(WorkDocument& doc, vtkRenderer& renderer, QWidget* view)
    : QWidget(view), m_doc(doc), m_renderer(renderer) {
  setObjectName("sectionHandles");
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SectionHandles::Follow() {
  setGeometry(parentWidget()->rect());
  m_handles.clear();
  const auto& planes = m_doc.GetSections().Planes();
  setVisible(!planes.empty());
  if (planes.empty()) return;
  const Projection project(m_renderer, size());
  for (std::size_t i = 0; i < planes.size(); ++i) {
    const Vector3& at = planes[i].point;
    const double length = kArrow * project.PixelAt(at[0], at[1], at[2]);
    const Vector3 end = at + planes[i].normal * length;
    const auto foot = project(at[0], at[1], at[2]);
    const auto tip = project(end[0], end[1], end[2]);
    if (foot && tip) m_handles.push_back({i, foot->at, tip->at, length});
  }
  update();
}

bool SectionHandles::Grab(const QPointF& at) {
  for (const Handle& handle : m_handles) {
    for (const QPointF& place : {handle.tip, (handle.at + handle.tip) / 2, handle.at}) {
      if (std::hypot(at.x() - place.x(), at.y() - place.y()) > kReach) continue;
      m_held = handle.plane;
      m_last = at;
      return true;
    }
  }
  return false;
}

/// Along the arrow as it is seen; one that points into the picture is moved upwards.
void SectionHandles::DragTo(const QPointF& at) {
  constexpr double kShort = 8;  // pixels
  const QPointF moved = at - std::exchange(m_last, at);
  for (const Handle& handle : std::vector(m_handles)) {
    if (handle.plane != m_held) continue;
    const QPointF along = handle.tip - handle.at;
    const double square = QPointF::dotProduct(along, along);
    const double share =
        square > kShort * kShort ? QPointF::dotProduct(moved, along) / square : -moved.y() / kArrow;
    return m_doc.GetSections().MoveBy(handle.plane, share * handle.length);
  }
}

void SectionHandles::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto& planes = m_doc.GetSections().Planes();
  for (const Handle& handle : m_handles) {
    if (handle.plane >= planes.size()) continue;  // gone since the last frame
    const QColor colour = ColourOf(planes[handle.plane]);
    painter.setPen(QPen(QColor(255, 255, 255, 190), 6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(handle.at, handle.tip);
    painter.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(handle.at, handle.tip);
    painter.setPen(QPen(QColor(255, 255, 255, 220), 1.5));
    painter.setBrush(colour);
    painter.drawEllipse(handle.tip, 6, 6);
    painter.drawEllipse(handle.at, 4, 4);
  }
}

}  // namespace qd::workbench

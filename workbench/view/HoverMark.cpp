#include "workbench/view/HoverMark.h"

#include <QPainter>
#include <QPalette>
#include <QToolTip>

#include "workbench/display/PickedShape.h"
#include "workbench/view/Projection.h"

namespace qd::workbench {

HoverMark::HoverMark(QWidget* view) : QWidget(view) {
  setObjectName("hover");
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

void HoverMark::Mark(vtkRenderer& renderer, const PickedShape& shape, const QString& name, const QPoint& pointer) {
  setGeometry(parentWidget()->rect());
  const Projection project(renderer, size());
  const auto image = [&](std::uint32_t point) {
    const float* at = &shape.points[std::size_t{point} * 3];
    return project(at[0], at[1], at[2]);
  };
  m_lines.clear();
  m_spots.clear();
  for (std::size_t i = 0; i + 1 < shape.lines.size(); i += 2) {
    const auto from = image(shape.lines[i]);
    const auto to = image(shape.lines[i + 1]);
    if (from && to) m_lines.emplace_back(from->at, to->at);
  }
  for (const std::uint32_t spot : shape.spots) {
    if (const auto at = image(spot)) m_spots.push_back(at->at);
  }
  m_name = name;
  m_pointer = pointer;
  show();
  raise();
  update();
}

QRect HoverMark::NameBox() const {
  constexpr int kAside = 18;
  const QRect text = fontMetrics().boundingRect(m_name).adjusted(-6, -4, 6, 4);
  QRect box(m_pointer + QPoint(kAside, kAside), text.size());
  if (box.right() > width()) box.moveRight(m_pointer.x() - kAside / 2);
  if (box.bottom() > height()) box.moveBottom(m_pointer.y() - kAside / 2);
  return box;
}

void HoverMark::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  // Dark below light is seen on any colour.
  for (const auto& [colour, width] : {std::pair(QColor(20, 30, 50, 200), 4.0), {QColor(120, 210, 255), 2.0}}) {
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawLines(m_lines.data(), static_cast<int>(m_lines.size()));
    for (const QPointF& spot : m_spots) painter.drawEllipse(spot, 6, 6);
  }
  if (m_name.isEmpty()) return;
  const QPalette colours = QToolTip::palette();
  const QRect box = NameBox();
  painter.setPen(colours.color(QPalette::ToolTipText));
  painter.setBrush(colours.color(QPalette::ToolTipBase));
  painter.drawRoundedRect(box, 3, 3);
  painter.drawText(box, Qt::AlignCenter, m_name);
}

}  // namespace qd::workbench

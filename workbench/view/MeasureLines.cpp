#include "workbench/view/MeasureLines.h"

#include <QPainter>
#include <cmath>

#include "platform/qt/QtConvert.h"
#include "workbench/view/Projection.h"

namespace qd::workbench {

MeasureLines::MeasureLines(WorkDocument& doc, vtkRenderer& renderer, QWidget* view)
    : QWidget(view), m_doc(doc), m_renderer(renderer) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setObjectName("measured");
  hide();
  m_onMarks = doc.GetMarks().Subscribe([this](const MeasureMarks&) { Follow(); });
}

void MeasureLines::Follow() {
  m_lines.clear();
  if (m_doc.GetMarks().All().empty()) return hide();
  setGeometry(parentWidget()->rect());
  const Projection project(m_renderer, size());
  for (const MeasureMark& mark : m_doc.GetMarks().All()) {
    const auto from = project(mark.from[0], mark.from[1], mark.from[2]);
    const auto to = project(mark.to[0], mark.to[1], mark.to[2]);
    if (from && to) m_lines.push_back({from->at, to->at, ToQt(mark.text)});
  }
  setVisible(!m_lines.empty());
  update();
}

/// Dark on a light rim, so that it is seen on parts of any colour and on any ground.
void MeasureLines::paintEvent(QPaintEvent*) {
  constexpr double kTick = 5;    // pixels
  constexpr double kEdge = 4;    // around the text
  constexpr double kAside = 14;  // of the text beside a line too short to carry it
  const QColor ink(0x18, 0x18, 0x18);
  const QColor rim(255, 255, 255, 220);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const Line& line : m_lines) {
    const QPointF way = line.to - line.from;
    const double length = std::hypot(way.x(), way.y());
    const QPointF tick = length > 1 ? QPointF(-way.y(), way.x()) * (kTick / length) : QPointF(0, kTick);
    for (const QPen& pen : {QPen(rim, 4), QPen(ink, 1.6)}) {
      painter.setPen(pen);
      painter.drawLine(line.from, line.to);
      painter.drawLine(line.from - tick, line.from + tick);
      painter.drawLine(line.to - tick, line.to + tick);
    }
  }
  for (const Line& line : m_lines) {
    if (line.text.isEmpty()) continue;
    QRectF box = painter.fontMetrics().boundingRect(line.text);
    box.adjust(-kEdge, -kEdge / 2, kEdge, kEdge / 2);
    box.moveCenter((line.from + line.to) / 2);
    const QPointF way = line.to - line.from;
    if (std::hypot(way.x(), way.y()) < box.width() + 2 * kAside) box.translate(0, -box.height() / 2 - kAside);
    painter.setPen(QPen(ink, 1));
    painter.setBrush(rim);
    painter.drawRoundedRect(box, 3, 3);
    painter.drawText(box, Qt::AlignCenter, line.text);
  }
}

}  // namespace qd::workbench

#include "workbench/view/CornerTriad.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/qt/QtConvert.h"
#include "workbench/view/AxisSymbol.h"

namespace qd::workbench {

CornerTriad::CornerTriad(Looking& looking, QWidget* view) : QWidget(view), m_looking(looking) {
  setObjectName("triad");
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFixedSize(kSize, kSize);
  m_onCamera = looking.Subscribe([this](const ViewCamera&) { update(); });
}

void CornerTriad::Draw(QPainter& painter, const QRectF& square, const ViewCamera& camera) {
  constexpr double kReach = 0.62;  // of half the square; the letters need the rest
  constexpr double kLetter = 0.84;
  constexpr const char* kNames[3] = {"X", "Y", "Z"};
  const double unit = square.width() / 2;
  const auto onto = [&](std::size_t axis, double reach) {
    return square.center() + QPointF(camera.Right()[axis], -camera.Up()[axis]) * (reach * unit);
  };
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  QFont font = painter.font();
  font.setBold(true);
  font.setPixelSize(static_cast<int>(unit * 0.32));
  painter.setFont(font);
  // Those that point away are drawn first.
  std::array<std::size_t, 3> order{0, 1, 2};
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return camera.Ahead()[a] > camera.Ahead()[b]; });
  for (const std::size_t axis : order) {
    const QColor colour = ToQt(AxisSymbol::kColours[axis]);
    const QPointF tip = onto(axis, kReach);
    // On a light rim, to be seen on any ground.
    for (const auto& [ink, width] : {std::pair(QColor(255, 255, 255, 170), 0.14), std::pair(colour, 0.075)}) {
      painter.setPen(QPen(ink, unit * width, Qt::SolidLine, Qt::RoundCap));
      painter.drawLine(square.center(), tip);
    }
    const QRectF place(onto(axis, kLetter) - QPointF(unit, unit) * 0.25, QSizeF(unit, unit) * 0.5);
    painter.setPen(QColor(255, 255, 255, 150));
    for (const QPointF& rim : {QPointF(-1, 0), QPointF(1, 0), QPointF(0, -1), QPointF(0, 1)}) {
      painter.drawText(place.translated(rim), Qt::AlignCenter, kNames[axis]);
    }
    painter.setPen(colour);
    painter.drawText(place, Qt::AlignCenter, kNames[axis]);
  }
  painter.restore();
}

void CornerTriad::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Draw(painter, rect(), m_looking.Camera());
}

}  // namespace qd::workbench

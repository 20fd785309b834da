#include "workbench/view/QualityLegend.h"

#include <QEvent>
#include <QLocale>
#include <QPainter>
#include <algorithm>

#include "host/CMSGFunction.h"
#include "platform/qt/QtConvert.h"

namespace qd::workbench {

namespace {

constexpr int kEdge = 8;  // pixels around everything
constexpr int kBar = 18;
constexpr int kHeight = 160;
constexpr int kTicks = 5;
constexpr int kBelowCube = 120;

QString TitleOf(const QualityColours& colours) {
  return ToQt(CMSGFunction::GetValue(RuleOf(colours.measure).key));
}

/// At the least value, at the greatest one, and between them.
QString TickOf(const QualityColours& colours, int tick) {
  const double value = colours.least + (colours.greatest - colours.least) * tick / (kTicks - 1);
  const QString number = QLocale().toString(value, 'g', 4);
  return RuleOf(colours.measure).degrees ? number + QChar(0xB0) : number;
}

}  // namespace

QualityLegend::QualityLegend(QWidget* view) : QWidget(view) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setObjectName("legend");
  hide();
}

void QualityLegend::Follow(const std::optional<QualityColours>& colours) {
  if (!colours) return hide();
  m_colours = *colours;
  Place();
  show();
  update();
}

void QualityLegend::Place() {
  const QFontMetrics metrics(font());
  int width = metrics.horizontalAdvance(TitleOf(m_colours));
  for (int tick = 0; tick < kTicks; ++tick)
    width = std::max(width, kBar + kEdge + metrics.horizontalAdvance(TickOf(m_colours, tick)));
  const QSize size(width + 2 * kEdge, kHeight + 2 * metrics.height() + 3 * kEdge);
  setGeometry(QRect(QPoint(parentWidget()->width() - size.width() - kEdge, kBelowCube), size));
}

void QualityLegend::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange && isVisible()) Place();
}

/// Dark on light, whatever is behind it.
void QualityLegend::paintEvent(QPaintEvent*) {
  const QColor ink(0x18, 0x18, 0x18);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0, 0, 0, 60), 1));
  painter.setBrush(QColor(255, 255, 255, 215));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setPen(ink);
  const int line = painter.fontMetrics().height();
  painter.drawText(QRect(kEdge, kEdge, width() - 2 * kEdge, line), Qt::AlignLeft | Qt::AlignVCenter,
                   TitleOf(m_colours));
  const int top = 2 * kEdge + line + line / 2;
  for (int row = 0; row < kHeight; ++row) {
    const double share = 1 - static_cast<double>(row) / (kHeight - 1);
    const double value = m_colours.least + (m_colours.greatest - m_colours.least) * share;
    painter.fillRect(kEdge, top + row, kBar, 1, ToQt(m_colours.Of(value)));
  }
  for (int tick = 0; tick < kTicks; ++tick) {
    const int y = top + (kHeight - 1) * (kTicks - 1 - tick) / (kTicks - 1);
    painter.drawText(QRect(2 * kEdge + kBar, y - line / 2, width(), line), Qt::AlignLeft | Qt::AlignVCenter,
                     TickOf(m_colours, tick));
  }
}

}  // namespace qd::workbench

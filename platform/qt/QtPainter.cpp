#include "platform/qt/QtPainter.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "platform/qt/QtConvert.h"
#include "platform/qt/QtTexts.h"
#include "platform/qt/QtToolkit.h"

namespace qd {

QtPainter::QtPainter(QPainter& painter, const CRect& clip) : m_painter(painter), m_clip(clip) {}

void QtPainter::SetClip(const CRect& area) {
  m_painter.setClipRect(ToQt(area));
}

void QtPainter::Fill(const CRect& area, COLORREF colour) {
  m_painter.fillRect(ToQt(area.Moved(m_origin, 0)), ToQt(colour));
}

void QtPainter::Frame(const CRect& area, COLORREF colour) {
  const CRect r = area.Moved(m_origin, 0);
  const QColor ink = ToQt(colour);
  m_painter.fillRect(ToQt({r.left, r.top, r.right, r.top + 1}), ink);
  m_painter.fillRect(ToQt({r.left, r.bottom - 1, r.right, r.bottom}), ink);
  m_painter.fillRect(ToQt({r.left, r.top, r.left + 1, r.bottom}), ink);
  m_painter.fillRect(ToQt({r.right - 1, r.top, r.right, r.bottom}), ink);
}

void QtPainter::Hatch(const CRect& area, COLORREF colour) {
  m_painter.fillRect(ToQt(area.Moved(m_origin, 0)), QBrush(ToQt(colour), Qt::Dense4Pattern));
}

void QtPainter::FocusRect(const CRect& area, COLORREF colour) {
  constexpr int kFaint = 160;
  QColor ink = ToQt(colour);
  ink.setAlpha(kFaint);
  QPen pen(ink);
  pen.setStyle(Qt::DotLine);
  m_painter.setPen(pen);
  m_painter.setBrush(Qt::NoBrush);
  m_painter.drawRect(ToQt(area.Moved(m_origin, 0)).adjusted(0, 0, -1, -1));
}

void QtPainter::Polygon(std::span<const CPoint> points, COLORREF colour) {
  QPolygonF polygon;
  for (const CPoint& point : points) polygon << QPointF(point.x + m_origin, point.y);
  m_painter.save();
  m_painter.setRenderHint(QPainter::Antialiasing);
  m_painter.setPen(Qt::NoPen);
  m_painter.setBrush(ToQt(colour));
  m_painter.drawPolygon(polygon);
  m_painter.restore();
}

void QtPainter::Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour, TextAlign align,
                     bool ellipsis) {
  const QRect rect = ToQt(area.Moved(m_origin, 0));
  auto& toolkit = static_cast<QtToolkit&>(IToolkit::Instance());
  if (const QtTexts::Shaped* shaped = toolkit.Texts().Of(font, text);
      shaped != nullptr && shaped->width <= rect.width() && shaped->height <= rect.height()) {
    const double free = rect.width() - shaped->width;
    const double left = align == TextAlign::Right ? free : align == TextAlign::Centre ? free / 2 : 0;
    m_painter.setPen(ToQt(colour));
    const double above =
        std::ceil((rect.height() - shaped->height) / 2);  // as it is rounded where Qt places the text
    shaped->layout.draw(&m_painter, {rect.x() + left, rect.y() + above});
    return;
  }
  const QFont qfont = QtToolkit::FontOf(font);
  QString shown = ToQt(text);
  if (ellipsis) shown = QFontMetrics(qfont).elidedText(shown, Qt::ElideRight, rect.width());
  // A name that is too wide loses its end, which is at the left when it is read from right to left.
  const bool fromRight = shown.isRightToLeft();
  if (fromRight && QFontMetrics(qfont).horizontalAdvance(shown) > rect.width()) align = TextAlign::Right;
  const Qt::Alignment horizontal = align == TextAlign::Right    ? Qt::AlignRight
                                   : align == TextAlign::Centre ? Qt::AlignHCenter
                                                                : Qt::AlignLeft;
  m_painter.save();
  m_painter.setClipRect(rect, Qt::IntersectClip);
  m_painter.setFont(qfont);
  m_painter.setPen(ToQt(colour));
  // A name goes the way of its own letters, whatever the program's language: its end, cut or not, is where they
  // end.
  m_painter.setLayoutDirection(fromRight ? Qt::RightToLeft : Qt::LeftToRight);
  // Left means left for names in any script: the absolute flag keeps right-to-left text from changing sides.
  m_painter.drawText(
      rect, static_cast<int>(horizontal | Qt::AlignAbsolute | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
  m_painter.restore();
}

void QtPainter::Image(CPoint at, const Picture& picture) {
  m_painter.drawImage(QPoint(at.x + m_origin, at.y),
                      QtToolkit::ImageOf(picture, m_painter.device()->devicePixelRatioF()));
}

}  // namespace qd

#pragma once

#include <QColor>
#include <QPoint>
#include <QRect>
#include <QString>
#include <string_view>

#include "platform/Types.h"

namespace qd {

/// @{
/// The same for Qt, or as the module has it.
inline QRect ToQt(const CRect& r) {
  return {r.left, r.top, r.Width(), r.Height()};
}
inline CRect FromQt(const QRect& r) {
  return {r.left(), r.top(), r.left() + r.width(), r.top() + r.height()};
}
inline CPoint FromQt(const QPoint& p) {
  return {p.x(), p.y()};
}
inline QPoint ToQt(CPoint p) {
  return {p.x, p.y};
}
inline QColor ToQt(COLORREF c) {
  return {static_cast<int>(c & 0xFFU), static_cast<int>(c >> 8U & 0xFFU), static_cast<int>(c >> 16U & 0xFFU)};
}
inline COLORREF FromQt(const QColor& c) {
  return Rgb(static_cast<unsigned>(c.red()), static_cast<unsigned>(c.green()), static_cast<unsigned>(c.blue()));
}
inline QString ToQt(std::wstring_view text) {
  return QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size()));
}
inline CString FromQt(const QString& text) {
  return text.toStdWString();
}
/// @}

}  // namespace qd

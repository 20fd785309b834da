#include "workbench/app/CommandIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>
#include <array>
#include <iterator>

#include "workbench/session/WindowCommands.h"

namespace qd::workbench {

namespace {

// Icons are drawn on a field of 24 by 24. A capital letter says what comes: M moves to a point, L draws a line to
// one, Z closes the figure, F fills it with the accent.
struct Drawing {
  unsigned command;
  const char* lines;
};

// A cube from above to the right; its middle is the corner that is nearest.
constexpr const char* kCube = "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z M3 7 L12 12 L21 7 M12 12 L12 22";
constexpr const char* kLeftFace = "M3 7 L12 12 L12 22 L3 17 Z F";
constexpr const char* kRightFace = "M21 7 L12 12 L12 22 L21 17 Z F";
constexpr const char* kTopFace = "M12 2 L21 7 L12 12 L3 7 Z F";
// The hidden ones, seen through the cube.
constexpr const char* kFarRight = "M12 2 L21 7 L21 17 L12 12 Z F";
constexpr const char* kFarLeft = "M12 2 L3 7 L3 17 L12 12 Z F";
constexpr const char* kUnder = "M12 12 L21 17 L12 22 L3 17 Z F";

struct CubeIcon {
  unsigned command;
  std::array<const char*, 3> faces;
};
constexpr CubeIcon kCubes[] = {
    {kViewFront, {kLeftFace}},
    {kViewBack, {kFarRight}},
    {kViewLeft, {kFarLeft}},
    {kViewRight, {kRightFace}},
    {kViewTop, {kTopFace}},
    {kViewBottom, {kUnder}},
    {kViewIsometric, {kLeftFace, kRightFace, kTopFace}},
};

constexpr Drawing kDrawings[] = {
    {kFit, "M3 8 L3 3 L8 3 M16 3 L21 3 L21 8 M21 16 L21 21 L16 21 M8 21 L3 21 L3 16 M8 8 L16 8 L16 16 L8 16 Z F"},
    {kFitSelection,
     "M3 8 L3 3 L8 3 M16 3 L21 3 L21 8 M21 16 L21 21 L16 21 M8 21 L3 21 L3 16 M12 5 L12 9 M12 15 L12 19 "
     "M5 12 L9 12 M15 12 L19 12 M11 11 L13 11 L13 13 L11 13 Z F"},
    {kZoomRectangle, "M3 4 L15 4 L15 13 L3 13 Z F M14 12 L21 20 M16 20 L21 20 L21 15"},
    {kSectionX, "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z M7.5 4.5 L16.5 9.5 L16.5 19.5 L7.5 14.5 Z F"},
    {kSectionY, "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z M16.5 4.5 L7.5 9.5 L7.5 19.5 L16.5 14.5 Z F"},
    {kSectionZ, "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z M12 7 L21 12 L12 17 L3 12 Z F"},
    {kPickWhole,
     "M9 3 L16 7 L16 14 L9 18 L2 14 L2 7 Z F M2 7 L9 11 L16 7 M9 11 L9 18 M12 21 L22 21 L17 12 Z F M17 12 L17 21"},
    {kPickParts, "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z F M3 7 L12 12 L21 7 M12 12 L12 22"},
    {kPickFaces,
     "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z M3 7 L12 12 L21 7 M12 12 L12 22 M12 2 L21 7 L12 12 L3 7 Z F"},
    {kPickEdges,
     "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z M12 2 L12 12 M11 12 L13 12 L13 22 L11 22 Z F M3 7 L12 12 L21 7"},
    {kPickPoints,
     "M12 2 L21 7 L21 17 L12 22 L3 17 L3 7 Z M3 7 L12 12 L21 7 M12 12 L12 22 M9 9 L15 9 L15 15 L9 15 Z F"},
    {kPickMeshSets, "M2 4 L14 2 L22 9 L20 21 L6 20 Z F M2 4 L12 12 L14 2 M12 12 L22 9 M12 12 L20 21 M12 12 L6 20"},
    {kPickElements, "M2 4 L14 2 L22 9 L20 21 L6 20 Z M2 4 L12 12 L14 2 M12 12 L22 9 M12 12 L20 21 L6 20 Z F"},
    {kPickNodes,
     "M2 4 L14 2 L22 9 L20 21 L6 20 Z M2 4 L12 12 L14 2 M12 12 L22 9 M12 12 L20 21 M12 12 L6 20 "
     "M9 9 L15 9 L15 15 L9 15 Z F"},
    {kPickRectangle,
     "M3 5 L6 5 M9 5 L12 5 M15 5 L18 5 L18 8 M18 11 L18 13 M3 8 L3 11 M3 14 L3 17 L6 17 M9 17 L11 17 "
     "M12 11 L22 16 L17 17 L15 22 Z F"},
    {kPickLasso, "M4 14 L2 10 L4 5 L10 3 L17 4 L20 8 L18 11 M4 14 L8 16 L6 20 M12 11 L22 16 L17 17 L15 22 Z F"},
    {kPickHidden, "M3 3 L15 3 L15 15 L3 15 Z M9 9 L21 9 L21 21 L9 21 Z F M15 9 L15 15 L9 15"},
    {kViewBefore, "M20 12 L4 12 M11 5 L4 12 L11 19"},
    {kViewAfter, "M4 12 L20 12 M13 5 L20 12 L13 19"},
    {kParallel, "M3 9 L15 9 L15 21 L3 21 Z F M9 3 L21 3 L21 15 M3 9 L9 3 M15 9 L21 3 M15 21 L21 15"},
};

void DrawLines(QPainter& painter, const char* lines, const QColor& accent) {
  QPainterPath path;
  const auto finish = [&](bool filled) {
    if (filled) painter.fillPath(path, accent);
    painter.drawPath(path);
    path = {};
  };
  const QStringList words = QString::fromLatin1(lines).split(' ');
  for (qsizetype i = 0; i < words.size(); ++i) {
    const char what = words[i].front().toLatin1();
    if (what == 'Z') path.closeSubpath();
    if (what == 'F') finish(true);
    if (what != 'M' && what != 'L') continue;
    const QPointF at(words[i].mid(1).toDouble(), words.value(i + 1).toDouble());
    if (what == 'M') {
      finish(false);
      path.moveTo(at);
    } else {
      path.lineTo(at);
    }
    ++i;
  }
  finish(false);
}

class Engine final : public QIconEngine {
 public:
  explicit Engine(unsigned command) : m_command(command) {}
  QIconEngine* clone() const override { return new Engine(*this); }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    constexpr double kField = 24;
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const QPalette palette = QGuiApplication::palette();
    QColor accent = palette.color(group, QPalette::Highlight);
    if (mode == QIcon::Disabled) accent.setAlphaF(0.4F);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / kField, rect.height() / kField);
    painter->setPen(
        QPen(palette.color(group, QPalette::WindowText), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const CubeIcon& cube : kCubes) {
      if (cube.command != m_command) continue;
      painter->setOpacity(0.85);
      for (const char* face : cube.faces) {
        if (face != nullptr) DrawLines(*painter, face, accent);
      }
      DrawLines(*painter, kCube, accent);
    }
    for (const Drawing& drawing : kDrawings) {
      if (drawing.command == m_command) DrawLines(*painter, drawing.lines, accent);
    }
    painter->restore();
  }

 private:
  unsigned m_command;
};

}  // namespace

QIcon IconOf(unsigned command) {
  const auto is = [command](const auto& drawing) { return drawing.command == command; };
  const bool known = std::any_of(std::begin(kCubes), std::end(kCubes), is) ||
                     std::any_of(std::begin(kDrawings), std::end(kDrawings), is);
  return known ? QIcon(new Engine(command)) : QIcon();
}

}  // namespace qd::workbench

#include "workbench/view/ViewCube.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "host/CMSGFunction.h"
#include "platform/qt/QtConvert.h"

namespace qd::workbench {

namespace {

struct Face {
  Vector3 out;
  Vector3 right;  // of its text
  Vector3 up;
  const char* key;
};
constexpr Face kFaces[] = {
    {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}, "IDS_WB_VIEW_FRONT"},
    {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, "IDS_WB_VIEW_BACK"},
    {{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}, "IDS_WB_VIEW_LEFT"},
    {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, "IDS_WB_VIEW_RIGHT"},
    {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}, "IDS_WB_VIEW_TOP"},
    {{0, 0, -1}, {1, 0, 0}, {0, -1, 0}, "IDS_WB_VIEW_BOTTOM"},
};
constexpr double kInner = 0.62;  // of a face, without the rim that looks from its edges and corners
constexpr double kFill = 0.54;   // so that a corner stays in the square

/// From the cube to a square, as a camera sees it.
class Onto {
 public:
  Onto(const QRectF& square, const ViewCamera& camera)
      : m_middle(square.center()), m_right(camera.Right()), m_up(camera.Up()) {
    m_scale = square.width() / 2 * kFill;
  }
  QPointF operator()(const Vector3& point) const { return m_middle + Along(point); }
  QPointF Along(const Vector3& way) const { return {m_scale * Dot(way, m_right), -m_scale * Dot(way, m_up)}; }

 private:
  QPointF m_middle;
  Vector3 m_right;
  Vector3 m_up;
  double m_scale = 1;
};

bool IsSeen(const Face& face, const ViewCamera& camera) {
  return Dot(face.out, camera.Ahead()) < -1e-6;
}

}  // namespace

ViewCube::ViewCube(Looking& looking, QWidget* view) : QWidget(view), m_looking(looking) {
  setObjectName("viewCube");
  setFixedSize(kSize, kSize);
  setMouseTracking(true);
  m_onCamera = looking.Subscribe([this](const ViewCamera&) { update(); });
}

std::vector<ViewCube::Cell> ViewCube::CellsOf(const QRectF& square, const ViewCamera& camera) {
  const Onto onto(square, camera);
  // From where to where a cell goes that stands before, in or behind the middle.
  constexpr double kSpan[3][2] = {{-1, -kInner}, {-kInner, kInner}, {kInner, 1}};
  std::vector<Cell> cells;
  for (const Face& face : kFaces) {
    if (!IsSeen(face, camera)) continue;
    for (int x = -1; x <= 1; ++x) {
      for (int y = -1; y <= 1; ++y) {
        Cell cell{};
        const Vector3 direction = face.out + face.right * x + face.up * y;
        for (std::size_t axis = 0; axis < 3; ++axis) cell.direction[axis] = static_cast<int>(direction[axis]);
        for (const auto& [i, j] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
          cell.outline << onto(face.out + face.right * kSpan[x + 1][i] + face.up * kSpan[y + 1][j]);
        }
        cells.push_back(std::move(cell));
      }
    }
  }
  return cells;
}

std::optional<ViewCube::Direction> ViewCube::DirectionAt(const QPointF& at) const {
  for (const Cell& cell : CellsOf(rect(), m_looking.Camera())) {
    if (cell.outline.containsPoint(at, Qt::OddEvenFill)) return cell.direction;
  }
  return std::nullopt;
}

// ---- painting -------------------------------------------------------------------------------------------

void ViewCube::Draw(QPainter& painter, const QRectF& square, const ViewCamera& camera,
                    const std::optional<Direction>& marked) {
  constexpr double kHalf = 100;  // of a face, in the units of its text
  const Onto onto(square, camera);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  for (const Cell& cell : CellsOf(square, camera)) {
    // Lit from above.
    const bool hit = marked == cell.direction;
    painter.setBrush(hit ? QColor(0x5A, 0xA0, 0xE8, 235) : QColor(0xF4, 0xF6, 0xF8, 205));
    painter.drawPolygon(cell.outline);
  }
  for (const Face& face : kFaces) {
    if (!IsSeen(face, camera)) continue;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0x48, 0x50, 0x5A), 1.2));
    QPolygonF outline;
    for (const auto& [x, y] : {std::pair(-1, -1), {1, -1}, {1, 1}, {-1, 1}}) {
      outline << onto(face.out + face.right * x + face.up * y);
    }
    painter.drawPolygon(outline);
    const QPointF right = onto.Along(face.right) / kHalf;
    const QPointF down = onto.Along(face.up) / -kHalf;
    const QPointF middle = onto(face.out);
    painter.save();
    painter.setTransform(QTransform(right.x(), right.y(), down.x(), down.y(), middle.x(), middle.y()), true);
    const QString text = ToQt(CMSGFunction::GetValue(face.key));
    QFont font = painter.font();
    font.setPixelSize(52);
    const double width = QFontMetricsF(font).horizontalAdvance(text);
    constexpr double kRoom = 1.75 * kHalf;
    if (width > kRoom) font.setPixelSize(static_cast<int>(52 * kRoom / width));
    painter.setFont(font);
    painter.setPen(QColor(0x20, 0x26, 0x2E));
    painter.drawText(QRectF(-kHalf, -kHalf, 2 * kHalf, 2 * kHalf), Qt::AlignCenter, text);
    painter.restore();
  }
  painter.restore();
}

void ViewCube::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Draw(painter, rect(), m_looking.Camera(), m_marked);
}

// ---- mouse ----------------------------------------------------------------------------------------------

bool ViewCube::event(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) update();
  return QWidget::event(event);
}

void ViewCube::Mark(const std::optional<Direction>& direction) {
  if (m_marked == direction) return;
  m_marked = direction;
  update();
}

void ViewCube::mouseMoveEvent(QMouseEvent* event) {
  Mark(DirectionAt(event->position()));
  event->setAccepted(m_pressed);
}

void ViewCube::leaveEvent(QEvent*) {
  Mark(std::nullopt);
}

/// Beside the cube the view is meant, until all buttons are up again.
void ViewCube::mousePressEvent(QMouseEvent* event) {
  const bool first = (event->buttons() | event->button()) == event->button();
  if (first) m_pressed = DirectionAt(event->position()).has_value();
  event->setAccepted(m_pressed);
}

void ViewCube::mouseReleaseEvent(QMouseEvent* event) {
  const bool pressed = event->buttons() == Qt::NoButton ? std::exchange(m_pressed, false) : m_pressed;
  event->setAccepted(pressed);
  if (!pressed) return;
  const auto direction = DirectionAt(event->position());
  if (event->button() != Qt::LeftButton || !direction) return;
  const auto& [x, y, z] = *direction;
  const bool upright = x != 0 || y != 0;
  const Vector3 up = upright ? Vector3{0, 0, 1} : Vector3{0, double(z), 0};
  m_looking.LookAlong({double(-x), double(-y), double(-z)}, up);
}

}  // namespace qd::workbench

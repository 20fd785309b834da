#include "workbench/view/ViewMouse.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "workbench/display/ViewSettings.h"

namespace qd::workbench {

namespace {

constexpr double kTurnSpeed = 1.75;  // radians for half the height of the view

unsigned InputOf(Qt::MouseButtons buttons, Qt::KeyboardModifiers keys) {
  unsigned input = 0;
  if (buttons.testFlag(Qt::LeftButton)) input |= kLeftDown;
  if (buttons.testFlag(Qt::MiddleButton)) input |= kMiddleDown;
  if (buttons.testFlag(Qt::RightButton)) input |= kRightDown;
  if (keys.testFlag(Qt::ShiftModifier)) input |= kShiftHeld;
  if (keys.testFlag(Qt::ControlModifier)) input |= kControlHeld;
  if (keys.testFlag(Qt::AltModifier)) input |= kAltHeld;
  return input;
}

}  // namespace

ViewMouse::ViewMouse(Looking& looking, QWidget& view, std::function<std::optional<double>(const QPointF&)> depthAt)
    : m_looking(looking), m_view(view), m_depthAt(std::move(depthAt)) {}

ViewMouse::Place ViewMouse::PlaceOf(const QPointF& at) const {
  const double half = std::max(m_view.height(), 1) / 2.0;
  return {(at.x() - m_view.width() / 2.0) / half, (m_view.height() / 2.0 - at.y()) / half};
}

// ---- dragging -------------------------------------------------------------------------------------------

void ViewMouse::Press(const QMouseEvent& event) {
  const bool rectangle = m_awaitsRectangle && event.button() == Qt::LeftButton;
  const MouseAct act = ActOf(ViewSettings::Ours().Habits(), InputOf(event.buttons(), event.modifiers()));
  // A second button may change what is done, and is no click.
  m_click = (event.buttons() | event.button()) == event.button();
  Begin(rectangle ? MouseAct::Rectangle : act, event.position());
}

void ViewMouse::Begin(MouseAct act, const QPointF& at) {
  m_act = act;
  m_moving = false;
  m_pressed = at;
  m_last = at;
  m_band.reset();
  if (act == MouseAct::None || act == MouseAct::Rectangle) return;
  const ViewCamera& camera = m_looking.Camera();
  const Place place = PlaceOf(at);
  const auto depth = m_depthAt(at);
  m_depth = depth.value_or(camera.Distance());
  // Where nothing is, the middle of what is seen turns on the spot.
  m_pivot = depth ? camera.PointAt(place.x, place.y, *depth) : camera.Focus();
}

void ViewMouse::Move(const QMouseEvent& event) {
  if (event.buttons() == Qt::NoButton) return Drop();
  if (!m_moving) {
    if ((event.position() - m_pressed).manhattanLength() < QApplication::startDragDistance()) return;
    m_moving = true;
    m_click = false;
    if (MovesCamera()) m_looking.Keep();
  }
  Drag(event.position());
}

void ViewMouse::Drag(const QPointF& at) {
  const Place from = PlaceOf(std::exchange(m_last, at));
  const Place to = PlaceOf(at);
  ViewCamera camera = m_looking.Camera();
  switch (m_act) {
    case MouseAct::Turn:
      camera.Turn(m_pivot, (to.x - from.x) * kTurnSpeed, (to.y - from.y) * kTurnSpeed);
      break;
    case MouseAct::Pan:
      camera.Pan(to.x - from.x, to.y - from.y, m_depth);
      break;
    case MouseAct::Zoom:
      camera.Zoom(std::exp(to.y - from.y));
      break;
    case MouseAct::Roll:
      camera.Roll(std::atan2(to.y, to.x) - std::atan2(from.y, from.x));
      break;
    case MouseAct::Rectangle:
      if (m_band == nullptr) m_band = std::make_unique<QRubberBand>(QRubberBand::Rectangle, &m_view);
      m_band->setGeometry(QRectF(m_pressed, at).normalized().toRect());
      m_band->show();
      return;
    case MouseAct::None:
      return;
  }
  m_looking.Move(camera);
}

bool ViewMouse::Release(const QMouseEvent& event) {
  const bool clicked = std::exchange(m_click, false);
  const bool moved = std::exchange(m_moving, false);
  if (moved && MovesCamera()) m_looking.Settle();
  if (std::exchange(m_act, MouseAct::None) == MouseAct::Rectangle) {
    m_band.reset();
    const bool awaited = m_awaitsRectangle;
    Cancel();
    if (moved) ZoomTo(QRectF(m_pressed, event.position()).normalized());
    return clicked && !awaited;
  }
  if (event.buttons() != Qt::NoButton)
    Begin(ActOf(ViewSettings::Ours().Habits(), InputOf(event.buttons(), event.modifiers())), event.position());
  return clicked;
}

void ViewMouse::Drop() {
  if (std::exchange(m_moving, false) && MovesCamera()) m_looking.Settle();
  m_act = MouseAct::None;
  m_click = false;
  m_band.reset();
}

// ---- rectangle and wheel --------------------------------------------------------------------------------

void ViewMouse::AwaitRectangle() {
  m_awaitsRectangle = true;
  m_view.setCursor(Qt::CrossCursor);
}

void ViewMouse::Cancel() {
  if (m_act == MouseAct::Rectangle) Drop();
  if (std::exchange(m_awaitsRectangle, false)) m_view.unsetCursor();
}

void ViewMouse::ZoomTo(const QRectF& rectangle) {
  constexpr double kLeast = 4;  // pixels
  if (rectangle.width() < kLeast || rectangle.height() < kLeast) return;
  const Place middle = PlaceOf(rectangle.center());
  const double half = std::max(m_view.height(), 1) / 2.0;
  ViewCamera camera = m_looking.Camera();
  if (const auto depth = m_depthAt(rectangle.center())) camera.FocusAt(*depth);
  camera.ZoomTo(middle.x, middle.y, rectangle.width() / 2 / half, rectangle.height() / 2 / half,
                m_view.width() / 2.0 / half);
  m_looking.Keep();
  m_looking.Move(camera);
}

void ViewMouse::Wheel(const QWheelEvent& event) {
  constexpr double kNotch = 120;
  constexpr double kFactor = 1.2;
  constexpr qint64 kPause = 700;  // milliseconds between two movements
  if (event.angleDelta().y() == 0) return;
  const auto now = static_cast<qint64>(event.timestamp());
  const bool goesOn = now - std::exchange(m_lastWheel, now) <= kPause && m_wheeled == m_looking.Camera();
  if (!goesOn) m_looking.Keep();
  const Place place = PlaceOf(event.position());
  ViewCamera camera = m_looking.Camera();
  // As long as the pointer stays, the focus is at the depth of what is under it.
  if (!goesOn || event.position() != m_wheelAt) {
    if (const auto depth = m_depthAt(event.position())) camera.FocusAt(*depth);
    m_wheelAt = event.position();
  }
  camera.Zoom(std::pow(kFactor, event.angleDelta().y() / kNotch), place.x, place.y);
  m_wheeled = camera;
  m_looking.Move(camera);
}

}  // namespace qd::workbench

#pragma once

#include <QPointF>
#include <QRectF>
#include <QRubberBand>
#include <functional>
#include <memory>
#include <optional>

#include "workbench/display/Looking.h"
#include "workbench/display/MouseHabits.h"

class QMouseEvent;
class QWheelEvent;

namespace qd::workbench {

/// What the mouse does to the camera of a view.
class ViewMouse final {
 public:
  /// `depthAt` finds how far before the eye something is seen at a place of the widget.
  ViewMouse(Looking& looking, QWidget& view, std::function<std::optional<double>(const QPointF&)> depthAt);

  void Press(const QMouseEvent& event);
  void Move(const QMouseEvent& event);
  /// Returns whether the button was pressed here and nothing was dragged since: a click.
  bool Release(const QMouseEvent& event);
  /// The buttons were released elsewhere: lets a drag be.
  void Drop();
  void Wheel(const QWheelEvent& event);
  /// The next drag with the left button pulls a rectangle to zoom to, whatever the habits.
  void AwaitRectangle();
  /// Lets a rectangle that is pulled or awaited be.
  void Cancel();
  bool AwaitsRectangle() const { return m_awaitsRectangle; }

 private:
  struct Place {
    double x;
    double y;
  };
  Place PlaceOf(const QPointF& at) const;
  void Begin(MouseAct act, const QPointF& at);
  void Drag(const QPointF& at);
  bool MovesCamera() const { return m_act != MouseAct::None && m_act != MouseAct::Rectangle; }
  void ZoomTo(const QRectF& rectangle);

  Looking& m_looking;
  QWidget& m_view;
  std::function<std::optional<double>(const QPointF&)> m_depthAt;
  std::unique_ptr<QRubberBand> m_band;
  MouseAct m_act = MouseAct::None;
  QPointF m_pressed;
  QPointF m_last;
  double m_depth = 0;  // of what was under the pointer
  Vector3 m_pivot{};
  bool m_click = false;   // so far
  bool m_moving = false;  // what is done now has begun to be seen
  bool m_awaitsRectangle = false;
  qint64 m_lastWheel = 0;  // milliseconds, by the events' clock
  QPointF m_wheelAt;
  std::optional<ViewCamera> m_wheeled;  // as the wheel left it
};

}  // namespace qd::workbench

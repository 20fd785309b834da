#pragma once

#include <QPolygonF>
#include <QWidget>
#include <array>
#include <optional>
#include <vector>

#include "workbench/display/Looking.h"

namespace qd::workbench {

/// A cube in the corner of a view that stands as the model does. A click on a face, an edge or a corner looks from
/// there.
class ViewCube final : public QWidget {
 public:
  static constexpr int kSize = 108;  ///< pixels

  ViewCube(Looking& looking, QWidget* view);

  /// What a click at a place looks from: the signs of x, y and z.
  using Direction = std::array<int, 3>;
  std::optional<Direction> DirectionAt(const QPointF& at) const;
  /// Draws the cube as a camera sees it into a square.
  static void Draw(QPainter& painter, const QRectF& square, const ViewCamera& camera,
                   const std::optional<Direction>& marked = {});

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Cell {
    Direction direction;
    QPolygonF outline;
  };
  static std::vector<Cell> CellsOf(const QRectF& square, const ViewCamera& camera);
  void Mark(const std::optional<Direction>& direction);

  Looking& m_looking;
  std::optional<Direction> m_marked;
  bool m_pressed = false;  // here, and not beside the cube
  Subscription m_onCamera;
};

}  // namespace qd::workbench

#pragma once

#include <QWidget>

#include "workbench/display/Looking.h"

namespace qd::workbench {

/// The axes of the model in the corner of a view, whatever is looked at.
class CornerTriad final : public QWidget {
 public:
  static constexpr int kSize = 84;  ///< pixels

  CornerTriad(Looking& looking, QWidget* view);
  /// Draws the axes as a camera sees them into a square.
  static void Draw(QPainter& painter, const QRectF& square, const ViewCamera& camera);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Looking& m_looking;
  Subscription m_onCamera;
};

}  // namespace qd::workbench

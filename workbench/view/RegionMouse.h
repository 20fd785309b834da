#pragma once

#include <QPolygonF>
#include <QWidget>
#include <functional>

namespace qd::workbench {

/// Pulls a rectangle or a line round something over a view: lies over it while that is awaited.
class RegionMouse final : public QWidget {
 public:
  enum class Form { Rectangle, Lasso };
  using OnRegion = std::function<void(const QPolygonF&, Qt::KeyboardModifiers)>;

  /// `onRegion` gets what was pulled, in pixels of the view.
  RegionMouse(QWidget* view, OnRegion onRegion);

  /// The next drag pulls a region.
  void Await(Form form);
  bool IsAwaiting() const { return isVisible(); }
  void Cancel() {
    m_region.clear();
    hide();
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  OnRegion m_onRegion;
  Form m_form = Form::Rectangle;
  QPolygonF m_region;  // corners of the rectangle or places of the line; empty until the button is down
};

}  // namespace qd::workbench

#pragma once

#include <QPointF>
#include <QSize>
#include <array>
#include <optional>

class vtkRenderer;

namespace qd::workbench {

/// From the model to the pixels of the view, as the camera stands now.
class Projection {
 public:
  Projection(vtkRenderer& renderer, QSize view);

  struct Image {
    QPointF at;
    double depth;  ///< 0 to 1 between the clipping planes, in which everything shown lies
  };
  /// Nothing for what is behind the camera.
  std::optional<Image> operator()(double x, double y, double z) const;
  /// Length in the model of one pixel at a point.
  double PixelAt(double x, double y, double z) const;
  QSize View() const { return m_view; }

 private:
  std::array<double, 16> m_matrix{};
  std::array<double, 3> m_eye{};
  std::array<double, 3> m_ahead{};
  double m_pixel = 1;  // at distance 1, or anywhere for a parallel projection
  bool m_parallel = false;
  QSize m_view;
};

}  // namespace qd::workbench

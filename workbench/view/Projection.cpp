#include "workbench/view/Projection.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>

namespace qd::workbench {

Projection::Projection(vtkRenderer& renderer, QSize view) : m_view(view) {
  vtkCamera* camera = renderer.GetActiveCamera();
  const double height = std::max(view.height(), 1);
  const vtkMatrix4x4* matrix =
      camera->GetCompositeProjectionTransformMatrix(std::max(view.width(), 1) / height, 0, 1);
  std::copy_n(matrix->GetData(), m_matrix.size(), m_matrix.begin());
  camera->GetPosition(m_eye.data());
  camera->GetDirectionOfProjection(m_ahead.data());
  m_parallel = camera->GetParallelProjection() != 0;
  m_pixel = 2 / height *
            (m_parallel ? camera->GetParallelScale()
                        : std::tan(vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2));
}

std::optional<Projection::Image> Projection::operator()(double x, double y, double z) const {
  std::array<double, 4> image{};
  for (std::size_t row = 0; row < image.size(); ++row) {
    const double* m = &m_matrix[row * 4];
    image[row] = m[0] * x + m[1] * y + m[2] * z + m[3];
  }
  const double w = image[3];
  if (w <= 0) return std::nullopt;
  return Image{{(image[0] / w + 1) / 2 * m_view.width(), (1 - image[1] / w) / 2 * m_view.height()}, image[2] / w};
}

double Projection::PixelAt(double x, double y, double z) const {
  if (m_parallel) return m_pixel;
  const double away = (x - m_eye[0]) * m_ahead[0] + (y - m_eye[1]) * m_ahead[1] + (z - m_eye[2]) * m_ahead[2];
  return m_pixel * std::abs(away);
}

}  // namespace qd::workbench

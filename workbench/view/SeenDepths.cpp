#include "workbench/view/SeenDepths.h"

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>

namespace qd::workbench {

SeenDepths::SeenDepths(vtkRenderer& renderer) {
  const int* size = renderer.GetRenderWindow()->GetSize();
  m_width = std::max(size[0], 1);
  m_height = std::max(size[1], 1);
  vtkCamera* camera = renderer.GetActiveCamera();
  const vtkMatrix4x4* matrix =
      camera->GetCompositeProjectionTransformMatrix(m_width / static_cast<double>(m_height), 0, 1);
  std::copy_n(matrix->GetData(), m_matrix.size(), m_matrix.begin());
  camera->GetDirectionOfProjection(m_ahead.data());
  m_depths.resize(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height));
  renderer.GetRenderWindow()->GetZbufferData(0, 0, m_width - 1, m_height - 1, m_depths.data());
}

/// Where a point is in the picture, from 0 to 1, and how deep.
std::array<double, 3> SeenDepths::Image(const std::array<double, 3>& point) const {
  std::array<double, 4> image{};
  for (std::size_t row = 0; row < image.size(); ++row) {
    const double* m = &m_matrix[row * 4];
    image[row] = m[0] * point[0] + m[1] * point[1] + m[2] * point[2] + m[3];
  }
  return {(image[0] / image[3] + 1) / 2, (image[1] / image[3] + 1) / 2, image[2] / image[3]};
}

bool SeenDepths::IsSeen(const Bounds& box) const {
  std::array<double, 3> middle{};
  double radius = 0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    middle[axis] = (static_cast<double>(box[2 * axis]) + box[2 * axis + 1]) / 2;
    radius += std::pow((static_cast<double>(box[2 * axis + 1]) - box[2 * axis]) / 2, 2);
  }
  radius = std::sqrt(radius);
  std::array<double, 3> front = middle;
  std::array<double, 3> back = middle;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    front[axis] -= radius * m_ahead[axis];
    back[axis] += radius * m_ahead[axis];
  }
  const std::array<double, 3> at = Image(middle);
  if (!(at[0] >= 0 && at[0] < 1 && at[1] >= 0 && at[1] < 1)) return false;
  const auto column = static_cast<std::size_t>(at[0] * m_width);
  const auto row = static_cast<std::size_t>(at[1] * m_height);
  const double depth = m_depths[row * static_cast<std::size_t>(m_width) + column];
  return depth >= Image(front)[2] && depth <= Image(back)[2];
}

bool SeenDepths::IsSeen(const std::array<double, 3>& point, double slack) const {
  std::array<double, 3> before = point;
  for (std::size_t axis = 0; axis < 3; ++axis) before[axis] -= slack * m_ahead[axis];
  const std::array<double, 3> at = Image(point);
  if (!(at[0] >= 0 && at[0] < 1 && at[1] >= 0 && at[1] < 1)) return false;
  const auto column = static_cast<std::size_t>(at[0] * m_width);
  const auto row = static_cast<std::size_t>(at[1] * m_height);
  return m_depths[row * static_cast<std::size_t>(m_width) + column] >= Image(before)[2];
}

}  // namespace qd::workbench

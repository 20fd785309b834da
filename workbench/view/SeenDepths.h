#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "workbench/view/PickRay.h"

class vtkRenderer;

namespace qd::workbench {

/// How deep the last picture is, pixel by pixel: tells roughly which things were seen in it.
class SeenDepths {
 public:
  /// Of the picture that stands in the renderer's window, whose context is current.
  explicit SeenDepths(vtkRenderer& renderer);
  /// Whether in the middle of a box something of it was seen, as far as a box around it tells.
  bool IsSeen(const Bounds& box) const;
  /// Whether nothing is seen farther than `slack` before a point.
  bool IsSeen(const std::array<double, 3>& point, double slack) const;

 private:
  std::array<double, 3> Image(const std::array<double, 3>& point) const;

  std::array<double, 16> m_matrix{};
  std::array<double, 3> m_ahead{};
  int m_width = 0;
  int m_height = 0;
  std::vector<float> m_depths;  // row by row from below
};

}  // namespace qd::workbench

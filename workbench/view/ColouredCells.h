#pragma once

#include <cstdint>
#include <vector>

#include "host/Types.h"

class vtkActor;

namespace qd::workbench {

/// Points with a colour each, and cells between them, that one actor draws by its mapper's scalars.
struct ColouredCells {
  std::vector<float> points;           ///< x, y, z
  std::vector<unsigned char> colours;  ///< red, green, blue of each point
  std::vector<std::uint32_t> cells;    ///< point numbers, as many for each cell as it has corners

  /// Adds points of one colour, moved by `shift`, and cells between them, which number them from 0.
  void Add(const std::vector<float>& some, const std::vector<std::uint32_t>& numbers, COLORREF colour,
           const float* shift = nullptr);
};

/// Lets an actor draw these in place of what it drew before: triangles (3 corners), lines (2) or points (1).
/// Without cells it hides. Its mapper is a vtkPolyDataMapper.
void Draw(vtkActor& actor, const ColouredCells& what, int corners);

}  // namespace qd::workbench

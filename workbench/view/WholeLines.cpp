#include "workbench/view/WholeLines.h"

#include <vtkMapper.h>

namespace qd::workbench {

void SeparateLines(vtkMapper& mapper, double steps) {
  vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
  mapper.SetRelativeCoincidentTopologyPolygonOffsetParameters(steps, steps);
  // How far lines come forward is the same for all of them.
  mapper.SetRelativeCoincidentTopologyLineOffsetParameters(0, 0);
}

void BringLinesForward(bool parallel, double distance, const double range[2]) {
  // As far as a face falls away beside a line that is seen at a slant, which grows with what a point of the screen
  // covers, and so with the distance. Lines show through what is thinner.
  constexpr double kForward = 0.0016;  // of the distance
  constexpr double kSteps = 65'000;    // of the depth that is seen, in which the library counts
  const double depth = range[1] - range[0];
  if (depth <= 0 || distance <= 0) return;
  // Depths beyond a camera in perspective lie the closer together the farther away they are.
  const double share = parallel ? distance / depth : range[0] * range[1] / (depth * distance);
  vtkMapper::SetResolveCoincidentTopologyLineOffsetParameters(0, -kSteps * kForward * share);
}

}  // namespace qd::workbench

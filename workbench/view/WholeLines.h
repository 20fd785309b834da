#pragma once

class vtkMapper;

namespace qd::workbench {

/// Lets what a mapper draws of faces step back by one more of `steps`, and its lines come forward, so that lines
/// on faces are seen whole.
void SeparateLines(vtkMapper& mapper, double steps = 1);
/// Says how far all lines come forward in what is drawn next: by a share of the distance at which the camera
/// looks, whatever range of depths, nearest and farthest, it sees.
void BringLinesForward(bool parallel, double distance, const double range[2]);

}  // namespace qd::workbench

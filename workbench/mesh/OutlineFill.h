#pragma once

#include <functional>
#include <vector>

namespace qd::workbench {

/// A straight piece of an outline.
struct OutlinePiece {
  double x0, y0, x1, y1;
  /// Where it is at a height between its ends, the first of which is the lower one.
  double At(double y) const;
};

/// Takes what lies between two pieces, left and right, from one height to another.
using PutStrip = std::function<void(const OutlinePiece&, const OutlinePiece&, double, double)>;

/// Fills an outline: what lies between an odd piece of it and the even one after it. The pieces need no order, and
/// where one is missing only the heights between its ends suffer. The strips are about as many as the pieces;
/// false when so many pieces cross each other or are missing that the work would be much more.
bool FillOutline(std::vector<OutlinePiece> pieces, const PutStrip& put);

}  // namespace qd::workbench

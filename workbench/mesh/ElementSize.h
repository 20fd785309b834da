#pragma once

#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// A size of elements that suits parts, with two digits: one that shows their form and is not larger than what is
/// thin in them. Of several parts the one in the middle, but so large that not more than about a million elements
/// come of all. 0 when no part has an extent. `dimension` is 2 for meshes of surfaces, 3 for those of solids.
double OfferedSize(const std::vector<const PartShape*>& parts, int dimension);

/// The smallest size, with two digits rounded up, of which not more than about 30 million elements come in what
/// has this length of edges, area of faces and volume: what the program can hold and show. 0 when there is
/// nothing.
double LeastSize(double length, double area, double volume);

}  // namespace qd::workbench

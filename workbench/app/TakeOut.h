#pragma once

#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/exchange/pipe/Protocol.h"

namespace qd::workbench {

/// The work that takes the picked faces, edges and points out of their parts, as parts of their own; `parts` get
/// the parts that they are of.
ShapeOperation TakeOutPicked(const WorkDocument& doc, std::vector<iterator>& parts);

}  // namespace qd::workbench

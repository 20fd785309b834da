#pragma once

#include <cstdint>
#include <vector>

#include "host/Display.h"

namespace qd::workbench {

/// What has changed of the display since the last notice; nothing of it where the picture is only to be drawn
/// again. A thing may stand in a list more than once, and may be again what it was.
struct DisplayNotice {
  std::vector<int> parts;            ///< CAD items that are shown, hidden or drawn otherwise
  std::vector<iterator> msets;       ///< mesh sets that are shown or hidden
  std::vector<std::int32_t> labels;  ///< numbers of coordinate systems whose symbols are shown or hidden
  std::vector<RowBox> boxes;         ///< of rows that stand for no such thing
  bool looks = false;                ///< how mesh sets are drawn
  bool colours = false;              ///< what parts and meshes are coloured by
  bool isolation = false;            ///< something was isolated, or no longer is
  bool acted = false;                ///< there is an act more to undo
};

}  // namespace qd::workbench

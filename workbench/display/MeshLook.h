#pragma once

#include <optional>
#include <vector>

#include "workbench/display/Display.h"
#include "workbench/display/QualityColours.h"
#include "workbench/mesh/MeshSkin.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// How a mesh set is drawn.
struct MsetLook {
  bool shown = true;
  bool box = false;               ///< only its bounding box
  bool wire = false;              ///< lines in the set's colour
  std::vector<COLORREF> colours;  ///< one for each block of elements
  std::uint8_t opacity = 255;
  std::uint32_t addOns = 0;
  std::optional<QualityColours>
      quality;  ///< colours the faces by what the skin says, in place of the other colours
  bool operator==(const MsetLook&) const = default;
};

/// What has to be prepared of a mesh to draw it in a look.
SkinRequest RequestFor(const MeshDisplay::Look& look);

/// How the display state wants a mesh set to be drawn. Its colours go with the pieces of `skin`.
MsetLook LookOf(const Database& database, const Display& display, const tagTMset& record, iterator itr,
                const MeshSkin& skin, bool selected);

}  // namespace qd::workbench

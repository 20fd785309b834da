#pragma once

#include <cstdint>

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// How a part is drawn.
struct PartLook {
  bool faces = false;
  bool edges = false;
  bool box = false;
  std::uint8_t opacity = 255;
  COLORREF colour = 0;
  COLORREF lineColour = 0;

  bool IsShown() const { return faces || edges || box; }
  bool operator==(const PartLook&) const = default;
};

PartLook LookOf(WorkDocument& doc, const tagTGeom& record, bool selected);

}  // namespace qd::workbench

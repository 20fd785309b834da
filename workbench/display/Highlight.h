#pragma once

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// The colour of what is selected, when it would otherwise have this one: that of all selections, or another one
/// where that could not be told from it.
COLORREF HighlightOn(COLORREF colour);
/// The colour that a part or mesh set has where nothing is selected, as far as one says it.
COLORREF ColourUnder(const WorkDocument& doc, iterator record);

}  // namespace qd::workbench

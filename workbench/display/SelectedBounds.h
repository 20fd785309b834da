#pragma once

#include <optional>

#include "workbench/display/ViewCamera.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// The box around what is selected, shown or not; nothing when nothing of that has a place.
std::optional<ViewBox> SelectedBounds(const WorkDocument& doc);

}  // namespace qd::workbench

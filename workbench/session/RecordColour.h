#pragma once

#include <optional>

#include "workbench/model/Database.h"

namespace qd::workbench {

/// The colour of a part, a mesh set or a material; none of other records, or of one that is gone.
std::optional<COLORREF> ColourOf(Database& data, iterator itr);
/// Gives it another colour, as one act. Returns 1; 0 with nothing changed, as for the colour that it has.
int Recolour(Database& data, iterator itr, COLORREF colour);

}  // namespace qd::workbench

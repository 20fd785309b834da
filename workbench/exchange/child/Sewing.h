#pragma once

#include <Message_ProgressRange.hxx>

#include "workbench/exchange/child/CadModel.h"

namespace qd::workbench {

/// Sews the loose faces of a model, those of each assembly among themselves: faces that close become one solid,
/// with the name that they all have and the commonest of their colours, in the place of the first of them. Faces
/// that do not close stay as they are, and all of them where they are very many; that is noted.
void SewSolids(CadModel& model, const Message_ProgressRange& range);

}  // namespace qd::workbench

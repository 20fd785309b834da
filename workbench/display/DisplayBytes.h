#pragma once

#include <string>
#include <string_view>

#include "workbench/display/Display.h"

namespace qd::workbench {

// How a document is shown, as bytes that are kept beside its records: what is hidden, how parts and mesh sets are
// drawn and coloured, boxes of rows, and what was hidden before an isolation.

/// Of all that is not as it is when a record is made.
std::string BytesOfDisplay(const Display& display);

/// Shows a document so, which is shown as it was made until now. It is no act: nobody can undo it; those who show
/// the document are told before this returns. What the bytes say of things that the database does not have, and
/// values that nothing can have, is passed over. False, with nothing changed, for bytes that are no such thing.
bool TakeUpDisplay(std::string_view bytes, const Database& database, Display& display);

}  // namespace qd::workbench

#pragma once

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// What something of a record is called: its number and whose it is.
CString NameOf(const WorkDocument& doc, const Picked& one);
/// What a part or mesh set is called, with its number.
CString NameOf(const WorkDocument& doc, iterator record);
/// What is picked in one line: the name of a single one, else how many there are of each kind.
CString PickedText(const WorkDocument& doc);

}  // namespace qd::workbench

#pragma once

#include <TopoDS_Shape.hxx>
#include <XSControl_Reader.hxx>

#include "workbench/exchange/pipe/NoteCounts.h"

namespace qd::workbench {

/// Notes what the library's reader could not read of a file's entities, and what it could not turn into shapes or
/// only in part: it leaves that out without a word. Called after the transfer.
void NoteFaults(const XSControl_Reader& reader, NoteCounts& notes);

/// Whether the library finds nothing wrong with a shape: faces bounded, edges on their faces and the like.
bool IsSoundShape(const TopoDS_Shape& shape);

}  // namespace qd::workbench

#pragma once

#include "qd_wrt/find/IRowFields.h"

namespace qd::workbench {

/// What the users of the workbench search rows by beside what the module knows: volume, area and length of parts,
/// numbers of elements and nodes of mesh sets, the assemblies of the CAD file that a part came from.
const IRowFields& DocumentFields();

}  // namespace qd::workbench

#pragma once

#include "platform/tree/RowTree.h"

namespace qd {

class SurfaceWidget;

/// Makes trees of rows known to screen readers; called once per process.
void InstallAccessibility();
/// Tells screen readers, if any listen, that a row has the focus now.
void AnnounceFocusedRow(SurfaceWidget& surface, HTREEITEM row);

}  // namespace qd

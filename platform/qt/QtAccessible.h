#pragma once

#include "platform/RowHandle.h"

class QWidget;

namespace qd {

class SurfaceWidget;

/// Makes trees of rows known to screen readers; called once per process.
void InstallAccessibility();
/// Tells screen readers, if any listen, that a row has the focus now.
void AnnounceFocusedRow(SurfaceWidget& surface, HTREEITEM row);
/// Lets screen readers, if any listen, say the name of a widget.
void AnnounceName(QWidget& widget);

}  // namespace qd

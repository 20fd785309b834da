#pragma once

#include <QIcon>

namespace qd::workbench {

/// The icon of a window's command, in the colours that the program has when it is painted; null for none.
QIcon IconOf(unsigned command);

}  // namespace qd::workbench

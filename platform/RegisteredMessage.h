#pragma once

#include <string_view>

#include "platform/Export.h"

namespace qd {

/// A number for a name, the same for every caller of the process, between 0xC000 and 0xFFFF.
QD_EXPORT unsigned RegisterMessage(std::string_view name);

}  // namespace qd

#pragma once

#include <functional>

#include "host/Types.h"

namespace qd::workbench {

/// `text` with the first number behind it, from `first` on, that makes a free name; cut to what names can hold.
CString CopyName(const CString& text, std::size_t first, const std::function<bool(const CString&)>& isTaken);

}  // namespace qd::workbench

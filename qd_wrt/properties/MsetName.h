#pragma once

#include <optional>

#include "host/Act.h"

namespace qd {

/// The new name of a mesh set, as NewName says, without a word when it is refused.
QD_EXPORT std::optional<CString> NewMsetName(CQDDBSession& session, const tagTMset& old, const CString& text);

}  // namespace qd

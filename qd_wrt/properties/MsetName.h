#pragma once

#include <optional>

#include "host/CQDDBSession.h"
#include "platform/Export.h"

namespace qd {

/// The name that a mesh set gets when it is to be called `text`: cut to what names can hold. Nothing when the
/// text is empty or another set has the name, as it stands or cut.
QD_EXPORT std::optional<CString> FreeMsetName(CQDDBSession& session, iterator mset, const CString& text);

}  // namespace qd

#pragma once

#include <memory>

#include "host/IPropertySet.h"
#include "platform/Export.h"

namespace qd {

/// Gives a document's property window a page. Nothing without a window.
QD_EXPORT void ShowPropertyPage(CQDDocBase* doc, std::unique_ptr<IPropertySet> page);

}  // namespace qd

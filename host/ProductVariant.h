#pragma once

#include "platform/Export.h"

namespace qd {

/// Variants of the host product; menus depend on them.
enum class ProductVariant { Standard, KSL, RVT, ZDH };

/// The host sets the variant; open menus and windows keep what they were made with.
QD_EXPORT void SetProductVariant(ProductVariant variant);
QD_EXPORT ProductVariant GetProductVariant();
QD_EXPORT int IsKSL();
QD_EXPORT int IsRVT();
QD_EXPORT int IsZDH();

}  // namespace qd

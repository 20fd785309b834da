#pragma once

#include "platform/Export.h"

namespace qd {

/// Variants of the host product; menus depend on them.
enum class ProductVariant { Standard, KSL, RVT, ZDH };

/// The host sets the variant; open menus and windows keep what they were made with.
QD_EXPORT void SetProductVariant(ProductVariant variant);
/// Standard until the host sets one.
QD_EXPORT ProductVariant GetProductVariant();
/// @{
/// 1 when this is the variant that is set.
QD_EXPORT int IsKSL();
QD_EXPORT int IsRVT();
QD_EXPORT int IsZDH();
/// @}

}  // namespace qd

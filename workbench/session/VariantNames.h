#pragma once

#include <array>

#include "host/ProductVariant.h"

namespace qd::workbench {

/// A product variant, as the command line and the menus call it.
struct VariantName {
  ProductVariant variant;
  const char* name;
  const char* key;
};
inline constexpr std::array<VariantName, 4> kVariants{
    {{ProductVariant::Standard, "standard", "IDS_WB_VARIANT_STANDARD"},
     {ProductVariant::KSL, "ksl", "IDS_WB_VARIANT_KSL"},
     {ProductVariant::RVT, "rvt", "IDS_WB_VARIANT_RVT"},
     {ProductVariant::ZDH, "zdh", "IDS_WB_VARIANT_ZDH"}}};

}  // namespace qd::workbench

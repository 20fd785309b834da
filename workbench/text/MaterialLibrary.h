#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/text/Units.h"

namespace qd::workbench {

/// A common material, its values in one system of units.
struct CommonMaterial {
  const char* nameKey;  ///< message key of its name
  double youngsModulus = 0;
  double poissonsRatio = 0;
  double density = 0;
};

/// Reads a library: lines "name | Young's modulus | Poisson's ratio | density", each value with its unit; what is
/// empty or begins with # is passed over. Why a line is not taken is added to `faults`.
std::vector<CommonMaterial> ReadMaterials(std::string_view text, const UnitSystem& units,
                                          std::vector<std::string>& faults);

}  // namespace qd::workbench

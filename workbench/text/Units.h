#pragma once

#include <span>
#include <string>
#include <string_view>

#include "workbench/text/NumberText.h"

namespace qd::workbench {

/// A system of units by its names, and what they are in metres and kilograms.
struct UnitSystem {
  const wchar_t* length;
  const wchar_t* mass;
  double metres;
  double kilograms;
};

/// What a number measures.
enum class Quantity { Plain, Length, Area, Angle, Stress, Density };

/// The systems that can be chosen; the first is the usual one.
std::span<const UnitSystem> UnitSystems();
/// The one with this unit of length; the usual one when there is none.
const UnitSystem& FindUnitSystem(std::wstring_view length);

/// The unit of a quantity, empty when it has none or one without a name.
std::wstring UnitOf(Quantity quantity, const UnitSystem& system);
/// The number that means in one system what `value` means in another, to 15 digits.
double Converted(double value, Quantity quantity, const UnitSystem& from, const UnitSystem& to);

/// Reads what ReadNumber reads, with or without a unit of the quantity behind it, as in "2 in" or "(3+1)/2 mm".
/// The number is meant in `system`; limits are in it, too.
NumberReading ReadQuantity(std::string_view text, char decimalSign, Quantity quantity, const UnitSystem& system,
                           const NumberLimits& limits = {});

}  // namespace qd::workbench

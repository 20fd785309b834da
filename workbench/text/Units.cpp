#include "workbench/text/Units.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numbers>

namespace qd::workbench {

namespace {

constexpr UnitSystem kSystems[] = {
    {L"mm", L"t", 1e-3, 1e3}, {L"m", L"kg", 1, 1}, {L"in", L"lb", 0.0254, 0.45359237}};

/// How large the unit of a quantity is, in metres, kilograms and seconds.
double SizeOf(Quantity quantity, const UnitSystem& system) {
  const double length = system.metres;
  const double mass = system.kilograms;
  switch (quantity) {
    case Quantity::Length:
      return length;
    case Quantity::Area:
      return length * length;
    case Quantity::Stress:
      return mass / length;
    case Quantity::Density:
      return mass / (length * length * length);
    default:
      return 1;
  }
}

/// A product to 15 digits: what was a round number stays one.
double RoundedProduct(double value, double size) {
  constexpr int kDigits = 15;
  std::array<char, 40> text{};
  char* last = text.data() + text.size();
  double rounded = value * size;
  std::from_chars(text.data(),
                  std::to_chars(text.data(), last, rounded, std::chars_format::scientific, kDigits - 1).ptr,
                  rounded);
  return rounded;
}

/// A unit that people type behind a number.
struct TypedUnit {
  std::string_view name;
  Quantity quantity;
  double size;  ///< in metres, kilograms and seconds; of angles in degrees
};

constexpr double kInch = 0.0254;
constexpr double kFoot = 12 * kInch;
constexpr double kPound = 0.45359237;
constexpr double kPsi = kPound * 9.80665 / (kInch * kInch);
constexpr TypedUnit kTyped[] = {{"m", Quantity::Length, 1},
                                {"cm", Quantity::Length, 1e-2},
                                {"mm", Quantity::Length, 1e-3},
                                {"µm", Quantity::Length, 1e-6},
                                {"um", Quantity::Length, 1e-6},
                                {"km", Quantity::Length, 1e3},
                                {"in", Quantity::Length, kInch},
                                {"\"", Quantity::Length, kInch},
                                {"ft", Quantity::Length, kFoot},
                                {"'", Quantity::Length, kFoot},
                                {"m²", Quantity::Area, 1},
                                {"m2", Quantity::Area, 1},
                                {"cm²", Quantity::Area, 1e-4},
                                {"cm2", Quantity::Area, 1e-4},
                                {"mm²", Quantity::Area, 1e-6},
                                {"mm2", Quantity::Area, 1e-6},
                                {"in²", Quantity::Area, kInch* kInch},
                                {"in2", Quantity::Area, kInch* kInch},
                                {"°", Quantity::Angle, 1},
                                {"deg", Quantity::Angle, 1},
                                {"rad", Quantity::Angle, 180 / std::numbers::pi},
                                {"Pa", Quantity::Stress, 1},
                                {"kPa", Quantity::Stress, 1e3},
                                {"MPa", Quantity::Stress, 1e6},
                                {"GPa", Quantity::Stress, 1e9},
                                {"N/mm²", Quantity::Stress, 1e6},
                                {"N/mm2", Quantity::Stress, 1e6},
                                {"psi", Quantity::Stress, kPsi},
                                {"ksi", Quantity::Stress, kPsi * 1e3},
                                {"kg/m³", Quantity::Density, 1},
                                {"kg/m3", Quantity::Density, 1},
                                {"g/cm³", Quantity::Density, 1e3},
                                {"g/cm3", Quantity::Density, 1e3},
                                {"t/mm³", Quantity::Density, 1e12},
                                {"t/mm3", Quantity::Density, 1e12},
                                {"lb/in³", Quantity::Density, kPound / (kInch * kInch * kInch)},
                                {"lb/in3", Quantity::Density, kPound / (kInch * kInch * kInch)}};

/// The unit of a quantity with which a text ends, the longest that fits; null for none.
const TypedUnit* UnitAtEnd(std::string_view text, Quantity quantity) {
  const TypedUnit* found = nullptr;
  for (const TypedUnit& unit : kTyped) {
    const bool longer = found == nullptr || unit.name.size() > found->name.size();
    if (unit.quantity == quantity && longer && text.ends_with(unit.name)) found = &unit;
  }
  return found;
}

}  // namespace

NumberReading ReadQuantity(std::string_view text, char decimalSign, Quantity quantity, const UnitSystem& system,
                           const NumberLimits& limits) {
  while (text.ends_with(' ')) text.remove_suffix(1);
  const TypedUnit* unit = UnitAtEnd(text, quantity);
  if (unit == nullptr) return ReadNumber(text, decimalSign, limits);
  text.remove_suffix(unit->name.size());
  NumberReading reading = ReadNumber(text, decimalSign);
  if (!reading.IsGood()) return reading;
  const double size = quantity == Quantity::Angle ? unit->size : unit->size / SizeOf(quantity, system);
  return Judged(size == 1 ? reading.value : RoundedProduct(reading.value, size), limits);
}

std::span<const UnitSystem> UnitSystems() {
  return kSystems;
}

const UnitSystem& FindUnitSystem(std::wstring_view length) {
  const auto* found = std::find_if(std::begin(kSystems), std::end(kSystems),
                                   [length](const UnitSystem& system) { return system.length == length; });
  return found != std::end(kSystems) ? *found : kSystems[0];
}

std::wstring UnitOf(Quantity quantity, const UnitSystem& system) {
  std::wstring length = system.length;
  switch (quantity) {
    case Quantity::Length:
      return length;
    case Quantity::Area:
      return length + L"²";
    case Quantity::Angle:
      return L"°";
    case Quantity::Stress:
      // The one that fits forces, lengths and masses, where it has a name.
      return length == L"mm" ? L"MPa" : length == L"m" ? L"Pa" : L"";
    case Quantity::Density:
      return system.mass + (L"/" + length + L"³");
    default:
      return {};
  }
}

double Converted(double value, Quantity quantity, const UnitSystem& from, const UnitSystem& to) {
  const double size = SizeOf(quantity, from) / SizeOf(quantity, to);
  if (&from == &to || size == 1) return value;
  return RoundedProduct(value, size);
}

}  // namespace qd::workbench

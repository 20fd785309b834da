// What a number field takes for a number, whatever the language, and how it shows one.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>

#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/text/MaterialLibrary.h"
#include "workbench/text/NumberText.h"
#include "workbench/text/Units.h"

namespace qd::test {
namespace {

using namespace workbench;
using Fault = NumberFault;

struct TextCase {
  const char* name;
  std::string text;
  double value = 0;
  Fault fault = Fault::None;
  NumberLimits limits{};
  char sign = '.';
};
TextCase Bad(const char* name, std::string text, Fault fault, NumberLimits limits = {}, char sign = '.') {
  return {name, std::move(text), 0, fault, limits, sign};
}

class NumberText : public ::testing::TestWithParam<TextCase> {};
TEST_P(NumberText, IsTheNumberThatWasTypedOrTheReasonWhyNot) {
  const TextCase& given = GetParam();
  const NumberReading reading = ReadNumber(given.text, given.sign, given.limits);
  EXPECT_EQ(reading.fault, given.fault);
  EXPECT_EQ(KeyOf(reading.fault) == nullptr, reading.IsGood());
  if (reading.IsGood()) {
    EXPECT_EQ(reading.value, given.value);
  }
}
INSTANTIATE_TEST_SUITE_P(
    Numbers, NumberText,
    ::testing::Values(TextCase{"exponent", "1e-3", 1e-3}, TextCase{"capital_exponent", " 2.5E+2 ", 250},
                      TextCase{"point", "1.5", 1.5}, TextCase{"comma", "1,5", 1.5},
                      TextCase{"point_in_german", "1.5", 1.5, Fault::None, {}, ','},
                      TextCase{"three_decimals", "1.234", 1.234}, TextCase{"below_one", "0,234", 0.234},
                      TextCase{"too_long_for_a_group", "1234,567", 1234.567},
                      TextCase{"own_sign", "1,234", 1.234, Fault::None, {}, ','}, TextCase{"bare", ".5", 0.5},
                      TextCase{"open", "5.", 5}, TextCase{"zero_of_any_size", "0e999", 0},
                      TextCase{"copied_minus",
                               "\xE2\x88\x92"
                               "5e\xE2\x88\x92"
                               "1",
                               -0.5},
                      TextCase{"sum", "1 + 2*3 - 8/4", 5}, TextCase{"left_to_right", "8/4/2", 1},
                      TextCase{"parentheses", "-(2+3)*-(1)", 5}, TextCase{"signs", "3--+-2", 1},
                      TextCase{"exactly", "0.1", 0.1},
                      TextCase{"least", "0", 0, Fault::None, NumberLimits::NotNegative()},
                      TextCase{"digits", std::string(199, '0') + "7", 7}),
    [](const auto& text) { return std::string(text.param.name); });
INSTANTIATE_TEST_SUITE_P(
    Faults, NumberText,
    ::testing::Values(
        Bad("empty", " \t", Fault::Empty), Bad("overflow", "1e400", Fault::TooLarge),
        Bad("underflow", "1e-400", Fault::TooLarge), Bad("overflow_on_the_way", "1/(1e308*10)", Fault::TooLarge),
        Bad("underflow_on_the_way", "1e-200*1e-200*1e300", Fault::TooLarge),
        Bad("infinity", "inf", Fault::NotANumber), Bad("no_number", "nan", Fault::NotANumber),
        Bad("hexadecimal", "0x10", Fault::NotANumber), Bad("half_an_exponent", "1e", Fault::NotANumber),
        Bad("blank_exponent", "1e 3", Fault::NotANumber), Bad("unit", "5 mm", Fault::NotANumber),
        Bad("blank_group", "1 234", Fault::NotANumber), Bad("two_points", "1..5", Fault::NotANumber),
        Bad("only_a_sign", ".", Fault::NotANumber), Bad("arabic_digits", "\xD9\xA1\xD9\xA2", Fault::NotANumber),
        Bad("wide_digits", "\xEF\xBC\x91\xEF\xBC\x92", Fault::NotANumber),
        Bad("zero_inside", std::string("1\0002", 3), Fault::NotANumber), Bad("broken", "1\xC3", Fault::NotANumber),
        Bad("group_and_decimals", "1.234,5", Fault::Grouped), Bad("other_way_round", "1,234.5", Fault::Grouped),
        Bad("may_be_a_group", "1,234", Fault::Grouped), Bad("in_german", "12.345", Fault::Grouped, {}, ','),
        Bad("in_a_sum", "1 + 1,234", Fault::Grouped), Bad("groups", "1.234.567", Fault::Grouped),
        Bad("open_parenthesis", "(1+2", Fault::NotANumber), Bad("closed_parenthesis", "1)", Fault::NotANumber),
        Bad("nothing_behind", "1+", Fault::NotANumber), Bad("side_by_side", "(1)(2)", Fault::NotANumber),
        Bad("by_zero", "1/(2-2)", Fault::DividesByZero), Bad("long", std::string(201, '1'), Fault::TooLong),
        Bad("deep", std::string(90, '(') + "1" + std::string(90, ')'), Fault::TooLong),
        Bad("many_signs", std::string(150, '-') + "1", Fault::TooLong),
        Bad("negative_size", "-5", Fault::NotAboveLeast, NumberLimits::Positive()),
        Bad("zero_size", "0", Fault::NotAboveLeast, NumberLimits::Positive()),
        Bad("negative", "-1e-300", Fault::BelowLeast, NumberLimits::NotNegative()),
        Bad("above", "0.51", Fault::AboveGreatest, {.least = -1, .greatest = 0.5, .aboveLeast = true}),
        Bad("nought", "1-1", Fault::Zero, {.notZero = true}),
        Bad("broken_count", "2.5", Fault::NotWhole, {.whole = true})),
    [](const auto& text) { return std::string(text.param.name); });

struct ShownCase {
  double value;
  const char* shown;
};
TEST(NumberTexts, AreShortAndReadBackAsTheSameNumber) {
  constexpr double kMost = std::numeric_limits<double>::max();
  for (const ShownCase& given :
       {ShownCase{0, "0"}, ShownCase{-0.0, "0"}, ShownCase{0.001, "0,001"}, ShownCase{1e6, "1000000"},
        ShownCase{7.85e-9, "7,85e-09"}, ShownCase{-2.5, "-2,5"}, ShownCase{0.1 + 0.2, "0,30000000000000004"},
        ShownCase{kMost, "1,7976931348623157e+308"}, ShownCase{1e15, "1e+15"}, ShownCase{5e-324, "5e-324"},
        ShownCase{123456789012345.6, "123456789012345,6"}, ShownCase{1.234, "1,234"}}) {
    EXPECT_EQ(ShowNumber(given.value, ','), given.shown);
    EXPECT_EQ(ReadNumber(ShowNumber(given.value, ','), ',').value, given.value);
    EXPECT_EQ(ReadNumber(ShowNumber(given.value, '.'), '.').value, given.value);
  }
  EXPECT_EQ(ShowNumber(std::nan(""), '.'), "");
}

struct UnitCase {
  Quantity quantity;
  double value;
  std::vector<double> shown;  ///< in each system
  std::vector<std::wstring> units;
};
TEST(Units, ShowTheSameInEachSystem) {
  const std::span<const UnitSystem> systems = UnitSystems();
  for (const UnitCase& given :
       {UnitCase{Quantity::Plain, 0.3, {0.3, 0.3, 0.3}, {L"", L"", L""}},
        UnitCase{Quantity::Angle, 90, {90, 90, 90}, {L"°", L"°", L"°"}},
        UnitCase{Quantity::Length, 25.4, {25.4, 0.0254, 1}, {L"mm", L"m", L"in"}},
        UnitCase{Quantity::Area, 645.16, {645.16, 0.00064516, 1}, {L"mm²", L"m²", L"in²"}},
        UnitCase{Quantity::Stress, 210000, {210000, 2.1e11, 2.1e11 * 0.0254 / 0.45359237}, {L"MPa", L"Pa", L""}},
        UnitCase{Quantity::Density,
                 7.85e-9,
                 {7.85e-9, 7850, 7850 * 0.0254 * 0.0254 * 0.0254 / 0.45359237},
                 {L"t/mm³", L"kg/m³", L"lb/in³"}}}) {
    for (std::size_t i = 0; i < systems.size(); ++i) {
      const double shown = Converted(given.value, given.quantity, systems[0], systems[i]);
      EXPECT_NEAR(shown, given.shown[i], std::fabs(given.shown[i]) * 1e-14);
      EXPECT_EQ(UnitOf(given.quantity, systems[i]), given.units[i]);
    }
  }
  EXPECT_EQ(Converted(7.85e-9, Quantity::Density, systems[0], systems[1]), 7850);
  EXPECT_EQ(&FindUnitSystem(L"in"), &systems[2]);
  EXPECT_EQ(&FindUnitSystem(L"furlong"), &systems[0]);
}

struct TypedCase {
  const char* text;
  Quantity quantity;
  double value;  ///< in millimetres and tonnes
  NumberFault fault = NumberFault::None;
};
TEST(Units, AreReadBehindNumbers) {
  for (const TypedCase& given :
       {TypedCase{"2 in", Quantity::Length, 50.8}, TypedCase{"3*1.5", Quantity::Length, 4.5},
        TypedCase{"(1+1)cm", Quantity::Length, 20}, TypedCase{" 1e3 m ", Quantity::Length, 1e6},
        TypedCase{"5 mm2", Quantity::Area, 5}, TypedCase{"210 GPa", Quantity::Stress, 210000},
        TypedCase{"7850 kg/m³", Quantity::Density, 7.85e-9}, TypedCase{"90°", Quantity::Angle, 90},
        TypedCase{"2 in", Quantity::Plain, 0, NumberFault::NotANumber},
        TypedCase{"2 kg", Quantity::Length, 0, NumberFault::NotANumber},
        TypedCase{"mm", Quantity::Length, 0, NumberFault::Empty},
        TypedCase{"-1 m", Quantity::Length, -1000, NumberFault::BelowLeast},
        TypedCase{"1e308 m", Quantity::Length, 0, NumberFault::TooLarge}}) {
    const NumberReading reading =
        ReadQuantity(given.text, '.', given.quantity, UnitSystems().front(), {.least = -500});
    EXPECT_EQ(reading.fault, given.fault) << given.text;
    EXPECT_EQ(reading.value, given.value) << given.text;
  }
}

TEST(Materials, OfTheLibraryHaveValuesThatPassChecks) {
  std::vector<std::string> faults;
  const std::string text =
      ScratchFolder::ReadAt(std::filesystem::path(SourceFolder()) / "resources/materials/materials.txt");
  const std::vector<CommonMaterial> materials = ReadMaterials(text, UnitSystems().front(), faults);
  EXPECT_TRUE(faults.empty()) << faults.front();
  ASSERT_GT(materials.size(), 10U);
  EXPECT_EQ(materials.front().youngsModulus, 210000);
  EXPECT_EQ(materials.front().density, 7.85e-9);
  ReadMaterials(
      "gold | 1 | 0.3 | 1\nsteel | 1 kg | 0.3 | 1\nsteel | 1 | 0.6 | 1\nsteel | 1 | 0.3\nsteel|1|0.3|1|2\n",
      UnitSystems().front(), faults);
  EXPECT_EQ(faults.size(), 5U);
}

}  // namespace
}  // namespace qd::test

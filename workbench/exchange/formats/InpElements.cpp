#include "workbench/exchange/formats/InpElements.h"

#include <algorithm>
#include <array>

namespace qd::workbench {

namespace {

// Nodes in the middle of edges come in another order than in records.
constexpr std::array<int, 3> kLine3{0, 2, 1};
constexpr std::array<int, 10> kTet10{0, 1, 2, 3, 4, 5, 6, 7, 9, 8};
constexpr std::array<int, 20> kHex20{0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 16, 9, 17, 10, 18, 19, 12, 15, 13, 14};
constexpr std::array<int, 15> kPrism15{0, 1, 2, 3, 4, 5, 6, 8, 12, 7, 13, 14, 9, 11, 10};

/// Families by how their names begin; variants (reduced integration, hybrid, thermal …) only add letters.
struct Family {
  std::string_view name;
  InpElement element;
};
constexpr InpElement kPoint{15, 1, {}};
constexpr InpElement kLine{1, 2, {}};
constexpr InpElement kLineOfThree{8, 3, kLine3};
constexpr InpElement kTriangle{2, 3, {}};
constexpr InpElement kTriangleOfSix{9, 6, {}};
constexpr InpElement kQuadrangle{3, 4, {}};
constexpr InpElement kQuadrangleOfEight{16, 8, {}};
constexpr InpElement kQuadrangleOfNine{10, 9, {}};

// The longest name that fits counts, so C3D10 is not taken for C3D1 or C3D20R for C3D2.
constexpr Family kFamilies[] = {{"C3D4", {4, 4, {}}},
                                {"C3D5", {7, 5, {}}},
                                {"C3D6", {6, 6, {}}},
                                {"C3D8", {5, 8, {}}},
                                {"C3D10", {11, 10, kTet10}},
                                {"C3D15", {18, 15, kPrism15}},
                                {"C3D20", {17, 20, kHex20}},
                                {"DC3D4", {4, 4, {}}},
                                {"DC3D6", {6, 6, {}}},
                                {"DC3D8", {5, 8, {}}},
                                {"F3D4", {4, 4, {}}},
                                {"F3D6", {6, 6, {}}},
                                {"F3D8", {5, 8, {}}},
                                {"D", kLineOfThree},
                                {"DC3D10", {11, 10, kTet10}},
                                {"DC3D15", {18, 15, kPrism15}},
                                {"DC3D20", {17, 20, kHex20}},
                                {"S3", kTriangle},
                                {"S4", kQuadrangle},
                                {"S6", kTriangleOfSix},
                                {"S8", kQuadrangleOfEight},
                                {"S9", kQuadrangleOfNine},
                                {"STRI3", kTriangle},
                                {"STRI65", kTriangleOfSix},
                                {"CPS3", kTriangle},
                                {"CPE3", kTriangle},
                                {"CAX3", kTriangle},
                                {"M3D3", kTriangle},
                                {"R3D3", kTriangle},
                                {"DS3", kTriangle},
                                {"SFM3D3", kTriangle},
                                {"CPS6", kTriangleOfSix},
                                {"CPE6", kTriangleOfSix},
                                {"CAX6", kTriangleOfSix},
                                {"M3D6", kTriangleOfSix},
                                {"SFM3D6", kTriangleOfSix},
                                {"CPS4", kQuadrangle},
                                {"CPE4", kQuadrangle},
                                {"CAX4", kQuadrangle},
                                {"M3D4", kQuadrangle},
                                {"R3D4", kQuadrangle},
                                {"DS4", kQuadrangle},
                                {"SFM3D4", kQuadrangle},
                                {"CPS8", kQuadrangleOfEight},
                                {"CPE8", kQuadrangleOfEight},
                                {"CAX8", kQuadrangleOfEight},
                                {"M3D8", kQuadrangleOfEight},
                                {"SFM3D8", kQuadrangleOfEight},
                                {"M3D9", kQuadrangleOfNine},
                                {"B31", kLine},
                                {"B21", kLine},
                                {"T3D2", kLine},
                                {"T2D2", kLine},
                                {"R2D2", kLine},
                                {"RB3D2", kLine},
                                {"CONN3D2", kLine},
                                {"SPRINGA", kLine},
                                {"DASHPOTA", kLine},
                                {"GAPUNI", kLine},
                                {"B32", kLineOfThree},
                                {"B22", kLineOfThree},
                                {"T3D3", kLineOfThree},
                                {"T2D3", kLineOfThree},
                                {"MASS", kPoint},
                                {"ROTARYI", kPoint},
                                {"SPRING1", kPoint},
                                {"DASHPOT1", kPoint},
                                {"DCOUP3D", kPoint}};

/// How each kind is written.
struct Written {
  int elementType;
  std::string_view name;
};
constexpr Written kWritten[] = {{1, "B31"},    {2, "S3"},    {3, "S4"},   {4, "C3D4"},   {5, "C3D8"},
                                {6, "C3D6"},   {7, "C3D5"},  {8, "B32"},  {9, "S6"},     {10, "S9R5"},
                                {11, "C3D10"}, {15, "MASS"}, {16, "S8R"}, {17, "C3D20"}, {18, "C3D15"}};

}  // namespace

const InpElement* FindInpElement(std::string_view name) {
  const Family* best = nullptr;
  for (const Family& family : kFamilies) {
    if (!name.starts_with(family.name)) continue;
    // A digit behind the name would make it another number.
    const std::string_view rest = name.substr(family.name.size());
    if (!rest.empty() && rest.front() >= '0' && rest.front() <= '9') continue;
    if (best == nullptr || family.name.size() > best->name.size()) best = &family;
  }
  return best != nullptr ? &best->element : nullptr;
}

std::string_view InpNameOf(int elementType) {
  const auto* found =
      std::find_if(std::begin(kWritten), std::end(kWritten),
                   [elementType](const Written& written) { return written.elementType == elementType; });
  return found != std::end(kWritten) ? found->name : std::string_view();
}

std::span<const int> InpOrderOf(int elementType) {
  const InpElement* element = FindInpElement(InpNameOf(elementType));
  return element != nullptr ? element->order : std::span<const int>();
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/UnvElements.h"

#include <algorithm>
#include <iterator>

namespace qd::workbench {

namespace {

constexpr UnvElement kElements[] = {{1, 21, "0 1", true},
                                    {2, 91, "0 1 2", false},
                                    {3, 94, "0 1 2 3", false},
                                    {4, 111, "0 1 2 3", false},
                                    {5, 115, "0 1 2 3 4 5 6 7", false},
                                    {6, 112, "0 1 2 3 4 5", false},
                                    {8, 24, "0 01 1", true},
                                    {9, 92, "0 01 1 12 2 20", false},
                                    {11, 118, "0 01 1 12 2 20 03 13 23 3", false},
                                    {16, 95, "0 01 1 12 2 23 3 30", false},
                                    {17, 116, "0 01 1 12 2 23 3 30 04 15 26 37 4 45 5 56 6 67 7 74", false},
                                    {18, 113, "0 01 1 12 2 20 03 14 25 3 34 4 45 5 53", false}};

/// Rods and beams, plates in plane stress, plane strain, bending and so on, membranes, thin and thick shells.
constexpr struct {
  int number;
  int written;
} kAlike[] = {{11, 21}, {22, 21},   {31, 21},   {23, 24},   {32, 24},  {41, 91}, {51, 91}, {61, 91},
              {74, 91}, {81, 91},   {42, 92},   {52, 92},   {62, 92},  {72, 92}, {82, 92}, {44, 94},
              {54, 94}, {64, 94},   {71, 94},   {84, 94},   {45, 95},  {55, 95}, {65, 95}, {75, 95},
              {85, 95}, {101, 112}, {102, 113}, {104, 115}, {105, 116}};

template <typename Is>
const UnvElement* Find(Is is) {
  const auto* found = std::find_if(std::begin(kElements), std::end(kElements), is);
  return found != std::end(kElements) ? found : nullptr;
}

}  // namespace

const UnvElement* FindUnvElement(int elementType) {
  return Find([elementType](const UnvElement& one) { return one.elementType == elementType; });
}

const UnvElement* FindUnvNumber(int number) {
  const auto* alike = std::find_if(std::begin(kAlike), std::end(kAlike),
                                   [number](const auto& one) { return one.number == number; });
  const int written = alike != std::end(kAlike) ? alike->written : number;
  return Find([written](const UnvElement& one) { return one.number == written; });
}

}  // namespace qd::workbench

#include "workbench/exchange/formats/BdfElements.h"

#include <algorithm>
#include <iterator>

namespace qd::workbench {

namespace {

constexpr BdfElement kElements[] = {{1, "CROD", "0 1"},
                                    {2, "CTRIA3", "0 1 2"},
                                    {3, "CQUAD4", "0 1 2 3"},
                                    {4, "CTETRA", "0 1 2 3"},
                                    {5, "CHEXA", "0 1 2 3 4 5 6 7"},
                                    {6, "CPENTA", "0 1 2 3 4 5"},
                                    {7, "CPYRAM", "0 1 2 3 4"},
                                    {9, "CTRIA6", "0 1 2 01 12 20"},
                                    {11, "CTETRA", "0 1 2 3 01 12 20 03 13 23"},
                                    {16, "CQUAD8", "0 1 2 3 01 12 23 30"},
                                    {17, "CHEXA", "0 1 2 3 4 5 6 7 01 12 23 30 04 15 26 37 45 56 67 74"},
                                    {18, "CPENTA", "0 1 2 3 4 5 01 12 20 03 14 25 34 45 53"},
                                    {19, "CPYRAM", "0 1 2 3 4 01 12 23 30 04 14 24 34"}};

/// Rods, tubes, bars and beams, membranes, shear panels and shells have one shape.
constexpr BdfEntry kEntries[] = {{"CROD", 1, 0},    {"CONROD", 1, 0, false}, {"CTUBE", 1, 0},   {"CBAR", 1, 0},
                                 {"CBEAM", 1, 0},   {"CTRIA3", 2, 0},        {"CTRIAR", 2, 0},  {"CTRIA6", 2, 9},
                                 {"CQUAD4", 3, 0},  {"CQUADR", 3, 0},        {"CSHEAR", 3, 0},  {"CQUAD8", 3, 16},
                                 {"CQUAD", 3, 16},  {"CTETRA", 4, 11},       {"CPYRAM", 7, 19}, {"CPYRA", 7, 19},
                                 {"CPYRA5", 7, 19}, {"CPENTA", 6, 18},       {"CHEXA", 5, 17}};

template <typename Table, typename Is>
auto* Find(const Table& table, Is is) {
  const auto* found = std::find_if(std::begin(table), std::end(table), is);
  return found != std::end(table) ? found : nullptr;
}

bool BeginsAsOneOf(std::string_view name, std::initializer_list<std::string_view> beginnings) {
  return std::any_of(beginnings.begin(), beginnings.end(),
                     [name](std::string_view beginning) { return name.starts_with(beginning); });
}

}  // namespace

const BdfElement* FindBdfElement(int elementType) {
  return Find(kElements, [elementType](const BdfElement& one) { return one.elementType == elementType; });
}

const BdfEntry* FindBdfEntry(std::string_view name) {
  return Find(kEntries, [name](const BdfEntry& one) { return one.name == name; });
}

bool IsBdfElementLeftOut(std::string_view name) {
  return BeginsAsOneOf(name, {"CELAS", "CBUSH", "CDAMP", "CMASS", "CGAP", "CONM", "CVISC", "CFAST", "CWELD",
                              "CBEND", "CRAC", "CTRIAX", "CQUADX"});
}

bool IsNoBdfElement(std::string_view name) {
  return BeginsAsOneOf(name, {"CORD", "CREEP", "CSET", "CBARAO", "CONV", "CHBDY", "CYJOIN", "CYAX", "CYSYM",
                              "CSUPER", "CLOAD", "CSPR", "CASE", "CEND", "CAERO", "CSLOT", "CFLUID", "CONCTL"});
}

}  // namespace qd::workbench

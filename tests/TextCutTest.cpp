// Where texts may be cut.

#include <gtest/gtest.h>

#include "host/Types.h"
#include "platform/TextCut.h"

namespace qd::test {
namespace {

struct CutCase {
  const char* name;
  std::wstring text;
  std::vector<std::size_t> ends;  ///< the lengths at which the text may end
};
class Cutting : public ::testing::TestWithParam<CutCase> {};

TEST_P(Cutting, KeepsCharactersWhole) {
  const auto& [name, text, ends] = GetParam();
  for (std::size_t length = 0; length <= text.size() + 2; ++length) {
    std::size_t expected = 0;
    for (const std::size_t end : ends) {
      if (end <= length) expected = end;
    }
    EXPECT_EQ(CutLength(text, length), expected) << length;
  }
}
INSTANTIATE_TEST_SUITE_P(
    Scripts, Cutting,
    ::testing::Values(CutCase{"empty", L"", {}}, CutCase{"latin", L"abc", {1, 2, 3}},
                      CutCase{"accents", L"e\x301\x302x", {3, 4}}, CutCase{"halves", L"\xD83D\xDE00z", {2, 3}},
                      CutCase{"lone_halves", L"\xDE00\xD83Dz", {1, 2, 3}},
                      CutCase{"skin_in_halves", L"\xD83D\xDC4D\xD83C\xDFFDz", {4, 5}},
                      CutCase{"joined_people", L"\U0001F469\x200D\U0001F527!", {3, 4}},
                      CutCase{"skin", L"\U0001F44D\U0001F3FD!", {2, 3}},
                      CutCase{"flags", L"\U0001F1E9\U0001F1EA\U0001F1EF\U0001F1F5", {2, 4}},
                      CutCase{"flags_in_halves", L"\xD83C\xDDE9\xD83C\xDDEA\xD83C\xDDEF\xD83C\xDDF5", {4, 8}},
                      CutCase{"korean_letters", L"\x1112\x1161\x11AB\x1100\x1161", {3, 5}},
                      CutCase{"korean_syllables", L"\xD55C\xAE00", {1, 2}},
                      CutCase{"voiced_kana", L"\x304B\x3099\x306A", {2, 3}},
                      CutCase{"hindi", L"\x0939\x093F\x0928\x094D\x0926\x0940", {2, 4, 6}},
                      CutCase{"variation", L"\x2764\xFE0F!", {2, 3}},
                      CutCase{"hebrew_points", L"\x05D0\x05B8\x05D1", {2, 3}}),
    [](const auto& cut) { return std::string(cut.param.name); });

TEST(Cut, ARunOfMarksWithoutEndIsCutAllTheSame) {
  const std::wstring marks = L"x" + std::wstring(100'000, L'\x301');
  EXPECT_EQ(CutLength(marks, 50'000), 50'000U);
  EXPECT_EQ(CutName(marks).size(), kMaxNameLength);
  const std::wstring halves = std::wstring(60, L'\x301') + L"ab\xD83D\xDE00";
  EXPECT_EQ(CutName(halves).size(), 62U);
}

}  // namespace
}  // namespace qd::test

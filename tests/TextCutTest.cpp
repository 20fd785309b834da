// Where texts may be cut.

#include <gtest/gtest.h>

#include "host/Types.h"
#include "platform/text/Characters.h"

namespace qd::test {
namespace {

struct CutCase {
  const char* name;
  std::vector<std::wstring> pieces;  ///< the text, divided wherever it may end
};
class Cutting : public ::testing::TestWithParam<CutCase> {};

TEST_P(Cutting, KeepsCharactersWhole) {
  std::wstring text;
  std::vector<std::size_t> ends;
  for (const std::wstring& piece : GetParam().pieces) {
    text += piece;
    ends.push_back(text.size());
  }
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
    ::testing::Values(
        CutCase{"empty", {}}, CutCase{"latin", {L"a", L"b", L"c"}}, CutCase{"accents", {L"e\x301\x302", L"x"}},
        CutCase{"halves", {L"\xD83D\xDE00", L"z"}}, CutCase{"lone_halves", {L"\xDE00", L"\xD83D", L"z"}},
        CutCase{"skin_in_halves", {L"\xD83D\xDC4D\xD83C\xDFFD", L"z"}},
        CutCase{"joined_people", {L"\U0001F469\x200D\U0001F527", L"!"}},
        CutCase{"skin", {L"\U0001F44D\U0001F3FD", L"!"}},
        CutCase{"flags", {L"\U0001F1E9\U0001F1EA", L"\U0001F1EF\U0001F1F5"}},
        CutCase{"flags_in_halves", {L"\xD83C\xDDE9\xD83C\xDDEA", L"\xD83C\xDDEF\xD83C\xDDF5"}},
        CutCase{"korean_letters", {L"\x1112\x1161\x11AB", L"\x1100\x1161"}},
        CutCase{"korean_syllables", {L"\xD55C", L"\xAE00"}}, CutCase{"voiced_kana", {L"\x304B\x3099", L"\x306A"}},
        CutCase{"hindi", {L"\x0939\x093F", L"\x0928\x094D", L"\x0926\x0940"}},
        CutCase{"variation", {L"\x2764\xFE0F", L"!"}}, CutCase{"hebrew_points", {L"\x05D0\x05B8", L"\x05D1"}}),
    [](const auto& cut) { return std::string(cut.param.name); });

TEST(Cut, ARunOfMarksWithoutEndIsCutAllTheSame) {
  const std::wstring marks = L"x" + std::wstring(100'000, L'\x301');
  EXPECT_EQ(CutLength(marks, 50'000), 50'000U);
  EXPECT_EQ(CutName(marks).size(), kMaxNameLength);
  std::wstring tones = L"x";
  for (int i = 0; i < 30; ++i) tones += L"\xD83C\xDFFD";
  EXPECT_EQ(CutLength(tones, 40), 39U);
  EXPECT_EQ(CutLength(tones, 41), 41U);
  const std::wstring halves = std::wstring(60, L'\x301') + L"ab\xD83D\xDE00";
  EXPECT_EQ(CutName(halves).size(), 62U);
}

}  // namespace
}  // namespace qd::test
